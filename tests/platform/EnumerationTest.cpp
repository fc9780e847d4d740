#include "CameraHandle.h"
#include "DeviceHomePage.h"
#include "PluggedCamera.h"
#include "SvtaDeviceWidget.h"
#include "UVCCamera.h"
#include "UVCHid.h"

#include <memory>
#include <QtTest>
#include <vector>

namespace {

/// A camera that is unplugged before the test ends.
std::unique_ptr<PluggedCamera> pluggedIn(std::initializer_list<PluggedCamera::Option> options)
{
    return std::make_unique<PluggedCamera>(options);
}

QList<UVCDeviceInfo> videoDevices()
{
    QList<UVCDeviceInfo> devices;
    UVCCamera::enumerateCameras(devices);
    return devices;
}

QStringList videoNodes()
{
    QStringList nodes;
    for (const UVCDeviceInfo& device : videoDevices())
        nodes << device.displayName;
    return nodes;
}

QMap<QString, HidDevices> hidInterfaces()
{
    QMap<QString, HidDevices> devices;
    UVCHid::getHidDevices(devices);
    return devices;
}

/// Each card of a list with these cameras: HID path to video path.
QMap<QString, QString> pairsOfTheList()
{
    DeviceHomePage page;
    QMap<QString, QString> pairs;
    page.start();
    for (const SvtaDeviceWidget* card : page.findChildren<SvtaDeviceWidget*>())
        pairs.insert(card->data().hidPath, card->data().path);
    return pairs;
}

} // namespace

class EnumerationTest : public QObject
{
    Q_OBJECT

private slots:
    void withoutCamerasBothListsAreEmpty()
    {
        QCOMPARE(videoDevices().size(), 0);
        QCOMPARE(hidInterfaces().size(), 0);
    }

    void cameraIsListedOnceWithNodeNameAndIds()
    {
        PluggedCamera camera{{"card", "Room 4 camera"}};
        const QList<UVCDeviceInfo> devices = videoDevices();
        QCOMPARE(devices.size(), 1);
        QCOMPARE(devices.first().displayName, camera.videoNode());
        QCOMPARE(devices.first().friendlyName, QStringLiteral("Room 4 camera"));
        QVERIFY(devices.first().devicePath.startsWith(camera.videoNode() + QLatin1Char('#')));
        QVERIFY(devices.first().devicePath.contains(QStringLiteral("vid_b206&pid_b215")));
    }

    void metadataNodeIsNotListed()
    {
        PluggedCamera camera;
        QVERIFY(!camera.metadataNode().isEmpty());
        QCOMPARE(videoNodes(), QStringList{camera.videoNode()});
    }

    void idsOfEveryMakerStandInTheDevicePath()
    {
        PluggedCamera camera{{"vid", "0a1b"}, {"pid", "2c3d"}};
        QVERIFY(videoDevices().first().devicePath.contains(QStringLiteral("vid_0a1b&pid_2c3d")));
    }

    void videoNodeWithoutUsbDeviceRepeatsItsNameAsPath()
    {
        PluggedCamera camera{{"usb", "0"}, {"card", "Loopback"}};
        const QList<UVCDeviceInfo> devices = videoDevices();
        QCOMPARE(devices.size(), 1);
        QCOMPARE(devices.first().displayName, camera.videoNode());
        QCOMPARE(devices.first().friendlyName, QStringLiteral("Loopback"));
        QCOMPARE(devices.first().devicePath, QStringLiteral("Loopback"));
    }

    void cardNameWithMarkupIsTakenAsItIs()
    {
        const std::string markup = "<b>&amp;</b><img src=x>";
        PluggedCamera camera{{"card", markup}};
        QCOMPARE(videoDevices().first().friendlyName, QString::fromStdString(markup));
    }

    void cardNameOfFullLengthIsNotReadBeyondItsField()
    {
        PluggedCamera camera{{"card", std::string(126, 'n')}};
        const QString name = videoDevices().first().friendlyName;
        QVERIFY(name.size() <= 32);
        QCOMPARE(name, QString(name.size(), QLatin1Char('n')));
    }

    void listIsAppendedToWhatIsThere()
    {
        PluggedCamera camera;
        QList<UVCDeviceInfo> devices{{"a", "b", "c"}};
        UVCCamera::enumerateCameras(devices);
        QCOMPARE(devices.size(), 2);
        QCOMPARE(devices.first().displayName, QStringLiteral("a"));
    }

