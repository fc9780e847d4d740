#include "FirmwareWorker.h"
#include "DeviceHomePage.h"
#include "DeviceManager.h"
#include "FirmwareCamera.h"
#include "HidCommands.h"
#include "ProcessUsage.h"

#include <memory>
#include <QProcess>
#include <QtTest>

namespace {

constexpr int kTimeoutMs = 30000;
constexpr std::size_t kStormPackets = 600;
constexpr int kFewestRebuilds = 6;

/// The list page with its hot-plug watch, as the program has them.
class ListPage
{
public:
    ListPage()
    {
        QObject::connect(&m_page, &DeviceHomePage::sigUpdateCameraListFinished, &m_page,
                         [this] { ++m_rebuilds; });
        m_page.show();
        m_page.start();
        DeviceManager::instance().start();
    }
    ~ListPage() { DeviceManager::instance().stop(); }
    ListPage(const ListPage&) = delete;
    ListPage& operator=(const ListPage&) = delete;

    DeviceHomePage& page() { return m_page; }
    [[nodiscard]] int rebuilds() const { return m_rebuilds; }

private:
    DeviceHomePage m_page;
    int m_rebuilds = 0;
};

} // namespace

/// The transfer on its worker, while the GUI thread keeps running.
class FirmwareWorkerTest : public QObject
{
    Q_OBJECT

private slots:
    void initTestCase();
    void imageIsWritten();
    void secondTransferIsRefusedDuringTheFirst();
    void cameraThatCannotBeOpenedIsReported();
    void cameraThatAnotherProgramUsesIsNotWritten();
    void cameraThatLeavesEndsIt_data();
    void cameraThatLeavesEndsIt();
    void cameraThatLeftIsFreeBeforeTheEnd();
    void destructionWaitsForTheEnd();
    void hotPlugStormOfOtherCamerasDoesNotDisturbIt();
    void hotPlugStormOfTheCameraItselfIsHarmless();
};

void FirmwareWorkerTest::initTestCase()
{
    // What the main window registers; both travel from the watcher's thread.
    qRegisterMetaType<QList<UVCDeviceInfo>>("QList<UVCDeviceInfo>");
    qRegisterMetaType<QMap<QString, HidDevices>>("QMap<QString,HidDevices>");
}

void FirmwareWorkerTest::imageIsWritten()
{
    FirmwareCamera camera;
    const QByteArray image = FirmwareCamera::image(20000);
    FirmwareWorker transfer;
    const QSignalSpy finished(&transfer, &FirmwareWorker::finished);
    QVERIFY(!transfer.isRunning());
    const QString path = camera->hidPath();
    QVERIFY(transfer.start(path, camera.file(image)));
    QVERIFY(transfer.isRunning());
    QCOMPARE(transfer.busyHidPath(), path);
    QTRY_COMPARE_WITH_TIMEOUT(finished.size(), 1, kTimeoutMs);
    QVERIFY(finished.at(0).at(0).toBool());
    QVERIFY(!transfer.isRunning());
    QCOMPARE(transfer.busyHidPath(), QString());
    QCOMPARE(camera.received(), std::optional<QByteArray>(image));
    QVERIFY(camera.startsAnew());
    QVERIFY(camera->isReleased());
    QCOMPARE(camera.versionAfterRestart(), QString::fromLatin1(FirmwareCamera::kNewVersion));
}

void FirmwareWorkerTest::secondTransferIsRefusedDuringTheFirst()
{
    FirmwareCamera camera;
    FirmwareCamera other;
    const QByteArray image = FirmwareCamera::image(50000);
    FirmwareWorker transfer;
    const QSignalSpy finished(&transfer, &FirmwareWorker::finished);
    QVERIFY(transfer.start(camera->hidPath(), camera.file(image)));
    QVERIFY(!transfer.start(other->hidPath(), other.file(image)));
    QTRY_COMPARE_WITH_TIMEOUT(finished.size(), 1, kTimeoutMs);
    QCOMPARE(camera.received(), std::optional<QByteArray>(image));
    QCOMPARE(other.requests(), 0);
    QVERIFY(transfer.start(other->hidPath(), other.file(image)));
    QTRY_COMPARE_WITH_TIMEOUT(finished.size(), 2, kTimeoutMs);
    QCOMPARE(other.received(), std::optional<QByteArray>(image));
    QVERIFY(camera.startsAnew());
    QVERIFY(other.startsAnew());
}

