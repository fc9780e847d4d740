#include "FaultyTransfer.h"
#include "LogCapture.h"

#include <array>
#include <QtTest>

namespace {

/// The time that a busy machine may add to a transfer without waits.
constexpr qint64 kAtOnceMs = 2500;

constexpr std::array<TransferFault::Scope, 3> kScopes{
    TransferFault::Once, TransferFault::SameCommand, TransferFault::FromThenOn};

struct Kind
{
    const char* name;
    TransferFault::Effect effect;
};

constexpr std::array<Kind, 11> kKinds{{
    {"wrongecho", TransferFault::RefusedDone},
    {"short 1", TransferFault::RefusedDone},
    {"status 1", TransferFault::RefusedNotDone},
    {"status 0x80000000", TransferFault::RefusedNotDone},
    {"readerror", TransferFault::LostDone},
    {"writeerror", TransferFault::LostNotDone},
    // The answer acknowledges; its checksum, and the length of a payload that none of these
    // commands has, are not checked.
    {"badcrc", TransferFault::Acknowledged},
    {"oversize 65535", TransferFault::Acknowledged},
    {"oversize 1", TransferFault::Acknowledged},
    {"short 12", TransferFault::Acknowledged},
    {"late 10", TransferFault::Acknowledged},
}};

} // namespace

/// A transfer with every kind of bad answer at every step.
class FirmwareFaultTest : public QObject
{
    Q_OBJECT

private slots:
    void transferWithoutAFaultSucceeds();
    void badAnswer_data();
    void badAnswer();
    void staleReports_data();
    void staleReports();
    void refusedStart_data();
    void refusedStart();
    void refusedPacket_data();
    void refusedPacket();
    void transferAfterAFailedOneSucceeds_data();
    void transferAfterAFailedOneSucceeds();
};

void FirmwareFaultTest::transferWithoutAFaultSucceeds()
{
    FaultyTransfer transfer({});
    QVERIFY(transfer.sent());
    QCOMPARE(transfer.requests(), TransferFault::kEnd);
    QCOMPARE(transfer.camera()->stats().violations, std::uint64_t{0});
    QCOMPARE(transfer.complaint(true), QByteArray());
}

void FirmwareFaultTest::badAnswer_data()
{
    QTest::addColumn<TransferFault>("fault");
    for (const Kind& kind : kKinds) {
        for (int at = TransferFault::kStart; at <= TransferFault::kEnd; ++at) {
            for (const TransferFault::Scope scope : kScopes) {
                // A fault that is harmless at all requests is harmless at one.
                if (kind.effect == TransferFault::Acknowledged &&
                    (at > TransferFault::kStart || scope != TransferFault::FromThenOn))
                    continue;
                const TransferFault fault{QLatin1String(kind.name), kind.effect, at, scope};
                QTest::newRow(qPrintable(fault.title())) << fault;
            }
        }
    }
}

void FirmwareFaultTest::badAnswer()
{
    QFETCH(const TransferFault, fault);
    const TransferFault::Outcome expected = fault.outcome();
    FaultyTransfer transfer(fault.request());
    QCOMPARE(transfer.sent(), expected.sent);
    QCOMPARE(transfer.requests(), expected.requests);
    QVERIFY2(transfer.elapsedMs() < kAtOnceMs,
             QByteArray::number(transfer.elapsedMs()).constData());
    QCOMPARE(transfer.complaint(expected.cameraHasAll), QByteArray());
}

/// Old reports before an answer shift all later answers: each request reads the answer to the
/// previous one. Only the end command detects that an answer to a packet is not its own.
void FirmwareFaultTest::staleReports_data()
{
    QTest::addColumn<QString>("fault");
    QTest::addColumn<int>("requests");
    QTest::addColumn<bool>("cameraHasAll");
    QTest::newRow("start, once") << "stale 1 cmd=0x4000 times=1" << 9 << true;
    QTest::newRow("start, always") << "stale 1 cmd=0x4000" << 10 << true;
    QTest::newRow("start, more than there are attempts") << "stale 30 cmd=0x4000" << 3 << false;
    QTest::newRow("packet 1, once") << "stale 1 cmd=0x4200 times=1" << 8 << true;
    QTest::newRow("packet 1, always") << "stale 1 cmd=0x4200" << 8 << true;
    QTest::newRow("packet 1, more than there are resends")
        << "stale 30 cmd=0x4200 times=1" << 9 << false;
    for (int number = 2; number <= TransferFault::kPackets; ++number) {
        const QString from = QStringLiteral(" cmd=0x4200 from=%1").arg(number);
        const QByteArray packet = "packet " + QByteArray::number(number);
        QTest::newRow((packet + ", once").constData()) << "stale 1 times=1" + from << 7 << true;
        QTest::newRow((packet + ", always").constData()) << "stale 1" + from << 7 << true;
        QTest::newRow((packet + ", many").constData()) << "stale 30" + from << 7 << true;
    }
    QTest::newRow("end") << "stale 1 cmd=0x4300" << 7 << true;
    QTest::newRow("end, more than a queue holds") << "stale 100 cmd=0x4300" << 7 << true;
}

