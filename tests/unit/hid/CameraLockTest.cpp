#include "CameraLock.h"
#include "HidTest.h"
#include "UVCHid.h"

#include <future>
#include <gtest/gtest.h>
#include <QProcess>

namespace {

using std::chrono::milliseconds;
using Clock = std::chrono::steady_clock;
using Use = CameraLock::Use;

constexpr milliseconds kNoWait{0};
constexpr milliseconds kLongWait{20000};
constexpr int kProcessLimitMs = 20000;
const QByteArray kCamera = "/dev/hidraw7";

/// Another program that takes the lock of the camera, or ends when it is refused.
class OtherProgram
{
public:
    explicit OtherProgram(const char* use)
    {
        m_process.start(QStringLiteral(LOCK_HOLDER), {QString::fromLatin1(kCamera), use});
        // Its first line, or its end.
        if (!m_process.waitForReadyRead(kProcessLimitMs))
            m_process.waitForFinished(kProcessLimitMs);
    }
    ~OtherProgram() { kill(); }

    void kill()
    {
        m_process.kill();
        m_process.waitForFinished(kProcessLimitMs);
    }
    void end()
    {
        m_process.closeWriteChannel();
        m_process.waitForFinished(kProcessLimitMs);
    }
    [[nodiscard]] bool isOwner() const { return m_process.state() == QProcess::Running; }
    [[nodiscard]] qint64 id() const { return m_process.processId(); }

private:
    QProcess m_process;
};

TEST(CameraLock, OtherProgramIsRefusedUntilTheRelease)
{
    CameraLock lock;
    EXPECT_FALSE(lock.isHeld());
    ASSERT_TRUE(lock.acquire(kCamera, Use::Exchange, kNoWait));
    EXPECT_TRUE(lock.isHeld());
    EXPECT_FALSE(OtherProgram("exchange").isOwner());
    lock.release();
    EXPECT_FALSE(lock.isHeld());
    EXPECT_TRUE(OtherProgram("exchange").isOwner());
}

TEST(CameraLock, OtherCameraHasALockOfItsOwn)
{
    const OtherProgram other("exchange");
    ASSERT_TRUE(other.isOwner());
    CameraLock lock;
    EXPECT_TRUE(lock.acquire("/dev/hidraw8", Use::Exchange, kNoWait));
}

TEST(CameraLock, ProgramThatHoldsItIsNotRefused)
{
    CameraLock transfer;
    ASSERT_TRUE(transfer.acquire(kCamera, Use::Firmware, kNoWait));
    std::async(std::launch::async, [] {
        CameraLock exchange;
        EXPECT_TRUE(exchange.acquire(kCamera, Use::Exchange, kNoWait));
    }).get();
    EXPECT_FALSE(OtherProgram("exchange").isOwner()) << "the exchange ends no transfer";
}

TEST(CameraLock, RefusalNamesTheOwner)
{
    const OtherProgram other("exchange");
    CameraLock lock;
    ASSERT_FALSE(lock.acquire(kCamera, Use::Exchange, milliseconds(5)));
    EXPECT_EQ(lock.holder().process, other.id());
    EXPECT_EQ(lock.holder().program, QStringLiteral("LockHolder"));
    EXPECT_EQ(lock.holder().use, Use::Exchange);
    EXPECT_EQ(lock.holder().toString(), QStringLiteral("LockHolder (process %1)").arg(other.id()));
}

TEST(CameraLock, WaitEndsWhenTheOwnerReleases)
{
    OtherProgram other("exchange");
    std::promise<void> waiting;
    auto acquired = std::async(std::launch::async, [&waiting] {
        CameraLock lock;
        waiting.set_value();
        return lock.acquire(kCamera, Use::Exchange, kLongWait);
    });
    waiting.get_future().wait();
    other.end();
    EXPECT_TRUE(acquired.get());
}

TEST(CameraLock, FirmwareTransferIsNotWaitedFor)
{
    const OtherProgram other("firmware");
    CameraLock lock;
    const auto start = Clock::now();
    EXPECT_FALSE(lock.acquire(kCamera, Use::Exchange, kLongWait));
    EXPECT_FALSE(lock.acquire(kCamera, Use::Exchange, kLongWait)) << "a refusal changes nothing";
    EXPECT_LT(Clock::now() - start, kLongWait);
    EXPECT_EQ(lock.holder().use, Use::Firmware);
}

TEST(CameraLock, DeadOwnerLeavesNothingBehind)
{
    OtherProgram other("firmware");
    other.kill();
    CameraLock lock;
    EXPECT_TRUE(lock.acquire(kCamera, Use::Exchange, kNoWait));
}

TEST(CameraLock, TransferBeforeIsNotTakenForTheOwner)
{
    OtherProgram("firmware").end();
    const OtherProgram other("exchange");
    CameraLock lock;
    ASSERT_FALSE(lock.acquire(kCamera, Use::Exchange, kNoWait));
    EXPECT_EQ(lock.holder().use, Use::Exchange);
}

TEST(CameraLock, UnknownOwnerHasAName)
{
    EXPECT_EQ(CameraLock::Holder().toString(), QStringLiteral("another program"));
}

/// With a scripted HID library.
class LockedCamera : public HidTest
{
};

TEST_F(LockedCamera, CommandsAreNotSent)
{
    const OtherProgram other("firmware");
    hidapi.plugIn(camera(kCamera));
    UVCHid hid;
    ASSERT_TRUE(hid.createHandleWithPath(QString::fromLatin1(kCamera)));

    EXPECT_EQ(hid.readSetting(DeviceSetting::CameraView), std::nullopt);
    EXPECT_TRUE(hid.wasSilent()) << "it is not asked for the other settings";
    EXPECT_FALSE(hid.writeSetting(DeviceSetting::CameraView, 90));
    EXPECT_FALSE(UVCHid::getCameraConnectionStatus(kCamera.constData(), 0, 0));
    EXPECT_EQ(hidapi.calls().filter("hid_write"), QStringList());
}

TEST_F(LockedCamera, ItsOwnerSendsCommandsUntilItUnlocks)
{
    hidapi.plugIn(camera(kCamera));
    UVCHid owner;
    const QString path = QString::fromLatin1(kCamera);
    ASSERT_TRUE(owner.lock(path, kNoWait));
    ASSERT_TRUE(owner.createHandleWithPath(path));
    const auto isSent = [&] {
        const int before = hidapi.calls().filter("hid_write").size();
        owner.writeSetting(DeviceSetting::CameraView, 90);
        return hidapi.calls().filter("hid_write").size() > before;
    };
    EXPECT_TRUE(isSent());
    EXPECT_FALSE(OtherProgram("exchange").isOwner());
    owner.unlock();
    const OtherProgram other("exchange");
    ASSERT_TRUE(other.isOwner());
    EXPECT_FALSE(isSent());
}

} // namespace
