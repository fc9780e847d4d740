#include "ParameterModel.h"
#include "LogCapture.h"
#include "ParameterKeys.h"
#include "QtPrinters.h"

#include <gtest/gtest.h>
#include <QList>

using namespace ParameterKeys;

namespace {

const QList<QLatin1String> kCompared{
    FigureCenter, HorizontalMirror, CameraView,  Bright,        Contrast,    Saturation,
    Sharpness,    AutoFrameSwitch,  FrameMaster, AutoFrameMode, Intelligent, PickupSensitivity};

PictureParameters picture()
{
    PictureParameters p;
    p.bright = 101;
    p.contrast = 102;
    p.saturation = 103;
    p.sharpness = 104;
    p.imageMode = 2;
    return p;
}

} // namespace

TEST(ParameterModelComparison, EmptyModelIsUnedited)
{
    ParameterModel model;
    EXPECT_TRUE(model.isSameData());
}

TEST(ParameterModelComparison, AbsentKeyReadsAsZeroAndIsPresentFromThenOn)
{
    ParameterModel model;
    model.edited()[Bright] = 0;
    EXPECT_FALSE(model.stored().contains(Bright));
    EXPECT_TRUE(model.isSameData());
    for (const auto key : kCompared) {
        EXPECT_TRUE(model.stored().contains(key)) << key.data();
        EXPECT_TRUE(model.edited().contains(key)) << key.data();
    }
    EXPECT_FALSE(model.stored().contains(ImageMode));
}

TEST(ParameterModelComparison, EveryComparedKeyCounts)
{
    for (const auto key : kCompared) {
        ParameterModel model;
        model.edited()[key] = 1;
        EXPECT_FALSE(model.isSameData()) << key.data();
        model.stored()[key] = 1;
        EXPECT_TRUE(model.isSameData()) << key.data();
    }
}

TEST(ParameterModelComparison, StopsAtTheFirstDifference)
{
    for (int differing = 0; differing < kCompared.size(); ++differing) {
        ParameterModel model;
        model.edited()[kCompared.at(differing)] = 7;
        EXPECT_FALSE(model.isSameData());
        for (int i = 3; i < kCompared.size(); ++i) // the first three are read for the log
            EXPECT_EQ(model.stored().contains(kCompared.at(i)), i <= differing)
                << kCompared.at(i).data();
    }
}

TEST(ParameterModelComparison, ImageModeDoesNotCount)
{
    ParameterModel model;
    model.setPicture(picture());
    model.edited()[ImageMode] = 3;
    EXPECT_TRUE(model.isSameData());
}

TEST(ParameterModelComparison, RevertedEditDoesNotCount)
{
    ParameterModel model;
    model.setPicture(picture());
    model.edited()[Bright] = 150;
    EXPECT_FALSE(model.isSameData());
    model.edited()[Bright] = 101;
    EXPECT_TRUE(model.isSameData());
}

TEST(ParameterModelComparison, UnknownValueDoesNotCountUntilItIsSet)
{
    ParameterModel model;
    model.setUnknown(CameraView);
    model.edited()[CameraView] = 90;
    EXPECT_TRUE(model.isSameData());
    model.setKnown(CameraView);
    EXPECT_FALSE(model.isSameData());
    model.setUnknown(CameraView);
    model.clear();
    EXPECT_FALSE(model.isUnknown(CameraView));
}

TEST(ParameterModelComparison, ChosenValueCountsUntilTheChoiceIsDropped)
{
    ParameterModel model;
    model.setUnknown(CameraView);
    model.setChosen(CameraView);
    model.edited()[CameraView] = 90;
    EXPECT_FALSE(model.isSameData());
    model.dropChoices();
    EXPECT_TRUE(model.isUnknown(CameraView));
    EXPECT_TRUE(model.isSameData());
}

