#include "IdentifyCommand.h"

#include "Selection.h"

#include <thread>

namespace {

/// Long enough to be seen.
constexpr std::chrono::milliseconds kShown{700};

} // namespace

void IdentifyCommand::run(const Invocation& invocation, Report& report)
{
    if (refusesArguments(invocation, report))
        return;
    forEachChosen(invocation, report, [](CameraLink& link, CameraResult& result) {
        const auto stream = link.stream();
        if (!stream) {
            result.fail(stream.failure());
            return;
        }
        if (stream->streamOn != 0) {
            result.fail({Failure::Kind::Busy, tr("somebody uses the picture of this camera"),
                         tr("Try again when nobody does.")});
            return;
        }
        const Register mirror = DeviceSetting::HorizontalMirror;
        const auto before = link.read(mirror);
        if (!before) {
            result.fail(before.failure());
            return;
        }
        const auto over = link.write(mirror, *before == 0 ? 1 : 0);
        if (!over)
            std::this_thread::sleep_for(kShown);
        // Also after a write that has failed: the camera may have executed it.
        const auto back = link.write(mirror, *before);
        if (over || back)
            result.fail(over ? *over : *back);
        else
            result.rows.append({tr("mirrored and mirrored back")});
    });
}
