#include "CameraHandle.h"
#include "DeviceManager.h"
#include "IDeviceNotify.h"
#include "LogCapture.h"
#include "ScriptedDevNodes.h"

#include <algorithm>
#include <array>
#include <limits>
#include <mutex>
#include <qt_windows.h>
#include <QtTest>
#include <string>
#include <vector>

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

constexpr GUID kHidClass = {
    0x4D1E55B2, 0xF16F, 0x11CF, {0x88, 0xCB, 0x00, 0x11, 0x11, 0x00, 0x00, 0x30}};
constexpr GUID kAudioCaptureClass = {
    0x2EEF81BE, 0x33FA, 0x4800, {0x96, 0x70, 0x1C, 0xD4, 0x74, 0x97, 0x2C, 0x3F}};

/// The system's broadcast about an interface, with its name after the header.
class Broadcast
{
public:
    explicit Broadcast(const QString& name, const GUID& interfaceClass = kHidClass,
                       DWORD type = DBT_DEVTYP_DEVICEINTERFACE)
    {
        const std::wstring text = name.toStdWString();
        m_bytes.resize(sizeof(DEV_BROADCAST_DEVICEINTERFACE_W) + text.size() * sizeof(wchar_t));
        auto* broadcast = reinterpret_cast<DEV_BROADCAST_DEVICEINTERFACE_W*>(m_bytes.data());
        broadcast->dbcc_size = static_cast<DWORD>(m_bytes.size());
        broadcast->dbcc_devicetype = type;
        broadcast->dbcc_classguid = interfaceClass;
        std::copy_n(text.c_str(), text.size() + 1, broadcast->dbcc_name);
    }
    [[nodiscard]] const void* data() const { return m_bytes.data(); }

private:
    std::vector<unsigned char> m_bytes;
};

/// A broadcast about a HID interface that is not a camera's.
Broadcast keyboard()
{
    return Broadcast(QStringLiteral("\\\\?\\HID#VID_1234&PID_5678#7&1&0&0000#"
                                    "{4d1e55b2-f16f-11cf-88cb-001111000030}"));
}

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
    void broadcastsAboutOtherThingsMakeNoEnumeration_data();
    void broadcastsAboutOtherThingsMakeNoEnumeration();
    void enumerationWaitsForTheVideoInterface();
    void videoInterfaceThatIsThereIsNotWaitedFor();
    void missingVideoInterfaceIsWaitedForOneSecond();
    void deviceWithoutVideoIsNotWaitedFor();
    void cameraThatLeavesAgainIsNotWaitedFor();
    void removalWaitsForNothing();
    void eventsAreHandledOnTheThreadOfTheWindow();
    void everyEventOfAStormMakesOneEnumeration();
    void startingTwiceMakesOneWindow();
    void stoppingRemovesTheWindow();
    void watcherCanBeStartedAgain();
    void windowClassNameInUseIsLogged();

private:
    static DeviceManager& manager() { return DeviceManager::instance(); }
    HWND window() const { return windows().value(0); }
    void send(WPARAM event, const Broadcast& broadcast) const { sendData(event, broadcast.data()); }
    void sendData(WPARAM event, const void* data) const
    {
        ::SendMessageW(window(), WM_DEVICECHANGE, event, reinterpret_cast<LPARAM>(data));
    }
    [[nodiscard]] int enumerations() const
    {
        return m_log->texts().filter(QStringLiteral("获取设备")).size();
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
    send(DBT_DEVICEARRIVAL, keyboard());
    QCOMPARE(m_receiver->statuses(), QList<int>{DevicePluggedIn});
    QCOMPARE(m_log->texts().filter(QStringLiteral("检测到插入设备")).size(), 1);
    QCOMPARE(m_log->texts().filter(QStringLiteral("获取设备")).size(), 1);
    QCOMPARE(m_log->texts().filter(QStringLiteral("检测到拔出设备")).size(), 0);
}

void HotPlugWindowTest::removalMakesOneEnumeration()
{
    send(DBT_DEVICEREMOVECOMPLETE, keyboard());
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
    if (event == DBT_DEVNODES_CHANGED || event == DBT_CONFIGCHANGED)
        sendData(event, nullptr);
    else
        send(event, keyboard());
    QCOMPARE(m_receiver->statuses(), QList<int>());
    QCOMPARE(m_log->texts().filter(QStringLiteral("检测到")).size(), 0);
}

void HotPlugWindowTest::broadcastsAboutOtherThingsMakeNoEnumeration_data()
{
    QTest::addColumn<uint>("event");
    for (const uint event : {uint{DBT_DEVICEARRIVAL}, uint{DBT_DEVICEREMOVECOMPLETE}})
        QTest::addRow("%x", event) << event;
}

