#include "SoftCamera.h"
#include "UVCCamera.h"
#include "VideoDevices.h"

#include <QtTest>
#include <thread>

/// The list of video inputs from the system's device enumerator.
class VideoInputsTest : public QObject
{
    Q_OBJECT

private slots:
    void unpluggedCamerasAreNotListed();
    void camerasComeInTheSystemsOrder();
    void propertiesArriveAsTheyAre();
    void missingPropertyRepeatsThePreviousValue_data();
    void missingPropertyRepeatsThePreviousValue();
    void identicalCamerasAreTwoEntries();
    void threadWithoutComCanEnumerate();

private:
    /// The software cameras in the list; a machine may also have real cameras.
    static QList<UVCDeviceInfo> listed()
    {
        QList<UVCDeviceInfo> all;
        UVCCamera::enumerateCameras(all);
        QList<UVCDeviceInfo> ours;
        for (const UVCDeviceInfo& info : qAsConst(all)) {
            if (info.displayName.contains(QLatin1String("MarvikTest")))
                ours << info;
        }
        return ours;
    }
};

void VideoInputsTest::unpluggedCamerasAreNotListed()
{
    QCOMPARE(listed().size(), 0);
    {
        const SoftCamera camera("MarvikTest1", QString("Camera"), SoftCamera::supportedPath(1));
        QVERIFY2(camera.isPluggedIn(), "the list of video inputs cannot be written");
        QCOMPARE(listed().size(), 1);
    }
    QCOMPARE(listed().size(), 0);
}

void VideoInputsTest::camerasComeInTheSystemsOrder()
{
    const SoftCamera second("MarvikTest2", QString("Second"), SoftCamera::supportedPath(2));
    const SoftCamera first("MarvikTest1", QString("First"), SoftCamera::supportedPath(1));
    const QList<UVCDeviceInfo> cameras = listed();
    QCOMPARE(cameras.size(), 2);
    QCOMPARE(cameras.at(0).friendlyName, QString("First"));
    QCOMPARE(cameras.at(1).friendlyName, QString("Second"));
}

void VideoInputsTest::propertiesArriveAsTheyAre()
{
    const QString name = QStringLiteral("会议 Camera ® \"1\"");
    const SoftCamera camera("MarvikTest1", name, SoftCamera::supportedPath(1));
    const QList<UVCDeviceInfo> cameras = listed();
    QCOMPARE(cameras.size(), 1);
    QVERIFY(cameras.front().displayName.startsWith(QLatin1String("@device:")));
    QCOMPARE(cameras.front().friendlyName, name);
    QCOMPARE(cameras.front().devicePath, SoftCamera::supportedPath(1));
}

void VideoInputsTest::missingPropertyRepeatsThePreviousValue_data()
{
    QTest::addColumn<bool>("hasName");
    QTest::addColumn<bool>("hasPath");
    QTest::newRow("no name") << false << true;
    QTest::newRow("no path") << true << false;
    QTest::newRow("neither") << false << false;
}

void VideoInputsTest::missingPropertyRepeatsThePreviousValue()
{
    QFETCH(bool, hasName);
    QFETCH(bool, hasPath);
    using Text = std::optional<QString>;
    const SoftCamera camera("MarvikTest1", hasName ? Text("Camera") : Text(),
                            hasPath ? Text(SoftCamera::supportedPath(1)) : Text());
    const QList<UVCDeviceInfo> cameras = listed();
    QCOMPARE(cameras.size(), 1);
    const UVCDeviceInfo& info = cameras.front();
    QCOMPARE(info.friendlyName, hasName ? QString("Camera") : info.displayName);
    QCOMPARE(info.devicePath, hasPath ? SoftCamera::supportedPath(1) : info.friendlyName);
}

void VideoInputsTest::identicalCamerasAreTwoEntries()
{
    const SoftCamera first("MarvikTest1", QString("Camera"), SoftCamera::supportedPath(1));
    const SoftCamera second("MarvikTest2", QString("Camera"), SoftCamera::supportedPath(2));
    const QList<UVCDeviceInfo> cameras = listed();
    QCOMPARE(cameras.size(), 2);
    QVERIFY(cameras.at(0).displayName != cameras.at(1).displayName);
    QVERIFY(cameras.at(0).devicePath != cameras.at(1).devicePath);
}

void VideoInputsTest::threadWithoutComCanEnumerate()
{
    const SoftCamera camera("MarvikTest1", QString("Camera"), SoftCamera::supportedPath(1));
    int count = 0;
    std::thread([&count] { count = listed().size(); }).join();
    QCOMPARE(count, 1);
}

QTEST_GUILESS_MAIN(VideoInputsTest)
#include "VideoInputsTest.moc"
