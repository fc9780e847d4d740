#include "DeviceHomePage.h"
#include "MeasuredCamera.h"
#include "RatioTable.h"
#include "UVCCamera.h"

#include <chrono>
#include <cstdio>
#include <memory>
#include <QApplication>

namespace {

constexpr int kRounds = 7;
/// The list waits this long before it enumerates; not counted.
constexpr double kPauseSeconds = 0.5;

void logToNowhere(QtMsgType, const QMessageLogContext&, const QString&) {}

double rebuildSeconds(DeviceHomePage& page, int expectedCards)
{
    using Clock = std::chrono::steady_clock;
    std::vector<double> samples;
    for (int i = 0; i < kRounds; ++i) {
        const Clock::time_point start = Clock::now();
        QList<UVCDeviceInfo> cameras;
        UVCCamera::enumerateCameras(cameras);
        page.slotUpdateCameraList(cameras, 0);
        QCoreApplication::processEvents();
        samples.push_back(std::chrono::duration<double>(Clock::now() - start).count() -
                          kPauseSeconds);
        if (page.entryCount() != expectedCards) {
            std::fprintf(stderr, "%d cards instead of %d\n", page.entryCount(), expectedCards);
            std::exit(2);
        }
    }
    return RatioTable::median(samples);
}

} // namespace

int main(int argc, char** argv)
{
    qInstallMessageHandler(logToNowhere);
    const QApplication application(argc, argv);
    DeviceHomePage page;
    page.resize(360, 640);
    page.show();

    RatioTable table;
    std::vector<std::unique_ptr<MeasuredCamera>> cameras;
    for (const int count : {1, 4, 8}) {
        while (static_cast<int>(cameras.size()) < count)
            cameras.push_back(
                std::make_unique<MeasuredCamera>("list" + std::to_string(cameras.size())));
        const std::string what = std::to_string(count) + (count == 1 ? " camera" : " cameras");
        table.addFigure("list rebuilt with " + what + ", over the pause of 500 ms",
                        RatioTable::kMilliseconds, rebuildSeconds(page, count));
    }
    return table.exitCode();
}
