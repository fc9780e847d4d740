#include "RatioTable.h"

#include <chrono>
#include <cstdio>
#include <cstdlib>
#include <memory>
#include <QCoreApplication>
#include <QFile>
#include <QProcess>
#include <thread>
#include <xcb/xcb.h>

namespace {

constexpr double kStartLimit = 1.5;
constexpr double kMemoryLimit = 1.8;
constexpr double kPrivateLimit = 3.0;
constexpr RatioTable::Unit kMegabytes{"MB", 1.0, 1};
constexpr std::chrono::seconds kUntilRest{6}; // the start animation takes 2.8 s of it
constexpr int kRounds = 8;
constexpr std::chrono::milliseconds kTimeoutMs{30000};
constexpr int kSmallestWindow = 100;

template <typename T>
using XcbReply = std::unique_ptr<T, decltype(&std::free)>;

/// Detects windows on a screen without a window manager.
class ScreenWatch
{
public:
    ScreenWatch()
        : m_connection(xcb_connect(nullptr, nullptr))
    {
        if (xcb_connection_has_error(m_connection) != 0) {
            std::fprintf(stderr, "no X server\n");
            std::exit(2);
        }
        m_root = xcb_setup_roots_iterator(xcb_get_setup(m_connection)).data->root;
    }
    ~ScreenWatch() { xcb_disconnect(m_connection); }
    ScreenWatch(const ScreenWatch&) = delete;
    ScreenWatch& operator=(const ScreenWatch&) = delete;

    /// Whether a window of a program's size is on the screen and its centre is not black, as it is
    /// before a program has painted.
    [[nodiscard]] bool showsPaintedWindow() const
    {
        const XcbReply<xcb_query_tree_reply_t> tree(
            xcb_query_tree_reply(m_connection, xcb_query_tree(m_connection, m_root), nullptr),
            &std::free);
        if (!tree)
            return false;
        const xcb_window_t* windows = xcb_query_tree_children(tree.get());
        for (int i = 0; i < xcb_query_tree_children_length(tree.get()); ++i) {
            if (isPainted(windows[i]))
                return true;
        }
        return false;
    }

private:
    [[nodiscard]] bool isPainted(xcb_window_t window) const
    {
        const XcbReply<xcb_get_window_attributes_reply_t> attributes(
            xcb_get_window_attributes_reply(
                m_connection, xcb_get_window_attributes(m_connection, window), nullptr),
            &std::free);
        if (!attributes || attributes->map_state != XCB_MAP_STATE_VIEWABLE ||
            attributes->_class != XCB_WINDOW_CLASS_INPUT_OUTPUT)
            return false;
        const XcbReply<xcb_get_geometry_reply_t> geometry(
            xcb_get_geometry_reply(m_connection, xcb_get_geometry(m_connection, window), nullptr),
            &std::free);
        if (!geometry || geometry->width < kSmallestWindow || geometry->height < kSmallestWindow)
            return false;
        const XcbReply<xcb_get_image_reply_t> pixel(
            xcb_get_image_reply(m_connection,
                                xcb_get_image(m_connection, XCB_IMAGE_FORMAT_Z_PIXMAP, window,
                                              static_cast<std::int16_t>(geometry->width / 2),
                                              static_cast<std::int16_t>(geometry->height / 2), 1, 1,
                                              0x00FFFFFF),
                                nullptr),
            &std::free);
        if (!pixel)
            return false;
        const std::uint8_t* bytes = xcb_get_image_data(pixel.get());
        return xcb_get_image_data_length(pixel.get()) >= 3 && (bytes[0] | bytes[1] | bytes[2]) != 0;
    }

