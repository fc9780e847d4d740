#include "NearestWord.h"
#include "QtPrinters.h"

#include <gtest/gtest.h>

namespace {

const QStringList kWords{"brightness", "contrast", "fov", "framing", "mirror"};

TEST(NearestWord, DistanceCountsAddedRemovedReplacedAndSwappedLetters)
{
    EXPECT_EQ(NearestWord::distance("", ""), 0);
    EXPECT_EQ(NearestWord::distance("fov", "fov"), 0);
    EXPECT_EQ(NearestWord::distance("fv", "fov"), 1);
    EXPECT_EQ(NearestWord::distance("foov", "fov"), 1);
    EXPECT_EQ(NearestWord::distance("fav", "fov"), 1);
    EXPECT_EQ(NearestWord::distance("fvo", "fov"), 1);
    EXPECT_EQ(NearestWord::distance("", "fov"), 3);
    EXPECT_EQ(NearestWord::distance("kitten", "sitting"), 3);
}

TEST(NearestWord, FindsWhatWasMeant)
{
    EXPECT_EQ(NearestWord::in(kWords, "fvo"), "fov");
    EXPECT_EQ(NearestWord::in(kWords, "miror"), "mirror");
    EXPECT_EQ(NearestWord::in(kWords, "Brightnes"), "brightness");
    EXPECT_EQ(NearestWord::in(kWords, "bright"), "brightness");
}

TEST(NearestWord, SuggestsNothingForAnotherWord)
{
    EXPECT_EQ(NearestWord::in(kWords, "volume"), QString());
    EXPECT_EQ(NearestWord::in(kWords, "x"), QString());
    EXPECT_EQ(NearestWord::in({}, "fov"), QString());
}

} // namespace
