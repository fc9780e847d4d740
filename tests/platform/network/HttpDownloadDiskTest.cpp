#include "FileSizeLimit.h"
#include "HttpDownloadTest.h"
#include "HttpError.h"

#include <gmock/gmock.h>
#include <QDir>
#include <QFileInfo>
#include <sys/mount.h>

using namespace Brivane;

TEST_F(HttpDownloadTest, AFileThatMayNotGrowIsAnError)
{
    const FileSizeLimit limit(1'000'000);
    const Outcome outcome = run(download(m_url));
    EXPECT_EQ(outcome.code(), HttpError::FileError);
    EXPECT_THAT(outcome.end().text, ::testing::HasSubstr("could not be written"));
    EXPECT_EQ(filesLeft(), QStringList());
}

TEST_F(HttpDownloadTest, AFullDiskIsAnError)
{
    const QByteArray disk = m_directory.path().toUtf8() + "/disk";
    ASSERT_TRUE(QDir().mkpath(disk));
    if (mount("none", disk.constData(), "tmpfs", 0, "size=1M") != 0)
        GTEST_SKIP() << "needs the right to mount a small disk";
    const auto request = download(m_url);
    request->savePath = disk.toStdString() + "/firmware.bin";
    EXPECT_EQ(run(request).code(), HttpError::FileError);
    EXPECT_EQ(QDir(disk).entryList(QDir::Files), QStringList());
    EXPECT_EQ(umount(disk.constData()), 0);
}

TEST_F(HttpDownloadTest, ADirectoryThatGoesAwayIsAnError)
{
    const QString directory = m_directory.filePath("there");
    ASSERT_TRUE(QDir().mkpath(directory));
    const auto request = download(m_url);
    request->savePath = (directory + "/firmware.bin").toStdString();
    Outcome outcome;
    outcome.listenToDownload(*request, [directory](std::int32_t percent) {
        if (percent == 100)
            QDir(directory).removeRecursively();
    });
    send(request);
    ASSERT_TRUE(serveUntil([&outcome] { return outcome.ended(); }));
    EXPECT_EQ(outcome.code(), HttpError::FileError);
    EXPECT_FALSE(QFile::exists(directory));
}

TEST_F(HttpDownloadTest, ADeviceIsNotReplaced)
{
    const auto request = download(m_url);
    request->savePath = "/dev/full";
    EXPECT_EQ(run(request).code(), HttpError::FileError);
    EXPECT_FALSE(QFileInfo("/dev/full").isFile());
}
