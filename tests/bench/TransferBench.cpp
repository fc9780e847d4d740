#include "FirmwareWorker.h"
#include "GapMeter.h"
#include "HidCommands.h"
#include "HidFrame.h"
#include "LoadingDialog.h"
#include "LogFile.h"
#include "MeasuredCamera.h"
#include "PackageService.h"
#include "RatioTable.h"
#include "SvtaVersionUpdateDialog.h"
#include "TestVendor.h"

#include <algorithm>
#include <chrono>
#include <cstdio>
#include <cstdlib>
#include <fcntl.h>
#include <hidapi/hidapi.h>
#include <memory>
#include <numeric>
#include <QApplication>
#include <QEventLoop>
#include <QFile>
#include <QTemporaryDir>
#include <thread>
#include <unistd.h>
#include <vector>

namespace {

constexpr double kTransferLimit = 1.03;
constexpr double kLargestGap = 0.050;
constexpr int kImageBytes = 2 << 20;
constexpr int kPackets = (kImageBytes + 1009) / 1010;
constexpr double kPause = 0.010;
constexpr std::uint32_t kBareExchanges = 1000;
constexpr std::uint32_t kBarePackets = 500;
constexpr int kTimeoutMs = 1000;
constexpr qint64 kPackageBytes = 64LL << 20;
constexpr int kDownloads = 3;

using Clock = std::chrono::steady_clock;

[[noreturn]] void fail(const char* what)
{
    std::printf("%s\n", what);
    std::exit(2);
}

double secondsSince(Clock::time_point start)
{
    return std::chrono::duration<double>(Clock::now() - start).count();
}

/// Exchanges packets through hidapi alone.
/// @param pause waiting time before each packet
/// @return the time of each with its pause, in seconds
std::vector<double> bareExchanges(MeasuredCamera& camera, std::uint32_t count,
                                  std::chrono::milliseconds pause)
{
    hid_device* device = hid_open_path(camera.hidPath().toUtf8().constData());
    HidFrame::Buffer answer{};
    const auto exchange = [&](const HidFrame::Buffer& request) {
        const Clock::time_point start = Clock::now();
        if (pause.count() > 0)
            std::this_thread::sleep_for(pause);
        if (!device || hid_write(device, request.data(), request.size()) < 1 ||
            hid_read_timeout(device, answer.data(), answer.size(), kTimeoutMs) < 1 ||
            HidFrame::parseResponse(answer).status != 0)
            fail("the camera does not answer");
        return secondsSince(start);
    };
    exchange(HidFrame::packRequest(HidCommands::FirmwareStart, HidFrame::Control, {}, 0));
    HidFrame::Buffer packet{};
    std::vector<double> samples;
    for (std::uint32_t number = 1; number <= count; ++number) {
        HidFrame::packHeader(packet, HidCommands::FirmwarePacket, HidFrame::PayloadFollows,
                             static_cast<std::uint16_t>(HidFrame::kMaxPayload), number);
        HidFrame::sealFrame(packet, HidFrame::kMaxPayload);
        samples.push_back(exchange(packet));
    }
    hid_close(device);
    return samples;
}

/// The minimum time of a transfer in seconds: its pauses, and the fastest exchanges.
double floorOf(MeasuredCamera& camera)
{
    const auto exchanges = bareExchanges(camera, kBareExchanges, std::chrono::milliseconds(0));
    return kPackets * (kPause + RatioTable::median(exchanges));
}

/// Writes the image as the program does, under its loading dialog.
/// @return seconds
double transfer(MeasuredCamera& camera, const QString& file, GapMeter& gaps)
{
    FirmwareWorker transfer;
    LoadingDialog loading;
    loading.show();
    QApplication::processEvents();
    QEventLoop loop;
    bool sent = false;
    QObject::connect(&transfer, &FirmwareWorker::finished, &loop, [&](bool success) {
        sent = success;
        loop.quit();
    });
    gaps.start();
    const Clock::time_point start = Clock::now();
    transfer.start(camera.hidPath(), file);
    loop.exec();
    const double seconds = secondsSince(start);
    if (!sent || !camera.waitFor("connections>=2") || !camera.waitFor("onbus"))
        fail("the image does not arrive");
    return seconds;
}

/// Downloads a package as the program does, under its dialog.
/// @return the largest gap in seconds
double gapOfDownload(const PackageService& service, GapMeter& gaps)
{
    SvtaVersionUpdateDialog dialog;
    dialog.setUpdateData({{"needUpgrade", true},
                          {"details", "Sharper picture"},
                          {"downLoadUrl", service.url()},
                          {"packageSize", "64MB"}},
                         "NOVA EDGE", "N");
    QEventLoop loop;
    const auto progress = QObject::connect(&dialog, &SvtaVersionUpdateDialog::sigSetProgress,
                                           &dialog, &SvtaVersionUpdateDialog::setProgress);
    QObject::connect(&dialog, &SvtaVersionUpdateDialog::sigDownloadSuccessed, &loop,
                     &QEventLoop::quit);
    QObject::connect(&dialog, &SvtaVersionUpdateDialog::sigDownloadFailed, &loop,
                     [] { fail("the package does not arrive"); });
    gaps.start();
    dialog.slotUpdate();
    loop.exec();
    const double gap = gaps.largestGap();
    QObject::disconnect(progress);
    if (QFile(dialog.savePath()).size() != kPackageBytes)
        fail("the package is not whole");
    return gap;
}

} // namespace

