#include "FirmwareFile.h"

#include <gtest/gtest.h>
#include <qt_windows.h>
#include <QTemporaryDir>
#include <QTextCodec>

namespace {

/// A file on the disk whose name is exactly this.
QString makeFile(const QTemporaryDir& directory, const QString& name)
{
    QFile file(directory.filePath(name));
    EXPECT_TRUE(file.open(QIODevice::WriteOnly));
    file.write("firmware");
    return file.fileName();
}

const QTextCodec& gb2312()
{
    return *QTextCodec::codecForName("GB2312");
}

} // namespace

TEST(FirmwareFile, AsciiPathOpens)
{
    const QTemporaryDir directory;
    const QString path = makeFile(directory, QStringLiteral("update 1.bin"));
    QFile file;
    ASSERT_TRUE(FirmwareFile::open(file, path, gb2312()));
    EXPECT_EQ(file.size(), 8);
    EXPECT_EQ(file.readAll(), QByteArray("firmware"));
}

TEST(FirmwareFile, MissingFileDoesNotOpen)
{
    const QTemporaryDir directory;
    QFile file;
    EXPECT_FALSE(
        FirmwareFile::open(file, directory.filePath(QStringLiteral("none.bin")), gb2312()));
    EXPECT_FALSE(file.isOpen());
}

TEST(FirmwareFile, BytesOfTheNameAreTheSystemsToRead)
{
    // The codec's bytes name this file where the system's code page is the codec's, and a file of
    // another name anywhere else.
    const QTemporaryDir directory;
    const QString path = makeFile(directory, QStringLiteral("固件.bin"));
    QFile file;
    constexpr UINT simplifiedChinese = 936;
    EXPECT_EQ(FirmwareFile::open(file, path, gb2312()), ::GetACP() == simplifiedChinese);
}
