#include "CameraDesk.h"
#include "HidCommands.h"
#include "HidFrame.h"
#include "PendingTimers.h"
#include "ProcessUsage.h"
#include "RatioTable.h"

#include <algorithm>
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

constexpr double kLimit = 1.20;
constexpr int kRounds = 12;
constexpr int kClicks = 20;
constexpr int kOpenings = 5;
constexpr int kTimeoutMs = 3000;
constexpr double kPreviewDelaySeconds = 0.1; // before the page starts its preview; not its own time
constexpr unsigned long kRestMs = 4;
constexpr int kFramingDelayMs = 10;
constexpr int kFramingOffDelayMs = 100;
constexpr int kIdleMs = 4000;
constexpr int kSettleMs = 1500;
constexpr const char* kOnlyThePersistentHandle = "hid=1";

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

using Clock = std::chrono::steady_clock;

double secondsSince(Clock::time_point start)
{
    return std::chrono::duration<double>(Clock::now() - start).count();
}

double secondsOf(const std::function<void()>& operation)
{
    const Clock::time_point start = Clock::now();
    operation();
    return secondsSince(start);
}

/// Counts what is painted, in the preview and elsewhere.
class Repaints : public QObject
{
public:
    explicit Repaints(QWidget* preview)
        : m_preview(preview)
    {
        qApp->installEventFilter(this);
    }
    [[nodiscard]] int inPreview() const { return m_inPreview; }
    [[nodiscard]] int elsewhere() const { return m_elsewhere; }

protected:
    bool eventFilter(QObject* watched, QEvent* event) override
    {
        if (event->type() == QEvent::Paint) {
            const auto* widget = qobject_cast<QWidget*>(watched);
            if (widget && (widget == m_preview || m_preview->isAncestorOf(widget)))
                ++m_inPreview;
            else
                ++m_elsewhere;
        }
        return false;
    }

private:
    QWidget* m_preview;
    int m_inPreview = 0;
    int m_elsewhere = 0;
};

/// The settings page of one camera, and what is measured on it.
class SettingsBench
{
public:
    SettingsBench() { require(m_desk.startWith(m_camera), "the camera does not open"); }

    void clicks(RatioTable& table);
    void openings(RatioTable& table);
    /// @return false when the page paints although nothing changes
    [[nodiscard]] bool idle(RatioTable& table);
    void closePreview();

private:
    void rest();
    double bareSeconds(int exchanges, bool withSearch);
    double clickSeconds(const std::function<QWidget*()>& target);
    double subModeSeconds();
    double sliderSeconds(const char* name);
    void compare(RatioTable& table, const std::string& what,
                 const std::function<const char*()>& target, int exchanges = 1,
                 bool withSearch = false);
    void compareSwitch(RatioTable& table);
    int measureIdle(RatioTable& table, const std::string& preview);

    SavedSettings m_saved;
    PluggedCamera m_camera{{"serial", "SVAA009500551"}};
    CameraDesk m_desk;
    HidFrame::Buffer m_request =
        HidFrame::packRequest(HidCommands::ReadCameraView, HidFrame::ReadOrFinal, {}, 0);
    int m_turn = 0;
};

/// Every measurement begins after the same rest, and when the camera has seen the handle of the
/// exchange before go.
void SettingsBench::rest()
{
    require(m_camera.waitFor(kOnlyThePersistentHandle), "a handle is left open");
    QThread::msleep(kRestMs);
}

/// What no program that opens the camera for every command can do without; with a search for its
/// interface and a link to it, as before the camera's stream is asked for.
double SettingsBench::bareSeconds(int exchanges, bool withSearch)
{
    const QByteArray path = m_camera.hidPath().toUtf8();
    std::vector<double> samples;
    for (int i = 0; i < kClicks; ++i) {
        rest();
        samples.push_back(secondsOf([&] {
            for (int k = 0; k < exchanges; ++k) {
                HidFrame::Buffer answer{};
                hid_device* device = hid_open_path(path.constData());
                require(device && hid_write(device, m_request.data(), m_request.size()) >= 1 &&
                            hid_read_timeout(device, answer.data(), answer.size(), kTimeoutMs) >= 1,
                        "the camera does not answer");
                hid_close(device);
            }
            if (withSearch) {
                hid_free_enumeration(hid_enumerate(0, 0));
                hid_close(hid_open_path(path.constData()));
            }
        }));
    }
    return RatioTable::median(samples);
}

