#include "CameraHandle.h"
#include "DeviceManager.h"
#include "IDeviceNotify.h"
#include "LogCapture.h"

#include <mutex>
#include <qt_windows.h>
#include <QtTest>

// After qt_windows.h, which it needs.
#include <dbt.h>

namespace {

/// Receives the notifications instead of the list page.
class Receiver : public IDeviceNotify
{
public:
    Receiver() { CameraHandle::instance().setNotify(this); }
    ~Receiver() override { CameraHandle::instance().setNotify(nullptr); }

    void camerasChanged(const QList<UVCDeviceInfo>&, int status) override
    {
        const std::lock_guard<std::mutex> lock(m_mutex);
        m_statuses << status;
        m_thread = QThread::currentThreadId();
    }
    void camerasChanged(const QList<UVCDeviceInfo>& cameras, const QMap<QString, HidDevices>&,
                        int status) override
    {
        camerasChanged(cameras, status);
    }

    [[nodiscard]] QList<int> statuses() const
    {
        const std::lock_guard<std::mutex> lock(m_mutex);
        return m_statuses;
    }
    [[nodiscard]] Qt::HANDLE thread() const
    {
        const std::lock_guard<std::mutex> lock(m_mutex);
        return m_thread;
    }

private:
    mutable std::mutex m_mutex;
    QList<int> m_statuses;
    Qt::HANDLE m_thread = nullptr;
};

/// The watcher's windows of this process.
QList<HWND> windows()
{
    QList<HWND> found;
    HWND window = nullptr;
    while ((window = ::FindWindowExA(nullptr, window, "velmarin", nullptr)) != nullptr) {
        DWORD process = 0;
        ::GetWindowThreadProcessId(window, &process);
        if (process == ::GetCurrentProcessId())
            found << window;
    }
    return found;
}

/// The system's broadcast about a HID interface.
struct Broadcast
{
    Broadcast()
    {
        interface.dbcc_size = sizeof interface;
        interface.dbcc_devicetype = DBT_DEVTYP_DEVICEINTERFACE;
    }
    DEV_BROADCAST_DEVICEINTERFACE_W interface {
    };
};

} // namespace

/// The hidden window of the watcher; the tests send it the messages of the system.
class HotPlugWindowTest : public QObject
{
    Q_OBJECT

private slots:
    void init();
    void cleanup();

    void windowExistsAndIsHidden();
    void arrivalMakesOneEnumeration();
    void removalMakesOneEnumeration();
    void otherEventsMakeNoEnumeration_data();
    void otherEventsMakeNoEnumeration();
    void eventsAreHandledOnTheThreadOfTheWindow();
    void everyEventOfAStormMakesOneEnumeration();
    void startingTwiceMakesOneWindow();
    void stoppingRemovesTheWindow();
    void watcherCanBeStartedAgain();
    void windowClassNameInUseIsLogged();

private:
    static DeviceManager& manager() { return DeviceManager::instance(); }
    HWND window() const { return windows().value(0); }
    void send(WPARAM event, const void* data = nullptr) const
    {
        ::SendMessageW(window(), WM_DEVICECHANGE, event, reinterpret_cast<LPARAM>(data));
    }

    std::unique_ptr<LogCapture> m_log;
    std::unique_ptr<Receiver> m_receiver;
};

void HotPlugWindowTest::init()
{
    m_log = std::make_unique<LogCapture>();
    m_receiver = std::make_unique<Receiver>();
    manager().start();
    QTRY_COMPARE(windows().size(), 1);
}

void HotPlugWindowTest::cleanup()
{
    manager().stop();
    QCOMPARE(windows().size(), 0);
    m_receiver.reset();
    m_log.reset();
}

void HotPlugWindowTest::windowExistsAndIsHidden()
{
    char title[64] = {};
    ::GetWindowTextA(window(), title, sizeof title);
    QCOMPARE(QByteArray(title), QByteArray("velmarin window"));
    QVERIFY(!::IsWindowVisible(window()));
    QCOMPARE(::GetWindowLongPtrW(window(), GWL_STYLE) & WS_OVERLAPPEDWINDOW, WS_OVERLAPPEDWINDOW);
    QVERIFY(!::GetParent(window()));
}

void HotPlugWindowTest::arrivalMakesOneEnumeration()
{
    const Broadcast broadcast;
    send(DBT_DEVICEARRIVAL, &broadcast);
    QCOMPARE(m_receiver->statuses(), QList<int>{DevicePluggedIn});
    QCOMPARE(m_log->texts().filter(QStringLiteral("检测到插入设备")).size(), 1);
    QCOMPARE(m_log->texts().filter(QStringLiteral("获取设备")).size(), 1);
    QCOMPARE(m_log->texts().filter(QStringLiteral("检测到拔出设备")).size(), 0);
}

