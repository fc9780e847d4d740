#pragma once

#include "Command.h"
#include "FirmwareInstaller.h"

#include <functional>

class StopRequest;

/// Firmware: asks the update service for newer, or installs an image from a file.
class FirmwareCommand : public Command
{
    Q_DECLARE_TR_FUNCTIONS(FirmwareCommand)

public:
    void run(const Invocation& invocation, Report& report) override;

private:
    struct Job
    {
        CameraLink* link;
        CameraResult* result;
    };

    static void check(const Invocation& invocation, Report& report);
    static void install(const Invocation& invocation, Report& report, const QString& file);
    /// Installs the jobs of each bus one after the other, and of several buses at a time.
    static void installAll(std::vector<Job>& jobs, int parallel, const StopRequest& stop,
                           FirmwareInstaller& installer);
};
