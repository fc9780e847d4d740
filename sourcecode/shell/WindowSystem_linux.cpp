#include "WindowSystem.h"

#include <cstdlib>
#include <memory>
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

std::optional<int> WindowSystem::monitorWidth()
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
