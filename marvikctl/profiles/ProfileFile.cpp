#include "ProfileFile.h"

#include "JsonLines.h"
#include "ProfileDocument.h"

#include <cmath>
#include <QJsonDocument>

namespace {

const QString kSettingsKey = QStringLiteral("settings");
const QString kDescriptionKey = QStringLiteral("description");

/// A number or a text as SettingNames::parseValue() takes it; empty for anything else.
QString wordOf(const QJsonValue& value)
{
    if (value.isString())
        return value.toString();
    const double number = value.toDouble(-1);
    const bool isWhole =
        value.isDouble() && number >= 0 && number < 1e6 && std::floor(number) == number;
    return isWhole ? QString::number(static_cast<int>(number)) : QString();
}

} // namespace

std::optional<Failure> ProfileFile::checkFrame(const QJsonObject& root, const QByteArray& text,
                                               const QString& name)
{
    const QStringList keys = root.keys();
    for (const QString& key : keys) {
        if (key != ProfileDocument::schemaKey() && key != kSettingsKey && key != kDescriptionKey)
            return ProfileDocument::refusal(
                name, JsonLines::ofKey(text, key), tr("unknown member \"%1\"").arg(key),
                tr("A profile has the members schema, description and settings."));
    }
    if (!root.value(kSettingsKey).isObject())
        return ProfileDocument::refusal(name, JsonLines::ofKey(text, kSettingsKey),
                                        tr("there are no settings"));
    return std::nullopt;
}

Result<SettingValues> ProfileFile::parse(const QByteArray& text, const QString& name)
{
    const auto root = ProfileDocument::parse(text, name);
    if (!root)
        return root.failure();
    if (const auto failure = checkFrame(*root, text, name))
        return *failure;
    SettingValues values;
    const QJsonObject settings = root->value(kSettingsKey).toObject();
    for (auto member = settings.begin(); member != settings.end(); ++member) {
        const int line = JsonLines::ofKey(text, member.key());
        const auto key = SettingNames::find(member.key());
        if (!key)
            return ProfileDocument::refusal(name, line, key.failure().message, key.failure().hint);
        const auto value = SettingNames::parseValue(**key, wordOf(member.value()));
        if (!value)
            return ProfileDocument::refusal(name, line, value.failure().message,
                                            value.failure().hint);
        values.insert(member.key(), *value);
    }
    if (const auto conflict = SettingNames::conflict(values))
        return ProfileDocument::refusal(name, JsonLines::ofKey(text, kSettingsKey),
                                        conflict->message, conflict->hint);
    return values;
}

QJsonObject ProfileFile::settings(const SettingValues& values)
{
    QJsonObject settings;
    for (const SettingKey& key : SettingNames::keys()) {
        if (values.contains(key.name))
            settings.insert(key.name, SettingNames::toJson(key, values.value(key.name)));
    }
    return settings;
}

QByteArray ProfileFile::text(const SettingValues& values)
{
    return QJsonDocument(QJsonObject{{ProfileDocument::schemaKey(), ProfileDocument::kSchema},
                                     {kSettingsKey, settings(values)}})
        .toJson();
}

SettingValues ProfileFile::storable(const SettingValues& values)
{
    SettingValues stored;
    const QString framing =
        QString::fromLatin1(DeviceSettings::row(DeviceSetting::AutoFrameMode).name);
    const bool isFraming =
        values.value(framing, SettingNames::kFramingOff) != SettingNames::kFramingOff;
    for (const SettingKey& key : SettingNames::keys()) {
        const bool followsFraming = isFraming && key.kind == SettingKey::Kind::Device &&
                                    key.setting == DeviceSetting::CameraView;
        if (!values.contains(key.name) || key.kind == SettingKey::Kind::Preset || followsFraming)
            continue;
        const QString word = wordOf(SettingNames::toJson(key, values.value(key.name)));
        // A camera may report a value that nobody can set.
        if (const auto value = SettingNames::parseValue(key, word))
            stored.insert(key.name, *value);
    }
    return stored;
}
