#include "Requests.h"

#include <gtest/gtest.h>

namespace virtualcamera {

class DeviceTest : public testing::Test
{
protected:
    Bytes read(std::uint16_t command)
    {
        const Reaction reaction = send(device, readOf(command));
        if (reaction.reports.size() != 1)
            return {};
        EXPECT_EQ(command, commandOf(reaction.reports.front()));
        EXPECT_EQ(0U, statusOf(reaction.reports.front()));
        return payloadOf(reaction.reports.front());
    }
    std::uint32_t write(std::uint16_t command, std::uint8_t value)
    {
        return answerOf(send(device, writeOf(command, value)));
    }
    Verdict lastVerdict() const { return device.log().entries().back().verdict; }

    Device device{testConfig()};
};

TEST_F(DeviceTest, AnswersTheProbe)
{
    EXPECT_EQ(Bytes{0}, read(0x5000));
    device.config().probe = 2;
    EXPECT_EQ(Bytes{2}, read(0x5000));
}

TEST_F(DeviceTest, ReportsItsVersionAndSerialNumber)
{
    EXPECT_EQ((Bytes{1, 0, 5}), read(0x5001));
    EXPECT_EQ("1.0.5", device.firmwareVersionText());
    EXPECT_EQ(device.config().serial, read(0x5010));
    device.config().serial.clear();
    EXPECT_TRUE(read(0x5010).empty());
    device.config().serial = Bytes(kMaxPayload, 0xFF);
    EXPECT_EQ(Bytes(kMaxPayload, 0xFF), read(0x5010));
}

TEST_F(DeviceTest, SettingsAreReadWithTheEvenAndWrittenWithTheOddCode)
{
    for (const SettingInfo& info : settingInfos()) {
        device.current() = SettingsBank::factory(device.config().controlRanges);
        const auto writeCode = static_cast<std::uint16_t>(info.readCommand + 1);
        EXPECT_EQ(0U, write(writeCode, 1)) << info.name;
        EXPECT_EQ(Bytes{1}, read(info.readCommand)) << info.name;
        EXPECT_EQ(0U, write(writeCode, 0xFF)) << info.name;
        EXPECT_EQ(Bytes{0xFF}, read(info.readCommand)) << info.name;
    }
}

TEST_F(DeviceTest, LastByteOfAReadIsTheValue)
{
    device.config().replyPrefix = {9, 8};
    device.current()[Setting::HorizontalMirror] = 1;
    EXPECT_EQ((Bytes{9, 8, 1}), read(0x5090));
}

TEST_F(DeviceTest, ReportsTheFormatThatStreams)
{
    device.configuredFormat() = {1280, 720, false};
    Bytes payload = read(0x5020);
    ASSERT_EQ(36U, payload.size());
    EXPECT_EQ(1280U, loadLittleEndian32(&payload[0]));
    EXPECT_EQ(720U, loadLittleEndian32(&payload[4]));
    EXPECT_EQ(0U, loadLittleEndian32(&payload[32]));
    device.setStream(VideoFormat{3840, 2160, true});
    payload = read(0x5020);
    EXPECT_EQ(3840U, loadLittleEndian32(&payload[0]));
    EXPECT_EQ(2160U, loadLittleEndian32(&payload[4]));
    EXPECT_EQ(1U, loadLittleEndian32(&payload[32]));
    device.setStream(std::nullopt);
    EXPECT_EQ(1280U, loadLittleEndian32(read(0x5020).data()));
}

TEST_F(DeviceTest, FramingModesExcludeEachOther)
{
    EXPECT_EQ(0U, write(0x5081, 1));
    EXPECT_EQ(1U, write(0x5041, 1));
    EXPECT_EQ(Verdict::Violation, lastVerdict());
    EXPECT_EQ(1U, device.log().violations());
    EXPECT_EQ(Bytes{0}, read(0x5040));
    EXPECT_EQ(0U, write(0x5041, 0));
    EXPECT_EQ(0U, write(0x5081, 0));
    EXPECT_EQ(0U, write(0x5041, 1));
    EXPECT_EQ(1U, write(0x5081, 1));
    EXPECT_EQ(2U, device.log().violations());
}

TEST_F(DeviceTest, PowerCycleKeepsTheSettingsAndLosesThePicture)
{
    write(0x5031, 1);
    write(0x5041, 1);
    write(0x5071, 80);
    write(0x5091, 1);
    write(0x50A1, 60);
    device.current()[Control::Brightness] = 150;
    device.powerCycle();
    EXPECT_EQ(Bytes{1}, read(0x5030));
    EXPECT_EQ(Bytes{1}, read(0x5040));
    EXPECT_EQ(Bytes{80}, read(0x5070));
    EXPECT_EQ(Bytes{1}, read(0x5090));
    EXPECT_EQ(Bytes{60}, read(0x50A0));
    EXPECT_EQ(128, device.current()[Control::Brightness]);
    write(0x5041, 0);
    write(0x5081, 1);
    device.powerCycle();
    EXPECT_EQ(Bytes{1}, read(0x5080));
}

TEST_F(DeviceTest, SettingsChangedAfterStoringAreKept)
{
    write(0x50A1, 60);
    EXPECT_EQ(0U, answerOf(send(device, storeRequest())));
    write(0x50A1, 90);
    device.powerCycle();
    EXPECT_EQ(Bytes{90}, read(0x50A0));
}

TEST_F(DeviceTest, PowerCycleRestoresStoredValuesOfAVolatileCamera)
{
    device.config().volatileSettings = true;
    write(0x50A1, 60);
    device.current()[Control::Brightness] = 150;
    EXPECT_EQ(0U, answerOf(send(device, storeRequest())));
    write(0x50A1, 90);
    device.current()[Control::Brightness] = 10;
    device.powerCycle();
    EXPECT_EQ(Bytes{60}, read(0x50A0));
    EXPECT_EQ(150, device.current()[Control::Brightness]);
}

TEST_F(DeviceTest, PowerCycleRestoresTheFactorySettingsOfAVolatileCameraThatStoredNothing)
{
    device.config().volatileSettings = true;
    write(0x5091, 1);
    device.powerCycle();
    EXPECT_EQ(Bytes{0}, read(0x5090));
}

TEST_F(DeviceTest, DoesNotAnswerInvalidFrames)
{
    Bytes report = buildRequest(readOf(0x5000));
    report[12] ^= 0xFF;
    EXPECT_TRUE(device.handleReport(report.data(), report.size()).reports.empty());
    EXPECT_EQ(Verdict::BadChecksum, lastVerdict());
    EXPECT_FALSE(device.log().entries().back().answerStatus);
}

TEST_F(DeviceTest, RefusesRequestsThatBreakTheRules)
{
    EXPECT_EQ(1U, answerOf(send(device, readOf(0x5055))));
    EXPECT_EQ(Verdict::UnknownCommand, lastVerdict());
    EXPECT_EQ(1U, answerOf(send(device, makeRequest(0x5000, DataStatus::Payload))));
    EXPECT_EQ(Verdict::BadDataStatus, lastVerdict());
    EXPECT_EQ(1U, answerOf(send(device, makeRequest(0x5091, DataStatus::Payload))));
    EXPECT_EQ(Verdict::BadPayload, lastVerdict());
    EXPECT_EQ(1U, answerOf(send(device, makeRequest(0x5091, DataStatus::Payload, {1, 2}))));
    EXPECT_EQ(Verdict::BadPayload, lastVerdict());
    EXPECT_EQ(1U, answerOf(send(device, makeRequest(0x5000, DataStatus::Final, {}, 4))));
    EXPECT_EQ(Verdict::BadPackNumber, lastVerdict());
    EXPECT_EQ(1U, answerOf(send(device, makeRequest(0x5100, DataStatus::Payload, {0}))));
    EXPECT_EQ(Verdict::BadPayload, lastVerdict());
}

TEST_F(DeviceTest, LogNumbersRequestsAcrossClearing)
{
    read(0x5000);
    device.log().clear();
    write(0x5071, 4);
    ASSERT_EQ(1U, device.log().entries().size());
    const LogEntry& entry = device.log().entries().front();
    EXPECT_EQ(2U, entry.sequence);
    EXPECT_EQ(0x5071, entry.request.command);
    EXPECT_EQ(Bytes{4}, entry.request.payload);
    EXPECT_EQ(0U, entry.answerStatus);
    EXPECT_EQ(2U, device.log().total());
}

TEST_F(DeviceTest, PicksTheMiddleOfItsControlRanges)
{
    for (const ControlInfo& info : controlInfos())
        EXPECT_EQ(128, device.current()[info.control]) << info.name;
    EXPECT_EQ(0, device.range(Control::Sharpness).minimum);
    EXPECT_EQ(255, device.range(Control::Sharpness).maximum);
}

} // namespace virtualcamera
