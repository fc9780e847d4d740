#include "LogCapture.h"
#include "ShownList.h"

#include <QLabel>
#include <QSignalSpy>
#include <QtTest>

/// The cards for a set of HID interfaces and video devices.
class DevicePairingTest : public QObject
{
    Q_OBJECT

private slots:
    void init();
    void cleanup();

    void interfacesAndVideoDevicesPairInOrder_data();
    void interfacesAndVideoDevicesPairInOrder();
    void orderOfTheVideoDevicesDecides();
    void cameraWithoutAVideoDeviceIsNotListed();
    void videoDeviceWithoutTheIdsIsNotListed();
    void idsOfAVideoDeviceMayBeInCapitals();
    void otherVideoDevicesAreNotCounted();
    void otherHidInterfacesAreNotListed_data();
    void otherHidInterfacesAreNotListed();
    void recordOfACamera();
    void cameraThatDoesNotAnswerIsListedAsFailed();
    void connectionIsTestedForEveryCamera();
    void recordsAreSignalledOnceTheListIsBuilt();
    void everyCardIsSignalled();
    void buildingIsLogged();

private:
    void build() { m_shown->page().getHidCamerasAndAddToList(ScriptedCameras::videoDevices()); }
    void plugInVideo(const QString& path)
    {
        m_shown->cameras().video().plugIn({QStringLiteral("node"), QStringLiteral("name"), path});
    }

    std::unique_ptr<LogCapture> m_log;
    std::unique_ptr<ShownList> m_shown;
};

void DevicePairingTest::init()
{
    m_log = std::make_unique<LogCapture>();
    m_shown = std::make_unique<ShownList>();
    QVERIFY(m_shown->isShown());
}

void DevicePairingTest::cleanup()
{
    ScriptedHidapi& hidapi = m_shown->cameras().hidapi();
    QCOMPARE(hidapi.openHandles(), 0);
    QCOMPARE(hidapi.openEnumerations(), 0);
    QCOMPARE(hidapi.misuse(), QStringList());
    m_shown.reset();
    m_log.reset();
}

void DevicePairingTest::interfacesAndVideoDevicesPairInOrder_data()
{
    QTest::addColumn<int>("hidInterfaces");
    QTest::addColumn<int>("videoDevices");
    QTest::addColumn<QStringList>("pairs");
    const auto pair = [](int hid, int video) { return ShownList::pair(hid, video); };
    QTest::newRow("one of each") << 1 << 1 << QStringList{pair(0, 0)};
    QTest::newRow("two of each") << 2 << 2 << QStringList{pair(0, 0), pair(1, 1)};
    QTest::newRow("more video devices") << 1 << 3 << QStringList{pair(0, 0)};
    // The index continues over the passes, so missing entries are taken from the front again.
    QTest::newRow("one video device for two") << 2 << 1 << QStringList{pair(0, 0), pair(1, 0)};
    QTest::newRow("two video devices for three")
        << 3 << 2 << QStringList{pair(0, 0), pair(1, 1), pair(2, 0)};
    QTest::newRow("nothing") << 0 << 0 << QStringList();
    QTest::newRow("video devices only") << 0 << 2 << QStringList();
}

void DevicePairingTest::interfacesAndVideoDevicesPairInOrder()
{
    QFETCH(const int, hidInterfaces);
    QFETCH(const int, videoDevices);
    m_shown->cameras().plugInParts(hidInterfaces, videoDevices);
    build();
    QTEST(m_shown->pairs(), "pairs");
}

void DevicePairingTest::orderOfTheVideoDevicesDecides()
{
    m_shown->cameras().plugInParts(2, 0);
    plugInVideo(ScriptedCameras::videoPath(1));
    plugInVideo(ScriptedCameras::videoPath(0));
    build();
    QCOMPARE(m_shown->pairs(), (QStringList{ShownList::pair(0, 1), ShownList::pair(1, 0)}));
}

void DevicePairingTest::cameraWithoutAVideoDeviceIsNotListed()
{
    m_shown->cameras().plugInParts(2, 0);
    build();
    QCOMPARE(m_shown->page().entryCount(), 0);
}

void DevicePairingTest::videoDeviceWithoutTheIdsIsNotListed()
{
    m_shown->cameras().plugInParts(1, 0);
    plugInVideo(QStringLiteral("/dev/video0#vid_b206&pid_b216#1-1"));
    plugInVideo(QStringLiteral("/dev/video1#vid_1234&pid_b215#1-1"));
    plugInVideo(QStringLiteral("/dev/video2"));
    build();
    QCOMPARE(m_shown->page().entryCount(), 0);
    QVERIFY(!m_log->contains(QStringLiteral("找到了相应hid设备的摄像机功能的设备")));
}

void DevicePairingTest::idsOfAVideoDeviceMayBeInCapitals()
{
    m_shown->cameras().plugInParts(1, 0);
    const QString path = QStringLiteral("usb#VID_B206&PID_b215#x");
    plugInVideo(path);
    build();
    QCOMPARE(m_shown->pairs(), QStringList{ShownList::pair(ScriptedCameras::hidPath(0), path)});
}

void DevicePairingTest::otherVideoDevicesAreNotCounted()
{
    m_shown->cameras().plugInParts(2, 0);
    plugInVideo(ScriptedCameras::videoPath(0));
    plugInVideo(QStringLiteral("/dev/video7#vid_1234&pid_5678#1-1"));
    plugInVideo(ScriptedCameras::videoPath(1));
    build();
    QCOMPARE(m_shown->pairs(), (QStringList{ShownList::pair(0, 0), ShownList::pair(1, 1)}));
}

