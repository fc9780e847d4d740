#include "PackageFileName.h"
#include "QtPrinters.h"

#include <gtest/gtest.h>

using namespace PackageFileName;

TEST(PackageFileNameFromUrl, IsWhatFollowsTheLastSlash)
{
    EXPECT_EQ(fromUrl(QStringLiteral("https://host/a/b/firmware.bin")),
              QStringLiteral("firmware.bin"));
    EXPECT_EQ(fromUrl(QStringLiteral("firmware.bin")), QStringLiteral("firmware.bin"));
    EXPECT_EQ(fromUrl(QStringLiteral("https://host/a/")), QString());
    EXPECT_EQ(fromUrl(QString()), QString());
}

TEST(PackageFileNameFromUrl, KeepsAQuery)
{
    EXPECT_EQ(fromUrl(QStringLiteral("https://host/fw.bin?v=1")), QStringLiteral("fw.bin?v=1"));
    EXPECT_EQ(fromUrl(QStringLiteral("https://host/fw?file=a/b.bin")), QStringLiteral("b.bin"));
}

TEST(PackageFileNameIsPlain, AcceptsNamesThatEveryPlatformKeeps)
{
    for (const char* name :
         {"firmware.bin", "MarvikTools-1.2-setup.exe", "a", "..a", "a..b", ".hidden", "固件.bin",
          "with blank.bin", "COM", "COM10", "CONSOLE.bin", "nul-1.bin"})
        EXPECT_TRUE(isPlain(QString::fromUtf8(name))) << name;
    EXPECT_TRUE(isPlain(QString(255, QLatin1Char('a'))));
}

TEST(PackageFileNameIsPlain, AcceptsCharactersThatOnlyWindowsForbids)
{
    for (const char* name : {"fw.bin?sig=ab%2Fc&expires=10:00", "?x=1", "fw*.bin", "\"fw\"", "<fw>",
                             "a|b", "fw.bin:stream"})
        EXPECT_TRUE(isPlain(QString::fromUtf8(name))) << name;
}

TEST(PackageFileNameOnDisk, KeepsAnOrdinaryName)
{
    for (const char* name : {"firmware.bin", "with blank.bin", "固件.bin", "a&b=c%2F"})
        EXPECT_EQ(onDisk(QString::fromUtf8(name)), QString::fromUtf8(name));
}

TEST(PackageFileNameIsPlain, RefusesWhatLeadsElsewhere)
{
    for (const char* name :
         {"", ".", "..", "..\\x.exe", "a\\b", "a/b", "C:x.exe", "C:\\x.exe", "\\\\host\\share"})
        EXPECT_FALSE(isPlain(QString::fromUtf8(name))) << name;
}

TEST(PackageFileNameIsPlain, RefusesDevices)
{
    for (const char* name : {"CON", "con", "Prn.bin", "AUX.tar.gz", "NUL", "nul .bin", "COM1",
                             "lpt9.bin", "COM0", "COM\u00B9", "LPT\u00B3.txt", "CONIN$", "conout$"})
        EXPECT_FALSE(isPlain(QString::fromUtf8(name))) << name;
}

TEST(PackageFileNameIsPlain, RefusesNamesThatAFileSystemChangesOrForbids)
{
    for (const char* name :
         {"fw.bin.", "fw.bin...", "fw.bin ", " fw.bin", "fw\nbin", "fw\tbin", "fw\x7F", "fw\u0085"})
        EXPECT_FALSE(isPlain(QString::fromUtf8(name))) << name;
    EXPECT_FALSE(isPlain(QString::fromUtf8("fw\0.bin", 7)));
    EXPECT_FALSE(isPlain(QString(QChar(0xD800)) + QStringLiteral(".bin")));
}

TEST(PackageFileNameIsPlain, CountsBytesAndNotCharacters)
{
    EXPECT_FALSE(isPlain(QString(256, QLatin1Char('a'))));
    EXPECT_TRUE(isPlain(QString(85, QChar(0x56FA))));
    EXPECT_FALSE(isPlain(QString(86, QChar(0x56FA))));
}
