#include "DeviceSettings.h"
#include "HidFrame.h"
#include "MeasuredCamera.h"
#include "RatioTable.h"
#include "UVCHid.h"

#include <chrono>
#include <cstdio>
#include <cstdlib>
#include <functional>
#include <hidapi/hidapi.h>
#include <vector>

namespace {

constexpr double kLimit = 1.10;
constexpr int kRounds = 40;
constexpr int kExchanges = 25;
constexpr int kTimeoutMs = 3000;
constexpr const char* kOnlyThePersistentHandle = "hid=1";

void logToNowhere(QtMsgType, const QMessageLogContext&, const QString&) {}

[[noreturn]] void fail(const char* what)
{
    std::fprintf(stderr, "%s\n", what);
    std::exit(2);
}

/// The median of some exchanges. Each waits until the camera has noticed that the handle of the
/// previous one is closed, so that this time is not counted.
double secondsOf(MeasuredCamera& camera, const std::function<void()>& exchange)
{
    using Clock = std::chrono::steady_clock;
    std::vector<double> samples;
    for (int i = 0; i < kExchanges; ++i) {
        if (!camera.waitFor(kOnlyThePersistentHandle))
            fail("a handle is left open");
        const Clock::time_point start = Clock::now();
        exchange();
        samples.push_back(std::chrono::duration<double>(Clock::now() - start).count());
    }
    return RatioTable::median(samples);
}

/// The minimum for a program that opens the camera for every command.
void bareExchange(const QByteArray& path, const HidFrame::Buffer& request)
{
    HidFrame::Buffer answer{};
    hid_device* device = hid_open_path(path.constData());
    if (!device || hid_write(device, request.data(), request.size()) < 1 ||
        hid_read_timeout(device, answer.data(), answer.size(), kTimeoutMs) < 1)
        fail("the camera does not answer");
    hid_close(device);
}

} // namespace

int main()
{
    qInstallMessageHandler(logToNowhere);
    MeasuredCamera camera("exchange");
    UVCHid hid;
    if (!hid.createHandleWithPath(camera.hidPath()))
        fail("the camera does not open");
    const QByteArray path = camera.hidPath().toUtf8();
    const HidFrame::Buffer request = HidFrame::packRequest(
        DeviceSettings::row(DeviceSetting::CameraView).readCode, HidFrame::ReadOrFinal, {}, 0);

    RatioTable table;
    table.compare(
        "one setting read, to bare open, write, read, close", RatioTable::kMicroseconds,
        [&] { return secondsOf(camera, [&] { bareExchange(path, request); }); },
        [&] {
            return secondsOf(camera, [&hid] {
                if (hid.readInfoFromDevice(
                        DeviceSettings::row(DeviceSetting::CameraView).readCode) !=
                    QLatin1String("120"))
                    fail("the camera does not answer");
            });
        },
        kRounds, kLimit);
    return table.exitCode();
}
