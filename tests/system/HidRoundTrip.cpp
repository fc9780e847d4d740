#include "DeviceSettings.h"
#include "HidFrame.h"
#include "UVCHid.h"

#include <algorithm>
#include <chrono>
#include <cstdio>
#include <cstdlib>
#include <functional>
#include <hidapi/hidapi.h>
#include <memory>
#include <vector>

namespace {

constexpr int kExchanges = 200;
constexpr int kTimeoutMs = 3000;

void logToNowhere(QtMsgType, const QMessageLogContext&, const QString&) {}

[[noreturn]] void fail(const char* what)
{
    std::fprintf(stderr, "%s\n", what);
    std::exit(1);
}

/// Prints median, shortest and longest time of an exchange, in milliseconds.
void measure(const char* what, const std::function<void()>& exchange)
{
    using Clock = std::chrono::steady_clock;
    std::vector<double> samples;
    for (int i = 0; i < kExchanges; ++i) {
        const Clock::time_point start = Clock::now();
        exchange();
        samples.push_back(std::chrono::duration<double, std::milli>(Clock::now() - start).count());
    }
    std::sort(samples.begin(), samples.end());
    std::printf("%s: median %.2f ms, from %.2f to %.2f ms, %d exchanges\n", what,
                samples[samples.size() / 2], samples.front(), samples.back(), kExchanges);
}

} // namespace

/// Measures the exchange of one request and its answer with the camera behind a HID node.
int main(int argc, char** argv)
{
    if (argc != 2)
        fail("usage: HidRoundTrip /dev/hidrawN");
    qInstallMessageHandler(logToNowhere);

    const HidFrame::Buffer request = HidFrame::packRequest(
        DeviceSettings::row(DeviceSetting::CameraView).readCode, HidFrame::ReadOrFinal, {}, 0);
    const std::unique_ptr<hid_device, decltype(&hid_close)> device(hid_open_path(argv[1]),
                                                                   &hid_close);
    if (!device)
        fail("the camera does not open");
    measure("HID round trip", [&device, &request] {
        HidFrame::Buffer answer{};
        if (hid_write(device.get(), request.data(), request.size()) < 1 ||
            hid_read_timeout(device.get(), answer.data(), answer.size(), kTimeoutMs) < 1)
            fail("the camera does not answer");
    });

    UVCHid hid;
    if (!hid.createHandleWithPath(QString::fromLocal8Bit(argv[1])))
        fail("the camera does not open");
    measure("setting read by the program", [&hid] {
        if (hid.readInfoFromDevice(DeviceSettings::row(DeviceSetting::CameraView).readCode)
                .isEmpty())
            fail("the camera does not answer");
    });
    return 0;
}
