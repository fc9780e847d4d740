#include "InstanceLock.h"

#include <gtest/gtest.h>
#include <memory>
#include <QDir>
#include <QFile>
#include <QFileInfo>
#include <QTemporaryDir>

namespace {

using Result = InstanceLock::Result;

class InstanceLockTest : public testing::Test
{
protected:
    [[nodiscard]] QString path() const { return m_directory.filePath("test.lock"); }
    void write(const QByteArray& content) const
    {
        QFile file(path());
        ASSERT_TRUE(file.open(QIODevice::WriteOnly | QIODevice::Truncate));
        file.write(content);
    }

    QTemporaryDir m_directory;
};

} // namespace

TEST_F(InstanceLockTest, IsTakenWhenThereIsNoFile)
{
    InstanceLock lock(path());
    EXPECT_EQ(lock.take(), Result::Taken);
    EXPECT_TRUE(QFileInfo::exists(path()));
}

TEST_F(InstanceLockTest, IsHeldByOneAtATime)
{
    auto first = std::make_unique<InstanceLock>(path());
    ASSERT_EQ(first->take(), Result::Taken);
    InstanceLock second(path());
    EXPECT_EQ(second.take(), Result::HeldByOther);
    first.reset();
    EXPECT_EQ(second.take(), Result::Taken);
}

TEST_F(InstanceLockTest, EmptyFileThatNobodyHoldsIsReplaced)
{
    write({});
    EXPECT_EQ(InstanceLock(path()).take(), Result::Taken);
}

TEST_F(InstanceLockTest, DamagedFileThatNobodyHoldsIsReplaced)
{
    write("\xFF no lock\n\n");
    EXPECT_EQ(InstanceLock(path()).take(), Result::Taken);
}

TEST_F(InstanceLockTest, LockOfADeadProcessUnderAnotherHostNameIsReplaced)
{
    write("4194304\nMarvikTools\nold-name\n");
    EXPECT_EQ(InstanceLock(path()).take(), Result::Taken);
}

TEST_F(InstanceLockTest, MissingFolderMakesItUnusable)
{
    const QString missing = m_directory.filePath("missing/test.lock");
    InstanceLock lock(missing);
    EXPECT_EQ(lock.take(), Result::Unusable);
    EXPECT_TRUE(lock.problem().contains(missing));
}

TEST_F(InstanceLockTest, FileThatCannotBeRemovedMakesItUnusable)
{
    ASSERT_TRUE(QDir().mkpath(path()));
    EXPECT_EQ(InstanceLock(path()).take(), Result::Unusable);
}
