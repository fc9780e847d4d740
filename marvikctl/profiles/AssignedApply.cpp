#include "AssignedApply.h"

#include <QCoreApplication>

namespace {

struct Texts
{
    Q_DECLARE_TR_FUNCTIONS(AssignedApply)
};

} // namespace

void AssignedApply::to(CameraLink& link, const ProfileFolders& folders, SettingsWriter::Mode mode,
                       CameraResult& result)
{
    const auto serial = link.serialNumber();
    if (!serial) {
        result.fail(serial.failure());
        return;
    }
    const auto assigned = AssignedSettings::of(folders, *serial, result.model);
    if (!assigned) {
        result.fail(assigned.failure());
        return;
    }
    if (!assigned->has_value()) {
        result.outcome = CameraResult::Outcome::NothingToDo;
        result.rows.append({Texts::tr("nothing is assigned to this camera")});
        result.details.insert(QStringLiteral("source"), QJsonValue());
        return;
    }
    result.rows.append({(*assigned)->title()});
    result.details.insert(QStringLiteral("source"), (*assigned)->toJson());
    SettingsWriter::apply(link, (*assigned)->values, mode, result);
}