    xcb_connection_t* m_connection;
    xcb_window_t m_root = 0;
};

/// The variable by which Qt is told to load no GL. MarvikTools tells it itself.
const QString kGlVariable = QStringLiteral("QT_XCB_GL_INTEGRATION");

struct Program
{
    QString path;
    bool hasGl = true;
};

/// A program that is started and killed again.
class RunningProgram
{
public:
    explicit RunningProgram(const Program& program)
    {
        QProcessEnvironment environment = QProcessEnvironment::systemEnvironment();
        environment.remove(kGlVariable);
        if (!program.hasGl)
            environment.insert(kGlVariable, QStringLiteral("none"));
        m_process.setProcessEnvironment(environment);
        m_process.setStandardErrorFile(QProcess::nullDevice());
        m_process.start(program.path, QStringList());
    }
    ~RunningProgram()
    {
        m_process.kill();
        m_process.waitForFinished();
    }
    RunningProgram(const RunningProgram&) = delete;
    RunningProgram& operator=(const RunningProgram&) = delete;

    [[nodiscard]] qint64 id() const { return m_process.processId(); }

private:
    QProcess m_process;
};

struct Memory
{
    double proportional = 0; ///< in MB; what other programs use too counts in part
    double unshared = 0;     ///< in MB: what nobody else uses
};

Memory memoryAtRest(const Program& program)
{
    const RunningProgram running(program);
    std::this_thread::sleep_for(kUntilRest);
    QFile file(QStringLiteral("/proc/%1/smaps_rollup").arg(running.id()));
    if (!file.open(QIODevice::ReadOnly)) {
        std::fprintf(stderr, "%s does not run\n", qPrintable(program.path));
        std::exit(2);
    }
    Memory memory;
    const QList<QByteArray> lines = file.readAll().split('\n');
    for (const QByteArray& line : lines) {
        const QByteArray text = line.simplified();
        const double megabytes = text.split(' ').value(1).toDouble() / 1024;
        if (text.startsWith("Pss:"))
            memory.proportional = megabytes;
        else if (text.startsWith("Private_"))
            memory.unshared += megabytes;
    }
    return memory;
}

double secondsToFirstPicture(const ScreenWatch& screen, const Program& program)
{
    using Clock = std::chrono::steady_clock;
    while (screen.showsPaintedWindow()) // of the program before
        std::this_thread::sleep_for(std::chrono::milliseconds(5));
    const Clock::time_point start = Clock::now();
    const RunningProgram running(program);
    while (!screen.showsPaintedWindow()) {
        if (Clock::now() - start > kTimeoutMs) {
            std::fprintf(stderr, "%s shows no window\n", qPrintable(program.path));
            std::exit(2);
        }
        std::this_thread::sleep_for(std::chrono::milliseconds(1));
    }
    return std::chrono::duration<double>(Clock::now() - start).count();
}

} // namespace

int main(int argc, char** argv)
{
    const QCoreApplication application(argc, argv);
    const QString directory = QCoreApplication::applicationDirPath();
    const Program own{directory + QStringLiteral("/MarvikTools")};
    const Program empty{directory + QStringLiteral("/EmptyWindow")};
    const Program emptyWithoutGl{empty.path, false};
    const ScreenWatch screen;
    RatioTable table;
    const auto compareStart = [&](const std::string& baseline, const Program& program,
                                  std::optional<double> limit) {
        table.compare(
            "start to the first painted window, to " + baseline, RatioTable::kMilliseconds,
            [&] { return secondsToFirstPicture(screen, program); },
            [&] { return secondsToFirstPicture(screen, own); }, kRounds, limit);
    };
    compareStart("an empty window", empty, kStartLimit);
    compareStart("an empty window without GL", emptyWithoutGl, std::nullopt);

    const Memory ownMemory = memoryAtRest(own);
    const auto compareMemory = [&](const std::string& baseline, const Program& program,
                                   std::optional<double> limit,
                                   std::optional<double> privateLimit) {
        const Memory memory = memoryAtRest(program);
        table.addRatio("memory at rest (PSS), to " + baseline, kMegabytes, memory.proportional,
                       ownMemory.proportional, limit);
        table.addRatio("private memory at rest, to " + baseline, kMegabytes, memory.unshared,
                       ownMemory.unshared, privateLimit);
    };
    compareMemory("an empty window", empty, kMemoryLimit, kPrivateLimit);
    compareMemory("an empty window without GL", emptyWithoutGl, std::nullopt, std::nullopt);
    return table.exitCode();
}
