#include "ProfileFile.h"

#include "JsonLines.h"

#include <cmath>
#include <QJsonDocument>

namespace {

const QString kSchemaKey = QStringLiteral("schema");
const QString kSettingsKey = QStringLiteral("settings");
const QString kDescriptionKey = QStringLiteral("description");

Failure refusal(const QString& name, int line, const QString& why, const QString& hint = {})
{
    return {Failure::Kind::Usage, QStringLiteral("%1:%2: %3").arg(name).arg(line).arg(why), hint};
}

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
        if (key != kSchemaKey && key != kSettingsKey && key != kDescriptionKey)
            return refusal(name, JsonLines::ofKey(text, key), tr("unknown member \"%1\"").arg(key),
                           tr("A profile has the members schema, description and settings."));
    }
    if (root.value(kSchemaKey) != QJsonValue(kSchema))
        return refusal(name, JsonLines::ofKey(text, kSchemaKey),
                       tr("the schema is not %1").arg(kSchema));
    if (!root.value(kSettingsKey).isObject())
        return refusal(name, JsonLines::ofKey(text, kSettingsKey), tr("there are no settings"));
    return std::nullopt;
}

Result<SettingValues> ProfileFile::parse(const QByteArray& text, const QString& name)
{
    QJsonParseError error{};
    const QJsonDocument document = QJsonDocument::fromJson(text, &error);
    if (!document.isObject())
        return refusal(name, JsonLines::at(text, error.offset),
                       document.isNull() ? error.errorString() : tr("this is no JSON object"));
    const QJsonObject root = document.object();
    if (const auto failure = checkFrame(root, text, name))
        return *failure;
    SettingValues values;
    const QJsonObject settings = root.value(kSettingsKey).toObject();
    for (auto member = settings.begin(); member != settings.end(); ++member) {
        const int line = JsonLines::ofKey(text, member.key());
        const auto key = SettingNames::find(member.key());
        if (!key)
            return refusal(name, line, key.failure().message, key.failure().hint);
        const auto value = SettingNames::parseValue(**key, wordOf(member.value()));
        if (!value)
            return refusal(name, line, value.failure().message, value.failure().hint);
        values.insert(member.key(), *value);
    }
    if (const auto conflict = SettingNames::conflict(values))
        return refusal(name, JsonLines::ofKey(text, kSettingsKey), conflict->message,
                       conflict->hint);
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
    return QJsonDocument(QJsonObject{{kSchemaKey, kSchema}, {kSettingsKey, settings(values)}})
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
