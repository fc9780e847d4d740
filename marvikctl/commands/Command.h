#pragma once

#include "CameraLink.h"
#include "Invocation.h"
#include "Report.h"

#include <functional>

/// One command of the program.
class Command
{
public:
    Command() = default;
    virtual ~Command() = default;
    Command(const Command&) = delete;
    Command& operator=(const Command&) = delete;

    /// Does what is asked and puts the results into @p report.
    virtual void run(const Invocation& invocation, Report& report) = 0;

protected:
    using Work = std::function<void(CameraLink& link, CameraResult& result)>;
    /// Opens each camera, lets @p work use it and closes it. A camera that fails does not stop the
    /// others.
    static void forEach(std::vector<CameraLink>& links, const Invocation& invocation,
                        Report& report, const Work& work);
    /// The same for the cameras that the user has chosen.
    static void forEachChosen(const Invocation& invocation, Report& report, const Work& work);
    /// The same for all cameras, or for those that the user has chosen.
    static void forEachPresent(const Invocation& invocation, Report& report, const Work& work);
    /// A failure when there are arguments after the command.
    [[nodiscard]] static bool refusesArguments(const Invocation& invocation, Report& report);
};
