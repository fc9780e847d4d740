#include "DownloadFile.h"
#include "HeldByAnother.h"
#include "HeldFile.h"

#include <gtest/gtest.h>
#include <QDir>
#include <QElapsedTimer>
#include <QFile>
#include <QTemporaryDir>

using Brivane::DownloadFile;
using namespace std::chrono_literals;

namespace {

class DownloadFileHeld : public testing::Test
{
protected:
    void SetUp() override { ASSERT_TRUE(m_file.open(m_path.toStdString())); }

    void write() { ASSERT_TRUE(m_file.write("whole", 5)); }
    [[nodiscard]] QByteArray content() const
    {
        QFile file(m_path);
        return file.open(QIODevice::ReadOnly) ? file.readAll() : QByteArray("no file");
    }
    [[nodiscard]] QStringList files() const
    {
        return QDir(m_directory.path()).entryList(QDir::Files | QDir::Hidden);
    }

    QTemporaryDir m_directory;
    QString m_path = m_directory.filePath(QStringLiteral("setup.exe"));
    DownloadFile m_file;
};

} // namespace

TEST_F(DownloadFileHeld, ScannerOfTheNewFileIsWaitedFor)
{
    write();
    const HeldByAnother scanner(m_directory.filePath(files().constFirst()),
                                FILE_SHARE_READ | FILE_SHARE_WRITE, 700ms);
    ASSERT_TRUE(scanner.isHeld());
    EXPECT_TRUE(m_file.commit());
    EXPECT_EQ(content(), "whole");
    EXPECT_EQ(files(), QStringList("setup.exe"));
}

TEST_F(DownloadFileHeld, ProgramThatHoldsTheOldFileIsWaitedFor)
{
    QFile before(m_path);
    ASSERT_TRUE(before.open(QIODevice::WriteOnly));
    before.close();
    write();
    const HeldByAnother scanner(m_path, 0, 700ms);
    ASSERT_TRUE(scanner.isHeld());
    EXPECT_TRUE(m_file.commit());
    EXPECT_EQ(content(), "whole");
}

TEST_F(DownloadFileHeld, WaitEndsAfterSomeSeconds)
{
    write();
    const HeldByAnother scanner(m_directory.filePath(files().constFirst()),
                                FILE_SHARE_READ | FILE_SHARE_WRITE, 8s);
    ASSERT_TRUE(scanner.isHeld());
    QElapsedTimer elapsed;
    elapsed.start();
    EXPECT_FALSE(m_file.commit());
    EXPECT_GE(elapsed.elapsed(), 5000);
    EXPECT_LT(elapsed.elapsed(), 8000);
    EXPECT_EQ(content(), "no file");
    EXPECT_EQ(m_file.errorText().find("The file could not be written: "), 0U);
}

TEST_F(DownloadFileHeld, HeldFileIsRecognised)
{
    write();
    ASSERT_TRUE(m_file.commit());
    EXPECT_FALSE(HeldFile::isHeld(m_path));
    EXPECT_FALSE(HeldFile::isHeld(m_directory.filePath(QStringLiteral("none"))));
    {
        const HeldByAnother scanner(m_path, 0, 100ms);
        ASSERT_TRUE(scanner.isHeld());
        EXPECT_TRUE(HeldFile::isHeld(m_path));
    }
    EXPECT_FALSE(HeldFile::isHeld(m_path));
    const HeldByAnother reader(m_path, FILE_SHARE_READ, 100ms);
    EXPECT_FALSE(HeldFile::isHeld(m_path)); // both can read it
}