/// From the moment at which the control has taken the click to the acknowledgement of all that it
/// sends.
double SettingsBench::clickSeconds(const std::function<QWidget*()>& target)
{
    std::vector<double> samples;
    for (int i = 0; i < kClicks; ++i) {
        rest();
        QWidget* widget = target();
        const QPoint position(qobject_cast<QRadioButton*>(widget) ? 8 : widget->width() / 2,
                              widget->height() / 2);
        Clock::time_point taken;
        QMetaObject::Connection connection;
        QTest::mousePress(widget, Qt::LeftButton, Qt::NoModifier, position);
        // A button is painted before it signals; that, and the server's work on it, is not the
        // program's.
        if (const auto* button = qobject_cast<QAbstractButton*>(widget))
            connection = QObject::connect(button, &QAbstractButton::released, [&taken] {
                QThread::msleep(kRestMs);
                taken = Clock::now();
            });
        taken = Clock::now();
        QTest::mouseRelease(widget, Qt::LeftButton, Qt::NoModifier, position);
        PendingTimers::fire(kFramingDelayMs);
        PendingTimers::fire(kFramingOffDelayMs);
        samples.push_back(secondsSince(taken));
        QObject::disconnect(connection);
        m_desk.unlockIntelligent();
        QCoreApplication::processEvents();
        ++m_turn;
    }
    return RatioTable::median(samples);
}

/// A sub-mode is sent while its button changes, before it is painted.
double SettingsBench::subModeSeconds()
{
    std::vector<double> samples;
    for (int i = 0; i < kClicks; ++i) {
        rest();
        auto* button = m_desk.find<QRadioButton>(m_turn++ % 2 == 0 ? "rbtnDivisionMaster"
                                                                   : "rbtnPersonalTrack");
        const QPoint position(8, button->height() / 2);
        QTest::mousePress(button, Qt::LeftButton, Qt::NoModifier, position);
        QThread::msleep(kRestMs);
        const Clock::time_point start = Clock::now();
        double seconds = 0;
        const QMetaObject::Connection connection = QObject::connect(
            button, &QRadioButton::toggled, [&seconds, start] { seconds = secondsSince(start); });
        QTest::mouseRelease(button, Qt::LeftButton, Qt::NoModifier, position);
        QObject::disconnect(connection);
        QCoreApplication::processEvents();
        if (seconds > 0) // the mode was another one before
            samples.push_back(seconds);
    }
    return RatioTable::median(samples);
}

/// A press is all that a slider needs.
double SettingsBench::sliderSeconds(const char* name)
{
    QWidget* slider = m_desk.find(name);
    std::vector<double> samples;
    for (int i = 0; i < kClicks; ++i) {
        const QPoint position(m_turn++ % 2 == 0 ? 40 : 120, slider->height() / 2);
        const Clock::time_point start = Clock::now();
        QTest::mousePress(slider, Qt::LeftButton, Qt::NoModifier, position);
        samples.push_back(secondsSince(start));
        QTest::mouseRelease(slider, Qt::LeftButton, Qt::NoModifier, position);
        QCoreApplication::processEvents();
    }
    return RatioTable::median(samples);
}

void SettingsBench::compare(RatioTable& table, const std::string& what,
                            const std::function<const char*()>& target, int exchanges,
                            bool withSearch)
{
    table.compare(
        what, RatioTable::kMicroseconds, [&] { return bareSeconds(exchanges, withSearch); },
        [&] { return clickSeconds([&] { return m_desk.find(target()); }); }, kRounds, kLimit);
}