int main(int argc, char** argv)
{
    // In memory: the disk is not what is measured.
    const QTemporaryDir directory("/dev/shm/marvik-transfer-XXXXXX");
    QFile image(directory.filePath("image"));
    if (!image.open(QIODevice::WriteOnly) || !image.resize(kImageBytes))
        fail("there is no room for the image");
    qputenv("XDG_CACHE_HOME", QFile::encodeName(directory.path()));
    const QApplication application(argc, argv);
    const PackageService service(directory.path(), kPackageBytes);
    TestVendor::setUpdateCaFile(service.authorityFile());
    // Logged as in normal use, where the standard error is not read.
    const int nowhere = ::open("/dev/null", O_WRONLY | O_CLOEXEC);
    ::dup2(nowhere, STDERR_FILENO);
    ::close(nowhere);
    const LogFile log(directory.filePath("log"));

    GapMeter gaps;
    gaps.show();
    RatioTable table;
    std::unique_ptr<MeasuredCamera> camera;
    double gap = 1.0;
    double floor = 0.0;
    int number = 0;
    table.compare(
        "firmware of 2 MiB written, to its pauses and bare exchanges", RatioTable::kMilliseconds,
        [&] {
            camera = std::make_unique<MeasuredCamera>(
                "transfer" + std::to_string(++number),
                MeasuredCamera::Client::Options{{"dropdelay", "250"}, {"returndelay", "30"}});
            return floor = floorOf(*camera);
        },
        [&] {
            const double seconds = transfer(*camera, image.fileName(), gaps);
            gap = std::min(gap, gaps.largestGap());
            return seconds;
        },
        1, kTransferLimit);
    // The part of it that the machine needs, because it wakes threads late.
    const std::vector<double> bare =
        bareExchanges(*camera, kBarePackets, std::chrono::milliseconds(10));
    table.addRatio("the same pauses and exchanges without the program", RatioTable::kMilliseconds,
                   floor, std::accumulate(bare.begin(), bare.end(), 0.0) * kPackets / kBarePackets,
                   {});
    camera.reset();
    table.addRatio("largest gap between frames while firmware is written, to 50 ms",
                   RatioTable::kMilliseconds, kLargestGap, gap, 1.0);
    table.compare(
        "largest gap between frames during a download, to 50 ms", RatioTable::kMilliseconds,
        [] { return kLargestGap; }, [&] { return gapOfDownload(service, gaps); }, kDownloads, 1.0);
    return table.exitCode();
}
