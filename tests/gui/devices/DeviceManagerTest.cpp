#include "DeviceManager.h"
#include "CameraHandle.h"
#include "LogCapture.h"
#include "ScriptedCameras.h"
#include "ScriptedUdev.h"
#include "SDMMNotificationClient.h"

#include <atomic>
#include <QElapsedTimer>
#include <QMutex>
#include <QtTest>
#include <thread>
#include <vector>

namespace {

std::atomic<int> s_audioRegistrations{0};
std::atomic<int> s_audioClients{0};

} // namespace

// Replaces the client of the sound server.
SDMMNotificationClient::SDMMNotificationClient()
{
    ++s_audioClients;
}

SDMMNotificationClient::~SDMMNotificationClient()
{
    --s_audioClients;
}

void SDMMNotificationClient::registerCallback()
{
    ++s_audioRegistrations;
}

void SDMMNotificationClient::MainLoopDeleter::operator()(pa_threaded_mainloop*) const {}

namespace {

/// Receives the notifications instead of the list page.
class Receiver : public IDeviceNotify
{
public:
    struct Notification
    {
        int status = -1;
        int cameras = 0;
        Qt::HANDLE thread = nullptr;
    };

    Receiver() { CameraHandle::instance().setNotify(this); }
    ~Receiver() override { CameraHandle::instance().setNotify(nullptr); }

    void camerasChanged(const QList<UVCDeviceInfo>& cameras, int status) override
    {
        const QMutexLocker lock(&m_mutex);
        m_taken << Notification{status, cameras.size(), QThread::currentThreadId()};
    }
    void camerasChanged(const QList<UVCDeviceInfo>& cameras, const QMap<QString, HidDevices>&,
                        int status) override
    {
        camerasChanged(cameras, status);
    }

    [[nodiscard]] QList<Notification> taken() const
    {
        const QMutexLocker lock(&m_mutex);
        return m_taken;
    }
    [[nodiscard]] QList<int> statuses() const
    {
        QList<int> statuses;
        for (const Notification& notification : taken())
            statuses << notification.status;
        return statuses;
    }

private:
    mutable QMutex m_mutex;
    QList<Notification> m_taken;
};

} // namespace

/// The hot-plug watcher, with a monitor to which the test sends events.
class DeviceManagerTest : public QObject
{
    Q_OBJECT

private slots:
    void init();
    void cleanup();

    void thereIsOneManager();
    void monitorListensToHidInterfaces();
    void arrivalMakesOneEnumeration();
    void removalMakesOneEnumeration();
    void otherEventsMakeNoEnumeration_data();
    void otherEventsMakeNoEnumeration();
    void everyEventMakesAnEnumeration();
    void watcherRunsOnAThreadOfItsOwn();
    void startingTwiceMakesOneWatcher();
    void startingTwiceRegistersForAudioTwice();
    void stoppingEndsTheWatcherAtOnce();
    void watcherCanBeStartedAgain();
    void monitorThatCannotBeMadeIsLogged();
    void noReceiverIsNoHarm();

private:
    static DeviceManager& manager() { return DeviceManager::instance(); }

    std::unique_ptr<LogCapture> m_log;
    std::unique_ptr<ScriptedCameras> m_cameras;
    std::unique_ptr<ScriptedUdev> m_udev;
    std::unique_ptr<Receiver> m_receiver;
};

void DeviceManagerTest::init()
{
    m_log = std::make_unique<LogCapture>();
    m_cameras = std::make_unique<ScriptedCameras>(2);
    m_udev = std::make_unique<ScriptedUdev>();
    m_receiver = std::make_unique<Receiver>();
    s_audioRegistrations = 0;
}

void DeviceManagerTest::cleanup()
{
    manager().stop();
    QVERIFY(!manager().isRunning());
    QCOMPARE(m_udev->monitorsOpen(), 0);
    QCOMPARE(s_audioClients.load(), 0);
    m_receiver.reset();
    m_udev.reset();
    m_cameras.reset();
    m_log.reset();
}

void DeviceManagerTest::thereIsOneManager()
{
    std::vector<DeviceManager*> managers(8);
    std::vector<CameraHandle*> handles(8);
    std::vector<std::thread> threads;
    for (std::size_t i = 0; i < managers.size(); ++i) {
        threads.emplace_back([&managers, &handles, i] {
            managers[i] = &DeviceManager::instance();
            handles[i] = &CameraHandle::instance();
        });
    }
    for (std::thread& thread : threads)
        thread.join();
    for (std::size_t i = 0; i < managers.size(); ++i) {
        QCOMPARE(managers[i], &DeviceManager::instance());
        QCOMPARE(handles[i], &CameraHandle::instance());
    }
}

void DeviceManagerTest::monitorListensToHidInterfaces()
{
    manager().start();
    QCOMPARE(QString::fromStdString(m_udev->subject()), QStringLiteral("udev hidraw"));
    // A burst of events must not overflow the queue; the default holds some 200 KiB.
    QVERIFY(m_udev->receiveBuffer() >= 1024 * 1024);
}

