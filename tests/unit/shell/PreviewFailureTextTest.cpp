#include "PreviewFailureText.h"
#include "QtPrinters.h"

#include <array>
#include <gtest/gtest.h>
#include <set>

namespace {

using Cause = PreviewFailure::Cause;

constexpr std::array kCauses{Cause::InUse, Cause::NoPermission, Cause::PartMissing, Cause::Gone,
                             Cause::Other};

} // namespace

TEST(PreviewFailureText, EveryCauseHasItsOwnText)
{
    std::set<QString> texts;
    for (const Cause cause : kCauses)
        texts.insert(PreviewFailureText::of({cause, "x"}));
    EXPECT_EQ(texts.size(), kCauses.size());
}

TEST(PreviewFailureText, ProgramThatUsesTheCameraIsNamed)
{
    EXPECT_EQ(PreviewFailureText::of({Cause::InUse, "meeting"}),
              "The camera is in use by meeting. Stop the picture there, then start it here.");
    EXPECT_EQ(
        PreviewFailureText::of({Cause::InUse, ""}),
        "The camera is in use by another program. Stop the picture there, then start it here.");
}

TEST(PreviewFailureText, CameraThatHasLeftIsToBePluggedIn)
{
    EXPECT_EQ(PreviewFailureText::of({Cause::Gone, ""}),
              "The camera was unplugged. Plug it in again.");
}

TEST(PreviewFailureText, UnknownCauseAsksForAReplug)
{
    const QString text = "The camera cannot be opened. Unplug it and plug it in again.";
    EXPECT_EQ(PreviewFailureText::of({Cause::Other, ""}), text);
    EXPECT_EQ(PreviewFailureText::of({Cause::None, ""}), text);
}

TEST(PreviewFailureText, MissingPartIsNamed)
{
    EXPECT_TRUE(PreviewFailureText::of({Cause::PartMissing, "v4l2src (package)"})
                    .contains("v4l2src (package)"));
}
