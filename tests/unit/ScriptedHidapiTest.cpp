#include "ScriptedHidapi.h"
#include "QtPrinters.h"

#include <array>
#include <gtest/gtest.h>
#include <hidapi/hidapi.h>
#include <thread>

namespace {

class ScriptedHidapiTest : public ::testing::Test
{
protected:
    hid_device* open() { return hid_open_path("/dev/hidraw0"); }

    int write(hid_device* device, std::uint16_t cmd)
    {
        std::array<unsigned char, 1024> frame{};
        frame[3] = static_cast<unsigned char>(cmd & 0xFFU);
        frame[4] = static_cast<unsigned char>(cmd >> 8U);
        return hid_write(device, frame.data(), frame.size());
    }

    int read(hid_device* device, std::size_t length = 1024)
    {
        received.fill(0xEE);
        return hid_read_timeout(device, received.data(), length, 10);
    }

    ScriptedHidapi hidapi;
    std::array<unsigned char, 1024> received{};
};

} // namespace

TEST_F(ScriptedHidapiTest, OpenHandlesAreCounted)
{
    hid_device* first = open();
    hid_device* second = open();
    EXPECT_EQ(hidapi.openHandles(), 2);
    hid_close(first);
    EXPECT_EQ(hidapi.openHandles(), 1);
    hid_close(second);
    EXPECT_EQ(hidapi.openHandles(), 0);
    EXPECT_EQ(hidapi.misuse(), QStringList());
}

TEST_F(ScriptedHidapiTest, UseAfterClosingIsRecorded)
{
    hid_device* device = open();
    hid_close(device);
    write(device, 1);
    hid_close(device);
    EXPECT_EQ(hidapi.misuse(),
              (QStringList{"hid_write on a closed device", "hid_close on a closed device"}));
}

TEST_F(ScriptedHidapiTest, BufferTooShortForTheReportIsRecorded)
{
    hid_device* device = open();
    hidapi.queueAnswer(QByteArray(1024, '\x01'));
    EXPECT_EQ(read(device, 64), 64);
    EXPECT_EQ(received[63], 0x01);
    EXPECT_EQ(received[64], 0xEE);
    EXPECT_EQ(hidapi.misuse(), QStringList{"hid_read_timeout of 1024 bytes into 64"});
}

TEST_F(ScriptedHidapiTest, InventoryThatIsNotFreedIsCounted)
{
    hidapi.plugIn({QByteArray("a"), 1, 2});
    hidapi.plugIn({QByteArray("b"), 3, 4});
    hid_device_info* list = hid_enumerate(0, 0);
    ASSERT_NE(list, nullptr);
    ASSERT_NE(list->next, nullptr);
    EXPECT_STREQ(list->path, "a");
    EXPECT_STREQ(list->next->path, "b");
    EXPECT_EQ(list->next->next, nullptr);
    EXPECT_EQ(hidapi.openEnumerations(), 1);
    hid_free_enumeration(list);
    EXPECT_EQ(hidapi.openEnumerations(), 0);

    list = hid_enumerate(3, 0);
    ASSERT_NE(list, nullptr);
    EXPECT_STREQ(list->path, "b");
    EXPECT_EQ(list->next, nullptr);
    hid_free_enumeration(list);
}

TEST_F(ScriptedHidapiTest, QueuedAnswersComeBeforeTheReplyToTheCommand)
{
    hid_device* device = open();
    hidapi.respondTo(0x5001, {"xyz"});
    hidapi.queueAnswer("abc");
    hidapi.queueReadResult(-1);

    write(device, 0x5001);
    EXPECT_EQ(read(device), 3);
    EXPECT_EQ(received[0], 'a');
    EXPECT_EQ(read(device), -1);
    EXPECT_EQ(received[0], 0xEE);
    write(device, 0x5001);
    EXPECT_EQ(read(device), 1024);
    EXPECT_EQ(received[14], 'x');
    hid_close(device);
}

TEST_F(ScriptedHidapiTest, ReplyIsReadOnceForEveryFrameWritten)
{
    hid_device* device = open();
    hidapi.respondTo(0x5001, {});
    EXPECT_EQ(read(device), 0);
    write(device, 0x5001);
    EXPECT_EQ(read(device), 1024);
    EXPECT_EQ(read(device), 0);
    write(device, 0x5002);
    EXPECT_EQ(read(device), 0);
    hid_close(device);
}

TEST_F(ScriptedHidapiTest, FrameWhoseWriteFailedIsNotAnswered)
{
    hid_device* device = open();
    hidapi.respondTo(0x5001, {});
    hidapi.setWriteResult(-1);
    EXPECT_EQ(write(device, 0x5001), -1);
    EXPECT_EQ(read(device), 0);
    EXPECT_EQ(hidapi.writtenFrames().size(), 1);
    hid_close(device);
}

TEST_F(ScriptedHidapiTest, ReportHasTheFieldsOfTheReply)
{
    ScriptedReply reply{"AB", 0x04030201};
    EXPECT_EQ(reply.report(0x5010),
              QByteArray::fromHex("015a5a1050020200010203040000") + "AB" + QByteArray(1008, '\0'));
    reply.echo = 0x1234;
    reply.dataLen = 0xFFFE;
    EXPECT_EQ(reply.report(0x5010).left(14), QByteArray::fromHex("015a5a341202feff010203040000"));
}

TEST_F(ScriptedHidapiTest, HandleOfAnotherThreadIsMisuse)
{
    hid_device* device = open();
    std::thread([device] { hid_close(device); }).join();
    EXPECT_EQ(hidapi.misuse(),
              QStringList("hid_close on another thread than the device was opened on"));
}

TEST(ScriptedHidapiWithoutAScript, FindsNoDevice)
{
    EXPECT_EQ(hid_init(), 0);
    EXPECT_EQ(hid_enumerate(0, 0), nullptr);
    EXPECT_EQ(hid_open_path("/dev/hidraw0"), nullptr);
    EXPECT_EQ(hid_exit(), 0);
}
