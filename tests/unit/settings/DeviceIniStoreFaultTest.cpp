#include "DeviceIniStoreTest.h"

#include "FileLock.h"
#include "FileSizeLimit.h"
#include "QtPrinters.h"

#include <chrono>
#include <fcntl.h>
#include <memory>
#include <sched.h>
#include <sys/mount.h>
#include <sys/stat.h>
#include <unistd.h>

namespace {

constexpr uid_t kNobody = 65534;

const QString kFirst = QStringLiteral("SN1");
const QString kSecond = QStringLiteral("SN2");

/// While it exists, file permissions apply to the process even when root runs it.
class WithoutPrivileges
{
public:
    WithoutPrivileges()
        : m_root(geteuid() == 0 && seteuid(kNobody) == 0)
    {
    }
    ~WithoutPrivileges() { EXPECT_TRUE(!m_root || seteuid(0) == 0); }
    WithoutPrivileges(const WithoutPrivileges&) = delete;
    WithoutPrivileges& operator=(const WithoutPrivileges&) = delete;

private:
    bool m_root;
};

/// Mounts a disk of 64 KiB over a directory, for this process only.
class SmallDisk
{
public:
    explicit SmallDisk(const QString& path)
        : m_path(QFile::encodeName(path))
    {
        m_mounted = unshare(CLONE_NEWNS) == 0 &&
                    mount(nullptr, "/", nullptr, MS_REC | MS_PRIVATE, nullptr) == 0 &&
                    mount("tmpfs", m_path.constData(), "tmpfs", 0, "size=64k") == 0;
    }
    ~SmallDisk() { EXPECT_TRUE(!m_mounted || umount(m_path.constData()) == 0); }
    SmallDisk(const SmallDisk&) = delete;
    SmallDisk& operator=(const SmallDisk&) = delete;

    [[nodiscard]] bool isMounted() const { return m_mounted; }

    /// Fills the disk except for @p freePages of 4 KiB.
    void fill(int freePages) const
    {
        const QByteArray block(4096, 'x');
        const int filler = open(fillerPath().constData(), O_WRONLY | O_CREAT, 0600);
        off_t size = 0;
        for (ssize_t n = 0; (n = write(filler, block.constData(), size_t(block.size()))) > 0;)
            size += n;
        EXPECT_EQ(ftruncate(filler, size - off_t(freePages) * block.size()), 0);
        close(filler);
    }
    void empty() const { EXPECT_EQ(unlink(fillerPath().constData()), 0); }

private:
    [[nodiscard]] QByteArray fillerPath() const { return m_path + "/filler"; }

    QByteArray m_path;
    bool m_mounted = false;
};

} // namespace

class DeviceIniStoreFaultTest : public DeviceIniStoreTest
{
protected:
    void SetUp() override
    {
        DeviceIniStoreTest::SetUp();
        ASSERT_TRUE(m_store.write(kFirst, pictureOf(100)));
        m_before = contents();
        ASSERT_EQ(chmod(m_home.path().toLocal8Bit().constData(), 0755), 0);
    }

    void expectUntouched() const
    {
        EXPECT_EQ(contents(), m_before);
        EXPECT_EQ(m_store.read(kFirst), pictureOf(100));
        EXPECT_EQ(files(), QStringList{QStringLiteral("device.ini")});
    }

    QByteArray m_before;
};

TEST_F(DeviceIniStoreFaultTest, FileThatCannotGrowKeepsWhatWasSaved)
{
    for (const int limit : {0, 1, m_before.size(), m_before.size() + 10}) {
        {
            const FileSizeLimit full(static_cast<rlim_t>(limit));
            EXPECT_FALSE(m_store.write(kSecond, pictureOf(120))) << limit;
        }
        expectUntouched();
    }
}

TEST_F(DeviceIniStoreFaultTest, FullDiskKeepsWhatWasSaved)
{
    const SmallDisk disk(m_location);
    if (!disk.isMounted())
        GTEST_SKIP() << "needs the right to mount";
    ASSERT_TRUE(m_store.write(kFirst, pictureOf(100)));
    disk.fill(0);
    EXPECT_FALSE(m_store.write(kFirst, pictureOf(110)));
    EXPECT_FALSE(m_store.write(kSecond, pictureOf(120)));
    EXPECT_EQ(contents(), m_before);
    EXPECT_EQ(files(), (QStringList{QStringLiteral("device.ini"), QStringLiteral("filler")}));
    disk.empty();
    EXPECT_TRUE(m_store.write(kSecond, pictureOf(120)));
}

