#include "GetCommand.h"

#include "SettingNames.h"

void GetCommand::run(const Invocation& invocation, Report& report)
{
    std::vector<const SettingKey*> keys;
    for (const QString& name : invocation.arguments) {
        const auto key = SettingNames::find(name);
        if (!key) {
            report.fail(key.failure());
            return;
        }
        keys.push_back(*key);
    }
    const bool isOneValue = keys.size() == 1;
    if (keys.empty()) {
        for (const SettingKey& key : SettingNames::keys())
            keys.push_back(&key);
    }
    report.setAnswer();
    forEachChosen(invocation, report, [&](CameraLink& link, CameraResult& result) {
        QJsonObject settings;
        RegisterValues registers;
        for (const SettingKey* key : keys) {
            const auto values = link.read(key->registers());
            if (!values) {
                result.fail(values.failure());
                settings.insert(key->name, QJsonValue());
                continue;
            }
            const std::optional<int> value = SettingNames::valueOf(*key, *values);
            settings.insert(key->name, SettingNames::toJson(*key, *value));
            const QString text = SettingNames::format(*key, *value);
            result.rows.append(isOneValue ? QStringList{text} : QStringList{key->name, text});
        }
        result.details.insert(QStringLiteral("settings"), settings);
    });
}
