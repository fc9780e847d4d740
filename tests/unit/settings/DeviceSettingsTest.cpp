#include "DeviceSettings.h"
#include "ParameterKeys.h"

#include <gtest/gtest.h>
#include <QSet>
#include <QString>

using namespace ParameterKeys;

namespace {

struct Expected
{
    DeviceSetting setting = DeviceSetting::AutoFrameSwitch;
    QLatin1String key;
    int readCode = 0;
    int writeCode = 0;
};

// As the device family documents its commands, in the order in which the program reads them.
const Expected kExpected[]{
    {DeviceSetting::AutoFrameSwitch, AutoFrameSwitch, 0x5080, 0x5081},
    {DeviceSetting::FrameMaster, FrameMaster, 0x5040, 0x5041},
    {DeviceSetting::AutoFrameMode, AutoFrameMode, 0x5030, 0x5031},
    {DeviceSetting::PickupSensitivity, PickupSensitivity, 0x5070, 0x5071},
    {DeviceSetting::CameraView, CameraView, 0x50A0, 0x50A1},
    {DeviceSetting::HorizontalMirror, HorizontalMirror, 0x5090, 0x5091},
};

} // namespace

TEST(DeviceSettings, RowsHaveTheCodesOfTheDeviceInReadOrder)
{
    ASSERT_EQ(DeviceSettings::rows().size(), std::size(kExpected));
    for (std::size_t i = 0; i < std::size(kExpected); ++i) {
        const DeviceSettingRow& row = DeviceSettings::rows().at(i);
        EXPECT_EQ(row.setting, kExpected[i].setting);
        EXPECT_EQ(row.key, kExpected[i].key);
        EXPECT_EQ(row.readCode, kExpected[i].readCode);
        EXPECT_EQ(row.writeCode(), kExpected[i].writeCode);
    }
}

TEST(DeviceSettings, EachRowIsFoundByItsSettingAndByItsReadCode)
{
    for (const DeviceSettingRow& row : DeviceSettings::rows()) {
        EXPECT_EQ(&DeviceSettings::row(row.setting), &row);
        EXPECT_EQ(DeviceSettings::findByReadCode(row.readCode), &row);
        EXPECT_EQ(DeviceSettings::findByReadCode(row.writeCode()), nullptr);
    }
    EXPECT_EQ(DeviceSettings::findByReadCode(0x5001), nullptr);
    EXPECT_EQ(DeviceSettings::findByReadCode(0), nullptr);
}

TEST(DeviceSettings, NamesAreUniqueAndCanBeTyped)
{
    QSet<QString> names;
    for (const DeviceSettingRow& row : DeviceSettings::rows()) {
        const QString name = QString::fromLatin1(row.name);
        EXPECT_FALSE(names.contains(name)) << row.name;
        names.insert(name);
        EXPECT_EQ(name, name.toLower().remove(QLatin1Char(' ')));
    }
}

TEST(DeviceSettings, FactoryDefaultIsOneOfTheValues)
{
    for (const DeviceSettingRow& row : DeviceSettings::rows()) {
        QSet<int> values;
        QSet<QString> names;
        for (const DeviceSettingValue& value : row.values) {
            values.insert(value.value);
            names.insert(QString::fromLatin1(value.name));
        }
        EXPECT_TRUE(values.contains(row.factoryDefault)) << row.name;
        EXPECT_EQ(names.size(), values.size()) << row.name;
    }
}
