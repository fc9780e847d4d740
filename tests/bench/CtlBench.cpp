#include "DeviceSettings.h"
#include "HidFrame.h"
#include "MeasuredCamera.h"
#include "RatioTable.h"

#include <chrono>
#include <cstdio>
#include <cstdlib>
#include <hidapi/hidapi.h>
#include <memory>
#include <QCoreApplication>
#include <QFile>
#include <QProcess>
#include <vector>

namespace {

constexpr double kGetLimit = 1.3;
constexpr double kWatchPrivateMegabytes = 12.0;
constexpr RatioTable::Unit kMegabytes{"MB", 1.0, 1};
constexpr int kRounds = 15;
constexpr int kStarts = 5;
constexpr int kManyCameras = 16;
constexpr int kTimeoutMs = 30000;

[[noreturn]] void fail(const char* what)
{
    std::fprintf(stderr, "%s\n", what);
    std::exit(2);
}

using Clock = std::chrono::steady_clock;

double secondsSince(Clock::time_point start)
{
    return std::chrono::duration<double>(Clock::now() - start).count();
}

/// The median of some starts of a program, each to its end.
double secondsOf(const QString& program, const QStringList& arguments)
{
    std::vector<double> samples;
    for (int i = 0; i < kStarts; ++i) {
        QProcess process;
        process.setStandardErrorFile(QProcess::nullDevice());
        const Clock::time_point start = Clock::now();
        process.start(program, arguments, QIODevice::ReadOnly);
        if (!process.waitForFinished(kTimeoutMs) || process.exitCode() != 0)
            fail("the program has failed");
        samples.push_back(secondsSince(start));
    }
    return RatioTable::median(samples);
}

/// What a program needs to read one setting if nothing but the request took time.
double bareExchange(MeasuredCamera& camera)
{
    const HidFrame::Buffer request = HidFrame::packRequest(
        DeviceSettings::row(DeviceSetting::CameraView).readCode, HidFrame::ReadOrFinal, {}, 0);
    std::vector<double> samples;
    for (int i = 0; i < kStarts; ++i) {
        if (!camera.waitFor("hid=0"))
            fail("a handle is left open");
        const Clock::time_point start = Clock::now();
        HidFrame::Buffer answer{};
        hid_device* device = hid_open_path(camera.hidPath().toUtf8().constData());
        if (!device || hid_write(device, request.data(), request.size()) < 1 ||
            hid_read_timeout(device, answer.data(), answer.size(), kTimeoutMs) < 1)
            fail("the camera does not answer");
        hid_close(device);
        samples.push_back(secondsSince(start));
    }
    return RatioTable::median(samples);
}

/// Megabytes that only this process has.
double privateMegabytes(qint64 process)
{
    QFile file(QStringLiteral("/proc/%1/smaps_rollup").arg(process));
    if (!file.open(QIODevice::ReadOnly))
        fail("the memory cannot be read");
    double kibibytes = 0;
    const QList<QByteArray> lines = file.readAll().split('\n');
    for (const QByteArray& line : lines) {
        if (line.startsWith("Private_"))
            kibibytes += line.mid(line.indexOf(':') + 1).trimmed().split(' ').first().toDouble();
    }
    return kibibytes / 1024;
}

/// The memory of a watch that has applied to a camera and waits for the next.
double watchMegabytes(const QString& program)
{
    QProcess process;
    process.start(program, {QStringLiteral("watch"), QStringLiteral("--json-progress")});
    process.setReadChannel(QProcess::StandardError);
    for (int lines = 0; lines < 2; ++lines) { // it watches; it has looked at the camera
        while (!process.canReadLine()) {
            if (!process.waitForReadyRead(kTimeoutMs))
                fail("the watch does not start");
        }
        process.readLine();
    }
    const double megabytes = privateMegabytes(process.processId());
    process.terminate();
    process.waitForFinished();
    return megabytes;
}

} // namespace

int main(int argc, char** argv)
{
    const QCoreApplication application(argc, argv);
    const QString folder = QCoreApplication::applicationDirPath();
    const QString program = folder + QStringLiteral("/marvikctl");
    RatioTable table;
    std::vector<std::unique_ptr<MeasuredCamera>> cameras;
    cameras.push_back(std::make_unique<MeasuredCamera>("ctl0"));
    table.compare(
        "marvikctl get fov, to an empty program and a bare exchange", RatioTable::kMilliseconds,
        [&] {
            return secondsOf(folder + QStringLiteral("/EmptyProgram"), {}) +
                   bareExchange(*cameras.front());
        },
        [&] {
            return secondsOf(program, {QStringLiteral("get"), QStringLiteral("fov")});
        },
        kRounds, kGetLimit);
    const double megabytes = watchMegabytes(program);
    table.addRatio("marvikctl watch at rest, private, to its limit", kMegabytes,
                   kWatchPrivateMegabytes, megabytes, 1.0);
    table.addFigure("marvikctl list with 1 camera", RatioTable::kMilliseconds,
                    secondsOf(program, {QStringLiteral("list")}));
    for (int i = 1; i < kManyCameras; ++i)
        cameras.push_back(std::make_unique<MeasuredCamera>("ctl" + std::to_string(i)));
    table.addFigure("marvikctl list with 16 cameras", RatioTable::kMilliseconds,
                    secondsOf(program, {QStringLiteral("list")}));
    return table.exitCode();
}
