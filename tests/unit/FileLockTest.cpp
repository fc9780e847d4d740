#include "FileLock.h"

#include <future>
#include <gtest/gtest.h>
#include <memory>
#include <QFile>
#include <QTemporaryDir>

namespace {

using std::chrono::milliseconds;

constexpr milliseconds kNoWait{0};
constexpr milliseconds kLongWait{20000};

class FileLockTest : public ::testing::Test
{
protected:
    [[nodiscard]] QString path() const { return m_folder.filePath("some.lock"); }

private:
    QTemporaryDir m_folder;
};

TEST_F(FileLockTest, SecondOneIsRefusedUntilTheFirstEnds)
{
    auto first = std::make_unique<FileLock>();
    ASSERT_TRUE(first->acquire(path(), kNoWait));
    FileLock second;
    EXPECT_FALSE(second.acquire(path(), milliseconds(5)));
    first.reset();
    EXPECT_TRUE(second.acquire(path(), kNoWait));
}

TEST_F(FileLockTest, WaitEndsWithTheOwner)
{
    auto first = std::make_unique<FileLock>();
    ASSERT_TRUE(first->acquire(path(), kNoWait));
    auto second =
        std::async(std::launch::async, [this] { return FileLock().acquire(path(), kLongWait); });
    first.reset();
    EXPECT_TRUE(second.get());
}

TEST_F(FileLockTest, LeavesNoFile)
{
    {
        FileLock lock;
        ASSERT_TRUE(lock.acquire(path(), kNoWait));
        EXPECT_TRUE(QFile::exists(path()));
    }
    EXPECT_FALSE(QFile::exists(path()));
}

TEST_F(FileLockTest, FileOfADeadOwnerIsNoLock)
{
    QFile left(path());
    ASSERT_TRUE(left.open(QIODevice::WriteOnly));
    left.close();
    FileLock lock;
    EXPECT_TRUE(lock.acquire(path(), kNoWait));
}

TEST_F(FileLockTest, FolderThatIsMissingIsNotWaitedFor)
{
    FileLock lock;
    EXPECT_FALSE(lock.acquire(path() + "/missing/some.lock", kLongWait));
}

TEST_F(FileLockTest, OnlyOneOfManyHasIt)
{
    int count = 0; // without a guard of its own
    const auto work = [&] {
        for (int i = 0; i < 500; ++i) {
            FileLock lock;
            if (!lock.acquire(path(), kLongWait))
                return false;
            ++count;
        }
        return true;
    };
    auto other = std::async(std::launch::async, work);
    EXPECT_TRUE(work());
    EXPECT_TRUE(other.get());
    EXPECT_EQ(count, 1000);
}

} // namespace
