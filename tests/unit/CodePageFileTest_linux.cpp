#include "CodePageFile.h"
#include "FirmwareImage.h"

#include <gtest/gtest.h>
#include <QTemporaryDir>
#include <QTextCodec>

TEST(CodePageFile, PathWithChineseCharactersOpens)
{
    const QTemporaryDir directory;
    const QString path = directory.filePath(QStringLiteral("固件.bin"));
    QFile made(path);
    ASSERT_TRUE(made.open(QIODevice::WriteOnly));
    made.write("firmware");
    made.close();

    QFile file;
    ASSERT_TRUE(CodePageFile::open(file, path, *QTextCodec::codecForName("GB2312")));
    EXPECT_EQ(file.readAll(), QByteArray("firmware"));
}

TEST(FirmwareImageLinux, PathOutsideTheCodePageOpens)
{
    const QTemporaryDir directory;
    const QString path = directory.filePath(QStringLiteral("ひ😀é.bin"));
    QFile made(path);
    ASSERT_TRUE(made.open(QIODevice::WriteOnly));
    made.write("firmware");
    made.close();
    EXPECT_EQ(FirmwareImage::read(path), std::optional<QByteArray>("firmware"));
}

TEST(FirmwareImageLinux, FileThatEndsBeforeItsSizeIsRefused)
{
    // The kernel gives the files of this folder the size of a page, and they end much earlier.
    const QString path = QStringLiteral("/sys/devices/system/cpu/online");
    QFile file(path);
    ASSERT_TRUE(file.open(QIODevice::ReadOnly));
    ASSERT_LT(file.readAll().size(), file.size());
    EXPECT_EQ(FirmwareImage::read(path), std::nullopt);
}
