#include "TestCamera.h"

#include "control/CameraIdentity.h"
#include "core/Commands.h"
#include "core/DeviceFirmware.h"

#include <gtest/gtest.h>

#include <atomic>
#include <cerrno>
#include <chrono>
#include <cstdlib>
#include <fcntl.h>
#include <thread>
#include <unistd.h>

namespace virtualcamera {

namespace {

using Clock = std::chrono::steady_clock;
using std::chrono::milliseconds;

long elapsed(Clock::time_point since)
{
    return std::chrono::duration_cast<milliseconds>(Clock::now() - since).count();
}

bool isWritten(const HidHandle& handle, const Bytes& report)
{
    return hid_write(handle.get(), report.data(), report.size()) == static_cast<int>(report.size());
}

Bytes ask(const HidHandle& handle, const Bytes& request)
{
    return isWritten(handle, request) ? readReport(handle, 1000) : Bytes();
}

std::uint16_t commandOf(const Bytes& report)
{
    return loadLittleEndian16(&report[3]);
}

std::uint32_t statusOf(const Bytes& report)
{
    return loadLittleEndian32(&report[8]);
}

} // namespace

TEST(Hid, IsEnumeratedWithItsTexts)
{
    TestCamera camera(
        "texts",
        {{"manufacturer", "Sorvanta"}, {"product", "NOVA EDGE"}, {"serial", "SVAA009500557"}});
    hid_device_info* list = hid_enumerate(kVendorId, kProductId);
    ASSERT_NE(list, nullptr);
    EXPECT_EQ(camera.hidNode(), list->path);
    EXPECT_STREQ(L"Sorvanta", list->manufacturer_string);
    EXPECT_STREQ(L"NOVA EDGE", list->product_string);
    EXPECT_STREQ(L"SVAA009500557", list->serial_number);
    EXPECT_EQ(3, list->interface_number);
    EXPECT_EQ(0xFF00, list->usage_page);
    EXPECT_EQ(nullptr, list->next);
    hid_free_enumeration(list);
}

TEST(Hid, OpenHandleReturnsItsStrings)
{
    TestCamera camera;
    const HidHandle handle = openHid(camera.hidNode());
    ASSERT_TRUE(handle);
    wchar_t text[64] = L"";
    EXPECT_EQ(0, hid_get_manufacturer_string(handle.get(), text, 64));
    EXPECT_STREQ(L"Sorvanta", text);
    EXPECT_EQ(0, hid_get_serial_number_string(handle.get(), text, 64));
}

TEST(Hid, AnswersEveryRequestOfManyCycles)
{
    TestCamera camera;
    const std::string node = camera.hidNode();
    for (int i = 0; i < 300; ++i) {
        const HidHandle handle = openHid(node);
        ASSERT_TRUE(handle);
        const Bytes reply = ask(handle, readRequest(command::kFirmwareVersion));
        ASSERT_EQ(kReportSize, reply.size());
        ASSERT_EQ(command::kFirmwareVersion, commandOf(reply));
        ASSERT_EQ(0U, statusOf(reply));
    }
}

TEST(Hid, SettingsKeepTheirValues)
{
    TestCamera camera;
    const HidHandle handle = openHid(camera.hidNode());
    EXPECT_EQ(0U, statusOf(ask(handle, writeRequest(0x50A1, 60))));
    const Bytes reply = ask(handle, readRequest(0x50A0));
    EXPECT_EQ(60, reply[kHeaderSize]);
    EXPECT_EQ("60", camera.client.registerValue(camera.id(), "CameraView"));
    camera.client.set(camera.id(), "CameraView", 90);
    EXPECT_EQ(90, ask(handle, readRequest(0x50A0))[kHeaderSize]);
}

TEST(Hid, TimeOutIsExact)
{
    TestCamera camera;
    camera.client.fault(camera.id(), "noreply");
    const HidHandle handle = openHid(camera.hidNode());
    ASSERT_TRUE(isWritten(handle, readRequest(command::kProbe)));
    const auto start = Clock::now();
    int result = -2;
    readReport(handle, 500, &result);
    EXPECT_EQ(0, result);
    EXPECT_GE(elapsed(start), 499);
    EXPECT_LT(elapsed(start), 700);
}

TEST(Hid, LateAnswerArrivesAfterItsDelay)
{
    TestCamera camera;
    camera.client.fault(camera.id(), "late 300");
    const HidHandle handle = openHid(camera.hidNode());
    const auto start = Clock::now();
    ASSERT_TRUE(isWritten(handle, readRequest(command::kProbe)));
    EXPECT_EQ(kReportSize, readReport(handle, 3000).size());
    EXPECT_GE(elapsed(start), 299);
    EXPECT_LT(elapsed(start), 600);
}

TEST(Hid, EveryHandleHasItsOwnQueueWithAllReports)
{
    TestCamera camera;
    const HidHandle first = openHid(camera.hidNode());
    const HidHandle second = openHid(camera.hidNode());
    ASSERT_TRUE(isWritten(first, readRequest(command::kProbe)));
    EXPECT_EQ(kReportSize, readReport(first, 500).size());
    EXPECT_EQ(kReportSize, readReport(second, 500).size());
    EXPECT_TRUE(readReport(second, 50).empty());
}

TEST(Hid, AnswersCanBeLimitedToTheAskingHandle)
{
    TestCamera camera("quiet", {{"broadcast", "0"}});
    const HidHandle first = openHid(camera.hidNode());
    const HidHandle second = openHid(camera.hidNode());
    ASSERT_TRUE(isWritten(first, readRequest(command::kProbe)));
    EXPECT_EQ(kReportSize, readReport(first, 500).size());
    EXPECT_TRUE(readReport(second, 100).empty());
}

TEST(Hid, FullQueueLosesTheNewestReports)
{
    TestCamera camera;
    const HidHandle handle = openHid(camera.hidNode());
    for (int i = 0; i < 80; ++i)
        ASSERT_TRUE(isWritten(handle, readRequest(command::kProbe)));
    int reports = 0;
    while (!readReport(handle, 50).empty())
        ++reports;
    EXPECT_EQ(64, reports);
}

TEST(Hid, ReaderThreadDoesNotBlockTheWriter)
{
    TestCamera camera;
    const HidHandle handle = openHid(camera.hidNode());
    Bytes reply;
    std::thread reader([&] { reply = readReport(handle, -1); });
    std::this_thread::sleep_for(milliseconds(100));
    const auto start = Clock::now();
    EXPECT_TRUE(isWritten(handle, readRequest(command::kProbe)));
    reader.join();
    EXPECT_LT(elapsed(start), 500);
    EXPECT_EQ(kReportSize, reply.size());
}

TEST(Hid, UnplugEndsAWaitingRead)
{
    TestCamera camera;
    const HidHandle handle = openHid(camera.hidNode());
    int result = -2;
    const auto start = Clock::now();
    std::thread reader([&] { readReport(handle, 5000, &result); });
    std::this_thread::sleep_for(milliseconds(100));
    camera.client.unplug(camera.id());
    reader.join();
    EXPECT_EQ(-1, result);
    EXPECT_LT(elapsed(start), 2000);
    const Bytes request = readRequest(command::kProbe);
    EXPECT_EQ(-1, hid_write(handle.get(), request.data(), request.size()));
    readReport(handle, 200, &result);
    EXPECT_EQ(-1, result);
}

TEST(Hid, LeavesTheBusAtARequest)
{
    TestCamera camera;
    camera.client.fault(camera.id(), "unplug-at 3");
    const HidHandle handle = openHid(camera.hidNode());
    for (int i = 0; i < 2; ++i)
        EXPECT_FALSE(ask(handle, readRequest(command::kProbe)).empty());
    EXPECT_TRUE(isWritten(handle, readRequest(command::kProbe)));
    int result = 0;
    readReport(handle, 3000, &result);
    EXPECT_EQ(-1, result);
    EXPECT_TRUE(camera.client.wait(camera.id(), "offbus", milliseconds(2000)));
    EXPECT_TRUE(camera.client.nodes(camera.id()).hid.empty());
}

TEST(Hid, ReadErrorComesOnce)
{
    TestCamera camera;
    camera.client.fault(camera.id(), "readerror");
    const HidHandle handle = openHid(camera.hidNode());
    ASSERT_TRUE(isWritten(handle, readRequest(command::kProbe)));
    int result = 0;
    readReport(handle, 1000, &result);
    EXPECT_EQ(-1, result);
    EXPECT_EQ(kReportSize, ask(handle, readRequest(command::kProbe)).size());
}

TEST(Hid, WriteErrorFailsTheWrite)
{
    TestCamera camera;
    camera.client.fault(camera.id(), "writeerror times=1");
    const HidHandle handle = openHid(camera.hidNode());
    EXPECT_FALSE(isWritten(handle, readRequest(command::kProbe)));
    EXPECT_EQ(kReportSize, ask(handle, readRequest(command::kProbe)).size());
}

TEST(Hid, ShortAndStaleReports)
{
    TestCamera camera;
    const HidHandle handle = openHid(camera.hidNode());
    camera.client.fault(camera.id(), "short 1 times=1");
    ASSERT_TRUE(isWritten(handle, readRequest(command::kProbe)));
    EXPECT_EQ(1U, readReport(handle, 500).size());
    camera.client.fault(camera.id(), "stale 2 times=1");
    ASSERT_TRUE(isWritten(handle, readRequest(command::kFirmwareVersion)));
    EXPECT_EQ(command::kProbe, commandOf(readReport(handle, 500)));
    EXPECT_EQ(command::kProbe, commandOf(readReport(handle, 500)));
    EXPECT_EQ(command::kFirmwareVersion, commandOf(readReport(handle, 500)));
}

TEST(Hid, OpenErrorLeaksNothing)
{
    TestCamera camera;
    const std::string node = camera.hidNode();
    openHid(node).reset();
    const std::size_t before = openDescriptors();
    camera.client.fault(camera.id(), "open-error");
    for (int i = 0; i < 120; ++i) {
        errno = 0;
        ASSERT_LT(::open(node.c_str(), O_RDWR | O_CLOEXEC), 0);
        ASSERT_EQ(EACCES, errno);
    }
    EXPECT_FALSE(openHid(node));
    camera.client.clear(camera.id());
    EXPECT_TRUE(openHid(node));
    EXPECT_EQ(before, openDescriptors());
}

TEST(Hid, MissingNodesCanBeOpenedAnyNumberOfTimes)
{
    const std::size_t before = openDescriptors();
    for (int i = 0; i < 200; ++i)
        ASSERT_LT(::open(("/dev/hidraw9" + std::to_string(i)).c_str(), O_RDWR), 0);
    EXPECT_EQ(before, openDescriptors());
}

TEST(Hid, ManyThreadsOpenAndAsk)
{
    TestCamera camera("threads", {{"broadcast", "0"}});
    const std::string node = camera.hidNode();
    std::atomic<int> good{0};
    constexpr int threadCount = 4;
    std::vector<std::thread> threads;
    threads.reserve(threadCount);
    for (int t = 0; t < threadCount; ++t) {
        threads.emplace_back([&] {
            for (int i = 0; i < 50; ++i) {
                const int fd = ::open(node.c_str(), O_RDWR | O_CLOEXEC);
                const Bytes request = readRequest(command::kProbe);
                Bytes reply(kReportSize);
                if (fd >= 0 && ::write(fd, request.data(), request.size()) == 1024 &&
                    ::read(fd, reply.data(), reply.size()) == 1024)
                    ++good;
                ::close(fd);
            }
        });
    }
    for (std::thread& thread : threads)
        thread.join();
    EXPECT_EQ(200, good);
}

TEST(Hid, TwoCamerasHaveSeparateStates)
{
    TestCamera first("first", {{"serial", "ONE"}});
    TestCamera second("second", {{"serial", "TWO"}});
    const std::string firstNode = first.hidNode();
    const std::string secondNode = second.hidNode();
    EXPECT_NE(firstNode, secondNode);
    const HidHandle one = openHid(firstNode);
    const HidHandle two = openHid(secondNode);
    ask(one, writeRequest(0x5091, 1));
    EXPECT_EQ("1", first.client.registerValue("first", "HorizontalMirror"));
    EXPECT_EQ("0", first.client.registerValue("second", "HorizontalMirror"));
    const Bytes reply = ask(two, readRequest(command::kSerialNumber));
    EXPECT_EQ("TWO", std::string(reply.begin() + kHeaderSize, reply.begin() + kHeaderSize + 3));
}

TEST(Hid, FirmwareUpdateReturnsWithTheNewVersion)
{
    TestCamera camera("update", {{"returndelay", "200"}, {"firmware", "1.0.5"}});
    const Bytes image = DeviceFirmware{{2, 0, 1}, Bytes(2500, 0x5A)}.encode();
    {
        const HidHandle handle = openHid(camera.hidNode());
        Request request;
        request.command = command::kFirmwareStart;
        ASSERT_EQ(0U, statusOf(ask(handle, buildRequest(request))));
        for (std::size_t at = 0; at < image.size(); at += kMaxPayload) {
            const std::size_t end = std::min(at + kMaxPayload, image.size());
            Request packet;
            packet.command = command::kFirmwarePacket;
            packet.payload.assign(image.begin() + static_cast<long>(at),
                                  image.begin() + static_cast<long>(end));
            packet.dataLength = static_cast<std::uint16_t>(packet.payload.size());
            packet.dataStatus = end == image.size() ? 2 : 1;
            packet.packNumber = static_cast<std::uint32_t>(at / kMaxPayload + 1);
            ASSERT_EQ(0U, statusOf(ask(handle, buildRequest(packet))));
        }
        request.command = command::kFirmwareEnd;
        ASSERT_EQ(0U, statusOf(ask(handle, buildRequest(request))));
    }
    ASSERT_TRUE(camera.client.wait(camera.id(), "offbus", milliseconds(2000)));
    ASSERT_TRUE(camera.client.wait(camera.id(), "onbus", milliseconds(2000)));
    EXPECT_EQ("2.0.1", camera.client.firmware(camera.id()).version);
    EXPECT_EQ(image.size(), camera.client.firmware(camera.id()).size);
    const HidHandle handle = openHid(camera.hidNode());
    const Bytes reply = ask(handle, readRequest(command::kFirmwareVersion));
    EXPECT_EQ(2, reply[kHeaderSize]);
}

} // namespace virtualcamera
