#include "PackageSize.h"
#include "LogCapture.h"
#include "QtPrinters.h"

#include <gtest/gtest.h>

namespace {

QString progress(const char* size, int percent)
{
    return PackageSize(QString::fromUtf8(size)).progressText(percent);
}

} // namespace

TEST(PackageSize, ShowsDownloadedAndTotalSize)
{
    EXPECT_EQ(progress("52.4MB", 37), QStringLiteral("19.4/52.4MB"));
    EXPECT_EQ(progress("52.4MB", 0), QStringLiteral("0.0/52.4MB"));
    EXPECT_EQ(progress("1.5MB", 100), QStringLiteral("1.5/1.5MB"));
    EXPECT_EQ(progress("12KB", 50), QStringLiteral("6.0/12.0KB"));
}

TEST(PackageSize, IsCalculatedInSinglePrecision)
{
    // 0.35 of 1: exactly between two values in decimal, just below in single precision.
    EXPECT_EQ(progress("1MB", 35),
              QString::number(static_cast<double>(0.35F), 'f', 1) + QStringLiteral("/1.0MB"));
    EXPECT_EQ(progress("16777217MB", 100), QStringLiteral("16777216.0/16777216.0MB"));
}

TEST(PackageSize, InvalidNumberIsShownAsZero)
{
    EXPECT_EQ(progress("MB", 50), QStringLiteral("0.0/0.0MB"));
    EXPECT_EQ(progress("unknown", 50), QStringLiteral("0.0/0.0wn"));
    EXPECT_EQ(progress("x", 50), QStringLiteral("0.0/0.0x"));
    EXPECT_EQ(progress("", 50), QStringLiteral("0.0/0.0"));
}

TEST(PackageSize, LogsTotalAndDownloadedSize)
{
    const LogCapture log;
    EXPECT_EQ(progress("52.4MB", 50), QStringLiteral("26.2/52.4MB"));
    EXPECT_EQ(log.texts(),
              (QStringList{QStringLiteral("\"52.4\""), QStringLiteral("current = 26.2")}));
}