/// A USB stick is reported to every window as a volume, a serial adapter as a port.
void HotPlugWindowTest::broadcastsAboutOtherThingsMakeNoEnumeration()
{
    QFETCH(uint, event);
    DEV_BROADCAST_VOLUME volume{};
    volume.dbcv_size = sizeof volume;
    volume.dbcv_devicetype = DBT_DEVTYP_VOLUME;
    volume.dbcv_unitmask = 1U << 4U;
    sendData(event, &volume);
    std::array<unsigned char, 64> portBytes{};
    auto* port = reinterpret_cast<DEV_BROADCAST_PORT_W*>(portBytes.data());
    port->dbcp_size = static_cast<DWORD>(portBytes.size());
    port->dbcp_devicetype = DBT_DEVTYP_PORT;
    std::copy_n(L"COM3", 5, port->dbcp_name);
    sendData(event, port);
    send(event, Broadcast(QStringLiteral("\\\\?\\SWD#MMDEVAPI#1"), kAudioCaptureClass));
    // The same bytes in a broadcast of another type mean something else.
    send(event, Broadcast(ScriptedDevNodes::hidInterface(), kHidClass, DBT_DEVTYP_HANDLE));
    sendData(event, nullptr);
    QCOMPARE(m_receiver->statuses(), QList<int>());
    QCOMPARE(enumerations(), 0);
    QCOMPARE(m_log->texts().filter(QStringLiteral("检测到")).size(), 0);
}

void HotPlugWindowTest::enumerationWaitsForTheVideoInterface()
{
    ScriptedDevNodes nodes;
    nodes.looksInVain = 5;
    send(DBT_DEVICEARRIVAL, Broadcast(ScriptedDevNodes::hidInterface()));
    QCOMPARE(nodes.looks.load(), 6);
    QCOMPARE(m_receiver->statuses(), QList<int>{DevicePluggedIn});
    QCOMPARE(enumerations(), 1);
}

void HotPlugWindowTest::videoInterfaceThatIsThereIsNotWaitedFor()
{
    ScriptedDevNodes nodes;
    send(DBT_DEVICEARRIVAL, Broadcast(ScriptedDevNodes::hidInterface()));
    QCOMPARE(nodes.looks.load(), 1);
    QCOMPARE(enumerations(), 1);
}

void HotPlugWindowTest::missingVideoInterfaceIsWaitedForOneSecond()
{
    ScriptedDevNodes nodes;
    nodes.looksInVain = std::numeric_limits<int>::max();
    QElapsedTimer elapsed;
    elapsed.start();
    send(DBT_DEVICEARRIVAL, Broadcast(ScriptedDevNodes::hidInterface()));
    QVERIFY(elapsed.elapsed() >= 1000);
    QVERIFY(nodes.looks > 1);
    QCOMPARE(m_receiver->statuses(), QList<int>{DevicePluggedIn});
    QCOMPARE(enumerations(), 1);
}

void HotPlugWindowTest::deviceWithoutVideoIsNotWaitedFor()
{
    ScriptedDevNodes nodes;
    nodes.hasVideoFunction = false;
    send(DBT_DEVICEARRIVAL, Broadcast(ScriptedDevNodes::hidInterface()));
    QCOMPARE(nodes.looks.load(), 0);
    QCOMPARE(enumerations(), 1);
}

void HotPlugWindowTest::cameraThatLeavesAgainIsNotWaitedFor()
{
    ScriptedDevNodes nodes;
    nodes.looksInVain = std::numeric_limits<int>::max();
    nodes.leavesAtLook = 3;
    send(DBT_DEVICEARRIVAL, Broadcast(ScriptedDevNodes::hidInterface()));
    QCOMPARE(nodes.looks.load(), 3);
    QCOMPARE(enumerations(), 1);
}

void HotPlugWindowTest::removalWaitsForNothing()
{
    ScriptedDevNodes nodes;
    nodes.looksInVain = std::numeric_limits<int>::max();
    send(DBT_DEVICEREMOVECOMPLETE, Broadcast(ScriptedDevNodes::hidInterface()));
    QCOMPARE(nodes.looks.load(), 0);
    QCOMPARE(m_receiver->statuses(), QList<int>{DeviceRemoved});
    QCOMPARE(enumerations(), 1);
}

void HotPlugWindowTest::eventsAreHandledOnTheThreadOfTheWindow()
{
    send(DBT_DEVICEARRIVAL, keyboard());
    QVERIFY(m_receiver->thread() != QThread::currentThreadId());
    QCOMPARE(reinterpret_cast<quintptr>(m_receiver->thread()),
             quintptr{::GetWindowThreadProcessId(window(), nullptr)});
}

void HotPlugWindowTest::everyEventOfAStormMakesOneEnumeration()
{
    QList<int> expected;
    for (int i = 0; i < 50; ++i) {
        send(DBT_DEVICEARRIVAL, keyboard());
        send(DBT_DEVICEREMOVECOMPLETE, keyboard());
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
    send(DBT_DEVICEARRIVAL, keyboard());
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
    send(DBT_DEVICEARRIVAL, keyboard());
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