    void hidInterfaceIsListedWithIdsAndMaker()
    {
        PluggedCamera camera{{"manufacturer", "Somebody"}};
        const QMap<QString, HidDevices> devices = hidInterfaces();
        QCOMPARE(devices.keys(), QStringList{camera.hidPath()});
        QCOMPARE(devices.first().path, camera.hidPath());
        QCOMPARE(devices.first().vendorId, quint16{0xB206});
        QCOMPARE(devices.first().productId, quint16{0xB215});
        QCOMPARE(devices.first().manufacturer, QStringLiteral("Somebody"));
    }

    void interfacesOfOtherMakersAreListedToo()
    {
        PluggedCamera other{{"vid", "1111"}, {"pid", "2222"}, {"video", "0"}};
        PluggedCamera camera;
        const QMap<QString, HidDevices> devices = hidInterfaces();
        QCOMPARE(devices.size(), 2);
        QCOMPARE(devices.value(other.hidPath()).vendorId, quint16{0x1111});
        QCOMPARE(devices.value(other.hidPath()).productId, quint16{0x2222});
    }

    void enumerationHoldsNothingOpen()
    {
        PluggedCamera camera;
        videoDevices();
        hidInterfaces();
        QVERIFY(camera.isReleased());
    }

    void enumerationLeavesARunningStreamAlone()
    {
        PluggedCamera camera;
        QWidget target;
        target.resize(320, 180);
        UVCCamera preview;
        QVERIFY(preview.openDevice(camera.videoPath(), target.winId()));
        QVERIFY(preview.startCapture());
        QVERIFY(camera.waitFor("streaming"));
        QCOMPARE(videoNodes(), QStringList{camera.videoNode()});
        QVERIFY(camera.stats().streaming);
    }

    void unpluggedCameraIsGoneFromBothLists()
    {
        PluggedCamera camera;
        QCOMPARE(videoDevices().size(), 1);
        camera.unplug();
        QCOMPARE(videoDevices().size(), 0);
        QCOMPARE(hidInterfaces().size(), 0);
        camera.plug();
        QCOMPARE(videoNodes(), QStringList{camera.videoNode()});
        QCOMPARE(hidInterfaces().keys(), QStringList{camera.hidPath()});
    }

    void camerasComeInTheOrderOfTheirHidInterfaces()
    {
        auto webcam = pluggedIn({{"hid", "0"}});
        PluggedCamera first;
        webcam.reset();
        PluggedCamera second;
        // Because of the freed numbers, the two kinds of nodes have different orders.
        QVERIFY(first.hidPath() < second.hidPath());
        QVERIFY(first.videoNode() > second.videoNode());
        QCOMPARE(videoNodes(), (QStringList{first.videoNode(), second.videoNode()}));
    }

    void eachCardShowsThePictureOfTheCameraItControls()
    {
        auto webcam = pluggedIn({{"hid", "0"}});
        PluggedCamera first;
        webcam.reset();
        PluggedCamera second;
        QVERIFY(first.videoNode() > second.videoNode());
        QCOMPARE(pairsOfTheList(),
                 (QMap<QString, QString>{{first.hidPath(), first.videoPath()},
                                         {second.hidPath(), second.videoPath()}}));
    }

    void pairingHoldsWhereTheTenthInterfaceSortsBeforeTheNinth()
    {
        std::vector<std::unique_ptr<PluggedCamera>> others;
        others.reserve(9);
        for (int i = 0; i < 9; ++i)
            others.push_back(pluggedIn({{"vid", "1111"}, {"video", "0"}}));
        PluggedCamera ninth;
        PluggedCamera tenth;
        QCOMPARE(ninth.hidPath(), QStringLiteral("/dev/hidraw9"));
        QCOMPARE(tenth.hidPath(), QStringLiteral("/dev/hidraw10"));
        QCOMPARE(pairsOfTheList(), (QMap<QString, QString>{{ninth.hidPath(), ninth.videoPath()},
                                                           {tenth.hidPath(), tenth.videoPath()}}));
    }

    void pairingHoldsBesideCamerasOfOtherMakers()
    {
        PluggedCamera stranger{{"vid", "1111"}};
        PluggedCamera camera;
        PluggedCamera webcam{{"usb", "0"}};
        QCOMPARE(pairsOfTheList(),
                 (QMap<QString, QString>{{camera.hidPath(), camera.videoPath()}}));
    }

    void cameraThatWasReplacedIsPairedAnew()
    {
        auto first = pluggedIn({});
        PluggedCamera second;
        first.reset();
        PluggedCamera third;
        QCOMPARE(pairsOfTheList(), (QMap<QString, QString>{{second.hidPath(), second.videoPath()},
                                                           {third.hidPath(), third.videoPath()}}));
    }
};

QTEST_MAIN(EnumerationTest)
#include "EnumerationTest.moc"
