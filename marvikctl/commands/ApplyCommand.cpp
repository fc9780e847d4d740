#include "ApplyCommand.h"

#include "AssignedApply.h"

void ApplyCommand::run(const Invocation& invocation, Report& report)
{
    if (refusesArguments(invocation, report))
        return;
    const ProfileFolders folders = ProfileFolders::ofThisSystem();
    const auto mode =
        invocation.dryRun ? SettingsWriter::Mode::DryRun : SettingsWriter::Mode::Write;
    const auto work = [&](CameraLink& link, CameraResult& result) {
        AssignedApply::to(link, folders, mode, result);
    };
    if (!invocation.once) {
        forEachChosen(invocation, report, work);
        return;
    }
    // For scripts that run when anything is plugged in, or when a user logs in: every camera that
    // is there, and none is no failure.
    if (CameraInventory::list().empty())
        report.setNothingToDo();
    else
        forEachPresent(invocation, report, work);
}