void HotPlugWindowTest::removalMakesOneEnumeration()
{
    const Broadcast broadcast;
    send(DBT_DEVICEREMOVECOMPLETE, &broadcast);
    QCOMPARE(m_receiver->statuses(), QList<int>{DeviceRemoved});
    QCOMPARE(m_log->texts().filter(QStringLiteral("检测到拔出设备")).size(), 1);
    QCOMPARE(m_log->texts().filter(QStringLiteral("获取设备")).size(), 1);
    QCOMPARE(m_log->texts().filter(QStringLiteral("检测到插入设备")).size(), 0);
}

void HotPlugWindowTest::otherEventsMakeNoEnumeration_data()
{
    QTest::addColumn<uint>("event");
    QTest::newRow("configuration changed") << uint{DBT_CONFIGCHANGED};
    QTest::newRow("device nodes changed") << uint{DBT_DEVNODES_CHANGED};
    QTest::newRow("removal asked for") << uint{DBT_DEVICEQUERYREMOVE};
    QTest::newRow("removal pending") << uint{DBT_DEVICEREMOVEPENDING};
    QTest::newRow("of a driver's own") << uint{DBT_CUSTOMEVENT};
}

void HotPlugWindowTest::otherEventsMakeNoEnumeration()
{
    QFETCH(uint, event);
    const Broadcast broadcast;
    send(event, event == DBT_DEVNODES_CHANGED || event == DBT_CONFIGCHANGED ? nullptr : &broadcast);
    QCOMPARE(m_receiver->statuses(), QList<int>());
    QCOMPARE(m_log->texts().filter(QStringLiteral("检测到")).size(), 0);
}

void HotPlugWindowTest::eventsAreHandledOnTheThreadOfTheWindow()
{
    send(DBT_DEVICEARRIVAL);
    QVERIFY(m_receiver->thread() != QThread::currentThreadId());
    QCOMPARE(reinterpret_cast<quintptr>(m_receiver->thread()),
             quintptr{::GetWindowThreadProcessId(window(), nullptr)});
}

void HotPlugWindowTest::everyEventOfAStormMakesOneEnumeration()
{
    QList<int> expected;
    for (int i = 0; i < 50; ++i) {
        send(DBT_DEVICEARRIVAL);
        send(DBT_DEVICEREMOVECOMPLETE);
        expected << DevicePluggedIn << DeviceRemoved;
    }
    QCOMPARE(m_receiver->statuses(), expected);
}

void HotPlugWindowTest::startingTwiceMakesOneWindow()
{
    manager().start();
    manager().start();
    QTest::qWait(100);
    QCOMPARE(windows().size(), 1);
    // A second thread would find the name of its window's class taken.
    QCOMPARE(m_log->texts().filter(QStringLiteral("注册窗口类失败")).size(), 0);
    send(DBT_DEVICEARRIVAL);
    QCOMPARE(m_receiver->statuses(), QList<int>{DevicePluggedIn});
}

void HotPlugWindowTest::stoppingRemovesTheWindow()
{
    manager().stop();
    QVERIFY(!manager().isRunning());
    QCOMPARE(windows().size(), 0);
    manager().stop();
}

void HotPlugWindowTest::watcherCanBeStartedAgain()
{
    for (int round = 0; round < 20; ++round) {
        manager().stop();
        manager().start(); // immediately, before the window exists
        manager().stop();
        QCOMPARE(windows().size(), 0);
        manager().start();
        QTRY_COMPARE(windows().size(), 1);
    }
    send(DBT_DEVICEARRIVAL);
    QCOMPARE(m_receiver->statuses(), QList<int>{DevicePluggedIn});
}

void HotPlugWindowTest::windowClassNameInUseIsLogged()
{
    manager().stop();
    WNDCLASSA other{};
    other.lpfnWndProc = ::DefWindowProcA;
    other.hInstance = ::GetModuleHandleW(nullptr);
    other.lpszClassName = "velmarin";
    QVERIFY(::RegisterClassA(&other) != 0);
    manager().start();
    QTRY_COMPARE(m_log->texts(QtCriticalMsg).filter(QStringLiteral("注册窗口类失败")).size(), 1);
    manager().stop();
    QVERIFY(::UnregisterClassA("velmarin", other.hInstance));
}

QTEST_MAIN(HotPlugWindowTest)
#include "HotPlugWindowTest.moc"
