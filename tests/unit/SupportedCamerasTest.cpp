#include "SupportedCameras.h"

#include <gtest/gtest.h>
#include <QStringList>

using SupportedCameras::isCameraInterface;
using SupportedCameras::isCameraVideoPath;

TEST(SupportedCameras, ModelsAreListedInTheirFixedOrder)
{
    QStringList names;
    for (const char* name : SupportedCameras::kModelNames)
        names << QString::fromLatin1(name);
    EXPECT_EQ(names, (QStringList{"SVC802", "SVA802", "SVT202", "Sorvanta USB Camera"}));
}

TEST(SupportedCameras, InterfaceIsRecognisedByBothIds)
{
    EXPECT_TRUE(isCameraInterface({"path", 0xB206, 0xB215, ""}));
    EXPECT_TRUE(isCameraInterface({"", 0xB206, 0xB215, "anybody"}));
    EXPECT_FALSE(isCameraInterface({"path", 0xB206, 0xB214, ""}));
    EXPECT_FALSE(isCameraInterface({"path", 0xB205, 0xB215, ""}));
    EXPECT_FALSE(isCameraInterface({"path", 0xB215, 0xB206, ""}));
    EXPECT_FALSE(isCameraInterface({}));
}

TEST(SupportedCameras, InterfaceIsNotRecognisedByItsPath)
{
    EXPECT_FALSE(isCameraInterface({"vid_b206&pid_b215", 0, 0, ""}));
}

TEST(SupportedCameras, VideoPathIsRecognisedAnywhereInTheText)
{
    EXPECT_TRUE(isCameraVideoPath("vid_b206&pid_b215"));
    EXPECT_TRUE(isCameraVideoPath("/dev/video0#vid_b206&pid_b215#1-2"));
    EXPECT_TRUE(isCameraVideoPath(R"(\\?\usb#vid_b206&pid_b215&mi_00#6&1a2b#{65e8773d}\global)"));
}

TEST(SupportedCameras, VideoPathIsRecognisedInEitherCase)
{
    EXPECT_TRUE(isCameraVideoPath("VID_B206&PID_B215"));
    EXPECT_TRUE(isCameraVideoPath(R"(\\?\USB#VID_B206&PID_b215&MI_00)"));
}

TEST(SupportedCameras, OtherVideoPathsAreNotRecognised)
{
    for (const char* path :
         {"", "/dev/video0", "vid_b206", "pid_b215", "vid_b206&pid_b214", "vid_b207&pid_b215",
          "pid_b215&vid_b206", "vid_b206#pid_b215", "vid_b206&&pid_b215", "b206&b215"})
        EXPECT_FALSE(isCameraVideoPath(path)) << path;
}
