#include "HidTest.h"
#include "RecordingCaptureGraph.h"
#include "UVCCamera.h"

namespace {

/// One picture property, with the camera's functions to read and write it.
struct Property
{
    const char* name;
    int id;
    int (UVCCamera::*get)();
    QPair<int, int> (UVCCamera::*range)();
    bool (UVCCamera::*set)(int);
};

void PrintTo(const Property& property, std::ostream* out)
{
    *out << property.name;
}

const QList<Property> kProperties{
    {"Brightness", 0, &UVCCamera::getBright, &UVCCamera::getBrightRange, &UVCCamera::setBright},
    {"Contrast", 1, &UVCCamera::getContrast, &UVCCamera::getContrastRange, &UVCCamera::setContrast},
    {"Saturation", 3, &UVCCamera::getSaturation, &UVCCamera::getSaturationRange,
     &UVCCamera::setSaturation},
    {"Sharpness", 4, &UVCCamera::getSharpness, &UVCCamera::getSharpnessRange,
     &UVCCamera::setSharpness},
};

class UVCCameraProperty : public HidTest, public ::testing::WithParamInterface<Property>
{
protected:
    void SetUp() override
    {
        VideoProcAmpRecord& record = script->properties[GetParam().id];
        record.minimum = -64;
        record.maximum = 200;
        record.defaultValue = 50;
        record.value = 88;
        record.step = 2;
        record.flags = 3;
        camera = std::make_unique<UVCCamera>(std::make_unique<RecordingCaptureGraph>(script));
        ASSERT_TRUE(camera->openDevice("device", 1));
        camera->initVideoProcAmp();
        script->steps.clear();
    }

    void TearDown() override
    {
        camera.reset();
        HidTest::TearDown();
    }

    int get() { return (camera.get()->*GetParam().get)(); }
    QPair<int, int> range() { return (camera.get()->*GetParam().range)(); }
    bool set(int value) { return (camera.get()->*GetParam().set)(value); }

    QString asked(const char* operation) const
    {
        return QStringLiteral("%1(%2)").arg(QLatin1String(operation)).arg(GetParam().id);
    }

    std::shared_ptr<CaptureScript> script = std::make_shared<CaptureScript>();
    std::unique_ptr<UVCCamera> camera;
};

} // namespace

TEST_P(UVCCameraProperty, ValueComesFromTheCamera)
{
    EXPECT_EQ(get(), 88);
    EXPECT_EQ(script->steps, QStringList{asked("get")});
}

TEST_P(UVCCameraProperty, RangeComesFromTheCamera)
{
    EXPECT_EQ(range(), qMakePair(-64, 200));
    EXPECT_EQ(script->steps, QStringList{asked("getRange")});
}

TEST_P(UVCCameraProperty, ValueIsWrittenOnce)
{
    EXPECT_TRUE(set(120));
    EXPECT_EQ(script->steps, QStringList{asked("set")});
    ASSERT_EQ(script->propertyWrites.size(), 1U);
    EXPECT_EQ(script->propertyWrites.front().second, 120);
}

TEST_P(UVCCameraProperty, WriteUsesTheFlagsOfTheRange)
{
    range();
    set(120);
    EXPECT_EQ(script->propertyWrites.back().first.flags, 3);
}

TEST_P(UVCCameraProperty, WriteUsesTheFlagsOfTheLastReading)
{
    range();
    script->properties[GetParam().id].flags = 1;
    get();
    set(120);
    EXPECT_EQ(script->propertyWrites.back().first.flags, 1);

    script->properties[GetParam().id].flags = 2;
    range();
    set(120);
    EXPECT_EQ(script->propertyWrites.back().first.flags, 2);
}

TEST_P(UVCCameraProperty, WriteBeforeAnyReadingHasNoFlags)
{
    set(120);
    EXPECT_EQ(script->propertyWrites.back().first.flags, 0);
}

TEST_P(UVCCameraProperty, WrittenValueIsKept)
{
    ASSERT_TRUE(set(120));
    script->failing = {"get"};
    EXPECT_EQ(get(), 120);
}

TEST_P(UVCCameraProperty, RefusedWriteKeepsTheStoredValue)
{
    EXPECT_EQ(get(), 88);
    script->failing = {"set", "get"};
    EXPECT_FALSE(set(120));
    EXPECT_EQ(get(), 88);
}

TEST_P(UVCCameraProperty, RefusedReadingGivesTheStoredValue)
{
    script->failing = {"get"};
    EXPECT_EQ(get(), 0);
    script->failing.clear();
    EXPECT_EQ(get(), 88);
    script->failing = {"get"};
    script->properties[GetParam().id].value = 11;
    EXPECT_EQ(get(), 88);
}

TEST_P(UVCCameraProperty, ValueOfOneDeviceIsNotThatOfTheNext)
{
    EXPECT_EQ(get(), 88);
    script->failing = {"get"};
    EXPECT_EQ(camera->readPicture(static_cast<PictureProperty>(GetParam().id)), std::nullopt);
    ASSERT_TRUE(camera->openDevice("device", 1));
    camera->initVideoProcAmp();
    EXPECT_EQ(get(), 88); // the same device
    ASSERT_TRUE(camera->openDevice("another device", 1));
    camera->initVideoProcAmp();
    EXPECT_EQ(get(), 0);
    EXPECT_EQ(camera->readPicture(static_cast<PictureProperty>(GetParam().id)), std::nullopt);
}

TEST_P(UVCCameraProperty, RefusedRangeIsZeroAndKeepsTheFlags)
{
    range();
    script->failing = {"getRange"};
    script->properties[GetParam().id].flags = 9;
    EXPECT_EQ(range(), qMakePair(0, 0));
    set(1);
    EXPECT_EQ(script->propertyWrites.back().first.flags, 3);
    EXPECT_EQ(script->propertyWrites.back().first.maximum, 200);
}

TEST_P(UVCCameraProperty, RangeLeavesTheStoredValue)
{
    get();
    range();
    script->failing = {"get"};
    EXPECT_EQ(get(), 88);
}

TEST_P(UVCCameraProperty, PropertyTheCameraDoesNotHaveFails)
{
    script->properties.clear();
    EXPECT_EQ(get(), 0);
    EXPECT_EQ(range(), qMakePair(0, 0));
    EXPECT_FALSE(set(5));
    EXPECT_EQ(get(), 0);
}

TEST_P(UVCCameraProperty, OtherPropertiesKeepTheirOwnValues)
{
    ASSERT_TRUE(set(120));
    script->properties.clear();
    for (const Property& other : kProperties)
        EXPECT_EQ((camera.get()->*other.get)(), other.id == GetParam().id ? 120 : 0) << other.name;
}

TEST_P(UVCCameraProperty, WithoutAHelperTheCameraIsNotAccessed)
{
    get();
    camera->closeDevice();
    script->steps.clear();
    EXPECT_EQ(get(), 88);
    EXPECT_EQ(range(), qMakePair(0, 0));
    EXPECT_FALSE(set(5));
    EXPECT_EQ(get(), 88);
    EXPECT_EQ(script->steps, QStringList());
}

TEST_P(UVCCameraProperty, HelperWithoutASourceFails)
{
    script->hasSource = false;
    camera->initVideoProcAmp();
    EXPECT_EQ(get(), 0);
    EXPECT_EQ(range(), qMakePair(0, 0));
    EXPECT_FALSE(set(5));
    EXPECT_EQ(get(), 0);
}

INSTANTIATE_TEST_SUITE_P(Properties, UVCCameraProperty, ::testing::ValuesIn(kProperties),
                         [](const auto& test) { return std::string(test.param.name); });