void DeviceManagerTest::arrivalMakesOneEnumeration()
{
    manager().start();
    m_udev->send("add");
    QTRY_COMPARE(m_receiver->statuses(), QList<int>{0});
    QCOMPARE(m_receiver->taken().first().cameras, 2);
    QCOMPARE(m_cameras->video().listings(), 1);
    QCOMPARE(m_log->texts().filter(QStringLiteral("检测到插入设备")).size(), 1);
    QVERIFY(m_log->texts().filter(QStringLiteral("检测到拔出设备")).isEmpty());
}

void DeviceManagerTest::removalMakesOneEnumeration()
{
    manager().start();
    m_cameras->plugIn(1);
    m_udev->send("remove");
    QTRY_COMPARE(m_receiver->statuses(), QList<int>{1});
    QCOMPARE(m_receiver->taken().first().cameras, 1);
    QCOMPARE(m_cameras->video().listings(), 1);
    QCOMPARE(m_log->texts().filter(QStringLiteral("检测到拔出设备")).size(), 1);
    QVERIFY(m_log->texts().filter(QStringLiteral("检测到插入设备")).isEmpty());
}

void DeviceManagerTest::otherEventsMakeNoEnumeration_data()
{
    QTest::addColumn<QByteArray>("action");
    for (const char* action : {"change", "bind", "unbind", "move", "online", "offline", "addition"})
        QTest::newRow(action) << QByteArray(action);
    QTest::newRow("no action") << QByteArray();
}

void DeviceManagerTest::otherEventsMakeNoEnumeration()
{
    QFETCH(const QByteArray, action);
    manager().start();
    m_udev->send(action.toStdString());
    m_udev->send("remove"); // events are handled in order: when this one is done, the first is
    QTRY_COMPARE(m_receiver->statuses(), QList<int>{1});
    QCOMPARE(m_cameras->video().listings(), 1);
    QCOMPARE(m_log->texts().filter(QStringLiteral("DeviceManager::WndProc")).size(), 1);
}

void DeviceManagerTest::everyEventMakesAnEnumeration()
{
    manager().start();
    for (const char* action : {"add", "add", "remove", "add"})
        m_udev->send(action);
    QTRY_COMPARE(m_receiver->statuses(), (QList<int>{0, 0, 1, 0}));
    QCOMPARE(m_cameras->video().listings(), 4);
}

void DeviceManagerTest::watcherRunsOnAThreadOfItsOwn()
{
    manager().start();
    m_udev->send("add");
    m_udev->send("add");
    QTRY_COMPARE(m_receiver->taken().size(), 2);
    QVERIFY(m_receiver->taken().at(0).thread != QThread::currentThreadId());
    QCOMPARE(m_receiver->taken().at(1).thread, m_receiver->taken().at(0).thread);
}

void DeviceManagerTest::startingTwiceMakesOneWatcher()
{
    manager().start();
    manager().start();
    QVERIFY(manager().isRunning());
    QCOMPARE(m_udev->monitorsMade(), 1);
    m_udev->send("add");
    m_udev->send("remove");
    QTRY_COMPARE(m_receiver->statuses(), (QList<int>{0, 1}));
    QCOMPARE(m_cameras->video().listings(), 2);
}

void DeviceManagerTest::startingTwiceRegistersForAudioTwice()
{
    manager().start();
    QCOMPARE(s_audioRegistrations.load(), 1);
    manager().start();
    QCOMPARE(s_audioRegistrations.load(), 2);
    QCOMPARE(s_audioClients.load(), 1);
}

void DeviceManagerTest::stoppingEndsTheWatcherAtOnce()
{
    manager().start();
    QElapsedTimer clock;
    clock.start();
    manager().stop();
    QVERIFY2(clock.elapsed() < 500, qPrintable(QString::number(clock.elapsed())));
    QVERIFY(!manager().isRunning());
    manager().stop(); // stopping twice is harmless
    m_udev->send("add");
    QTest::qWait(30);
    QVERIFY(m_receiver->taken().isEmpty());
}

void DeviceManagerTest::watcherCanBeStartedAgain()
{
    manager().start();
    manager().stop();
    manager().start();
    QCOMPARE(m_udev->monitorsMade(), 2);
    m_udev->send("remove");
    QTRY_COMPARE(m_receiver->statuses(), QList<int>{1});
}

void DeviceManagerTest::monitorThatCannotBeMadeIsLogged()
{
    m_udev->refuseMonitors();
    manager().start();
    QTRY_VERIFY(!m_log->texts(QtCriticalMsg)
                     .filter(QStringLiteral("the udev monitor cannot be opened"))
                     .isEmpty());
    QVERIFY(
        m_log->texts(QtCriticalMsg).first().startsWith(QLatin1String("DeviceManager::detecting")));
    QVERIFY(manager().isRunning());
    QCOMPARE(s_audioRegistrations.load(), 1);
}

void DeviceManagerTest::noReceiverIsNoHarm()
{
    m_receiver.reset();
    manager().start();
    m_udev->send("add");
    QTRY_COMPARE(m_cameras->video().listings(), 1);
}

QTEST_MAIN(DeviceManagerTest)
#include "DeviceManagerTest.moc"