void DevicePairingTest::otherHidInterfacesAreNotListed_data()
{
    QTest::addColumn<int>("vendorId");
    QTest::addColumn<int>("productId");
    QTest::newRow("other product") << 0xB206 << 0xB216;
    QTest::newRow("other vendor") << 0xB207 << 0xB215;
    QTest::newRow("decimal ids of the log") << 41224 << 51202;
    QTest::newRow("ids exchanged") << 0xB215 << 0xB206;
}

void DevicePairingTest::otherHidInterfacesAreNotListed()
{
    QFETCH(const int, vendorId);
    QFETCH(const int, productId);
    m_shown->cameras().plugInParts(1, 2);
    m_shown->cameras().hidapi().plugIn(
        {QByteArray("/dev/a"), static_cast<quint16>(vendorId), static_cast<quint16>(productId)});
    build();
    QCOMPARE(m_shown->pairs(), QStringList{ShownList::pair(0, 0)});
}

void DevicePairingTest::recordOfACamera()
{
    m_shown->cameras().plugIn(1);
    build();
    const DeviceWidgetInfo camera = m_shown->cards().first()->data();
    QCOMPARE(int(camera.status), 1);
    QCOMPARE(camera.name, QStringLiteral("NOVA EDGE"));
    QCOMPARE(camera.model, QStringLiteral("RQ-T47K"));
    QCOMPARE(camera.icon, QString());
    QCOMPARE(camera.path, ScriptedCameras::videoPath(0));
    QCOMPARE(camera.hidPath, ScriptedCameras::hidPath(0));
}

void DevicePairingTest::cameraThatDoesNotAnswerIsListedAsFailed()
{
    m_shown->cameras().plugIn(2);
    m_shown->cameras().refuse(1);
    build();
    const auto state = [this](int row) {
        return m_shown->cards().at(row)->findChild<QLabel*>(QStringLiteral("labStatus"));
    };
    QCOMPARE(m_shown->page().entryCount(), 2);
    QCOMPARE(state(0)->text(), QStringLiteral("Connected"));
    QCOMPARE(state(1)->text(), QStringLiteral("Failed"));
    QCOMPARE(state(1)->palette().color(QPalette::WindowText), QColor(0xFF, 0x5E, 0x56));
    QCOMPARE(int(m_shown->cards().at(1)->data().status), 0);
}

void DevicePairingTest::connectionIsTestedForEveryCamera()
{
    m_shown->cameras().plugIn(3);
    build();
    const QStringList calls = m_shown->cameras().hidapi().calls();
    for (int i = 0; i < 3; ++i)
        QCOMPARE(calls.count(QStringLiteral("hid_open_path(%1)").arg(ScriptedCameras::hidPath(i))),
                 1);
    QCOMPARE(m_log->texts().filter(QStringLiteral("curStauts = true")).size(), 3);
}

void DevicePairingTest::recordsAreSignalledOnceTheListIsBuilt()
{
    m_shown->cameras().plugIn(2);
    build();
    QCOMPARE(m_shown->records().size(), 1);
    const QMap<QString, DeviceWidgetInfo> map = m_shown->records().first();
    QCOMPARE(map.keys(),
             (QStringList{ScriptedCameras::videoPath(0), ScriptedCameras::videoPath(1)}));
    QCOMPARE(map.value(ScriptedCameras::videoPath(1)).hidPath, ScriptedCameras::hidPath(1));
}

void DevicePairingTest::everyCardIsSignalled()
{
    m_shown->cameras().plugIn(2);
    QSignalSpy cards(&m_shown->page(), &DeviceHomePage::sigSetDeviceParam);
    build();
    QCOMPARE(cards.count(), 2);
    for (int i = 0; i < 2; ++i)
        QCOMPARE(cards.at(i).first().value<DeviceWidgetInfo>().hidPath,
                 ScriptedCameras::hidPath(i));
}

void DevicePairingTest::buildingIsLogged()
{
    m_shown->cameras().plugIn(1);
    build();
    const QString path = ScriptedCameras::videoPath(0);
    const QStringList expected{
        QStringLiteral("遍历hid设备 vid = 45574 pid = 45589"),
        QStringLiteral("获取vid == 41224 和 pid == 51202的设备"),
        QStringLiteral("hidItem.path \"%1\"").arg(ScriptedCameras::hidPath(0)),
        QStringLiteral("usbPath \"%1\"").arg(path),
        QStringLiteral("找到了相应hid设备的摄像机功能的设备"),
        QStringLiteral("path = \"%1\"").arg(path),
        QStringLiteral("hidCameraCnt = 1 pathMap[hidCameraCnt] \"%1\"").arg(path),
        QStringLiteral("更新home页的设备列表"),
    };
    for (const QString& line : expected)
        QVERIFY2(m_log->contains(line), qPrintable(line));
    QCOMPARE(m_log->texts().filter(QStringLiteral("获取相应hid设备的摄像机功能的设备")).size(), 1);
    QCOMPARE(m_log->texts().filter(QStringLiteral("pathMap[hidCnt] \"%1\"").arg(path)).size(), 1);
}

QTEST_MAIN(DevicePairingTest)
#include "DevicePairingTest.moc"
