#include "WatchCommand.h"

#include "AssignedApply.h"
#include "CameraArrivals.h"
#include "StopRequest.h"

#include <algorithm>

void WatchCommand::run(const Invocation& invocation, Report& report)
{
    if (refusesArguments(invocation, report))
        return;
    // Before the cameras are listed: one that comes meanwhile is listed, reported or both.
    CameraArrivals arrivals;
    if (!arrivals.isOpen()) {
        report.fail({Failure::Kind::NotAnswered, tr("arriving cameras cannot be watched"), {}});
        return;
    }
    const StopRequest stop([&arrivals] { arrivals.stop(); });
    report.progress(tr("watching"), {{QStringLiteral("event"), QStringLiteral("watching")}});
    for (FoundCamera& camera : CameraInventory::list()) {
        if (!stop.isMade())
            apply(invocation, report, std::move(camera));
    }
    while (!stop.isMade()) {
        const CameraArrivals::Event event = arrivals.wait();
        if (event.kind == CameraArrivals::Event::Kind::Failed) {
            report.fail({Failure::Kind::NotAnswered, tr("the watch has failed"), {}});
            break;
        }
        if (event.kind != CameraArrivals::Event::Kind::Arrived)
            continue;
        std::vector<FoundCamera> cameras = CameraInventory::list();
        const auto found =
            std::find_if(cameras.begin(), cameras.end(), [&event](const FoundCamera& camera) {
                return camera.hid.path == event.path;
            });
        if (found != cameras.end())
            apply(invocation, report, std::move(*found));
    }
    report.set(QStringLiteral("watched"), QJsonObject{{QStringLiteral("applied"), m_applied},
                                                      {QStringLiteral("unchanged"), m_unchanged},
                                                      {QStringLiteral("failed"), m_failed}});
}

void WatchCommand::apply(const Invocation& invocation, const Report& report, FoundCamera camera)
{
    CameraLink link(std::move(camera), invocation.timeout);
    CameraResult result = CameraResult::of(link);
    const auto mode =
        invocation.dryRun ? SettingsWriter::Mode::DryRun : SettingsWriter::Mode::Write;
    if (const auto failure = link.open())
        result.fail(*failure);
    else
        AssignedApply::to(link, m_folders, mode, result);
    result.serial = link.knownSerialNumber();
    switch (result.outcome) {
    case CameraResult::Outcome::Done:
        ++m_applied;
        break;
    case CameraResult::Outcome::NothingToDo:
        ++m_unchanged;
        break;
    case CameraResult::Outcome::Failed:
        ++m_failed;
        break;
    }
    report.progress(result, QStringLiteral("camera"));
}
