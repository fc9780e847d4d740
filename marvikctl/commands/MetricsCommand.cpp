#include "MetricsCommand.h"

#include "AssignedSettings.h"
#include "PrometheusText.h"
#include "Selection.h"
#include "WholeFile.h"
#include "WritePlan.h"

namespace {

const QString kCameras = QStringLiteral("marvik_cameras");
const QString kUp = QStringLiteral("marvik_camera_up");
const QString kFirmware = QStringLiteral("marvik_camera_firmware_info");
const QString kSetting = QStringLiteral("marvik_camera_setting");
const QString kExchange = QStringLiteral("marvik_camera_exchange_seconds");
const QString kDrift = QStringLiteral("marvik_camera_profile_drift");

void declareAll(PrometheusText& metrics)
{
    metrics.declare(kCameras, QStringLiteral("Supported cameras that are plugged in."));
    metrics.declare(kUp, QStringLiteral("1 when the camera answers."));
    metrics.declare(kFirmware, QStringLiteral("The firmware version, as a label."));
    metrics.declare(kSetting,
                    QStringLiteral("A setting: degrees, levels, picture values as stored, 0 off "
                                   "and 1 on, framing 0 off 1 group 2 individual 3 division."));
    metrics.declare(kExchange, QStringLiteral("Seconds of one request and its answer."));
    metrics.declare(kDrift,
                    QStringLiteral("Settings in which the camera differs from its profile."));
}

/// How many values would be written to give the camera what is assigned to it.
std::optional<int> driftOf(const SettingValues& wanted, const RegisterValues& registers)
{
    const auto writes = WritePlan::make(wanted, registers);
    if (!writes)
        return std::nullopt;
    return static_cast<int>(writes->size());
}

std::optional<Failure> measure(CameraLink& link, PrometheusText& metrics)
{
    using Clock = std::chrono::steady_clock;
    const PrometheusText::Labels unknown{
        {QStringLiteral("serial"), QString()},
        {QStringLiteral("model"), QString::fromUtf8(link.camera().model->modelText)},
        {QStringLiteral("path"), link.path()}};
    const auto serial = link.serialNumber();
    const Clock::time_point start = Clock::now();
    const auto version = serial ? link.firmwareVersion() : Result<QString>(serial.failure());
    const double seconds = std::chrono::duration<double>(Clock::now() - start).count();
    PrometheusText::Labels camera = unknown;
    camera[0].second = link.knownSerialNumber();
    metrics.add(kUp, camera, version ? 1 : 0);
    if (!version)
        return version.failure();
    metrics.add(kExchange, camera, seconds);
    metrics.add(kFirmware, camera + PrometheusText::Labels{{QStringLiteral("version"), *version}},
                1);
    const auto registers = link.read(SettingNames::registersOf(SettingNames::names()));
    if (!registers)
        return registers.failure();
    const SettingValues values = SettingNames::valuesOf(*registers);
    for (const SettingKey& key : SettingNames::keys()) {
        if (key.kind != SettingKey::Kind::Preset)
            metrics.add(kSetting,
                        camera + PrometheusText::Labels{{QStringLiteral("setting"), key.name}},
                        values.value(key.name));
    }
    const auto assigned = AssignedSettings::of(ProfileFolders::ofThisSystem(), *serial,
                                               QString::fromUtf8(link.camera().model->modelText));
    if (!assigned)
        return assigned.failure();
    if (assigned->has_value()) {
        if (const auto drift = driftOf((*assigned)->values, *registers))
            metrics.add(
                kDrift,
                camera + PrometheusText::Labels{{QStringLiteral("profile"), (*assigned)->profile}},
                *drift);
    }
    return std::nullopt;
}

} // namespace

void MetricsCommand::run(const Invocation& invocation, Report& report)
{
    if (refusesArguments(invocation, report))
        return;
    PrometheusText metrics;
    declareAll(metrics);
    // A monitor has to learn that there is no camera, so that is an answer too.
    metrics.add(kCameras, {}, static_cast<double>(CameraInventory::list().size()));
    report.ignoreCameraFailures();
    if (!CameraInventory::list().empty()) {
        forEachPresent(invocation, report, [&metrics](CameraLink& link, CameraResult& result) {
            if (const auto failure = measure(link, metrics))
                result.fail(*failure);
        });
    }
    report.set(QStringLiteral("metrics"), metrics.text());
    if (invocation.output.isEmpty())
        report.setText(metrics.text());
    else if (const auto failure = WholeFile::write(invocation.output, metrics.text().toUtf8()))
        report.fail(*failure);
}
