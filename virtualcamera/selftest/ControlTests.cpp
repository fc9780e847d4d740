#include "TestCamera.h"

#include "core/Commands.h"
#include "protocol/ControlText.h"

#include <gtest/gtest.h>

#include <algorithm>
#include <stdexcept>

namespace virtualcamera {

TEST(Control, ListsCamerasWithTheirState)
{
    TestCamera camera("list me", {{"card", "Raum 5, hinten"}, {"serial", "A B%C"}});
    const auto cameras = camera.client.list();
    const auto found = std::find_if(cameras.begin(), cameras.end(),
                                    [](const auto& each) { return each.id == "list me"; });
    ASSERT_NE(cameras.end(), found);
    EXPECT_TRUE(found->onBus);
    EXPECT_EQ("Raum 5, hinten", found->card);
    EXPECT_EQ("A B%C", found->serial);
}

TEST(Control, SerialNumberHoldsAnyBytes)
{
    std::string garbage;
    for (int i = 0; i < 1010; ++i)
        garbage += static_cast<char>(i % 256);
    TestCamera camera("garbage", {{"serial", garbage}});
    EXPECT_EQ(garbage, camera.client.registerValue(camera.id(), "serial"));
    camera.client.set(camera.id(), "serial", "");
    EXPECT_EQ("", camera.client.registerValue(camera.id(), "serial"));
    EXPECT_THROW(camera.client.set(camera.id(), "serial", garbage + "x"), std::runtime_error);
}

TEST(Control, LogContainsTheRequests)
{
    TestCamera camera;
    camera.client.clearLog(camera.id());
    const HidHandle handle = openHid(camera.hidNode());
    const auto ask = [&handle](const Bytes& request) {
        hid_write(handle.get(), request.data(), request.size());
        return readReport(handle, 300);
    };
    ask(writeRequest(0x5091, 1));
    Bytes broken = readRequest(command::kProbe);
    broken[13] ^= 0xFF;
    EXPECT_TRUE(ask(broken).empty());
    ask(writeRequest(0x5041, 1));
    ask(writeRequest(0x5081, 1));
    const auto log = camera.client.log(camera.id());
    ASSERT_EQ(4U, log.size());
    EXPECT_EQ(0x5091, log[0].command);
    EXPECT_EQ(std::vector<std::uint8_t>{1}, log[0].payload);
    EXPECT_EQ("ok", log[0].verdict);
    EXPECT_EQ(0U, log[0].answerStatus);
    EXPECT_EQ("badcrc", log[1].verdict);
    EXPECT_FALSE(log[1].answerStatus);
    EXPECT_EQ("violation", log[3].verdict);
    EXPECT_EQ(1U, log[3].answerStatus);
    EXPECT_EQ(2U, camera.client.log(camera.id(), log[2].sequence).size());
    camera.client.set(camera.id(), "frameMaster", 0);
}

TEST(Control, ReplugKeepsTheSettings)
{
    TestCamera camera("settings");
    camera.client.set(camera.id(), "PickupSensitivity", 3);
    camera.client.set(camera.id(), "brightness", 150);
    camera.client.unplug(camera.id());
    camera.client.plug(camera.id());
    EXPECT_EQ("3", camera.client.registerValue(camera.id(), "PickupSensitivity"));
    EXPECT_EQ("128", camera.client.registerValue(camera.id(), "brightness"));
}

TEST(Control, ReplugRestoresTheStoredSettingsOfAVolatileCamera)
{
    TestCamera camera("memory", {{"volatile", "1"}});
    camera.client.set(camera.id(), "PickupSensitivity", 3);
    const HidHandle handle = openHid(camera.hidNode());
    Request store;
    store.command = command::kStoreSettings;
    store.dataStatus = static_cast<std::uint8_t>(DataStatus::Payload);
    const Bytes request = buildRequest(store);
    hid_write(handle.get(), request.data(), request.size());
    ASSERT_FALSE(readReport(handle, 1000).empty());
    camera.client.set(camera.id(), "PickupSensitivity", 7);
    camera.client.unplug(camera.id());
    camera.client.plug(camera.id());
    EXPECT_EQ("3", camera.client.registerValue(camera.id(), "PickupSensitivity"));
}

TEST(Control, WaitsForConditions)
{
    using std::chrono::milliseconds;
    TestCamera camera;
    EXPECT_TRUE(camera.client.wait(camera.id(), "onbus", milliseconds(0)));
    EXPECT_FALSE(camera.client.wait(camera.id(), "frames>=1000000", milliseconds(50)));
    EXPECT_THROW(camera.client.wait(camera.id(), "nonsense", milliseconds(0)), std::runtime_error);
}

TEST(Control, RefusesBadRequests)
{
    TestCamera camera;
    EXPECT_THROW(camera.client.plug(camera.id()), std::runtime_error);
    EXPECT_THROW(camera.client.unplug("nobody"), std::runtime_error);
    EXPECT_THROW(camera.client.fault(camera.id(), "tired"), std::runtime_error);
    EXPECT_THROW(camera.client.fault(camera.id(), "late"), std::runtime_error);
    EXPECT_THROW(camera.client.request(""), std::runtime_error);
    EXPECT_THROW(camera.client.set(camera.id(), "brightness", 999), std::runtime_error);
    VirtualCameraClient other;
    EXPECT_THROW(other.request(std::string(kMaxRequestLine + 1, 'x')), std::runtime_error);
}

TEST(Control, WaitingClientDoesNotBlockOthers)
{
    TestCamera camera;
    VirtualCameraClient other;
    const auto start = std::chrono::steady_clock::now();
    std::vector<std::string> words;
    EXPECT_FALSE(camera.client.wait(camera.id(), "offbus", std::chrono::milliseconds(10)));
    EXPECT_NO_THROW(words = other.request("list"));
    EXPECT_LT(std::chrono::steady_clock::now() - start, std::chrono::seconds(2));
}

} // namespace virtualcamera
