#include "SaveCommand.h"

#include "DeviceIniStore.h"
#include "PictureSettings.h"
#include "SettingNames.h"

#include <algorithm>

namespace {

bool hasSameValues(const PictureParameters& a, const PictureParameters& b)
{
    const auto& rows = PictureSettings::rows();
    return std::all_of(rows.begin(), rows.end(),
                       [&](const PictureSettingRow& row) { return a.*row.value == b.*row.value; });
}

} // namespace

void SaveCommand::run(const Invocation& invocation, Report& report)
{
    if (refusesArguments(invocation, report))
        return;
    forEachChosen(invocation, report, [&](CameraLink& link, CameraResult& result) {
        const auto serial = link.serialNumber();
        if (!serial) {
            result.fail(serial.failure());
            return;
        }
        PictureParameters picture;
        RegisterValues registers;
        for (const PictureSettingRow& row : PictureSettings::rows()) {
            const auto value = link.read(row.property);
            if (!value) {
                result.fail(value.failure());
                return;
            }
            picture.*row.value = *value;
            registers[row.property] = *value;
        }
        QJsonObject settings;
        for (const SettingKey& key : SettingNames::keys()) {
            const auto value = SettingNames::valueOf(key, registers);
            if (!value)
                continue;
            settings.insert(key.name, SettingNames::toJson(key, *value));
            result.rows.append({key.name, SettingNames::format(key, *value)});
            if (key.kind == SettingKey::Kind::Preset)
                picture.imageMode = *value;
        }
        result.details.insert(QStringLiteral("settings"), settings);
        const auto saved = DeviceIniStore().read(*serial);
        if (saved && hasSameValues(*saved, picture))
            result.outcome = CameraResult::Outcome::NothingToDo;
        else if (!invocation.dryRun && !DeviceIniStore().write(*serial, picture))
            result.fail({Failure::Kind::File, tr("device.ini cannot be written"),
                         tr("Is the disk full, or the folder of another user?")});
    });
}
