#include "ScriptedReports.h"

#include <algorithm>
#include <array>
#include <cstring>
#include <gtest/gtest.h>
#include <hidapi.h>
#include <memory>
#include <vector>

namespace {

constexpr DWORD kLength = 64;
constexpr int kTimeoutMs = 100;

/// What the next calls return, and with what they were made.
struct Script
{
    bool isPending = false; ///< a transfer does not end within its call
    DWORD waitResult = WAIT_OBJECT_0;
    int reads = 0;
    std::vector<DWORD> waits;      ///< time-outs
    std::vector<bool> resultWaits; ///< whether GetOverlappedResult() was to wait
};

Script* script = nullptr;

BOOL transfer(LPDWORD transferred)
{
    if (script->isPending) {
        ::SetLastError(ERROR_IO_PENDING);
        return FALSE;
    }
    if (transferred)
        *transferred = kLength;
    return TRUE;
}

} // namespace

BOOL scriptedReadFile(HANDLE, LPVOID buffer, DWORD size, LPDWORD read, LPOVERLAPPED)
{
    ++script->reads;
    std::memset(buffer, 0x5A, size);
    return transfer(read);
}

BOOL scriptedWriteFile(HANDLE, LPCVOID, DWORD, LPDWORD written, LPOVERLAPPED)
{
    return transfer(written);
}

DWORD scriptedWait(HANDLE, DWORD milliseconds)
{
    script->waits.push_back(milliseconds);
    return script->waitResult;
}

BOOL scriptedResult(HANDLE, LPOVERLAPPED, LPDWORD transferred, BOOL wait)
{
    script->resultWaits.push_back(wait != FALSE);
    *transferred = kLength;
    return TRUE;
}

/// How the library of the Windows program waits for a report.
class HidApiTest : public testing::Test
{
protected:
    HidApiTest() { script = &m_script; }
    ~HidApiTest() override { script = nullptr; }

    int read(int timeoutMs)
    {
        return hid_read_timeout(m_device.get(), m_report.data(), m_report.size(), timeoutMs);
    }
    int write() { return hid_write(m_device.get(), m_report.data(), m_report.size()); }

    Script m_script;

private:
    struct Close
    {
        void operator()(hid_device* device) const { hid_close(device); }
    };

    std::unique_ptr<hid_device, Close> m_device{scriptedDevice()};
    std::array<unsigned char, kLength> m_report{1};
};

TEST_F(HidApiTest, AnswerThatIsThereIsNotWaitedFor)
{
    EXPECT_EQ(read(kTimeoutMs), int(kLength));
    EXPECT_TRUE(m_script.waits.empty());
}

/// The event resets itself when it was waited for. Whoever waits for it again waits for nothing.
TEST_F(HidApiTest, AnswerIsWaitedForOnce)
{
    m_script.isPending = true;
    EXPECT_EQ(read(kTimeoutMs), int(kLength));
    EXPECT_EQ(m_script.waits, std::vector<DWORD>{kTimeoutMs});
    EXPECT_EQ(m_script.resultWaits, std::vector<bool>{false});
}

TEST_F(HidApiTest, ReadWithoutATimeOutWaitsAsLongAsItTakes)
{
    m_script.isPending = true;
    EXPECT_EQ(read(-1), int(kLength));
    EXPECT_EQ(m_script.waits, std::vector<DWORD>{INFINITE});
    EXPECT_EQ(m_script.resultWaits, std::vector<bool>{false});
}

TEST_F(HidApiTest, LateAnswerIsTakenByTheNextRead)
{
    m_script.isPending = true;
    m_script.waitResult = WAIT_TIMEOUT;
    EXPECT_EQ(read(kTimeoutMs), 0);
    EXPECT_TRUE(m_script.resultWaits.empty());
    m_script.waitResult = WAIT_OBJECT_0;
    EXPECT_EQ(read(kTimeoutMs), int(kLength));
    EXPECT_EQ(m_script.reads, 1);
}

TEST_F(HidApiTest, WriteThatEndsAtOnceHasSucceeded)
{
    EXPECT_EQ(write(), int(kLength));
    EXPECT_TRUE(m_script.waits.empty());
}

TEST_F(HidApiTest, WriteIsWaitedForOneSecond)
{
    m_script.isPending = true;
    EXPECT_EQ(write(), int(kLength));
    EXPECT_EQ(m_script.waits, std::vector<DWORD>{1000});
    EXPECT_EQ(m_script.resultWaits, std::vector<bool>{false});
    m_script.waitResult = WAIT_TIMEOUT;
    EXPECT_EQ(write(), -1);
}
