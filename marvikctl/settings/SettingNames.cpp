#include "SettingNames.h"

#include "NearestWord.h"
#include "PictureSettings.h"

#include <algorithm>
#include <array>

namespace {

constexpr std::array<const char*, 3> kPresets{"standard", "bright", "vivid"};

/// The three settings that "framing" stands for.
bool isFraming(DeviceSetting setting)
{
    return setting == DeviceSetting::AutoFrameSwitch || setting == DeviceSetting::FrameMaster ||
           setting == DeviceSetting::AutoFrameMode;
}

SettingKey pictureKey(const PictureSettingRow& row)
{
    SettingKey key;
    key.kind = SettingKey::Kind::Picture;
    key.name = QString::fromLatin1(row.name);
    key.property = row.property;
    return key;
}

SettingKey presetKey()
{
    SettingKey key;
    key.kind = SettingKey::Kind::Preset;
    key.name = QStringLiteral("preset");
    for (std::size_t i = 0; i < kPresets.size(); ++i)
        key.values.push_back({static_cast<int>(i), QString::fromLatin1(kPresets.at(i))});
    key.values.push_back({SettingNames::kCustomPreset, QStringLiteral("custom")});
    return key;
}

SettingKey framingKey()
{
    const DeviceSettingRow& modes = DeviceSettings::row(DeviceSetting::AutoFrameMode);
    SettingKey key;
    key.kind = SettingKey::Kind::Framing;
    key.name = QString::fromLatin1(modes.name);
    key.values.push_back({SettingNames::kFramingOff, QStringLiteral("off")});
    for (const DeviceSettingValue& mode : modes.values)
        key.values.push_back(
            {SettingNames::kFramingGroup + mode.value, QString::fromLatin1(mode.name)});
    key.values.push_back({SettingNames::kFramingDivision, QStringLiteral("division")});
    return key;
}

SettingKey deviceKey(const DeviceSettingRow& row)
{
    SettingKey key;
    key.name = QString::fromLatin1(row.name);
    key.setting = row.setting;
    for (const DeviceSettingValue& each : row.values)
        key.values.push_back({each.value, QString::fromLatin1(each.name)});
    return key;
}

std::vector<SettingKey> makeKeys()
{
    std::vector<SettingKey> keys;
    for (const PictureSettingRow& row : PictureSettings::rows())
        keys.push_back(pictureKey(row));
    keys.push_back(presetKey());
    keys.push_back(framingKey());
    for (const DeviceSettingRow& row : DeviceSettings::rows()) {
        if (!isFraming(row.setting))
            keys.push_back(deviceKey(row));
    }
    return keys;
}

std::optional<int> valueIn(const RegisterValues& registers, const Register& id)
{
    const auto found = registers.find(id);
    return found == registers.end() ? std::nullopt : std::optional<int>(found->second);
}

std::optional<int> framingOf(const RegisterValues& registers)
{
    const auto automatic = valueIn(registers, DeviceSetting::AutoFrameSwitch);
    const auto division = valueIn(registers, DeviceSetting::FrameMaster);
    const auto mode = valueIn(registers, DeviceSetting::AutoFrameMode);
    if (!automatic || !division || !mode)
        return std::nullopt;
    if (*automatic != 0)
        return *mode == 0 ? SettingNames::kFramingGroup : SettingNames::kFramingIndividual;
    return *division != 0 ? SettingNames::kFramingDivision : SettingNames::kFramingOff;
}

std::optional<int> presetOf(const RegisterValues& registers)
{
    PictureParameters picture;
    for (const PictureSettingRow& row : PictureSettings::rows()) {
        const auto value = valueIn(registers, row.property);
        if (!value)
            return std::nullopt;
        picture.*row.value = *value;
    }
    for (int i = 0; i < SettingNames::kCustomPreset; ++i) {
        picture.imageMode = i;
        if (PictureSettings::preset(i) == picture)
            return i;
    }
    return SettingNames::kCustomPreset;
}

} // namespace

Registers SettingKey::registers() const
{
    switch (kind) {
    case Kind::Picture:
        return {property};
    case Kind::Preset: {
        Registers all;
        for (const PictureSettingRow& row : PictureSettings::rows())
            all.insert(row.property);
        return all;
    }
    case Kind::Framing:
        return {DeviceSetting::AutoFrameSwitch, DeviceSetting::FrameMaster,
                DeviceSetting::AutoFrameMode};
    case Kind::Device:
        break;
    }
    return {setting};
}

const std::vector<SettingKey>& SettingNames::keys()
{
    static const std::vector<SettingKey> all = makeKeys();
    return all;
}

QStringList SettingNames::names()
{
    QStringList all;
    for (const SettingKey& key : keys())
        all << key.name;
    return all;
}

Result<const SettingKey*> SettingNames::find(const QString& name)
{
    for (const SettingKey& key : keys()) {
        if (key.name == name)
            return &key;
    }
    const QString nearest = NearestWord::in(names(), name);
    return Failure{Failure::Kind::Usage, tr("unknown setting \"%1\"").arg(name),
                   nearest.isEmpty()
                       ? tr("The settings are %1.").arg(names().join(QStringLiteral(", ")))
                       : tr("Did you mean \"%1\"?").arg(nearest)};
}

