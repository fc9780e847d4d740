#include "WritePlan.h"

#include "PictureSettings.h"

#include <algorithm>

namespace {

QString nameOf(DeviceSetting setting)
{
    return QString::fromLatin1(DeviceSettings::row(setting).name);
}

/// The camera uses one framing mode at a time, and always on its widest view.
std::vector<RegisterWrite> framingWrites(int wanted, int current, const RegisterValues& registers)
{
    if (wanted == current)
        return {};
    std::vector<RegisterWrite> writes;
    if (wanted == SettingNames::kFramingOff) {
        for (const DeviceSetting setting :
             {DeviceSetting::AutoFrameSwitch, DeviceSetting::FrameMaster}) {
            if (registers.at(setting) != 0)
                writes.push_back({setting, 0});
        }
        return writes;
    }
    if (current == SettingNames::kFramingOff)
        writes.push_back({DeviceSetting::CameraView, SettingNames::kWidestView});
    if (wanted == SettingNames::kFramingDivision) {
        writes.push_back({DeviceSetting::AutoFrameSwitch, 0});
        writes.push_back({DeviceSetting::FrameMaster, 1});
        return writes;
    }
    const bool wasAutomatic =
        current == SettingNames::kFramingGroup || current == SettingNames::kFramingIndividual;
    if (!wasAutomatic) {
        writes.push_back({DeviceSetting::FrameMaster, 0});
        writes.push_back({DeviceSetting::AutoFrameSwitch, 1});
    }
    const int mode = wanted - SettingNames::kFramingGroup;
    const int before = registers.at(DeviceSetting::AutoFrameMode);
    if ((before != 0) != (mode != 0))
        writes.push_back({DeviceSetting::AutoFrameMode, mode});
    return writes;
}

/// The picture values that are wanted: those of the preset, and over them those with a name.
RegisterValues wantedPicture(const SettingValues& wanted)
{
    RegisterValues values;
    for (const SettingKey& key : SettingNames::keys()) {
        if (key.kind != SettingKey::Kind::Preset || !wanted.contains(key.name))
            continue;
        if (const auto preset = PictureSettings::preset(wanted.value(key.name))) {
            for (const PictureSettingRow& row : PictureSettings::rows())
                values[row.property] = (*preset).*row.value;
        }
    }
    for (const SettingKey& key : SettingNames::keys()) {
        if (key.kind == SettingKey::Kind::Picture && wanted.contains(key.name))
            values[key.property] = wanted.value(key.name);
    }
    return values;
}

} // namespace

Registers WritePlan::needed(const SettingValues& wanted)
{
    Registers registers = SettingNames::registersOf(wanted.keys());
    const bool setsFraming = wanted.contains(nameOf(DeviceSetting::AutoFrameMode));
    const bool setsView = wanted.contains(nameOf(DeviceSetting::CameraView));
    // Each of the two depends on the other.
    if (setsFraming || setsView)
        registers.merge(SettingNames::registersOf(
            {nameOf(DeviceSetting::AutoFrameMode), nameOf(DeviceSetting::CameraView)}));
    return registers;
}

Result<std::vector<RegisterWrite>> WritePlan::make(const SettingValues& wanted,
                                                   const RegisterValues& current)
{
    std::vector<RegisterWrite> writes;
    const QString framing = nameOf(DeviceSetting::AutoFrameMode);
    const QString view = nameOf(DeviceSetting::CameraView);
    RegisterValues state = current;
    if (wanted.contains(framing) || wanted.contains(view)) {
        const SettingValues known = SettingNames::valuesOf(current);
        const int wantedFraming = wanted.value(framing, known.value(framing));
        const int wantedView = wanted.value(view, SettingNames::kWidestView);
        if (wanted.contains(view) && wantedFraming != SettingNames::kFramingOff &&
            wantedView != SettingNames::kWidestView)
            return Failure{Failure::Kind::Conflict,
                           tr("%1 cannot be changed while %2 is on").arg(view, framing),
                           tr("Set %1=off too.").arg(framing)};
        writes = framingWrites(wantedFraming, known.value(framing), current);
        for (const RegisterWrite& each : writes)
            state[each.id] = each.value;
    }
    // The view comes last of the settings, after all that has changed it.
    std::vector<RegisterWrite> views;
    for (const SettingKey& key : SettingNames::keys()) {
        if (key.kind != SettingKey::Kind::Device || !wanted.contains(key.name) ||
            state.at(key.setting) == wanted.value(key.name))
            continue;
        auto& list = key.setting == DeviceSetting::CameraView ? views : writes;
        list.push_back({key.setting, wanted.value(key.name)});
    }
    writes.insert(writes.end(), views.begin(), views.end());
    const RegisterValues picture = wantedPicture(wanted);
    for (const PictureSettingRow& row : PictureSettings::rows()) {
        const auto value = picture.find(row.property);
        if (value != picture.end() && current.at(row.property) != value->second)
            writes.push_back({row.property, value->second});
    }
    return writes;
}

std::vector<RegisterWrite> WritePlan::undo(const std::vector<RegisterWrite>& done,
                                           const RegisterValues& before)
{
    std::vector<RegisterWrite> writes;
    for (auto each = done.rbegin(); each != done.rend(); ++each) {
        const bool isLater = std::any_of(writes.begin(), writes.end(),
                                         [&](const RegisterWrite& w) { return w.id == each->id; });
        if (!isLater)
            writes.push_back({each->id, before.at(each->id)});
    }
    return writes;
}

SettingValues WritePlan::factoryDefaults()
{
    SettingValues values;
    for (const SettingKey& key : SettingNames::keys()) {
        switch (key.kind) {
        case SettingKey::Kind::Picture:
            values.insert(key.name, PictureSettings::kFactoryDefault);
            break;
        case SettingKey::Kind::Framing:
            values.insert(key.name,
                          SettingNames::kFramingGroup +
                              DeviceSettings::row(DeviceSetting::AutoFrameMode).factoryDefault);
            break;
        case SettingKey::Kind::Device:
            values.insert(key.name, DeviceSettings::row(key.setting).factoryDefault);
            break;
        case SettingKey::Kind::Preset:
            break; // follows from the values
        }
    }
    return values;
}
