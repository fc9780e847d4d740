#include "FirmwareInstaller.h"

#include "FirmwareVerdict.h"
#include "KnownImages.h"
#include "TransferClock.h"

#include <algorithm>
#include <cmath>
#include <QFileInfo>
#include <QRegularExpression>
#include <set>

namespace {

using Clock = std::chrono::steady_clock;

/// A camera that has just come back may need a moment until it answers.
constexpr std::chrono::milliseconds kAskAgain{2000};

/// Whether a file is named after this version: "camera-1.0.6.bin" after 1.0.6 and not after 1.0.
bool isNamedAfter(const QString& file, const QString& version)
{
    const QRegularExpression word(
        QStringLiteral("(?<![0-9.])%1(?![0-9]|\\.[0-9])").arg(QRegularExpression::escape(version)));
    return !version.isEmpty() && word.match(QFileInfo(file).fileName()).hasMatch();
}

} // namespace

FirmwareInstaller::FirmwareInstaller(const Image& image, const Invocation& invocation,
                                     Progress progress)
    : m_image(image)
    , m_invocation(invocation)
    , m_progress(std::move(progress))
{
}

Result<FirmwareInstaller::Identity> FirmwareInstaller::identify(CameraLink& link)
{
    const auto serial = link.serialNumber();
    if (!serial)
        return serial.failure();
    const auto version = link.firmwareVersion();
    if (!version)
        return version.failure();
    return Identity{*serial, *version};
}

bool FirmwareInstaller::hasVersion(const QString& version, CameraResult& result) const
{
    const bool isKnown = KnownImages::ofThisUser().versionOf(m_image.bytes) == version;
    if (m_invocation.reinstall || (!isKnown && !isNamedAfter(m_image.file, version)))
        return false;
    result.outcome = CameraResult::Outcome::NothingToDo;
    result.details.insert(QStringLiteral("to"), version);
    result.rows.append({tr("has version %1 already; --reinstall writes it again").arg(version)});
    return true;
}

void FirmwareInstaller::install(CameraLink& link, CameraResult& result)
{
    std::optional<Failure> failure = link.open();
    const auto before = failure ? Result<Identity>(*failure) : identify(link);
    result.serial = link.knownSerialNumber();
    if (!before) {
        result.fail(before.failure());
        return;
    }
    result.details.insert(QStringLiteral("from"), before->version);
    if (hasVersion(before->version, result))
        return;
    if (m_invocation.dryRun) {
        result.rows.append({tr("has version %1 and would be written").arg(before->version)});
        return;
    }

    // From here on no arrival is missed, however quickly the camera restarts.
    CameraArrivals arrivals;
    const Clock::time_point start = Clock::now();
    failure = transfer(link, result);
    if (failure) {
        // A camera that has not received the whole image goes on with its old firmware. One that
        // does not answer may have restarted; only its return shows that.
        static_cast<void>(link.open());
        if (link.firmwareVersion()) {
            result.fail(*failure);
            return;
        }
    }
    link.close();
    m_progress(result, tr("restarts"), {{QStringLiteral("event"), QStringLiteral("restart")}});
    const auto returned = waitForReturn(arrivals, before->serial, start + kFirmwareInstallTimeout);
    const double seconds = std::chrono::duration<double>(Clock::now() - start).count();
    result.details.insert(QStringLiteral("seconds"), std::round(seconds * 10) / 10);
    if (returned)
        judge(*before, *returned, result);
    else
        result.fail(failure.value_or(returned.failure()));
}

std::optional<Failure> FirmwareInstaller::transfer(CameraLink& link, const CameraResult& result)
{
    TransferClock clock(Clock::now());
    return link.transferFirmware(m_image.file, [&](qint64 sent, qint64 size) {
        const auto step = clock.advance(sent, size, Clock::now());
        if (!step)
            return;
        m_progress(result, tr("%1%, %2 s left").arg(step->percent).arg(step->secondsLeft),
                   {{QStringLiteral("event"), QStringLiteral("transfer")},
                    {QStringLiteral("percent"), step->percent},
                    {QStringLiteral("secondsLeft"), step->secondsLeft}});
    });
}

std::optional<FirmwareInstaller::Returned> FirmwareInstaller::ask(const QString& path,
                                                                  const QString& serial) const
{
    std::vector<FoundCamera> cameras = CameraInventory::list();
    const auto found =
        std::find_if(cameras.begin(), cameras.end(),
                     [&path](const FoundCamera& camera) { return camera.hid.path == path; });
    if (found == cameras.end())
        return std::nullopt;
    CameraLink link(std::move(*found), m_invocation.timeout);
    if (link.open())
        return std::nullopt;
    const auto identity = identify(link);
    if (!identity || identity->serial != serial)
        return std::nullopt;
    return Returned{identity->version, !link.probe()};
}

Result<FirmwareInstaller::Returned> FirmwareInstaller::waitForReturn(CameraArrivals& arrivals,
                                                                     const QString& serial,
                                                                     Clock::time_point end) const
{
    std::set<QString> arrived; // and has not reported its serial number
    for (;;) {
        const auto left = std::chrono::duration_cast<std::chrono::milliseconds>(end - Clock::now());
        if (left.count() <= 0)
            return Failure{Failure::Kind::NotAnswered,
                           tr("the camera has not come back within %1 s")
                               .arg(kFirmwareInstallTimeout.count() / 1000),
                           tr("Unplug it and plug it in again.")};
        const CameraArrivals::Event event =
            arrivals.wait(arrived.empty() ? left : std::min(left, kAskAgain));
        if (event.kind == CameraArrivals::Event::Kind::Failed)
            return Failure{
                Failure::Kind::NotAnswered, tr("the watch for the camera has failed"), {}};
        if (event.kind == CameraArrivals::Event::Kind::Left)
            arrived.erase(event.path);
        if (event.kind == CameraArrivals::Event::Kind::Arrived)
            arrived.insert(event.path);
        for (const QString& path : arrived) {
            if (const auto returned = ask(path, serial))
                return *returned;
        }
    }
}

void FirmwareInstaller::judge(const Identity& before, const Returned& returned,
                              CameraResult& result) const
{
    result.details.insert(QStringLiteral("to"), returned.version);
    const FirmwareVerdict verdict =
        firmwareVerdict(returned.isConnected, before.version, returned.version);
    if (verdict == FirmwareVerdict::NotConnected) {
        result.fail({Failure::Kind::NotAnswered,
                     tr("the camera has come back and is not connected"),
                     tr("Unplug it and plug it in again.")});
        return;
    }
    if (verdict == FirmwareVerdict::SameVersion && !m_invocation.reinstall) {
        result.fail({Failure::Kind::Refused,
                     tr("the camera has come back with version %1, as before").arg(before.version),
                     tr("It has not taken the image; or the image is of this version, which "
                        "--reinstall allows.")});
        return;
    }
    if (verdict == FirmwareVerdict::Updated)
        KnownImages::ofThisUser().note(m_image.bytes, returned.version);
    result.rows.append({tr("%1 -> %2, in %3 s")
                            .arg(before.version, returned.version)
                            .arg(result.details.value(QStringLiteral("seconds")).toDouble())});
}
