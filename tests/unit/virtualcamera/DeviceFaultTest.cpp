#include "Requests.h"

#include "core/Checksum.h"

#include <gtest/gtest.h>

namespace virtualcamera {

class DeviceFaultTest : public testing::Test
{
protected:
    void add(std::vector<std::string> words) { device.faults().add(FaultRule::parse(words)); }
    Reaction probe() { return send(device, readOf(command::kProbe)); }
    const LogEntry& lastEntry() const { return device.log().entries().back(); }

    Device device{testConfig()};
};

TEST_F(DeviceFaultTest, NoReplyExecutesTheCommand)
{
    add({"noreply"});
    EXPECT_TRUE(send(device, writeOf(0x5091, 1)).reports.empty());
    EXPECT_EQ(1, device.current()[Setting::HorizontalMirror]);
    EXPECT_FALSE(lastEntry().answerStatus);
}

TEST_F(DeviceFaultTest, LateDelaysTheAnswer)
{
    add({"late", "250"});
    const Reaction reaction = probe();
    EXPECT_EQ(std::chrono::milliseconds(250), reaction.delay);
    EXPECT_EQ(0U, answerOf(reaction));
}

TEST_F(DeviceFaultTest, WrongEchoNamesAnotherCommand)
{
    add({"wrongecho"});
    const Reaction reaction = probe();
    ASSERT_EQ(1U, reaction.reports.size());
    EXPECT_NE(command::kProbe, commandOf(reaction.reports.front()));
    EXPECT_EQ(0U, statusOf(reaction.reports.front()));
}

TEST_F(DeviceFaultTest, StatusRefusesTheCommand)
{
    add({"status", "9", "cmd=0x5091"});
    EXPECT_EQ(9U, answerOf(send(device, writeOf(0x5091, 1))));
    EXPECT_EQ(0, device.current()[Setting::HorizontalMirror]);
    EXPECT_EQ(Verdict::Refused, lastEntry().verdict);
    EXPECT_EQ(0U, answerOf(send(device, writeOf(0x5071, 1))));
}

TEST_F(DeviceFaultTest, ShortCutsTheReport)
{
    add({"short", "1"});
    EXPECT_EQ(1U, probe().reports.at(0).size());
    add({"short", "0"});
    EXPECT_TRUE(probe().reports.empty());
}

TEST_F(DeviceFaultTest, OversizeReportsALargerPayload)
{
    add({"oversize", "2000"});
    const Bytes report = probe().reports.at(0);
    EXPECT_EQ(kReportSize, report.size());
    EXPECT_EQ(2000, loadLittleEndian16(&report[6]));
}

TEST_F(DeviceFaultTest, ReadErrorComesOnce)
{
    add({"readerror"});
    Reaction reaction = probe();
    EXPECT_TRUE(reaction.nextReadFails);
    EXPECT_TRUE(reaction.reports.empty());
    reaction = probe();
    EXPECT_FALSE(reaction.nextReadFails);
    EXPECT_EQ(0U, answerOf(reaction));
}

TEST_F(DeviceFaultTest, CommandWithAWriteErrorDoesNotReachTheDevice)
{
    add({"writeerror"});
    EXPECT_TRUE(send(device, writeOf(0x5091, 1)).writeFails);
    EXPECT_EQ(0, device.current()[Setting::HorizontalMirror]);
}

TEST_F(DeviceFaultTest, UnplugAtTheRequest)
{
    add({"unplug-at", "2"});
    EXPECT_FALSE(probe().drop);
    const Reaction reaction = probe();
    ASSERT_TRUE(reaction.drop);
    EXPECT_EQ(0, reaction.drop->after.count());
    EXPECT_FALSE(reaction.drop->returnsAfter);
    EXPECT_TRUE(reaction.reports.empty());
    EXPECT_FALSE(probe().drop);
}

TEST_F(DeviceFaultTest, StaleReportsComeBeforeTheAnswer)
{
    send(device, readOf(command::kSerialNumber));
    add({"stale", "3"});
    const Reaction reaction = probe();
    ASSERT_EQ(4U, reaction.reports.size());
    for (int i = 0; i < 3; ++i)
        EXPECT_EQ(command::kSerialNumber, commandOf(reaction.reports[static_cast<std::size_t>(i)]));
    EXPECT_EQ(command::kProbe, commandOf(reaction.reports.back()));
}

TEST_F(DeviceFaultTest, BadChecksumSpoilsTheAnswer)
{
    add({"badcrc"});
    const Bytes report = probe().reports.at(0);
    EXPECT_EQ(Verdict::BadChecksum, parseRequest(report.data(), report.size()).verdict);
}

TEST_F(DeviceFaultTest, FaultsCombine)
{
    add({"late", "10"});
    add({"status", "4"});
    add({"wrongecho"});
    const Reaction reaction = probe();
    EXPECT_EQ(10, reaction.delay.count());
    EXPECT_EQ(4U, answerOf(reaction));
    EXPECT_NE(command::kProbe, commandOf(reaction.reports.front()));
}

TEST_F(DeviceFaultTest, BadFramesAreNotAnsweredWithAnyFault)
{
    add({"status", "4"});
    Bytes report = buildRequest(readOf(command::kProbe));
    report[13] ^= 1;
    EXPECT_TRUE(device.handleReport(report.data(), report.size()).reports.empty());
    EXPECT_EQ(Verdict::BadChecksum, lastEntry().verdict);
}

} // namespace virtualcamera