void SettingsBench::clicks(RatioTable& table)
{
    const auto either = [this](const char* first, const char* second) {
        return [this, first, second] { return m_turn % 2 == 0 ? first : second; };
    };
    const auto always = [](const char* name) { return [name] { return name; }; };
    compare(table, "mirror, to a bare exchange", always("btnHorizontalMirror"));
    compare(table, "sensitivity, to a bare exchange", either("btnLow", "btnHeigh"));
    compare(table, "field of view, to a bare exchange", either("btn90", "btn120"));
    compare(table, "preset, to a bare exchange", either("btnBrightMode", "btnVividMode"));
    for (const char* name :
         {"brightSlider", "contrastSlider", "saturationSlider", "sharpnessSlider"})
        table.compare(
            std::string(name) + ", to a bare exchange", RatioTable::kMicroseconds,
            [this] { return bareSeconds(1, false); }, [this, name] { return sliderSeconds(name); },
            kRounds, kLimit);

    // The times that the program lets pass on purpose, 10 and 100 ms, are cut short.
    require(m_desk.switchIntelligent(), "the intelligent features do not come on");
    table.compare(
        "sub-mode, to a bare exchange", RatioTable::kMicroseconds,
        [this] { return bareSeconds(1, false); }, [this] { return subModeSeconds(); }, kRounds,
        kLimit);
    compare(table, "automatic framing without its 10 ms, to three bare exchanges",
            always("rbtnAutoFraming"), 3);
    compare(table, "frame master without its 10 ms, to two bare exchanges",
            always("rbtnFrameMaster"), 2);
    require(m_desk.choose("rbtnAutoFraming"), "no automatic framing");
    m_desk.unlockIntelligent();
    // Off is two reads and a write; on is a write, a read, a search with the stream's format, two
    // writes and a read.
    compareSwitch(table);
}

void SettingsBench::compareSwitch(RatioTable& table)
{
    double bestOn = 1.0;
    double bestOff = 1.0;
    double bareOn = 1.0;
    double bareOff = 1.0;
    auto* button = m_desk.find("btnIntelligent");
    for (int i = 0; i < kRounds * kClicks; ++i) {
        for (const bool on : {false, true}) {
            rest();
            QTest::mousePress(button, Qt::LeftButton);
            const Clock::time_point start = Clock::now();
            QTest::mouseRelease(button, Qt::LeftButton);
            PendingTimers::fire(kFramingDelayMs);
            PendingTimers::fire(kFramingOffDelayMs);
            double& best = on ? bestOn : bestOff;
            best = std::min(best, secondsSince(start));
            require(m_desk.isChecked("btnIntelligent") == on, "the switch is locked");
            m_desk.unlockIntelligent();
            QCoreApplication::processEvents();
        }
        if (i % kClicks == 0) {
            bareOn = std::min(bareOn, bareSeconds(6, true));
            bareOff = std::min(bareOff, bareSeconds(3, false));
        }
    }
    table.addRatio("intelligent off without its 100 ms, to three bare exchanges",
                   RatioTable::kMicroseconds, bareOff, bestOff, kLimit);
    table.addRatio("intelligent on without its 10 ms, to six bare exchanges and a search",
                   RatioTable::kMicroseconds, bareOn, bestOn, kLimit);
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
            // The first picture is waited for before the values are read.
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

/// @return how often something was painted
int SettingsBench::measureIdle(RatioTable& table, const std::string& preview)
{
    QTest::qWait(kSettleMs);
    const Repaints repaints(m_desk.find("previewWidget"));
    const std::clock_t before = std::clock();
    QTest::qWait(kIdleMs);
    const double share = static_cast<double>(std::clock() - before) / CLOCKS_PER_SEC /
                         (static_cast<double>(kIdleMs) / 1000.0);
    table.addFigure("settings page idle, preview " + preview + ": processor", kShare, share);
    table.addFigure("settings page idle, preview " + preview + ": repaints of the picture in 4 s",
                    kRepaints, repaints.inPreview());
    table.addFigure("settings page idle, preview " + preview + ": repaints below and beside it",
                    kRepaints, repaints.elsewhere());
    table.addFigure("settings page idle, preview " + preview + ": heap", kKibibytes,
                    static_cast<double>(ProcessUsage::heapBytes()));
    return repaints.inPreview() + repaints.elsewhere();
}

bool SettingsBench::idle(RatioTable& table)
{
    require(measureIdle(table, "on") > 0, "the preview does not paint");
    closePreview();
    const bool quiet = measureIdle(table, "off") == 0;
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
