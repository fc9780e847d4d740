#include "DeviceInfoPage.h"
#include "HidCommands.h"
#include "Installation.h"
#include "ProgramMutex.h"
#include "ShownHome.h"

#include <QTemporaryDir>
#include <QtTest>

using namespace Installation;

namespace {

constexpr int kAtWork = 10;
constexpr int kPacketBytes = 1010;
/// More than the installer waits: a packet takes ten milliseconds at least.
constexpr int kPackets = 4000;

QString version()
{
    return entry(QStringLiteral("HKEY_CURRENT_USER"), QStringLiteral("DisplayVersion")).toString();
}

QString folder()
{
    return entry(QStringLiteral("HKEY_CURRENT_USER"), QStringLiteral("InstallLocation")).toString();
}

} // namespace

/// The real installer and uninstaller, while the window ends a transfer to a scripted camera after
/// "Quit". The test composes the window and the mutex as the program does.
class InstallerDuringTransferTest : public QObject
{
    Q_OBJECT

private slots:
    void initTestCase();
    void cleanupTestCase();

    void upgradeAndUninstallingChangeNothing();
};

void InstallerDuringTransferTest::initTestCase()
{
    QCOMPARE(run(QStringLiteral(MARVIK_OLD_SETUP), QStringLiteral("/S")), 0);
    QCOMPARE(version(), QStringLiteral("0.9.0"));
}

void InstallerDuringTransferTest::cleanupTestCase()
{
    QSettings(QSettings::IniFormat, QSettings::UserScope, QStringLiteral("MarvikTools"),
              QStringLiteral("MarvikTools"))
        .clear();
    // The transfer is over.
    QCOMPARE(run(QStringLiteral(MARVIK_SETUP), QStringLiteral("/S")), 0);
    QCOMPARE(version(), QString(MARVIK_VERSION));
}

void InstallerDuringTransferTest::upgradeAndUninstallingChangeNothing()
{
    const ProgramMutex mutex;
    QTemporaryDir images;
    const QString image = images.filePath(QStringLiteral("own.bin"));
    QVERIFY(writeFile(image, QByteArray(kPackets * kPacketBytes, 'i')));
    {
        QSettings settings(QSettings::IniFormat, QSettings::UserScope,
                           QStringLiteral("MarvikTools"), QStringLiteral("MarvikTools"));
        settings.setValue(QStringLiteral("development/firmwareFile"), image);
    }
    ShownHome home(1);
    home.cameras().setVersion(QByteArray::fromHex("010005"));
    home.cameras().setSerialNumber("SVAA009500551");
    ScriptedHidapi& hidapi = home.cameras().hidapi();
    for (const std::uint16_t command :
         {HidCommands::FirmwareStart, HidCommands::FirmwarePacket, HidCommands::FirmwareEnd})
        hidapi.respondTo(command, {});
    QVERIFY(home.passStart());
    QVERIFY(home.openSettings());
    home.click("deviceInfoBtn");
    hidapi.forgetCalls();
    emit home.find<DeviceInfoPage>()->sigUpgrade();
    QTRY_VERIFY(hidapi.writtenFrames().size() > 1);
    const auto isWriting = [&hidapi] { return hidapi.writtenFrames().size() < kPackets + 2; };

    const QMap<QString, QByteArray> before = contents(folder());
    QProcess setup;
    QProcess uninstaller;
    QVector<int> statuses;
    const auto note = [&](int status) { statuses.append(isWriting() ? status : -1); };
    connect(&setup, qOverload<int, QProcess::ExitStatus>(&QProcess::finished), this, note);
    connect(&uninstaller, qOverload<int, QProcess::ExitStatus>(&QProcess::finished), this, note);
    setup.setNativeArguments(QStringLiteral("/S"));
    setup.start(QStringLiteral(MARVIK_SETUP), {});
    uninstaller.setNativeArguments(QStringLiteral("/S _?=") + QDir::toNativeSeparators(folder()));
    uninstaller.start(folder() + QStringLiteral("/Uninstall.exe"), {});
    home.window().finishTransfer();

    QCOMPARE(statuses, (QVector<int>{kAtWork, kAtWork}));
    QVERIFY(!isWriting());
    QCOMPARE(contents(folder()), before);
    QCOMPARE(version(), QStringLiteral("0.9.0"));
}

QTEST_MAIN(InstallerDuringTransferTest)
#include "InstallerDuringTransferTest.moc"
