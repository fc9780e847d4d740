#include "DownloadFile.h"
#include "ScriptedDisk.h"

#include <cerrno>
#include <gtest/gtest.h>
#include <QDir>
#include <QFile>
#include <QProcess>
#include <QTemporaryDir>

using Brivane::DownloadFile;

namespace {

class DownloadFileTest : public ::testing::Test
{
protected:
    void put(const QByteArray& text)
    {
        QFile file(m_path);
        ASSERT_TRUE(file.open(QIODevice::WriteOnly));
        ASSERT_EQ(file.write(text), text.size());
    }
    QByteArray content() const
    {
        QFile file(m_path);
        return file.open(QIODevice::ReadOnly) ? file.readAll() : QByteArray("no file");
    }
    QStringList files() const
    {
        return QDir(m_directory.path()).entryList(QDir::Files | QDir::Hidden);
    }

    QTemporaryDir m_directory;
    QString m_path = m_directory.filePath("package \xe6\x96\xb0.bin");
};

} // namespace

TEST_F(DownloadFileTest, HasItsNameAfterCommit)
{
    DownloadFile file;
    ASSERT_TRUE(file.open(m_path.toStdString()));
    EXPECT_TRUE(file.write("who", 3));
    EXPECT_TRUE(file.write("le", 2));
    EXPECT_FALSE(QFile::exists(m_path));
    const int before = ScriptedDisk::calls();
    EXPECT_TRUE(file.commit());
    EXPECT_GT(ScriptedDisk::calls(), before);
    EXPECT_EQ(content(), "whole");
}

TEST_F(DownloadFileTest, LeavesNothingWithoutCommit)
{
    put("before");
    {
        DownloadFile file;
        ASSERT_TRUE(file.open(m_path.toStdString()));
        EXPECT_TRUE(file.write("half", 4));
    }
    EXPECT_EQ(content(), "before");
    EXPECT_EQ(files().size(), 1);
}

TEST_F(DownloadFileTest, LeavesNothingWhenDiscarded)
{
    DownloadFile file;
    file.discard();
    ASSERT_TRUE(file.open(m_path.toStdString()));
    EXPECT_TRUE(file.write("half", 4));
    file.discard();
    EXPECT_EQ(files(), QStringList());
}

TEST_F(DownloadFileTest, AnErrorOfTheFlushIsAnError)
{
    for (const int error : {ENOSPC, EIO, EFBIG}) {
        put("before");
        const ScriptedDisk disk(error);
        DownloadFile file;
        ASSERT_TRUE(file.open(m_path.toStdString()));
        EXPECT_TRUE(file.write("whole", 5));
        EXPECT_FALSE(file.commit());
        EXPECT_EQ(file.errorText(), "The file could not be written: It did not get onto the disk.");
        EXPECT_EQ(content(), "before");
        EXPECT_EQ(files().size(), 1);
    }
}

TEST_F(DownloadFileTest, AFileSystemWithoutFlushIsNoError)
{
    const ScriptedDisk disk(EINVAL);
    DownloadFile file;
    ASSERT_TRUE(file.open(m_path.toStdString()));
    EXPECT_TRUE(file.write("whole", 5));
    EXPECT_TRUE(file.commit());
    EXPECT_EQ(content(), "whole");
}

TEST_F(DownloadFileTest, RefusesWhatIsNotAFile)
{
    const std::string directory = m_directory.path().toStdString();
    for (const std::string& path : {std::string(), directory, directory + "/missing/file",
                                    QProcess::nullDevice().toStdString()}) {
        DownloadFile file;
        EXPECT_FALSE(file.open(path)) << path;
        EXPECT_EQ(file.errorText().find("The file could not be written: "), 0U);
    }
}