void FirmwareWorkerTest::cameraThatCannotBeOpenedIsReported()
{
    FirmwareCamera camera;
    camera->fault("open-error");
    FirmwareWorker transfer;
    const QSignalSpy notOpened(&transfer, &FirmwareWorker::notOpened);
    const QSignalSpy finished(&transfer, &FirmwareWorker::finished);
    QVERIFY(transfer.start(camera->hidPath(), camera.file(FirmwareCamera::image(2000))));
    QTRY_COMPARE_WITH_TIMEOUT(finished.size(), 1, kTimeoutMs);
    QVERIFY(!finished.at(0).at(0).toBool());
    QCOMPARE(notOpened.size(), 1);
    QCOMPARE(camera.requests(), 0);
}

void FirmwareWorkerTest::cameraThatAnotherProgramUsesIsNotWritten()
{
    FirmwareCamera camera;
    QProcess other;
    other.start(QStringLiteral(LOCK_HOLDER), {camera->hidPath(), QStringLiteral("firmware")});
    QVERIFY(other.waitForReadyRead(kTimeoutMs));
    FirmwareWorker transfer;
    const QSignalSpy notOpened(&transfer, &FirmwareWorker::notOpened);
    const QSignalSpy finished(&transfer, &FirmwareWorker::finished);
    QVERIFY(transfer.start(camera->hidPath(), camera.file(FirmwareCamera::image(2000))));
    QTRY_COMPARE_WITH_TIMEOUT(finished.size(), 1, kTimeoutMs);
    QVERIFY(!finished.at(0).at(0).toBool());
    QCOMPARE(notOpened.size(), 1);
    QCOMPARE(camera.requests(), 0);

    other.closeWriteChannel();
    QVERIFY(other.waitForFinished(kTimeoutMs));
    QVERIFY(transfer.start(camera->hidPath(), camera.file(FirmwareCamera::image(2000))));
    QTRY_COMPARE_WITH_TIMEOUT(finished.size(), 2, kTimeoutMs);
    QVERIFY(finished.at(1).at(0).toBool());
    QVERIFY(camera.startsAnew());
}

void FirmwareWorkerTest::cameraThatLeavesEndsIt_data()
{
    QTest::addColumn<int>("at");
    for (int at = 1; at <= 7; ++at)
        QTest::addRow("request %d", at) << at;
}

void FirmwareWorkerTest::cameraThatLeavesEndsIt()
{
    QFETCH(const int, at);
    FirmwareCamera camera;
    camera->fault("unplug-at " + std::to_string(at));
    FirmwareWorker transfer;
    const QSignalSpy notOpened(&transfer, &FirmwareWorker::notOpened);
    const QSignalSpy finished(&transfer, &FirmwareWorker::finished);
    const int descriptors = ProcessUsage::openDescriptors();
    QVERIFY(transfer.start(camera->hidPath(), camera.file(FirmwareCamera::image(5 * 1010))));
    QTRY_COMPARE_WITH_TIMEOUT(finished.size(), 1, kTimeoutMs);
    QVERIFY(!finished.at(0).at(0).toBool());
    QCOMPARE(notOpened.size(), 0);
    QCOMPARE(camera.requests(), at);
    QTRY_COMPARE(ProcessUsage::openDescriptors(), descriptors);
    QVERIFY(camera->waitFor("offbus"));
    QCOMPARE(camera.versionAfterRestart(), QString::fromLatin1(FirmwareCamera::kOldVersion));
}

void FirmwareWorkerTest::cameraThatLeftIsFreeBeforeTheEnd()
{
    FirmwareCamera camera;
    camera->fault("noreply cmd=0x4000");
    FirmwareWorker transfer;
    const QSignalSpy finished(&transfer, &FirmwareWorker::finished);
    QVERIFY(transfer.start(camera->hidPath(), camera.file(FirmwareCamera::image(2000))));
    transfer.cameraLeft();
    QCOMPARE(transfer.busyHidPath(), QString());
    QVERIFY(transfer.isRunning());
    QVERIFY(camera->waitFor("requests>=1"));
    camera->unplug();
    QTRY_COMPARE_WITH_TIMEOUT(finished.size(), 1, kTimeoutMs);
}

void FirmwareWorkerTest::destructionWaitsForTheEnd()
{
    FirmwareCamera camera;
    const QByteArray image = FirmwareCamera::image(50000);
    auto transfer = std::make_unique<FirmwareWorker>();
    QVERIFY(transfer->start(camera->hidPath(), camera.file(image)));
    QVERIFY(camera->waitFor("requests>=5"));
    QVERIFY(!camera.hasAll());
    transfer.reset();
    QCOMPARE(camera.received(), std::optional<QByteArray>(image));
    QCOMPARE(camera.requests(HidCommands::FirmwareEnd), 1);
    QVERIFY(camera.startsAnew());
}

