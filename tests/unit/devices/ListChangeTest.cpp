#include "ListChange.h"
#include "CameraModels.h"
#include "IDeviceNotify.h"

#include <gtest/gtest.h>

namespace {

using Meaning = ListChange::Meaning;
using Devices = QMap<QString, HidDevices>;

const QString kOwn = QStringLiteral("/dev/hidraw0");
const QString kOther = QStringLiteral("/dev/hidraw1");

HidDevices camera(const QString& path)
{
    const CameraModel* model = CameraModels::rows().begin();
    return {path, model->vendorId, model->productId, QString()};
}

Devices cameras(const QStringList& paths)
{
    Devices devices;
    for (const QString& path : paths)
        devices.insert(path, camera(path));
    return devices;
}

} // namespace

TEST(ListChange, SameCamerasMeanNothing)
{
    for (const int status : {DevicePluggedIn, DeviceRemoved}) {
        const ListChange change(cameras({kOwn, kOther}), cameras({kOwn, kOther}), status);
        EXPECT_FALSE(change.concernsCameras());
        EXPECT_EQ(change.meaningFor(kOwn), Meaning::Nothing);
    }
}

TEST(ListChange, PlugInThatChangesNothingIsAReplug)
{
    EXPECT_TRUE(ListChange(cameras({kOwn}), cameras({kOwn}), DevicePluggedIn).isReplug());
    EXPECT_FALSE(ListChange(cameras({kOwn}), cameras({kOwn}), DeviceRemoved).isReplug());
    Devices present = cameras({kOwn});
    present.insert(kOther, {kOther, 0x1111, 0x2222, QString()});
    EXPECT_FALSE(ListChange(present, cameras({kOwn}), DevicePluggedIn).isReplug());
}

TEST(ListChange, OpenCameraWhosePathIsGoneHasLeftWhicheverCameraCame)
{
    for (const int status : {DevicePluggedIn, DeviceRemoved}) {
        const ListChange change(cameras({kOther}), cameras({kOwn}), status);
        EXPECT_TRUE(change.concernsCameras());
        EXPECT_EQ(change.meaningFor(kOwn), Meaning::CameraLeft);
        EXPECT_EQ(change.meaningFor(kOther), Meaning::CameraArrived);
    }
}

TEST(ListChange, OtherDevicesDoNotCount)
{
    Devices present = cameras({kOwn});
    present.insert(kOther, {kOther, 0x1111, 0x2222, QString()});
    const ListChange change(present, cameras({kOwn}), DevicePluggedIn);
    EXPECT_FALSE(change.concernsCameras());
    EXPECT_EQ(change.lastCamera().path, kOwn);
}

TEST(ListChange, RemovalOfTheOpenCameraMeansThatItLeft)
{
    const ListChange change(cameras({kOther}), cameras({kOwn, kOther}), DeviceRemoved);
    EXPECT_EQ(change.meaningFor(kOwn), Meaning::CameraLeft);
    EXPECT_EQ(change.meaningFor(kOther), Meaning::Nothing);
    EXPECT_FALSE(change.isPresent(kOwn));
}

TEST(ListChange, RemovalMeansNothingWhileNoCameraIsOpen)
{
    const ListChange change({}, cameras({kOwn}), DeviceRemoved);
    EXPECT_TRUE(change.concernsCameras());
    EXPECT_EQ(change.meaningFor(QString()), Meaning::Nothing);
    EXPECT_EQ(change.lastCamera().path, QString());
}

TEST(ListChange, ArrivalNamesTheLastCameraInKeyOrder)
{
    const ListChange change(cameras({kOwn, kOther}), cameras({kOther}), DevicePluggedIn);
    EXPECT_EQ(change.meaningFor(kOther), Meaning::CameraArrived);
    EXPECT_EQ(change.meaningFor(QString()), Meaning::CameraArrived);
    EXPECT_EQ(change.lastCamera().path, kOther);
    ASSERT_EQ(change.arrived().size(), 1);
    EXPECT_EQ(change.arrived().first().path, kOwn);
    EXPECT_EQ(change.cameras().size(), 2);
}

TEST(ListChange, CameraUnderThePathOfAnotherMakersDeviceHasArrived)
{
    const Devices before{{kOwn, {kOwn, 0x1111, 0x2222, QString()}}};
    const ListChange change(cameras({kOwn}), before, DevicePluggedIn);
    EXPECT_TRUE(change.concernsCameras());
    EXPECT_EQ(change.arrived().size(), 1);
}
