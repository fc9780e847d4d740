#include "PendingNotifications.h"
#include "IDeviceNotify.h"

#include <gtest/gtest.h>

namespace {

QList<UVCDeviceInfo> camera(const char* name)
{
    UVCDeviceInfo info;
    info.displayName = QString::fromLatin1(name);
    return {info};
}

} // namespace

TEST(PendingNotifications, IsEmptyUntilOneIsAddedAndAfterTheyAreTaken)
{
    PendingNotifications pending;
    EXPECT_TRUE(pending.isEmpty());
    pending.add({}, DeviceRemoved);
    EXPECT_FALSE(pending.isEmpty());
    EXPECT_EQ(pending.take().statuses, QList<int>{DeviceRemoved});
    EXPECT_TRUE(pending.isEmpty());
    EXPECT_TRUE(pending.take().statuses.isEmpty());
}

TEST(PendingNotifications, HasEachStatusOnceAndTheRemovalFirst)
{
    PendingNotifications pending;
    for (const int status : {DevicePluggedIn, DeviceRemoved, DevicePluggedIn, DeviceRemoved})
        pending.add({}, status);
    EXPECT_EQ(pending.take().statuses, (QList<int>{DeviceRemoved, DevicePluggedIn}));
}

TEST(PendingNotifications, HasTheCamerasOfTheNewest)
{
    PendingNotifications pending;
    pending.add(camera("first"), DevicePluggedIn);
    pending.add(camera("second"), DevicePluggedIn);
    const PendingNotifications::Batch batch = pending.take();
    ASSERT_EQ(batch.cameras.size(), 1);
    EXPECT_EQ(batch.cameras.first().displayName, QStringLiteral("second"));
    EXPECT_EQ(batch.statuses, QList<int>{DevicePluggedIn});
}