TEST(ParameterModelComparison, ChosenValueThatWasSavedOrReadIsKnown)
{
    ParameterModel model;
    for (const QLatin1String key : {CameraView, PickupSensitivity, Bright}) {
        model.setUnknown(key);
        model.setChosen(key);
    }
    model.setKnown(PickupSensitivity);
    model.dropChoices();
    EXPECT_EQ(model.unknownKeys(), (QSet<QString>{CameraView, Bright}));
    model.setChosen(CameraView);
    model.keepEdited();
    model.dropChoices();
    EXPECT_EQ(model.unknownKeys(), QSet<QString>{Bright});
}

TEST(ParameterModelComparison, LogsThreeValuesOfBothMaps)
{
    ParameterModel model;
    model.edited()[CameraView] = 90;
    model.stored()[CameraView] = 60;
    model.edited()[HorizontalMirror] = 1;
    model.stored()[FigureCenter] = 1;
    const LogCapture log;
    (void)model.isSameData();
    const QStringList expected{
        QStringLiteral("paramDateChangeMap[CameraView] =  90 ---- paramDateMap[CameraView] 60"),
        QStringLiteral("paramDateChangeMap[HorizontalMirror] =  1 ---- "
                       "paramDateMap[HorizontalMirror] 0"),
        QStringLiteral("paramDateChangeMap[FigureCenter] =  0 ---- paramDateMap[FigureCenter] 1"),
    };
    EXPECT_EQ(log.texts(), expected);
}

TEST(ParameterModelIntelligent, IsOnWhileEitherFramingIs)
{
    for (const int autoFraming : {0, 1, 2}) {
        for (const int frameMaster : {0, 1, -1}) {
            ParameterModel model;
            model.stored()[AutoFrameSwitch] = autoFraming;
            model.stored()[FrameMaster] = frameMaster;
            model.stored()[Intelligent] = 9;
            model.deriveIntelligent();
            EXPECT_EQ(model.stored()[Intelligent], autoFraming != 0 || frameMaster != 0 ? 1 : 0);
        }
    }
}

TEST(ParameterModelIntelligent, OfAnEmptyModelIsOff)
{
    ParameterModel model;
    model.deriveIntelligent();
    EXPECT_EQ(model.stored().value(Intelligent, -1), 0);
    EXPECT_TRUE(model.stored().contains(FrameMaster));
}

TEST(ParameterModelCopies, PictureGoesToBothMaps)
{
    ParameterModel model;
    model.setPicture(picture());
    EXPECT_EQ(model.stored(), model.edited());
    EXPECT_EQ(model.stored().size(), 5);
    EXPECT_EQ(model.stored()[Sharpness], 104);
    EXPECT_EQ(model.editedPicture(), picture());
}

TEST(ParameterModelCopies, DeviceParametersAreCopiedWithoutThePicture)
{
    ParameterModel model;
    model.stored()[Bright] = 100;
    model.stored()[FigureCenter] = 1;
    model.stored()[CameraView] = 90;
    model.stored()[PickupSensitivity] = 50;
    model.copyDeviceParameters();
    EXPECT_EQ(model.edited().size(), 7);
    EXPECT_EQ(model.edited()[CameraView], 90);
    EXPECT_EQ(model.edited()[PickupSensitivity], 50);
    EXPECT_FALSE(model.edited().contains(Bright));
    EXPECT_FALSE(model.edited().contains(FigureCenter));
}

TEST(ParameterModelCopies, DiscardReturnsToTheKeptEdits)
{
    ParameterModel model;
    model.setPicture(picture());
    model.edited()[Bright] = 150;
    model.keepEdited();
    model.edited()[Bright] = 160;
    model.edited()[CameraView] = 60;
    model.discardEdited();
    EXPECT_EQ(model.edited()[Bright], 150);
    EXPECT_FALSE(model.edited().contains(CameraView));
    EXPECT_TRUE(model.isSameData());
}

TEST(ParameterModelCopies, ClearEmptiesBothMaps)
{
    ParameterModel model;
    model.setPicture(picture());
    model.clear();
    EXPECT_TRUE(model.stored().isEmpty());
    EXPECT_TRUE(model.edited().isEmpty());
}