TEST_F(DeviceIniStoreFaultTest, NeedsNoTemporaryDirectory)
{
    const QByteArray previous = qgetenv("TMPDIR");
    qputenv("TMPDIR", "/nonexistent");
    EXPECT_EQ(m_store.read(kFirst), pictureOf(100));
    EXPECT_TRUE(m_store.write(kSecond, pictureOf(120)));
    EXPECT_EQ(m_store.read(kSecond), pictureOf(120));
    if (previous.isNull())
        qunsetenv("TMPDIR");
    else
        qputenv("TMPDIR", previous);
}

TEST_F(DeviceIniStoreFaultTest, ReadingNeedsNoWritableDirectory)
{
    ASSERT_EQ(chmod(m_location.toLocal8Bit().constData(), 0555), 0);
    ASSERT_EQ(chmod(m_path.toLocal8Bit().constData(), 0444), 0);
    {
        const WithoutPrivileges user;
        EXPECT_EQ(m_store.read(kFirst), pictureOf(100));
    }
    ASSERT_EQ(chmod(m_location.toLocal8Bit().constData(), 0755), 0);
    expectUntouched();
}

TEST_F(DeviceIniStoreFaultTest, SaveDuringAnotherProgramsSaveFails)
{
    auto other = std::make_unique<FileLock>();
    ASSERT_TRUE(other->acquire(m_path + QStringLiteral(".lock"), std::chrono::seconds(0)));
    EXPECT_FALSE(m_store.write(kFirst, pictureOf(130)));
    EXPECT_EQ(m_store.read(kFirst), pictureOf(100));
    other.reset();
    EXPECT_TRUE(m_store.write(kFirst, pictureOf(130)));
    EXPECT_EQ(m_store.read(kFirst), pictureOf(130));
}

TEST_F(DeviceIniStoreFaultTest, ReadOnlyDirectoryKeepsWhatWasSaved)
{
    ASSERT_EQ(chmod(m_location.toLocal8Bit().constData(), 0555), 0);
    {
        const WithoutPrivileges user;
        EXPECT_FALSE(m_store.write(kFirst, pictureOf(120)));
        EXPECT_FALSE(m_store.write(kSecond, pictureOf(120)));
    }
    ASSERT_EQ(chmod(m_location.toLocal8Bit().constData(), 0755), 0);
    expectUntouched();
}

TEST_F(DeviceIniStoreFaultTest, FileThatCannotBeReadIsNotReplaced)
{
    ASSERT_EQ(chmod(m_path.toLocal8Bit().constData(), 0), 0);
    ASSERT_EQ(chmod(m_location.toLocal8Bit().constData(), 0777), 0);
    {
        const WithoutPrivileges user;
        EXPECT_EQ(m_store.read(kFirst), std::nullopt);
        EXPECT_FALSE(m_store.write(kSecond, pictureOf(120)));
    }
    ASSERT_EQ(chmod(m_path.toLocal8Bit().constData(), 0600), 0);
    expectUntouched();
}

TEST_F(DeviceIniStoreFaultTest, PipeOfThatNameFailsTheSave)
{
    ASSERT_TRUE(QFile::remove(m_path));
    ASSERT_EQ(mkfifo(m_path.toLocal8Bit().constData(), 0600), 0);
    EXPECT_EQ(m_store.read(kFirst), std::nullopt);
    EXPECT_FALSE(m_store.write(kFirst, pictureOf(120)));
}

TEST_F(DeviceIniStoreFaultTest, FailedSaveIsNotRepeatedLater)
{
    {
        const FileSizeLimit full(0);
        EXPECT_FALSE(m_store.write(kFirst, pictureOf(170)));
        EXPECT_FALSE(m_store.write(kSecond, pictureOf(120)));
    }
    ASSERT_TRUE(m_store.write(QStringLiteral("SN3"), pictureOf(130)));
    EXPECT_EQ(m_store.read(kFirst), pictureOf(100));
    EXPECT_EQ(m_store.read(kSecond), std::nullopt);
}
