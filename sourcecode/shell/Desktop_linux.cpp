#include "Desktop.h"

#include <cstdlib>
#include <memory>
#include <QFont>
#include <QStandardPaths>
#include <QtGlobal>
#include <xcb/randr.h>

namespace {

struct XcbDeleter
{
    void operator()(xcb_connection_t* p) const { xcb_disconnect(p); }
    void operator()(void* p) const { std::free(p); }
};

template <typename T>
using XcbPtr = std::unique_ptr<T, XcbDeleter>;

xcb_screen_t* screenNumber(xcb_connection_t* connection, int number)
{
    xcb_screen_iterator_t it = xcb_setup_roots_iterator(xcb_get_setup(connection));
    for (; it.rem > 0; xcb_screen_next(&it), --number) {
        if (number == 0)
            return it.data;
    }
    return nullptr;
}

} // namespace

void Desktop::chooseWindowSystem()
{
    // The preview's overlays are windows that the program places itself, which Wayland allows to
    // nobody. Its X server does.
    if (qEnvironmentVariableIsEmpty("QT_QPA_PLATFORM") &&
        !qEnvironmentVariableIsEmpty("WAYLAND_DISPLAY") && !qEnvironmentVariableIsEmpty("DISPLAY"))
        qputenv("QT_QPA_PLATFORM", "xcb");
}

std::optional<int> Desktop::monitorWidth()
{
    int number = 0;
    const XcbPtr<xcb_connection_t> connection(xcb_connect(nullptr, &number));
    if (xcb_connection_has_error(connection.get()) != 0)
        return std::nullopt;
    const xcb_screen_t* screen = screenNumber(connection.get(), number);
    const auto* extension = xcb_get_extension_data(connection.get(), &xcb_randr_id);
    if (!screen || !extension || extension->present == 0)
        return std::nullopt;

    const XcbPtr<xcb_randr_get_monitors_reply_t> monitors(xcb_randr_get_monitors_reply(
        connection.get(), xcb_randr_get_monitors(connection.get(), screen->root, 1), nullptr));
    if (!monitors)
        return std::nullopt;
    std::optional<int> width;
    auto it = xcb_randr_get_monitors_monitors_iterator(monitors.get());
    for (; it.rem > 0; xcb_randr_monitor_info_next(&it)) {
        if (!width || it.data->primary != 0)
            width = it.data->width;
    }
    return width;
}

QString Desktop::instanceDirectory()
{
    // The runtime directory belongs to the user alone, so no other user can take the names first.
    // Without one (a session without a login manager), the user's own data directory serves.
    const QString directory = QStandardPaths::writableLocation(QStandardPaths::RuntimeLocation);
    return directory.isEmpty()
               ? QStandardPaths::writableLocation(QStandardPaths::AppLocalDataLocation)
               : directory;
}

QString Desktop::instanceSocket()
{
    return instanceDirectory() + QStringLiteral("/marviktools.socket");
}

void Desktop::passForeground()
{
    // A window that asks for the foreground gets it, or the window manager marks it.
}

void Desktop::setFontSubstitutes()
{
    const QStringList substitutes{QStringLiteral("Noto Sans CJK SC"),
                                  QStringLiteral("WenQuanYi Micro Hei"),
                                  QStringLiteral("DejaVu Sans")};
    QFont::insertSubstitutions(QStringLiteral("Microsoft YaHei UI"), substitutes);
    QFont::insertSubstitutions(QStringLiteral("Microsoft YaHei"), substitutes);
}
