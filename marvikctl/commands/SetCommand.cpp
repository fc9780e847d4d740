#include "SetCommand.h"

#include "SettingsWriter.h"

void SetCommand::run(const Invocation& invocation, Report& report)
{
    const auto wanted = SettingNames::parse(invocation.arguments);
    if (!wanted) {
        report.fail(wanted.failure());
        return;
    }
    if (wanted->isEmpty()) {
        report.fail({Failure::Kind::Usage, tr("nothing to set"), tr("For example: set fov=90")});
        return;
    }
    const auto mode =
        invocation.dryRun ? SettingsWriter::Mode::DryRun : SettingsWriter::Mode::Write;
    forEachChosen(invocation, report, [&](CameraLink& link, CameraResult& result) {
        SettingsWriter::apply(link, *wanted, mode, result);
    });
}