/// The list is rebuilt repeatedly on the GUI thread while the worker writes. All other cameras are
/// asked each time, the camera that is being written never.
void FirmwareWorkerTest::hotPlugStormOfOtherCamerasDoesNotDisturbIt()
{
    FirmwareCamera camera;
    PluggedCamera neighbour;
    ListPage list;
    QCOMPARE(list.page().entryCount(), 2);
    const QByteArray image = FirmwareCamera::image(1010 * int(kStormPackets) - 5);
    camera->forgetRequests();
    neighbour.forgetRequests();
    FirmwareWorker transfer;
    const QSignalSpy finished(&transfer, &FirmwareWorker::finished);
    list.page().setBusyCamera(camera->hidPath());
    QVERIFY(transfer.start(camera->hidPath(), camera.file(image)));

    PluggedCamera stranger;
    for (int round = 0; finished.isEmpty() && round < 1000; ++round) {
        const int before = list.rebuilds();
        if (round % 2 == 0)
            stranger.unplug();
        else
            stranger.plug();
        QTRY_VERIFY_WITH_TIMEOUT(list.rebuilds() > before || !finished.isEmpty(), kTimeoutMs);
    }
    QVERIFY(finished.at(0).at(0).toBool());
    QVERIFY2(list.rebuilds() >= kFewestRebuilds, QByteArray::number(list.rebuilds()).constData());
    QVERIFY(neighbour.requestCount() > 0);
    // Start, packets and end, each once, and nothing between them.
    QCOMPARE(camera.received(), std::optional<QByteArray>(image));
    const auto requests = camera->requests();
    QVERIFY(requests.size() >= kStormPackets + 2);
    QCOMPARE(camera.requests(HidCommands::FirmwareStart), 1);
    QCOMPARE(camera.requests(HidCommands::FirmwarePacket), int(kStormPackets));
    QCOMPARE(requests.at(kStormPackets + 1).command, HidCommands::FirmwareEnd);
    QVERIFY(camera.startsAnew());
}

/// A loose connector: the camera leaves and returns while several transfers are tried.
void FirmwareWorkerTest::hotPlugStormOfTheCameraItselfIsHarmless()
{
    constexpr int rounds = 8;
    FirmwareCamera camera;
    ListPage list;
    QCOMPARE(list.page().entryCount(), 1);
    const QByteArray image = FirmwareCamera::image(1010 * 500);
    const QString file = camera.file(image);
    FirmwareWorker transfer;
    const QSignalSpy finished(&transfer, &FirmwareWorker::finished);
    for (int round = 0; round < rounds; ++round) {
        const QString path = camera->hidPath();
        list.page().setBusyCamera(path);
        camera->forgetRequests();
        QVERIFY(transfer.start(path, file));
        QTRY_VERIFY_WITH_TIMEOUT(camera.requests() > 1 + 3 * round, kTimeoutMs);
        const int before = list.rebuilds();
        camera->unplug();
        // Immediately, and after the list has noticed the removal.
        if (round % 2 == 0) {
            QTRY_VERIFY_WITH_TIMEOUT(list.rebuilds() > before, kTimeoutMs);
        }
        list.page().setBusyCamera({});
        camera->plug();
        QTRY_COMPARE_WITH_TIMEOUT(finished.size(), round + 1, kTimeoutMs);
        QVERIFY(!finished.at(round).at(0).toBool());
        QTRY_COMPARE_WITH_TIMEOUT(list.rebuilds(), before + 2, kTimeoutMs);
        QCOMPARE(list.page().entryCount(), 1);
    }
    camera->forgetRequests();
    QVERIFY(transfer.start(camera->hidPath(), camera.file(FirmwareCamera::image(3000))));
    list.page().setBusyCamera(camera->hidPath());
    QTRY_COMPARE_WITH_TIMEOUT(finished.size(), rounds + 1, kTimeoutMs);
    QVERIFY(finished.last().at(0).toBool());
    QTRY_COMPARE_WITH_TIMEOUT(QString::fromStdString(camera->firmware().version),
                              QString::fromLatin1(FirmwareCamera::kNewVersion), kTimeoutMs);
}

QTEST_MAIN(FirmwareWorkerTest)
#include "FirmwareWorkerTest.moc"
