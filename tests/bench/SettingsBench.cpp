#include "AnswerClock.h"
#include "CameraDesk.h"
#include "DeviceSettings.h"
#include "HidCommands.h"
#include "HidFrame.h"
#include "PendingTimers.h"
#include "ProcessUsage.h"
#include "RatioTable.h"
#include "Repaints.h"

#include <array>
#include <chrono>
#include <cstdio>
#include <cstdlib>
#include <ctime>
#include <functional>
#include <hidapi/hidapi.h>
#include <QAbstractButton>
#include <QApplication>
#include <QRadioButton>
#include <QThread>
#include <QtTest>

namespace {

constexpr double kLimit = 1.15;
constexpr int kRounds = 12;
constexpr int kClicks = 20;
constexpr int kOpenings = 5;
constexpr int kTimeoutMs = 3000;
constexpr double kPreviewDelaySeconds =
    0.1; // the page starts its preview after this delay; not counted
constexpr unsigned long kRestMs = 4;
constexpr unsigned long kPaintMs = 12; // until the compositor has shown what was painted
constexpr int kFramingDelayMs = 10;
constexpr int kFramingOffDelayMs = 100;
constexpr int kIdleMs = 4000;
constexpr int kSettleMs = 1500;
constexpr const char* kOnlyThePersistentHandle = "hid=1";
// Controls that send before they are painted.
const QLatin1String kSubModes("autoFramingExpandWidget");

constexpr RatioTable::Unit kShare{"%", 100.0, 2};
constexpr RatioTable::Unit kRepaints{"repaints", 1.0, 0};
constexpr RatioTable::Unit kKibibytes{"KiB", 1.0 / 1024.0, 0};

void logToNowhere(QtMsgType, const QMessageLogContext&, const QString&) {}

[[noreturn]] void fail(const char* what)
{
    std::fprintf(stderr, "%s\n", what);
    std::exit(2);
}

void require(bool done, const char* what)
{
    if (!done)
        fail(what);
}

using Clock = AnswerClock::Clock;

double secondsBetween(Clock::time_point start, Clock::time_point end)
{
    return std::chrono::duration<double>(end - start).count();
}

double secondsOf(const std::function<void()>& operation)
{
    const Clock::time_point start = Clock::now();
    operation();
    return secondsBetween(start, Clock::now());
}

/// The commands that one click sends, in order.
struct Step
{
    enum Kind { Read, Write, Link };

    Kind kind;
    std::uint16_t command = 0;
    std::array<std::uint8_t, 2> values{}; ///< written alternately
};

/// Searches for the camera's interface and links to it, as the page does before it reads the
/// stream.
constexpr Step kLink{Step::Link};

constexpr Step kReadStream{Step::Read, HidCommands::VideoFormat};

Step read(DeviceSetting setting)
{
    return {Step::Read, DeviceSettings::row(setting).readCode};
}

Step write(DeviceSetting setting, std::uint8_t value, std::uint8_t inTurns)
{
    return {Step::Write, DeviceSettings::row(setting).writeCode(), {value, inTurns}};
}

Step write(DeviceSetting setting, std::uint8_t value)
{
    return write(setting, value, value);
}

using Steps = std::vector<Step>;

/// Where the measurement of a click ends.
enum class Until {
    Answer,   ///< when the camera has acknowledged the last write
    Returned, ///< when the program has finished; picture controls are not acknowledged
};

/// Whose exchange is timed.
enum class Way { Bare, Program };

/// Calls a function just before a widget receives the release of the mouse button.
class ReleaseFilter : public QObject
{
public:
    ReleaseFilter(QWidget* widget, std::function<void()> action)
        : m_action(std::move(action))
    {
        widget->installEventFilter(this);
    }

protected:
    bool eventFilter(QObject* watched, QEvent* event) override
    {
        if (event->type() == QEvent::MouseButtonRelease)
            m_action();
        return QObject::eventFilter(watched, event);
    }

private:
    std::function<void()> m_action;
};

/// The settings page of one camera, and its measurements.
class SettingsBench
{
public:
    SettingsBench() { require(m_desk.startWith(m_camera), "the camera does not open"); }

