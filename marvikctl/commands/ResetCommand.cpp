#include "ResetCommand.h"

#include "SettingsWriter.h"

void ResetCommand::run(const Invocation& invocation, Report& report)
{
    if (refusesArguments(invocation, report))
        return;
    const auto mode =
        invocation.dryRun ? SettingsWriter::Mode::DryRun : SettingsWriter::Mode::Write;
    forEachChosen(invocation, report, [mode](CameraLink& link, CameraResult& result) {
        SettingsWriter::apply(link, WritePlan::factoryDefaults(), mode, result);
    });
}
