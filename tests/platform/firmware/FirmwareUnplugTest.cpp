#include "FaultyTransfer.h"
#include "UVCCamera.h"

#include <QtTest>

namespace {

/// The time that a busy machine may need to notice the removal.
constexpr qint64 kAtOnceMs = 2500;

} // namespace

/// A camera that is unplugged at a request of a transfer.
class FirmwareUnplugTest : public QObject
{
    Q_OBJECT

private slots:
    void cameraKeepsItsFirmware_data() { addSteps(); }
    void cameraKeepsItsFirmware();
    void returnedCameraNeedsANewHandle_data() { addSteps(); }
    void returnedCameraNeedsANewHandle();

private:
    static void addSteps()
    {
        QTest::addColumn<int>("at");
        for (int at = TransferFault::kStart; at <= TransferFault::kEnd; ++at)
            QTest::addRow("request %d", at) << at;
    }
};

void FirmwareUnplugTest::cameraKeepsItsFirmware()
{
    QFETCH(const int, at);
    FaultyTransfer transfer(QStringLiteral("unplug-at %1").arg(at));
    QVERIFY(!transfer.sent());
    QCOMPARE(transfer.requests(), at);
    QVERIFY2(transfer.elapsedMs() < kAtOnceMs,
             QByteArray::number(transfer.elapsedMs()).constData());
    QCOMPARE(transfer.complaint(false), QByteArray());
    // The fault has no later effect: the next attempt succeeds.
    const QByteArray image = FirmwareCamera::image(2500);
    transfer.camera()->forgetRequests();
    QVERIFY(transfer.camera().write(transfer.camera().file(image)));
    QCOMPARE(transfer.camera().received(), std::optional<QByteArray>(image));
    QVERIFY(transfer.camera()->waitFor("connections>=3"));
    QVERIFY(transfer.camera()->waitFor("onbus"));
    QCOMPARE(transfer.camera().versionAfterRestart(),
             QString::fromLatin1(FirmwareCamera::kNewVersion));
}

/// A handle from before the replug does not reach the camera that has returned.
void FirmwareUnplugTest::returnedCameraNeedsANewHandle()
{
    QFETCH(const int, at);
    FirmwareCamera camera;
    UVCCamera program;
    program.setCurrentDevicePath(camera->hidPath());
    QVERIFY(program.initHid());
    camera->fault("unplug-at " + std::to_string(at));
    const QString file = camera.file(FirmwareCamera::image(1010 * TransferFault::kPackets));
    QVERIFY(!program.updateFile(file));
    QVERIFY(camera->waitFor("offbus"));
    camera->clearFaults();
    camera->plug();
    QVERIFY(!program.updateFile(file));
    QCOMPARE(camera.requests(), at);
    program.setCurrentDevicePath(camera->hidPath());
    QVERIFY(program.initHid());
    QCOMPARE(program.getFirmwareVersion(), QStringLiteral("1.0.5"));
}

QTEST_GUILESS_MAIN(FirmwareUnplugTest)
#include "FirmwareUnplugTest.moc"