QStringList SettingNames::valueNames(const SettingKey& key)
{
    QStringList names;
    for (const SettingKey::Value& each : key.values) {
        // A picture becomes custom by its values.
        if (key.kind != SettingKey::Kind::Preset || each.value != kCustomPreset)
            names << each.name;
    }
    return names;
}

Result<SettingValues> SettingNames::parse(const QStringList& assignments)
{
    SettingValues values;
    for (const QString& assignment : assignments) {
        const int equals = assignment.indexOf(QLatin1Char('='));
        if (equals < 1)
            return Failure{Failure::Kind::Usage, tr("\"%1\" is not KEY=VALUE").arg(assignment), {}};
        const auto key = find(assignment.left(equals));
        if (!key)
            return key.failure();
        const auto value = parseValue(**key, assignment.mid(equals + 1));
        if (!value)
            return value.failure();
        if (values.contains((*key)->name))
            return Failure{Failure::Kind::Usage, tr("\"%1\" is given twice").arg((*key)->name), {}};
        values.insert((*key)->name, *value);
    }
    if (const auto conflicting = conflict(values))
        return *conflicting;
    return values;
}

Result<int> SettingNames::parseValue(const SettingKey& key, const QString& text)
{
    if (key.kind == SettingKey::Kind::Picture) {
        const bool isPercent = text.endsWith(QLatin1Char('%'));
        bool isNumber = false;
        const int number = (isPercent ? text.chopped(1) : text).toInt(&isNumber);
        const int value = isPercent ? number + PictureSettings::kMinimum : number;
        const bool isInRange =
            value >= PictureSettings::kMinimum && value <= PictureSettings::kMaximum;
        if (isNumber && number >= 0 && number <= PictureSettings::kMaximum && isInRange)
            return value;
        return Failure{Failure::Kind::Usage, tr("\"%1\" is no value of %2").arg(text, key.name),
                       tr("Give a percentage from 0% to 100%, or a number from %1 to %2.")
                           .arg(PictureSettings::kMinimum)
                           .arg(PictureSettings::kMaximum)};
    }
    const QStringList names = valueNames(key);
    for (const SettingKey::Value& each : key.values) {
        if (each.name == text && names.contains(text))
            return each.value;
    }
    return Failure{Failure::Kind::Usage, tr("\"%1\" is no value of %2").arg(text, key.name),
                   tr("Its values are %1.").arg(names.join(QStringLiteral(", ")))};
}

std::optional<Failure> SettingNames::conflict(const SettingValues& values)
{
    const QString view = QString::fromLatin1(DeviceSettings::row(DeviceSetting::CameraView).name);
    const QString framing =
        QString::fromLatin1(DeviceSettings::row(DeviceSetting::AutoFrameMode).name);
    if (values.value(framing, kFramingOff) == kFramingOff ||
        values.value(view, kWidestView) == kWidestView)
        return std::nullopt;
    return Failure{Failure::Kind::Usage,
                   tr("%1 works with %2=%3 only").arg(framing, view).arg(kWidestView),
                   tr("Leave out %1, or set %2=off.").arg(view, framing)};
}

QString SettingNames::format(const SettingKey& key, int value)
{
    if (key.kind == SettingKey::Kind::Picture) {
        const bool isShown =
            value >= PictureSettings::kMinimum && value <= PictureSettings::kMaximum;
        // A camera may have a value off the scale, of which the nearer end would be wrong.
        return isShown ? QString::number(PictureSettings::percent(value)) + QLatin1Char('%')
                       : QString::number(value);
    }
    for (const SettingKey::Value& each : key.values) {
        if (each.value == value)
            return each.name;
    }
    // A camera may have any level: each name stands for all levels up to its own.
    if (key.setting == DeviceSetting::PickupSensitivity && value >= 0) {
        for (const SettingKey::Value& each : key.values) {
            if (value <= each.value)
                return each.name;
        }
    }
    return QString::number(value);
}

QJsonValue SettingNames::toJson(const SettingKey& key, int value)
{
    if (key.kind == SettingKey::Kind::Picture)
        return value;
    const QString text = format(key, value);
    bool isNumber = false;
    const int number = text.toInt(&isNumber);
    return isNumber ? QJsonValue(number) : QJsonValue(text);
}

std::optional<int> SettingNames::valueOf(const SettingKey& key, const RegisterValues& registers)
{
    switch (key.kind) {
    case SettingKey::Kind::Picture:
        return valueIn(registers, key.property);
    case SettingKey::Kind::Preset:
        return presetOf(registers);
    case SettingKey::Kind::Framing:
        return framingOf(registers);
    case SettingKey::Kind::Device:
        break;
    }
    return valueIn(registers, key.setting);
}

SettingValues SettingNames::valuesOf(const RegisterValues& registers)
{
    SettingValues values;
    for (const SettingKey& key : keys()) {
        if (const auto value = valueOf(key, registers))
            values.insert(key.name, *value);
    }
    return values;
}

Registers SettingNames::registersOf(const QStringList& names)
{
    Registers all;
    for (const SettingKey& key : keys()) {
        if (names.contains(key.name))
            all.merge(key.registers());
    }
    return all;
}
