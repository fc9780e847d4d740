#include "BenchCamera.h"
#include "RatioTable.h"
#include "UVCCamera.h"

#include <atomic>
#include <cstdio>
#include <cstdlib>
#include <ctime>
#include <QApplication>
#include <QProcess>
#include <QWidget>

namespace {

constexpr double kLimit = 1.15;
constexpr int kRounds = 5;
constexpr std::uint64_t kWarmUpFrames = 30;
constexpr std::uint64_t kFrames = 90;
constexpr int kTargetWidth = 333;
constexpr int kTargetHeight = 187;
constexpr const char* kShowOption = "--show";

[[noreturn]] void fail(const char* what)
{
    std::fprintf(stderr, "%s\n", what);
    std::exit(2);
}

void logToNowhere(QtMsgType, const QMessageLogContext&, const QString&) {}

/// The program's preview, alone in a process: shows the first camera until it is killed.
int showPreview(int argc, char** argv)
{
    qInstallMessageHandler(logToNowhere);
    const QApplication application(argc, argv);
    QList<UVCDeviceInfo> cameras;
    UVCCamera::enumerateCameras(cameras);
    QWidget window;
    window.setFixedSize(kTargetWidth, kTargetHeight);
    window.show();
    UVCCamera camera;
    if (cameras.isEmpty() || !camera.openDevice(cameras.first().devicePath, window.winId()) ||
        !camera.startCapture())
        fail("no preview");
    return QApplication::exec();
}

/// Processor seconds that a process has used with all its threads.
double processorSeconds(qint64 process)
{
    clockid_t clock = 0;
    timespec time{};
    if (clock_getcpuclockid(static_cast<pid_t>(process), &clock) != 0 ||
        clock_gettime(clock, &time) != 0)
        fail("the process has ended");
    return static_cast<double>(time.tv_sec) + static_cast<double>(time.tv_nsec) / 1e9;
}

/// Processor seconds per frame of a program that shows the camera, once it has settled.
double secondsPerFrame(BenchCamera& camera, const QString& program, const QStringList& arguments)
{
    const std::uint64_t before = camera.frames();
    QProcess process;
    process.setStandardOutputFile(QProcess::nullDevice());
    process.setStandardErrorFile(QProcess::nullDevice());
    process.start(program, arguments);
    if (!process.waitForStarted() ||
        !camera.waitFor("frames>=" + std::to_string(before + kWarmUpFrames)))
        fail("the preview does not start");

    const std::uint64_t firstFrame = camera.frames();
    const double firstSeconds = processorSeconds(process.processId());
    if (!camera.waitFor("frames>=" + std::to_string(firstFrame + kFrames)))
        fail("the preview has stopped");
    const double seconds = processorSeconds(process.processId()) - firstSeconds;
    const std::uint64_t frames = camera.frames() - firstFrame;

    process.kill();
    process.waitForFinished();
    if (!camera.waitFor("video<=0"))
        fail("the camera is still in use");
    return seconds / static_cast<double>(frames);
}

struct Mode
{
    const char* name;
    const char* option; ///< of the virtual camera, which has no other mode
    const char* caps;
    QStringList decoder;
};

void comparePreviews(RatioTable& table, const Mode& mode)
{
    BenchCamera camera(mode.name, {{"modes", mode.option}});
    // The same road to the screen: scaled before it is converted, in the size of the window.
    QStringList pipeline{
        "-q",    "v4l2src",          "device=" + camera.videoNode(), "!", mode.caps, "!",
        "queue", "leaky=downstream", "max-size-buffers=2",           "!"};
    pipeline += mode.decoder;
    pipeline += QStringList{"videoconvertscale",
                            "add-borders=false",
                            "chroma-mode=none",
                            "!",
                            QStringLiteral("video/x-raw,format=BGRx,pixel-aspect-ratio=1/1,"
                                           "width=%1,height=%2")
                                .arg(kTargetWidth)
                                .arg(kTargetHeight),
                            "!",
                            "fakesink",
                            "sync=false"};
    table.compare(
        std::string("preview of 1920 x 1080 ") + mode.name +
            ", processor time per frame, to the cheapest equal pipeline of gst-launch-1.0",
        RatioTable::kMilliseconds,
        [&] { return secondsPerFrame(camera, QStringLiteral("gst-launch-1.0"), pipeline); },
        [&] {
            return secondsPerFrame(camera, QCoreApplication::applicationFilePath(),
                                   {QString::fromLatin1(kShowOption)});
        },
        kRounds, kLimit);
}

} // namespace

int main(int argc, char** argv)
{
    if (argc > 1 && qstrcmp(argv[1], kShowOption) == 0)
        return showPreview(argc, argv);
    const QCoreApplication application(argc, argv);
    RatioTable table;
    comparePreviews(table, {"YUY2", "YUYV:1920x1080",
                            "video/x-raw,format=YUY2,width=1920,height=1080", QStringList()});
    comparePreviews(table, {"MJPEG", "MJPG:1920x1080", "image/jpeg,width=1920,height=1080",
                            QStringList{"jpegdec", "!"}});
    return table.exitCode();
}
