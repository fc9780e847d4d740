#include "FirmwareCamera.h"
#include "HidCommands.h"
#include "LogCapture.h"

#include <QFile>
#include <QtTest>

namespace {

constexpr int kFullPacket = 1010;
constexpr int kLargest = 8 * 1024 * 1024;

} // namespace

/// Images of the sizes at which packets begin and end.
class FirmwareSizeTest : public QObject
{
    Q_OBJECT

private slots:
    void imageIsReceived_data();
    void imageIsReceived();
    void tooLargeImageIsNotSent();
    void missingImageIsNotSent();
    void imageInAFolderWithAChineseNameIsReceived();
};

void FirmwareSizeTest::imageIsReceived_data()
{
    QTest::addColumn<int>("size");
    QTest::addColumn<int>("packets");
    QTest::newRow("nothing") << 0 << 0;
    QTest::newRow("one byte") << 1 << 1;
    QTest::newRow("one less than a packet") << kFullPacket - 1 << 1;
    QTest::newRow("one packet") << kFullPacket << 1;
    QTest::newRow("one more than a packet") << kFullPacket + 1 << 2;
    QTest::newRow("two packets") << 2 * kFullPacket << 2;
    QTest::newRow("one more than two packets") << 2 * kFullPacket + 1 << 3;
    // Packet numbers above one byte.
    QTest::newRow("many packets") << 300 * kFullPacket - 3 << 300;
    // Takes a minute and a half, because packets are 10 ms apart.
    QTest::newRow("largest image") << kLargest << (kLargest + kFullPacket - 1) / kFullPacket;
}

void FirmwareSizeTest::imageIsReceived()
{
    QFETCH(const int, size);
    QFETCH(const int, packets);
    FirmwareCamera camera;
    const QByteArray image = FirmwareCamera::image(size);
    QCOMPARE(image.size(), size);
    QVERIFY(camera.write(camera.file(image)));
    QCOMPARE(camera.received(), std::optional<QByteArray>(image));
    QCOMPARE(camera->stats().violations, std::uint64_t{0});

    int number = 0;
    for (const auto& entry : camera->requests()) {
        if (entry.command != HidCommands::FirmwarePacket)
            continue;
        ++number;
        const bool last = number == packets;
        QCOMPARE(int(entry.packNumber), number);
        QCOMPARE(entry.dataStatus, last ? 2U : 1U);
        QCOMPARE(int(entry.dataLength), last ? size - (packets - 1) * kFullPacket : kFullPacket);
        QCOMPARE(entry.verdict, std::string("ok"));
    }
    QCOMPARE(number, packets);
    QCOMPARE(camera.requests(), packets + 2);
    QCOMPARE(camera.hasAll(), packets > 0);
    QVERIFY(camera.startsAnew());
    // One byte or an empty file is no firmware.
    QCOMPARE(
        camera.versionAfterRestart(),
        QString::fromLatin1(size > 1 ? FirmwareCamera::kNewVersion : FirmwareCamera::kOldVersion));
}

void FirmwareSizeTest::tooLargeImageIsNotSent()
{
    FirmwareCamera camera;
    QFile large(camera.file({}));
    QVERIFY(large.resize(kLargest + 1));
    // The device receives start and end, and detects that it has no image.
    QVERIFY(camera.write(large.fileName()));
    QCOMPARE(camera.requests(HidCommands::FirmwarePacket), 0);
    QCOMPARE(camera.requests(), 2);
    QVERIFY(camera.startsAnew());
    QCOMPARE(camera.versionAfterRestart(), QString::fromLatin1(FirmwareCamera::kOldVersion));
}

void FirmwareSizeTest::missingImageIsNotSent()
{
    FirmwareCamera camera;
    const LogCapture log;
    const QString file = camera.file("x");
    QVERIFY(QFile::remove(file));
    QVERIFY(camera.write(file));
    QCOMPARE(camera.requests(), 2);
    QCOMPARE(log.texts().filter(QStringLiteral("打开升级文件失败：")).size(), 1);
    QVERIFY(camera.startsAnew());
    QVERIFY(!camera.write({}));
    QCOMPARE(camera.requests(), 2);
    QCOMPARE(camera.versionAfterRestart(), QString::fromLatin1(FirmwareCamera::kOldVersion));
}

void FirmwareSizeTest::imageInAFolderWithAChineseNameIsReceived()
{
    FirmwareCamera camera;
    const QByteArray image = FirmwareCamera::image(5000);
    const QTemporaryDir home(QDir::tempPath() + QStringLiteral("/王小明 XXXXXX"));
    const QString file = home.filePath(QStringLiteral("固件.bin"));
    QVERIFY(QFile::copy(camera.file(image), file));
    QVERIFY(camera.write(file));
    QCOMPARE(camera.received(), std::optional<QByteArray>(image));
    QVERIFY(camera.startsAnew());
    QCOMPARE(camera.versionAfterRestart(), QString::fromLatin1(FirmwareCamera::kNewVersion));
}

QTEST_GUILESS_MAIN(FirmwareSizeTest)
#include "FirmwareSizeTest.moc"
