#include "GapMeter.h"
#include "MeasuredCamera.h"
#include "RatioTable.h"
#include "UVCCamera.h"

#include <algorithm>
#include <atomic>
#include <cstdio>
#include <cstdlib>
#include <ctime>
#include <QApplication>
#include <QProcess>
#include <QTimer>
#include <QWidget>

namespace {

constexpr double kLimit = 1.15;
constexpr int kRounds = 5;
constexpr std::uint64_t kWarmUpFrames = 30;
constexpr std::uint64_t kFrames = 90;
constexpr int kTargetWidth = 333;
constexpr int kTargetHeight = 187;
constexpr const char* kShowOption = "--show";
constexpr const char* kStartOption = "--start";
constexpr int kMeterMs = 300;
constexpr double kLongestBlockSeconds = 0.1; ///< a longer one is seen as a delay

[[noreturn]] void fail(const char* what)
{
    std::fprintf(stderr, "%s\n", what);
    std::exit(2);
}

void logToNowhere(QtMsgType, const QMessageLogContext&, const QString&) {}

/// The program's preview in a separate process: shows the first camera until it is killed.
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

/// Starts the preview of the first camera in a separate process, and prints the seconds for which
/// that blocked the process's window.
int startPreview(int argc, char** argv)
{
    qInstallMessageHandler(logToNowhere);
    const QApplication application(argc, argv);
    QList<UVCDeviceInfo> cameras;
    UVCCamera::enumerateCameras(cameras);
    if (cameras.isEmpty())
        fail("no camera");
    QWidget window;
    window.setFixedSize(kTargetWidth, kTargetHeight);
    window.show();
    GapMeter gaps;
    gaps.show();
    UVCCamera camera;
    QTimer::singleShot(kMeterMs, &gaps, &GapMeter::start);
    QTimer::singleShot(2 * kMeterMs, &camera, [&] {
        if (!camera.openDevice(cameras.first().devicePath, window.winId()) ||
            !camera.startCapture())
            fail("the preview does not start");
    });
    QTimer::singleShot(3 * kMeterMs, &gaps, [&] {
        std::printf("%f\n", gaps.largestGap());
        QApplication::quit();
    });
    return QApplication::exec();
}

/// Seconds for which the start of the preview blocks the window when the camera sends no frame.
double blockedSeconds()
{
    MeasuredCamera camera("frozen");
    camera.fault("frozen");
    QProcess process;
    process.setProcessChannelMode(QProcess::ForwardedErrorChannel);
    process.start(QCoreApplication::applicationFilePath(), {QString::fromLatin1(kStartOption)});
    if (!process.waitForFinished() || process.exitCode() != 0)
        fail("no measurement of the start");
    return process.readAllStandardOutput().trimmed().toDouble();
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

/// Processor seconds per frame of a program that shows the camera, after a settling time.
double secondsPerFrame(MeasuredCamera& camera, const QString& program, const QStringList& arguments)
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

struct Pipeline
{
    const char* caps = nullptr;
    QStringList decoder;
    QStringList scalerOptions;
};

/// The same processing as the program's: scaled to the size of the window before it is converted.
QStringList launchArguments(const QString& node, const Pipeline& pipeline)
{
    const QStringList source{"-q", "v4l2src", "device=" + node, "!", pipeline.caps, "!"};
    const QStringList queue{"queue", "leaky=downstream", "max-size-buffers=2", "!"};
    const QStringList scaler = QStringList{"videoconvertscale"} + pipeline.scalerOptions;
    const QString caps = QStringLiteral("video/x-raw,format=BGRx,pixel-aspect-ratio=1/1,"
                                        "width=%1,height=%2")
                             .arg(kTargetWidth)
                             .arg(kTargetHeight);
    return source + queue + pipeline.decoder + scaler +
           QStringList{"!", caps, "!", "ximagesink", "sync=false"};
}

void comparePreview(RatioTable& table, const std::string& what, const char* modes,
                    const Pipeline& pipeline, std::optional<double> limit)
{
    static int count = 0;
    MeasuredCamera camera("preview" + std::to_string(++count), {{"modes", modes}});
    const QStringList arguments = launchArguments(camera.videoNode(), pipeline);
    table.compare(
        "preview of 1920 x 1080 " + what, RatioTable::kMilliseconds,
        [&] { return secondsPerFrame(camera, QStringLiteral("gst-launch-1.0"), arguments); },
        [&] {
            return secondsPerFrame(camera, QCoreApplication::applicationFilePath(),
                                   {QString::fromLatin1(kShowOption)});
        },
        kRounds, limit);
}

} // namespace

int main(int argc, char** argv)
{
    if (argc > 1 && qstrcmp(argv[1], kShowOption) == 0)
        return showPreview(argc, argv);
    if (argc > 1 && qstrcmp(argv[1], kStartOption) == 0)
        return startPreview(argc, argv);
    const QCoreApplication application(argc, argv);
    constexpr const char* rawCaps = "video/x-raw,format=YUY2,width=1920,height=1080";
    constexpr const char* jpegCaps = "image/jpeg,width=1920,height=1080";
    const QStringList decoder{"jpegdec", "!"};
    const QStringList plain{"add-borders=false"};
    const QStringList tuned{"add-borders=false", "chroma-mode=none"};

    RatioTable table;
    comparePreview(table, "YUY2 per frame, to gst-launch-1.0", "YUYV:1920x1080",
                   {rawCaps, QStringList(), plain}, kLimit);
    comparePreview(table, "YUY2 per frame, to gst-launch-1.0 with the program's scaler setting",
                   "YUYV:1920x1080", {rawCaps, QStringList(), tuned}, std::nullopt);
    comparePreview(table, "MJPEG per frame, to gst-launch-1.0", "MJPG:1920x1080",
                   {jpegCaps, decoder, plain}, kLimit);
    double blocked = blockedSeconds();
    for (int round = 1; round < kRounds; ++round)
        blocked = std::min(blocked, blockedSeconds());
    table.addRatio("window blocked by the start of a camera that sends no frame, to 100 ms",
                   RatioTable::kMilliseconds, kLongestBlockSeconds, blocked, 1.0);
    return table.exitCode();
}
