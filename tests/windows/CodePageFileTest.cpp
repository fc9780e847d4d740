#include "CodePageFile.h"

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

TEST(CodePageFile, AsciiPathOpens)
{
    const QTemporaryDir directory;
    const QString path = makeFile(directory, QStringLiteral("update 1.bin"));
    QFile file;
    ASSERT_TRUE(CodePageFile::open(file, path, gb2312()));
    EXPECT_EQ(file.size(), 8);
    EXPECT_EQ(file.readAll(), QByteArray("firmware"));
}

TEST(CodePageFile, MissingFileDoesNotOpen)
{
    const QTemporaryDir directory;
    QFile file;
    EXPECT_FALSE(
        CodePageFile::open(file, directory.filePath(QStringLiteral("none.bin")), gb2312()));
    EXPECT_FALSE(file.isOpen());
}

TEST(CodePageFile, PathOutsideTheCodePageDoesNotOpen)
{
    const QTemporaryDir directory;
    const QString path = makeFile(directory, QStringLiteral("ひ😀.bin"));
    QFile file;
    EXPECT_FALSE(CodePageFile::open(file, path, gb2312()));
}

TEST(CodePageFile, BytesOfTheNameAreTheSystemsToRead)
{
    // The codec's bytes are the name of this file where the system uses the same code page;
    // elsewhere they are another name.
    const QTemporaryDir directory;
    const QString path = makeFile(directory, QStringLiteral("固件.bin"));
    QFile file;
    constexpr UINT simplifiedChinese = 936;
    EXPECT_EQ(CodePageFile::open(file, path, gb2312()), ::GetACP() == simplifiedChinese);
}