    void clicks(RatioTable& table);
    void openings(RatioTable& table);
    /// @return false when the page repaints although nothing changes
    [[nodiscard]] bool idle(RatioTable& table);
    void closePreview();

private:
    void rest();
    double bareSeconds(const Steps& steps);
    double secondsOfClick(QWidget* widget, Way way, const Steps& steps, Until until);
    double sliderSeconds(const char* name);
    void compare(RatioTable& table, const std::string& what, const Steps& steps,
                 const std::function<const char*()>& target, Until until = Until::Answer);
    void compareSwitch(RatioTable& table, const std::string& what, const Steps& steps, bool on);
    struct Painted
    {
        int pictures;
        int others;
    };
    Painted measureIdle(RatioTable& table, const std::string& preview);

    SavedSettings m_saved;
    PluggedCamera m_camera{{"serial", "SVAA009500551"}};
    CameraDesk m_desk;
    int m_turn = 0;
};

/// Every measurement begins after the same pause, when the camera has noticed that the handle of
/// the previous exchange is closed.
void SettingsBench::rest()
{
    require(m_camera.waitFor(kOnlyThePersistentHandle), "a handle is left open");
    QThread::msleep(kRestMs);
}

/// The minimum for a program that opens the camera for every command: the same commands, up to the
/// last answer.
double SettingsBench::bareSeconds(const Steps& steps)
{
    const QByteArray path = m_camera.hidPath().toUtf8();
    std::vector<HidFrame::Buffer> requests;
    for (const Step& step : steps) {
        const bool isWrite = step.kind == Step::Write;
        const char value = static_cast<char>(step.values[static_cast<std::size_t>(m_turn % 2)]);
        requests.push_back(HidFrame::packRequest(
            step.command, isWrite ? HidFrame::PayloadFollows : HidFrame::ReadOrFinal,
            isWrite ? QByteArray(1, value) : QByteArray(), isWrite ? 1 : 0));
    }
    rest();
    const Clock::time_point start = Clock::now();
    for (std::size_t i = 0; i < steps.size(); ++i) {
        if (steps[i].kind == Step::Link) {
            hid_free_enumeration(hid_enumerate(0, 0));
            hid_close(hid_open_path(path.constData()));
            continue;
        }
        HidFrame::Buffer answer{};
        hid_device* device = hid_open_path(path.constData());
        require(device && hid_write(device, requests[i].data(), requests[i].size()) >= 1 &&
                    hid_read_timeout(device, answer.data(), answer.size(), kTimeoutMs) >= 1,
                "the camera does not answer");
        hid_close(device);
    }
    return secondsBetween(start, AnswerClock::last());
}

/// One click on a control of the page. The time starts when a widget receives the event, or when a
/// button emits its signal, which it does after it was painted: the painting and the work of server
/// and compositor are not counted. A bare exchange is timed at the same moment, before that of the
/// program, so that caches and processors are in the same state for both.
double SettingsBench::secondsOfClick(QWidget* widget, Way way, const Steps& steps, Until until)
{
    const QPoint position(qobject_cast<QRadioButton*>(widget) ? 8 : widget->width() / 2,
                          widget->height() / 2);
    double bare = 0;
    Clock::time_point taken;
    const auto take = [&] {
        QThread::msleep(kPaintMs);
        if (way == Way::Bare)
            bare = bareSeconds(steps);
        else
            rest();
        taken = Clock::now();
    };
    QTest::mousePress(widget, Qt::LeftButton, Qt::NoModifier, position);
    const auto* button = qobject_cast<QAbstractButton*>(widget);
    if (button && widget->parentWidget()->objectName() != kSubModes) {
        const QMetaObject::Connection connection =
            QObject::connect(button, &QAbstractButton::released, take);
        QTest::mouseRelease(widget, Qt::LeftButton, Qt::NoModifier, position);
        QObject::disconnect(connection);
    } else {
        const ReleaseFilter filter(widget, take);
        QTest::mouseRelease(widget, Qt::LeftButton, Qt::NoModifier, position);
    }
    PendingTimers::fire(kFramingDelayMs);
    PendingTimers::fire(kFramingOffDelayMs);
    const Clock::time_point end = until == Until::Answer ? AnswerClock::last() : Clock::now();
    require(end > taken, "the click sends nothing");
    m_desk.unlockIntelligent();
    QCoreApplication::processEvents();
    ++m_turn;
    return way == Way::Bare ? bare : secondsBetween(taken, end);
}

/// A slider acts on the press alone.
double SettingsBench::sliderSeconds(const char* name)
{
    QWidget* slider = m_desk.find(name);
    std::vector<double> samples;
    for (int i = 0; i < kClicks; ++i) {
        const QPoint position(m_turn++ % 2 == 0 ? 40 : 120, slider->height() / 2);
        const Clock::time_point start = Clock::now();
        QTest::mousePress(slider, Qt::LeftButton, Qt::NoModifier, position);
        samples.push_back(secondsBetween(start, Clock::now()));
        QTest::mouseRelease(slider, Qt::LeftButton, Qt::NoModifier, position);
        QCoreApplication::processEvents();
    }
    return RatioTable::median(samples);
}

void SettingsBench::compare(RatioTable& table, const std::string& what, const Steps& steps,
                            const std::function<const char*()>& target, Until until)
{
    const auto median = [&](Way way) {
        std::vector<double> samples;
        samples.reserve(kClicks);
        for (int i = 0; i < kClicks; ++i)
            samples.push_back(secondsOfClick(m_desk.find(target()), way, steps, until));
        return RatioTable::median(samples);
    };
    table.compare(
        what, RatioTable::kMicroseconds, [&] { return median(Way::Bare); },
        [&] { return median(Way::Program); }, kRounds, kLimit);
}

/// Switches the intelligent features off and on, and compares one of the two steps.
void SettingsBench::compareSwitch(RatioTable& table, const std::string& what, const Steps& steps,
                                  bool on)
{
    QWidget* button = m_desk.find("btnIntelligent");
    const auto median = [&](Way way) {
        std::vector<double> samples;
        for (int i = 0; i < kClicks; ++i) {
            for (const bool next : {false, true}) {
                const double seconds = secondsOfClick(button, way, steps, Until::Answer);
                require(m_desk.isChecked("btnIntelligent") == next, "the switch is locked");
                if (next == on)
                    samples.push_back(seconds);
            }
        }
        return RatioTable::median(samples);
    };
    table.compare(
        what, RatioTable::kMicroseconds, [&] { return median(Way::Bare); },
        [&] { return median(Way::Program); }, kRounds, kLimit);
}

void SettingsBench::clicks(RatioTable& table)
{
    const auto either = [this](const char* first, const char* second) {
        return [this, first, second] { return m_turn % 2 == 0 ? first : second; };
    };
    const auto always = [](const char* name) { return [name] { return name; }; };
    const Steps mirror{write(DeviceSetting::HorizontalMirror, 0, 1)};
    compare(table, "mirror, to a bare exchange", mirror, always("btnHorizontalMirror"));
    compare(table, "sensitivity, to a bare exchange",
            {write(DeviceSetting::PickupSensitivity, 30, 80)}, either("btnLow", "btnHeigh"));
    compare(table, "field of view, to a bare exchange", {write(DeviceSetting::CameraView, 90, 120)},
            either("btn90", "btn120"));
    compare(table, "preset, to a bare exchange", mirror, either("btnBrightMode", "btnVividMode"),
            Until::Returned);
    for (const char* name :
         {"brightSlider", "contrastSlider", "saturationSlider", "sharpnessSlider"})
        table.compare(
            std::string(name) + ", to a bare exchange", RatioTable::kMicroseconds,
            [&] { return bareSeconds(mirror); }, [this, name] { return sliderSeconds(name); },
            kRounds, kLimit);

    // The program's intended delays, 10 and 100 ms, are skipped.
    require(m_desk.switchIntelligent() && m_desk.settle(), "the intelligent features stay off");
    compare(table, "sub-mode, to a bare exchange", {write(DeviceSetting::AutoFrameMode, 0, 1)},
            either("rbtnDivisionMaster", "rbtnPersonalTrack"));
    compare(table, "automatic framing without its 10 ms, to three bare exchanges",
            {write(DeviceSetting::FrameMaster, 0), write(DeviceSetting::AutoFrameSwitch, 1),
             read(DeviceSetting::AutoFrameMode)},
            always("rbtnAutoFraming"));
    compare(table, "frame master without its 10 ms, to two bare exchanges",
            {write(DeviceSetting::AutoFrameSwitch, 0), write(DeviceSetting::FrameMaster, 1)},
            always("rbtnFrameMaster"));
    require(m_desk.choose("rbtnAutoFraming"), "no automatic framing");
    m_desk.unlockIntelligent();
    compareSwitch(table, "intelligent off without its 100 ms, to three bare exchanges",
                  {read(DeviceSetting::AutoFrameSwitch), read(DeviceSetting::FrameMaster),
                   write(DeviceSetting::AutoFrameSwitch, 0)},
                  false);
    compareSwitch(table, "intelligent on without its 10 ms, to six bare exchanges and a search",
                  {write(DeviceSetting::CameraView, 120), read(DeviceSetting::AutoFrameMode), kLink,
                   kReadStream, write(DeviceSetting::FrameMaster, 0),
                   write(DeviceSetting::AutoFrameSwitch, 1), read(DeviceSetting::AutoFrameMode)},
                  true);
}

void SettingsBench::openings(RatioTable& table)
{
    std::vector<double> samples;
    for (int i = 0; i < kOpenings; ++i) {
        m_desk.window().showView(SvtaPagesView::HomePage);
        require(m_desk.settle() && m_camera.waitFor("idle"), "the page does not close");
        const std::uint64_t frames = m_camera.stats().frames;
        samples.push_back(secondsOf([&] {
            require(m_desk.clickCard(m_camera), "no card");
            // The page waits for the first picture before it reads the values.
            while (PendingTimers::count(100) > 0)
                QCoreApplication::processEvents(QEventLoop::WaitForMoreEvents);
            require(m_camera.waitFor("frames>=" + std::to_string(frames + 1)), "no picture");
        }));
        require(m_desk.settle(), "the page does not come to rest");
    }
    table.addFigure("camera opened to first picture and complete values, over the 100 ms before",
                    RatioTable::kMilliseconds, RatioTable::median(samples) - kPreviewDelaySeconds);
}

void SettingsBench::closePreview()
{
    require(m_desk.clickPreview() && m_desk.settle() && m_camera.waitFor("idle"),
            "the preview does not close");
}

SettingsBench::Painted SettingsBench::measureIdle(RatioTable& table, const std::string& preview)
{
    QTest::qWait(kSettleMs);
    const Repaints repaints;
    const std::clock_t before = std::clock();
    QTest::qWait(kIdleMs);
    const double share = static_cast<double>(std::clock() - before) / CLOCKS_PER_SEC /
                         (static_cast<double>(kIdleMs) / 1000.0);
    table.addFigure("settings page idle, preview " + preview + ": processor", kShare, share);
    const int pictures = repaints.of(QStringLiteral("previewSurface"));
    table.addFigure("settings page idle, preview " + preview + ": repaints of the picture in 4 s",
                    kRepaints, pictures);
    table.addFigure("settings page idle, preview " + preview + ": repaints below and beside it",
                    kRepaints, repaints.total() - pictures);
    table.addFigure("settings page idle, preview " + preview + ": heap", kKibibytes,
                    static_cast<double>(ProcessUsage::heapBytes()));
    return {pictures, repaints.total() - pictures};
}

bool SettingsBench::idle(RatioTable& table)
{
    const Painted on = measureIdle(table, "on");
    require(on.pictures > 0, "the preview does not paint");
    closePreview();
    const Painted off = measureIdle(table, "off");
    const bool quiet = on.others == 0 && off.pictures == 0 && off.others == 0;
    if (!quiet)
        std::fprintf(stderr, "the page paints although nothing changes\n");
    return quiet;
}

} // namespace

int main(int argc, char** argv)
{
    qInstallMessageHandler(logToNowhere);
    const QApplication application(argc, argv);
    RatioTable table;
    SettingsBench bench;
    bench.openings(table);
    const bool quiet = bench.idle(table);
    bench.clicks(table);
    return quiet ? table.exitCode() : 1;
}
