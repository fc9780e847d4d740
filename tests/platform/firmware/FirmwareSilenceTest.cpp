#include "FaultyTransfer.h"

#include <array>
#include <chrono>
#include <QtTest>
#include <thread>

namespace {

constexpr qint64 kControlTimeoutMs = 3000;
constexpr qint64 kPacketTimeoutMs = 1000;
/// Additional time that a busy machine may need.
constexpr qint64 kSlackMs = 2500;

} // namespace

/// A transfer to a camera that does not answer in time: it ends by its time-outs.
class FirmwareSilenceTest : public QObject
{
    Q_OBJECT

private slots:
    void silence_data();
    void silence();
    void lateAnswerToTheStart_data();
    void lateAnswerToTheStart();
    void lateAnswerToTheEnd_data();
    void lateAnswerToTheEnd();
    void programDoesNotWaitForAnUnpluggedCamera_data();
    void programDoesNotWaitForAnUnpluggedCamera();

private:
    static void addRow(const TransferFault& fault)
    {
        QTest::newRow(qPrintable(fault.title())) << fault;
    }
};

void FirmwareSilenceTest::silence_data()
{
    using Fault = TransferFault;
    constexpr std::array<Fault::Scope, 3> scopes{Fault::Once, Fault::SameCommand,
                                                 Fault::FromThenOn};
    const QString silent = QStringLiteral("noreply");
    const QString late = QStringLiteral("late 1300");
    const QString veryLate = QStringLiteral("late 3400");
    QTest::addColumn<TransferFault>("fault");
    addRow({silent, Fault::LostDone, Fault::kStart, Fault::Once});
    addRow({silent, Fault::LostDone, Fault::kStart, Fault::SameCommand});
    addRow({veryLate, Fault::LostDone, Fault::kStart, Fault::Once});
    for (int at = Fault::kStart + 1; at < Fault::kEnd; ++at) {
        for (const Fault::Scope scope : scopes)
            addRow({silent, Fault::LostDone, at, scope});
        addRow({late, Fault::LostDone, at, Fault::Once});
        addRow({late, Fault::LostDone, at, Fault::SameCommand});
    }
    addRow({silent, Fault::LostDone, Fault::kEnd, Fault::Once});
    // Too late for a packet, but in time for a command.
    addRow({late, Fault::Acknowledged, Fault::kStart, Fault::Once});
    addRow({QStringLiteral("late 700 cmd=0x4200"), Fault::Acknowledged, Fault::kStart,
            Fault::FromThenOn});
}

void FirmwareSilenceTest::silence()
{
    QFETCH(const TransferFault, fault);
    const TransferFault::Outcome expected = fault.outcome();
    FaultyTransfer transfer(fault.request());
    QCOMPARE(transfer.sent(), expected.sent);
    QCOMPARE(transfer.requests(), expected.requests);
    if (fault.effect != TransferFault::Acknowledged) {
        const qint64 limits =
            expected.lostControls * kControlTimeoutMs + expected.lostPackets * kPacketTimeoutMs;
        const QByteArray took = QByteArray::number(transfer.elapsedMs()) + " ms";
        QVERIFY2(transfer.elapsedMs() >= limits, took.constData());
        QVERIFY2(transfer.elapsedMs() < limits + kSlackMs, took.constData());
    }
    QCOMPARE(transfer.complaint(expected.cameraHasAll), QByteArray());
}

/// The answer to one attempt arrives while the program waits for the answer to the next.
void FirmwareSilenceTest::lateAnswerToTheStart_data()
{
    QTest::addColumn<QString>("fault");
    QTest::addColumn<bool>("sent");
    QTest::addColumn<int>("requests");
    QTest::newRow("start alone") << "late 3400 cmd=0x4000" << true << 8;
    // The only packet is not acknowledged in time, and the end reads the answer to the second
    // start.
    QTest::newRow("all") << "late 3400" << false << 4;
}

