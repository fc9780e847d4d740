#include "FirmwareCommand.h"

#include "FirmwareImage.h"
#include "HelperProcess.h"
#include "Selection.h"
#include "StopRequest.h"
#include "UsbBus.h"

#include <algorithm>
#include <atomic>
#include <map>
#include <memory>
#include <mutex>
#include <thread>

void FirmwareCommand::run(const Invocation& invocation, Report& report)
{
    const QString verb = invocation.arguments.value(0);
    if (verb == QLatin1String("check") && invocation.arguments.size() == 1) {
        report.set(QStringLiteral("verb"), verb);
        check(invocation, report);
    } else if (verb == QLatin1String("install") && invocation.arguments.size() == 2) {
        report.set(QStringLiteral("verb"), verb);
        install(invocation, report, invocation.arguments.at(1));
    } else {
        report.fail({Failure::Kind::Usage, tr("what to do with firmware?"),
                     tr("\"firmware check\" or \"firmware install FILE\".")});
    }
}

void FirmwareCommand::check(const Invocation& invocation, Report& report)
{
    report.setAnswer();
    forEachChosen(invocation, report, [](CameraLink& link, CameraResult& result) {
        const auto version = link.firmwareVersion();
        if (!version) {
            result.fail(version.failure());
            return;
        }
        result.details.insert(QStringLiteral("firmware"), *version);
        const auto answer = HelperProcess::check(result.model, *version);
        if (!answer) {
            result.fail(answer.failure());
            return;
        }
        const bool isOffered = answer->value(QStringLiteral("isOffered")).toBool();
        QJsonObject offer{{QStringLiteral("isOffered"), isOffered}};
        if (isOffered) {
            for (const char* key : {"details", "url", "size"})
                offer.insert(QLatin1String(key), answer->value(QLatin1String(key)));
            result.rows.append({tr("%1; newer firmware is offered").arg(*version)});
            const QString details = answer->value(QStringLiteral("details")).toString();
            if (!details.isEmpty())
                result.rows.append({details});
            result.rows.append({answer->value(QStringLiteral("url")).toString()});
        } else {
            result.rows.append({tr("%1; up to date").arg(*version)});
            result.outcome = CameraResult::Outcome::NothingToDo;
        }
        result.details.insert(QStringLiteral("offer"), offer);
    });
}

void FirmwareCommand::install(const Invocation& invocation, Report& report, const QString& file)
{
    // Everything about the file is known before a camera receives the first byte.
    const std::optional<QByteArray> bytes = FirmwareImage::read(file);
    if (!bytes || bytes->isEmpty()) {
        report.fail({Failure::Kind::File,
                     bytes ? tr("%1 is empty").arg(file) : tr("%1 cannot be read").arg(file),
                     tr("An image has at most %1 MiB.").arg(FirmwareImage::kMaxBytes >> 20)});
        return;
    }
    auto links = Selection::choose(invocation);
    if (!links) {
        report.fail(links.failure());
        return;
    }
    const FirmwareInstaller::Image image{file, *bytes};
    report.set(QStringLiteral("image"), QJsonObject{{QStringLiteral("file"), file},
                                                    {QStringLiteral("bytes"), bytes->size()}});
    std::vector<Job> jobs;
    for (CameraLink& link : *links)
        jobs.push_back({&link, &report.add(link)});

    const StopRequest stop;
    std::unique_ptr<HelperProcess::SleepHold> awake;
    if (!invocation.dryRun)
        awake = std::make_unique<HelperProcess::SleepHold>(tr("Firmware is written into a camera"));
    std::mutex output;
    FirmwareInstaller installer(
        image, invocation,
        [&](const CameraResult& camera, const QString& text, const QJsonObject& event) {
            QJsonObject line = event;
            line.insert(QStringLiteral("serial"), camera.serial);
            line.insert(QStringLiteral("path"), camera.path);
            const std::lock_guard<std::mutex> lock(output);
            report.progress(QStringLiteral("%1: %2").arg(camera.title(), text), line);
        });
    installAll(jobs, invocation.parallel, stop, installer);
    const QString problem = awake ? awake->release() : QString();
    if (!problem.isEmpty())
        report.warn(
            {Failure::Kind::File, tr("the computer could have gone to sleep meanwhile"), problem});
}

void FirmwareCommand::installAll(std::vector<Job>& jobs, int parallel, const StopRequest& stop,
                                 FirmwareInstaller& installer)
{
    std::map<QString, std::vector<Job>> byBus;
    for (const Job& job : jobs)
        byBus[UsbBus::of(job.link->path())].push_back(job);
    std::vector<std::vector<Job>> buses;
    buses.reserve(byBus.size());
    for (auto& [bus, ofThisBus] : byBus)
        buses.push_back(std::move(ofThisBus));

    std::atomic<std::size_t> next{0};
    const auto work = [&] {
        for (std::size_t bus = next++; bus < buses.size(); bus = next++) {
            for (const Job& job : buses[bus]) {
                // A camera with half an image may not start again: only the next one is left out.
                if (stop.isMade())
                    job.result->fail(
                        {Failure::Kind::Stopped, tr("stopped before this camera"), {}});
                else
                    installer.install(*job.link, *job.result);
                job.link->close();
            }
        }
    };
    std::vector<std::thread> threads;
    const std::size_t count = std::min(static_cast<std::size_t>(parallel), buses.size());
    for (std::size_t i = 1; i < count; ++i)
        threads.emplace_back(work);
    work();
    for (std::thread& thread : threads)
        thread.join();
}
