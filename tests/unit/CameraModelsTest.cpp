#include "CameraModels.h"

#include <gtest/gtest.h>
#include <QStringList>

namespace {

// The ids stand here as numbers, and not as the table's own, so that a changed row is noticed.
constexpr quint16 kVendor = 0xB206;
constexpr quint16 kProduct = 0xB215;

bool isCameraInterface(const HidDevices& device)
{
    return CameraModels::find(device) != nullptr;
}

bool isCameraVideoPath(const QString& path)
{
    const CameraModel* model = CameraModels::find(kVendor, kProduct);
    return model && CameraModels::isVideoPath(*model, path);
}

} // namespace

TEST(CameraModels, ReferenceNamesAreListedInTheirFixedOrder)
{
    QStringList names;
    for (const char* name : CameraModels::kReferenceNames)
        names << QString::fromLatin1(name);
    EXPECT_EQ(names, (QStringList{"SVC802", "SVA802", "SVT202", "Sorvanta USB Camera"}));
}

TEST(CameraModels, RowHasAllThatPagesShow)
{
    const CameraModel* model = CameraModels::find(kVendor, kProduct);
    ASSERT_NE(model, nullptr);
    EXPECT_EQ(model->group, CameraModel::Group::UsbCamera);
    EXPECT_STREQ(model->productName, "Vexa Cam");
    EXPECT_STREQ(model->displayName, "NOVA EDGE");
    EXPECT_STREQ(model->modelText, "RQ-T47K");
    EXPECT_STREQ(model->cardPicture, ":/images/SVC802.png");
    EXPECT_STREQ(model->largePicture, ":/images/SVCbig.png");
}

TEST(CameraModels, ProductWithoutIdsIsListedButNotRecognised)
{
    int listed = 0;
    for (const CameraModel& model : CameraModels::rows()) {
        if (model.isRecognised())
            continue;
        ++listed;
        EXPECT_FALSE(isCameraInterface({"path", model.vendorId, model.productId, ""}));
        EXPECT_FALSE(CameraModels::isVideoPath(model, "vid_0000&pid_0000"));
        EXPECT_STRNE(model.productName, "");
        EXPECT_STRNE(model.cardPicture, "");
    }
    EXPECT_EQ(listed, 1);
}

TEST(CameraModels, ModelIsFoundByItsTextAndIsTheFirstOtherwise)
{
    const CameraModel* first = CameraModels::rows().begin();
    EXPECT_EQ(&CameraModels::withModelText("RQ-T47K"), first);
    EXPECT_EQ(&CameraModels::withModelText("unknown"), first);
    EXPECT_EQ(&CameraModels::withModelText({}), first);
}

TEST(CameraModels, InterfaceIsRecognisedByBothIds)
{
    EXPECT_TRUE(isCameraInterface({"path", 0xB206, 0xB215, ""}));
    EXPECT_TRUE(isCameraInterface({"", 0xB206, 0xB215, "anybody"}));
    EXPECT_FALSE(isCameraInterface({"path", 0xB206, 0xB214, ""}));
    EXPECT_FALSE(isCameraInterface({"path", 0xB205, 0xB215, ""}));
    EXPECT_FALSE(isCameraInterface({"path", 0xB215, 0xB206, ""}));
    EXPECT_FALSE(isCameraInterface({}));
}

TEST(CameraModels, InterfaceIsNotRecognisedByItsPath)
{
    EXPECT_FALSE(isCameraInterface({"vid_b206&pid_b215", 0, 0, ""}));
}

TEST(CameraModels, VideoPathIsRecognisedAnywhereInTheText)
{
    EXPECT_TRUE(isCameraVideoPath("vid_b206&pid_b215"));
    EXPECT_TRUE(isCameraVideoPath("/dev/video0#vid_b206&pid_b215#1-2"));
    EXPECT_TRUE(isCameraVideoPath(R"(\\?\usb#vid_b206&pid_b215&mi_00#6&1a2b#{65e8773d}\global)"));
}

TEST(CameraModels, VideoPathIsRecognisedInEitherCase)
{
    EXPECT_TRUE(isCameraVideoPath("VID_B206&PID_B215"));
    EXPECT_TRUE(isCameraVideoPath(R"(\\?\USB#VID_B206&PID_b215&MI_00)"));
}

TEST(CameraModels, OtherVideoPathsAreNotRecognised)
{
    for (const char* path :
         {"", "/dev/video0", "vid_b206", "pid_b215", "vid_b206&pid_b214", "vid_b207&pid_b215",
          "pid_b215&vid_b206", "vid_b206#pid_b215", "vid_b206&&pid_b215", "b206&b215"})
        EXPECT_FALSE(isCameraVideoPath(path)) << path;
}