void FirmwareFaultTest::staleReports()
{
    QFETCH(const QString, fault);
    QFETCH(const int, requests);
    QFETCH(const bool, cameraHasAll);
    FaultyTransfer transfer(fault);
    QVERIFY(!transfer.sent());
    QCOMPARE(transfer.requests(), requests);
    QVERIFY2(transfer.elapsedMs() < kAtOnceMs,
             QByteArray::number(transfer.elapsedMs()).constData());
    QCOMPARE(transfer.complaint(cameraHasAll), QByteArray());
}

void FirmwareFaultTest::refusedStart_data()
{
    QTest::addColumn<int>("times");
    for (int times = 0; times <= 3; ++times)
        QTest::addRow("%d times", times) << times;
}

void FirmwareFaultTest::refusedStart()
{
    QFETCH(const int, times);
    const LogCapture log;
    FaultyTransfer transfer(QStringLiteral("refuse-start %1").arg(times));
    const bool starts = times < 3;
    QCOMPARE(transfer.sent(), starts);
    QCOMPARE(transfer.camera().requests(0x4000), starts ? times + 1 : 3);
    QCOMPARE(transfer.camera().requests(0x4200), starts ? TransferFault::kPackets : 0);
    QCOMPARE(log.contains(QStringLiteral("重试3次发送升级开始命令失败，退出升级。")), !starts);
    QCOMPARE(transfer.complaint(starts), QByteArray());
}

void FirmwareFaultTest::refusedPacket_data()
{
    QTest::addColumn<int>("packet");
    QTest::addColumn<int>("times");
    for (int packet = 1; packet <= TransferFault::kPackets; ++packet) {
        for (int times = 0; times <= 7; ++times)
            QTest::addRow("packet %d, %d times", packet, times) << packet << times;
    }
}

/// The answer to the sixth resend (the seventh send) is ignored, even when it is the
/// acknowledgement.
void FirmwareFaultTest::refusedPacket()
{
    QFETCH(const int, packet);
    QFETCH(const int, times);
    const LogCapture log;
    FaultyTransfer transfer(QStringLiteral("nack-packet %1 %2").arg(packet).arg(times));
    QVERIFY(transfer.sent()); // the end is acknowledged even if packets failed
    const bool goesOn = times < 6;
    const int sends = std::min(times + 1, 7);
    QCOMPARE(transfer.camera().requests(0x4200),
             (goesOn ? TransferFault::kPackets : packet) - 1 + sends);
    QCOMPARE(transfer.camera().requests(0x4300), 1);
    QCOMPARE(log.texts().filter(QStringLiteral("retryCount:")).size(), sends - 1);
    // At the last packet the camera accepts the seventh send, but the program has given up.
    const bool cameraHasAll = goesOn || (times == 6 && packet == TransferFault::kPackets);
    QCOMPARE(transfer.complaint(cameraHasAll), QByteArray());
}

void FirmwareFaultTest::transferAfterAFailedOneSucceeds_data()
{
    QTest::addColumn<QString>("fault");
    QTest::newRow("no start") << "status 1 cmd=0x4000";
    QTest::newRow("no packets") << "writeerror cmd=0x4200";
    QTest::newRow("no end") << "status 1 cmd=0x4300";
}

void FirmwareFaultTest::transferAfterAFailedOneSucceeds()
{
    QFETCH(const QString, fault);
    FirmwareCamera camera;
    const QByteArray image = FirmwareCamera::image(3000);
    const QString file = camera.file(image);
    camera->fault(fault.toStdString());
    const bool sent = camera.write(file);
    if (sent) // the end was acknowledged: the camera restarts with its old version
        QVERIFY(camera.startsAnew());
    QCOMPARE(QString::fromStdString(camera->firmware().version),
             QString::fromLatin1(FirmwareCamera::kOldVersion));
    camera->clearFaults();
    camera->forgetRequests();
    QVERIFY(camera.write(file));
    QCOMPARE(camera.received(), std::optional<QByteArray>(image));
    QVERIFY(camera->waitFor(sent ? "connections>=3" : "connections>=2"));
    QCOMPARE(QString::fromStdString(camera->firmware().version),
             QString::fromLatin1(FirmwareCamera::kNewVersion));
}

QTEST_GUILESS_MAIN(FirmwareFaultTest)
#include "FirmwareFaultTest.moc"
