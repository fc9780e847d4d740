#include "CodePageFile.h"

#include <algorithm>
#include <cwchar>
#include <gtest/gtest.h>
#include <QDir>
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

bool volumeKeepsShortNames = true;

/// As the system's function, and with the switch above as on a volume without short names, where it
/// returns the path that it was given.
DWORD WINAPI shortPathName(LPCWSTR path, LPWSTR out, DWORD size)
{
    using Function = DWORD(WINAPI*)(LPCWSTR, LPWSTR, DWORD);
    static const auto ofTheSystem = reinterpret_cast<Function>(reinterpret_cast<void*>(
        ::GetProcAddress(::GetModuleHandleW(L"kernel32"), "GetShortPathNameW")));
    if (volumeKeepsShortNames)
        return ofTheSystem(path, out, size);
    const auto length = static_cast<DWORD>(std::wcslen(path));
    if (size <= length)
        return length + 1;
    std::copy_n(path, length + 1, out);
    return length;
}

} // namespace

/// The pointer through which the product's code calls the system's function: with it defined here,
/// the linker does not take the one of the import library.
extern "C" decltype(&shortPathName) __imp_GetShortPathNameW;
decltype(&shortPathName) __imp_GetShortPathNameW = &shortPathName;

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

/// Names of users: a folder of the image is named after the one who installs it.
class CodePageFileName : public testing::TestWithParam<const char*>
{
};

TEST_P(CodePageFileName, IsOpenedOnEverySystem)
{
    const QTemporaryDir directory;
    const QString folder = QString::fromUtf8(GetParam());
    ASSERT_TRUE(QDir(directory.path()).mkdir(folder));
    const QString path = makeFile(directory, folder + QStringLiteral("/固件 1.2.bin"));
    for (const bool keeps : {true, false}) {
        volumeKeepsShortNames = keeps;
        QFile file;
        EXPECT_TRUE(CodePageFile::open(file, path, gb2312()));
        EXPECT_EQ(file.size(), 8);
        EXPECT_EQ(file.readAll(), QByteArray("firmware"));
    }
    volumeKeepsShortNames = true;
}

INSTANTIATE_TEST_SUITE_P(Names, CodePageFileName,
                         testing::Values("José", "Müller", "王小明", "김민준", "ひ😀",
                                         "Владимир Владимирович"));

TEST(CodePageFile, ShortPathComesBeforeTheWideName)
{
    const QTemporaryDir directory;
    const QString path = makeFile(directory, QStringLiteral("김민준.bin"));
    QFile file;
    ASSERT_TRUE(CodePageFile::open(file, path, gb2312()));
    EXPECT_EQ(file.fileName(), QString()); // opened by bytes
    volumeKeepsShortNames = false;
    QFile other;
    EXPECT_TRUE(CodePageFile::open(other, path, gb2312()));
    EXPECT_EQ(other.fileName(), path);
    volumeKeepsShortNames = true;
}

TEST(CodePageFile, PathOutsideTheCodePageThatNamesNoFileDoesNotOpen)
{
    const QTemporaryDir directory;
    QFile file;
    EXPECT_FALSE(CodePageFile::open(file, directory.filePath(QStringLiteral("ひ😀.bin")), gb2312()));
    EXPECT_FALSE(file.isOpen());
}

TEST(CodePageFile, FileWhoseNameTheSystemReadsFromTheBytesIsNotTakenForIt)
{
    const QTemporaryDir directory;
    const QString path = makeFile(directory, QStringLiteral("固件.bin"));
    const QByteArray bytes = gb2312().fromUnicode(QStringLiteral("固件.bin"));
    wchar_t misread[32] = {};
    ASSERT_GT(::MultiByteToWideChar(CP_ACP, 0, bytes.constData(), -1, misread, 32), 0);
    const QString other = directory.filePath(QString::fromWCharArray(misread));
    if (other != path) {
        QFile decoy(other);
        ASSERT_TRUE(decoy.open(QIODevice::WriteOnly));
        decoy.write("another file");
    }
    QFile file;
    ASSERT_TRUE(CodePageFile::open(file, path, gb2312()));
    EXPECT_EQ(file.readAll(), QByteArray("firmware"));
}

TEST(CodePageFile, FolderDoesNotOpen)
{
    const QTemporaryDir directory;
    QFile file;
    EXPECT_FALSE(CodePageFile::open(file, directory.path(), gb2312()));
}