void FirmwareSilenceTest::lateAnswerToTheStart()
{
    QFETCH(const QString, fault);
    QFETCH(const bool, sent);
    QFETCH(const int, requests);
    FaultyTransfer transfer(fault);
    QCOMPARE(transfer.sent(), sent);
    QCOMPARE(transfer.requests(), requests);
    QVERIFY(transfer.elapsedMs() >= kControlTimeoutMs);
    QVERIFY(transfer.elapsedMs() < 3 * kControlTimeoutMs + kSlackMs);
    QCOMPARE(transfer.complaint(sent), QByteArray());
}

/// A camera that restarts slowly: the program waits for it.
void FirmwareSilenceTest::lateAnswerToTheEnd_data()
{
    QTest::addColumn<QString>("fault");
    QTest::addColumn<bool>("sent");
    QTest::addColumn<qint64>("fromMs");
    QTest::newRow("never") << "noreply cmd=0x4300" << false << kControlTimeoutMs;
    QTest::newRow("too late") << "late 3400 cmd=0x4300" << false << kControlTimeoutMs;
    QTest::newRow("in time") << "late 1300 cmd=0x4300" << true << qint64{1300};
}

void FirmwareSilenceTest::lateAnswerToTheEnd()
{
    QFETCH(const QString, fault);
    QFETCH(const bool, sent);
    QFETCH(const qint64, fromMs);
    FirmwareCamera camera;
    camera->setText("dropdelay", "4000");
    const QByteArray image = FirmwareCamera::image(1010 * TransferFault::kPackets);
    const QString file = camera.file(image);
    camera->fault(fault.toStdString());
    QElapsedTimer timer;
    timer.start();
    QCOMPARE(camera.write(file), sent);
    const QByteArray took = QByteArray::number(timer.elapsed()) + " ms";
    QVERIFY2(timer.elapsed() >= fromMs, took.constData());
    QVERIFY2(timer.elapsed() < fromMs + kSlackMs, took.constData());
    QCOMPARE(camera.received(), std::optional<QByteArray>(image));
    QVERIFY(camera.startsAnew());
    QCOMPARE(camera.versionAfterRestart(), QString::fromLatin1(FirmwareCamera::kNewVersion));
}

void FirmwareSilenceTest::programDoesNotWaitForAnUnpluggedCamera_data()
{
    QTest::addColumn<int>("at");
    QTest::newRow("start") << TransferFault::kStart;
    QTest::newRow("packet 3") << TransferFault::kStart + 3;
    QTest::newRow("end") << TransferFault::kEnd;
}

void FirmwareSilenceTest::programDoesNotWaitForAnUnpluggedCamera()
{
    QFETCH(const int, at);
    FirmwareCamera camera;
    const QString file = camera.file(FirmwareCamera::image(1010 * TransferFault::kPackets));
    // Silent from there on, and unplugged while the program waits. A client may be used by one
    // thread only.
    camera->setText("dropdelay", "4000");
    camera->fault("noreply from=" + std::to_string(at));
    PluggedCamera::Client client;
    const std::string id = camera->id();
    std::thread hand([&client, &id, at] {
        client.wait(id, "requests>=" + std::to_string(at), std::chrono::seconds(10));
        std::this_thread::sleep_for(std::chrono::milliseconds(200));
        client.unplug(id);
    });
    QElapsedTimer timer;
    timer.start();
    const bool sent = camera.write(file);
    const qint64 elapsedMs = timer.elapsed();
    hand.join();
    QVERIFY(!sent);
    QVERIFY2(elapsedMs < kPacketTimeoutMs, QByteArray::number(elapsedMs).constData());
    QVERIFY(camera->waitFor("hid<=0"));
    QCOMPARE(camera.requests(), at);
}

QTEST_GUILESS_MAIN(FirmwareSilenceTest)
#include "FirmwareSilenceTest.moc"
