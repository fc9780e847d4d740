#include "SettingsWriter.h"

#include <QJsonArray>

namespace {

/// What people call a register.
QString nameOf(const Register& id)
{
    for (const SettingKey& key : SettingNames::keys()) {
        if (key.kind != SettingKey::Kind::Preset && key.registers().count(id) > 0)
            return key.name;
    }
    return {};
}

} // namespace

void SettingsWriter::apply(CameraLink& link, const SettingValues& wanted, Mode mode,
                           CameraResult& result)
{
    const auto before = link.read(WritePlan::needed(wanted));
    if (!before) {
        result.fail(before.failure());
        return;
    }
    const auto writes = WritePlan::make(wanted, *before);
    if (!writes) {
        result.fail(writes.failure());
        return;
    }
    describe(*before, *writes, result);
    if (writes->empty()) {
        result.outcome = CameraResult::Outcome::NothingToDo;
        result.rows.append({tr("nothing to change")});
        return;
    }
    if (mode == Mode::DryRun)
        return;

    std::vector<RegisterWrite> done;
    std::optional<Failure> failure = write(link, *writes, done);
    if (!failure)
        failure = readBack(link, *writes);
    if (!failure)
        return;
    const std::optional<Failure> second = putBack(link, done, *before);
    result.details.insert(QStringLiteral("restored"), !second);
    const QString about =
        second ? tr("What had been written could not be put back: %1.").arg(second->message)
               : tr("What had been written was put back.");
    failure->hint = failure->hint.isEmpty() ? about : failure->hint + QLatin1Char(' ') + about;
    result.rows.clear();
    result.fail(*failure);
}

std::optional<Failure> SettingsWriter::write(CameraLink& link,
                                             const std::vector<RegisterWrite>& writes,
                                             std::vector<RegisterWrite>& done)
{
    for (const RegisterWrite& each : writes) {
        // A camera may execute a request and not answer, so a failed write may have changed it too.
        done.push_back(each);
        if (auto failure = link.write(each.id, each.value)) {
            failure->message = QStringLiteral("%1: %2").arg(nameOf(each.id), failure->message);
            return failure;
        }
    }
    return std::nullopt;
}

std::optional<Failure> SettingsWriter::readBack(CameraLink& link,
                                                const std::vector<RegisterWrite>& writes)
{
    RegisterValues expected;
    for (const RegisterWrite& each : writes)
        expected[each.id] = each.value;
    for (const auto& [id, value] : expected) {
        const auto now = link.read(id);
        if (!now)
            return now.failure();
        if (*now != value)
            return Failure{Failure::Kind::Different,
                           tr("%1: %2 was written, the camera reports %3")
                               .arg(nameOf(id))
                               .arg(value)
                               .arg(*now),
                           {}};
    }
    return std::nullopt;
}

std::optional<Failure> SettingsWriter::putBack(CameraLink& link,
                                               const std::vector<RegisterWrite>& done,
                                               const RegisterValues& before)
{
    // Anew, because a camera that has kept silent is asked nothing more.
    if (auto failure = link.open())
        return failure;
    const std::vector<RegisterWrite> writes = WritePlan::undo(done, before);
    // All of them, also after one that is refused: that may be the write that has failed, and the
    // camera still has the old value. What it reports in the end decides.
    for (const RegisterWrite& each : writes)
        static_cast<void>(link.write(each.id, each.value));
    return readBack(link, writes);
}

void SettingsWriter::describe(const RegisterValues& before,
                              const std::vector<RegisterWrite>& writes, CameraResult& result)
{
    RegisterValues after = before;
    for (const RegisterWrite& each : writes)
        after[each.id] = each.value;
    const SettingValues from = SettingNames::valuesOf(before);
    const SettingValues to = SettingNames::valuesOf(after);
    QJsonArray changes;
    for (const SettingKey& key : SettingNames::keys()) {
        if (!to.contains(key.name) || from.value(key.name) == to.value(key.name))
            continue;
        const int old = from.value(key.name);
        const int now = to.value(key.name);
        changes.append(QJsonObject{{QStringLiteral("key"), key.name},
                                   {QStringLiteral("from"), SettingNames::toJson(key, old)},
                                   {QStringLiteral("to"), SettingNames::toJson(key, now)}});
        result.rows.append({key.name, SettingNames::format(key, old), QStringLiteral("->"),
                            SettingNames::format(key, now)});
    }
    result.details.insert(QStringLiteral("changes"), changes);
}
