#include "ScriptedUdev.h"

#include <cstdlib>
#include <libudev.h>
#include <unistd.h>

struct udev_device
{
    std::string action;
};

namespace {

ScriptedUdev* s_current = nullptr;

/// Contexts and monitors need no content: an address is enough.
char s_context;
char s_monitor;

} // namespace

ScriptedUdev::ScriptedUdev()
{
    s_current = this;
    if (::pipe(m_pipe) != 0)
        std::abort();
}

ScriptedUdev::~ScriptedUdev()
{
    s_current = nullptr;
    ::close(m_pipe[0]);
    ::close(m_pipe[1]);
}

ScriptedUdev* ScriptedUdev::current()
{
    return s_current;
}

void ScriptedUdev::send(const std::string& action)
{
    const std::lock_guard lock(m_mutex);
    m_actions.push(action);
    if (::write(m_pipe[1], "e", 1) != 1)
        std::abort();
}

void ScriptedUdev::refuseMonitors()
{
    const std::lock_guard lock(m_mutex);
    m_refusing = true;
}

int ScriptedUdev::monitorsMade() const
{
    const std::lock_guard lock(m_mutex);
    return m_made;
}

int ScriptedUdev::monitorsOpen() const
{
    const std::lock_guard lock(m_mutex);
    return m_open;
}

std::string ScriptedUdev::subject() const
{
    const std::lock_guard lock(m_mutex);
    return m_subject;
}

bool ScriptedUdev::makeMonitor(const std::string& source)
{
    const std::lock_guard lock(m_mutex);
    if (m_refusing)
        return false;
    ++m_made;
    ++m_open;
    m_subject = source;
    return true;
}

void ScriptedUdev::dropMonitor()
{
    const std::lock_guard lock(m_mutex);
    --m_open;
}

void ScriptedUdev::filter(const std::string& subsystem)
{
    const std::lock_guard lock(m_mutex);
    m_subject += ' ' + subsystem;
}

void ScriptedUdev::setReceiveBuffer(int bytes)
{
    const std::lock_guard lock(m_mutex);
    m_receiveBuffer = bytes;
}

int ScriptedUdev::receiveBuffer() const
{
    const std::lock_guard lock(m_mutex);
    return m_receiveBuffer;
}

std::string ScriptedUdev::receive()
{
    char event = 0;
    if (::read(m_pipe[0], &event, 1) != 1)
        std::abort();
    const std::lock_guard lock(m_mutex);
    std::string action = m_actions.front();
    m_actions.pop();
    return action;
}

extern "C" {

udev* udev_new(void)
{
    return reinterpret_cast<udev*>(&s_context);
}

udev* udev_unref(udev*)
{
    return nullptr;
}

udev_monitor* udev_monitor_new_from_netlink(udev*, const char* name)
{
    ScriptedUdev* script = ScriptedUdev::current();
    return script && script->makeMonitor(name) ? reinterpret_cast<udev_monitor*>(&s_monitor)
                                               : nullptr;
}

udev_monitor* udev_monitor_unref(udev_monitor*)
{
    if (ScriptedUdev* script = ScriptedUdev::current())
        script->dropMonitor();
    return nullptr;
}

int udev_monitor_filter_add_match_subsystem_devtype(udev_monitor*, const char* subsystem,
                                                    const char*)
{
    if (ScriptedUdev* script = ScriptedUdev::current())
        script->filter(subsystem);
    return 0;
}

int udev_monitor_set_receive_buffer_size(udev_monitor*, int size)
{
    if (ScriptedUdev* script = ScriptedUdev::current())
        script->setReceiveBuffer(size);
    return 0;
}

int udev_monitor_enable_receiving(udev_monitor*)
{
    return 0;
}

int udev_monitor_get_fd(udev_monitor*)
{
    ScriptedUdev* script = ScriptedUdev::current();
    return script ? script->descriptor() : -1;
}

udev_device* udev_monitor_receive_device(udev_monitor*)
{
    ScriptedUdev* script = ScriptedUdev::current();
    return script ? new udev_device{script->receive()} : nullptr;
}

udev_device* udev_device_unref(udev_device* device)
{
    delete device;
    return nullptr;
}

const char* udev_device_get_syspath(udev_device*)
{
    return "/sys/class/hidraw/hidraw0";
}

const char* udev_device_get_action(udev_device* device)
{
    return device->action.empty() ? nullptr : device->action.c_str();
}

/// An interface without a USB device as its parent: the watcher waits for no other interface.
udev_device* udev_device_get_parent_with_subsystem_devtype(udev_device*, const char*, const char*)
{
    return nullptr;
}

/// Nothing is there before the first event.
udev_enumerate* udev_enumerate_new(udev*)
{
    return nullptr;
}

} // extern "C"
