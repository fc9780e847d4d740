#include "RatioTable.h"

#include <chrono>
#include <cstdio>
#include <cstdlib>
#include <memory>
#include <QCoreApplication>
#include <QProcess>
#include <thread>
#include <xcb/xcb.h>

namespace {

constexpr double kLimit = 3.0;
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

double secondsToFirstPicture(const ScreenWatch& screen, const QString& program)
{
    using Clock = std::chrono::steady_clock;
    while (screen.showsPaintedWindow()) // of the program before
        std::this_thread::sleep_for(std::chrono::milliseconds(5));
    QProcess process;
    process.setStandardErrorFile(QProcess::nullDevice());
    const Clock::time_point start = Clock::now();
    process.start(program, QStringList());
    while (!screen.showsPaintedWindow()) {
        if (Clock::now() - start > kTimeoutMs) {
            std::fprintf(stderr, "%s shows no window\n", qPrintable(program));
            std::exit(2);
        }
        std::this_thread::sleep_for(std::chrono::milliseconds(1));
    }
    const double seconds = std::chrono::duration<double>(Clock::now() - start).count();
    process.kill();
    process.waitForFinished();
    return seconds;
}

} // namespace

int main(int argc, char** argv)
{
    const QCoreApplication application(argc, argv);
    const QString directory = QCoreApplication::applicationDirPath();
    const ScreenWatch screen;
    RatioTable table;
    table.compare(
        "start to the first painted window, to an empty window", RatioTable::kMilliseconds,
        [&] { return secondsToFirstPicture(screen, directory + QStringLiteral("/EmptyWindow")); },
        [&] { return secondsToFirstPicture(screen, directory + QStringLiteral("/MarvikTools")); },
        kRounds, kLimit);
    return table.exitCode();
}
