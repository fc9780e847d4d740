#include "AssignedSettings.h"

#include "Assignments.h"
#include "DeviceIniStore.h"
#include "PictureSettings.h"
#include "ProfileStore.h"

namespace {

/// The saved picture values; without those that are missing in the file, which read as 0.
SettingValues savedPicture(const QString& serial)
{
    SettingValues values;
    const auto saved = DeviceIniStore().read(serial);
    if (!saved)
        return values;
    for (const PictureSettingRow& row : PictureSettings::rows()) {
        const int value = (*saved).*row.value;
        if (value >= PictureSettings::kMinimum && value <= PictureSettings::kMaximum)
            values.insert(QString::fromLatin1(row.name), value);
    }
    return values;
}

} // namespace

Result<std::optional<AssignedSettings>>
AssignedSettings::of(const ProfileFolders& folders, const QString& serial, const QString& model)
{
    const auto profile = Assignments(folders).profileOf(serial, model);
    if (!profile)
        return profile.failure();
    AssignedSettings assigned;
    assigned.profile = *profile;
    if (!assigned.profile.isEmpty()) {
        const auto values = ProfileStore(folders).read(assigned.profile);
        if (!values)
            return values.failure();
        assigned.values = *values;
        return std::optional<AssignedSettings>(assigned);
    }
    assigned.values = savedPicture(serial);
    if (assigned.values.isEmpty())
        return std::optional<AssignedSettings>();
    return std::optional<AssignedSettings>(assigned);
}

QString AssignedSettings::title() const
{
    return profile.isEmpty() ? tr("saved picture values") : tr("profile %1").arg(profile);
}

QJsonObject AssignedSettings::toJson() const
{
    if (profile.isEmpty())
        return {{QStringLiteral("kind"), QStringLiteral("saved")}};
    return {{QStringLiteral("kind"), QStringLiteral("profile")}, {QStringLiteral("name"), profile}};
}
