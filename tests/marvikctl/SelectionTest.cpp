#include "Selection.h"
#include "QtPrinters.h"

#include <gtest/gtest.h>

namespace {

const QList<Selection::Candidate> kCameras{
    {"SVAA1", "SVAA1 (NOVA EDGE, /dev/hidraw0)"},
    {"", "NOVA EDGE, /dev/hidraw1: the camera does not answer"},
    {"SVAA12", "SVAA12 (NOVA EDGE, /dev/hidraw2)"},
    {"SVBB1", "SVBB1 (NOVA EDGE, /dev/hidraw3)"},
};

TEST(Selection, WholeSerialNumberWinsOverABeginning)
{
    EXPECT_EQ(*Selection::match(kCameras, "SVAA1"), 0);
    EXPECT_EQ(*Selection::match(kCameras, "SVAA12"), 2);
}

TEST(Selection, BeginningOfOneIsEnough)
{
    EXPECT_EQ(*Selection::match(kCameras, "SVB"), 3);
}

TEST(Selection, BeginningOfSeveralIsAnErrorThatListsThem)
{
    const auto index = Selection::match(kCameras, "SVA");
    ASSERT_FALSE(index);
    EXPECT_EQ(index.failure().kind, Failure::Kind::Usage);
    EXPECT_TRUE(index.failure().hint.contains("SVAA1 (") &&
                index.failure().hint.contains("SVAA12"));
    EXPECT_FALSE(index.failure().hint.contains("SVBB1"));
}

TEST(Selection, UnknownNumberListsAllAlsoThoseThatDoNotAnswer)
{
    const auto index = Selection::match(kCameras, "X");
    ASSERT_FALSE(index);
    EXPECT_EQ(index.failure().kind, Failure::Kind::NoCamera);
    EXPECT_TRUE(index.failure().hint.contains("SVBB1"));
    EXPECT_TRUE(index.failure().hint.contains("does not answer"));
}

TEST(Selection, CaseMatters)
{
    EXPECT_FALSE(Selection::match(kCameras, "svaa1"));
}

} // namespace
