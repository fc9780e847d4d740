#include "TransferClock.h"
#include "KnownImages.h"
#include "QtPrinters.h"

#include <gtest/gtest.h>
#include <QDir>
#include <QFile>
#include <QTemporaryDir>

namespace {

using std::chrono::seconds;

TEST(TransferClock, TellsEveryFivePercentOnce)
{
    const TransferClock::Clock::time_point start{};
    TransferClock clock(start);
    int steps = 0;
    for (int sent = 1; sent <= 1000; ++sent)
        steps += clock.advance(sent, 1000, start + seconds(sent)) ? 1 : 0;
    EXPECT_EQ(steps, 20);
}

TEST(TransferClock, TimeLeftGoesByTheTimeSoFar)
{
    const TransferClock::Clock::time_point start{};
    TransferClock clock(start);
    EXPECT_FALSE(clock.advance(4, 100, start + seconds(4)));
    const auto quarter = clock.advance(25, 100, start + seconds(10));
    ASSERT_TRUE(quarter);
    EXPECT_EQ(quarter->percent, 25);
    EXPECT_EQ(quarter->secondsLeft, 30);
    EXPECT_EQ(clock.advance(100, 100, start + seconds(40))->secondsLeft, 0);
}

TEST(TransferClock, EmptyImageIsComplete)
{
    TransferClock clock({});
    EXPECT_EQ(clock.advance(0, 0, {})->percent, 100);
}

TEST(KnownImages, VersionIsKnownByTheContents)
{
    const QTemporaryDir folder;
    const KnownImages known(folder.filePath("cache/versions.json"));
    EXPECT_EQ(known.versionOf("image"), QString());
    known.note("image", "1.0.6");
    known.note("other", "1.0.7");
    EXPECT_EQ(known.versionOf("image"), "1.0.6");
    EXPECT_EQ(known.versionOf("other"), "1.0.7");
    EXPECT_EQ(known.versionOf("imag"), QString());
}

TEST(KnownImages, DamagedFileKnowsNothing)
{
    const QTemporaryDir folder;
    QFile file(folder.filePath("versions.json"));
    ASSERT_TRUE(file.open(QIODevice::WriteOnly));
    file.write("{");
    file.close();
    const KnownImages known(file.fileName());
    EXPECT_EQ(known.versionOf("image"), QString());
    known.note("image", "1.0.6");
    EXPECT_EQ(known.versionOf("image"), "1.0.6");
}

} // namespace
