#include "SDMMNotificationClient.h"

#include "LogCategories.h"

#include <pulse/pulseaudio.h>

namespace {

/// @p id is the server's name of the endpoint, @p name the name for people. On the sound thread.
void printDeviceName(const char* id, const char* name)
{
    qCDebug(hotplugLog) << "SDMMNotificationClient::_PrintDeviceID" << id;
    qCDebug(hotplugLog) << "SDMMNotificationClient::_PrintDeviceName" << name;
}

void onSink(pa_context*, const pa_sink_info* info, int, void*)
{
    if (info)
        printDeviceName(info->name, info->description);
}

void onSource(pa_context*, const pa_source_info* info, int, void*)
{
    if (info)
        printDeviceName(info->name, info->description);
}

void unrefOperation(pa_operation* operation)
{
    if (operation)
        pa_operation_unref(operation);
}

void onEvent(pa_context* context, pa_subscription_event_type_t event, uint32_t index, void*)
{
    // A removed endpoint has no name any more.
    if ((event & PA_SUBSCRIPTION_EVENT_TYPE_MASK) == PA_SUBSCRIPTION_EVENT_REMOVE) {
        qCDebug(hotplugLog) << "SDMMNotificationClient::_PrintDeviceID" << index;
        return;
    }
    if ((event & PA_SUBSCRIPTION_EVENT_FACILITY_MASK) == PA_SUBSCRIPTION_EVENT_SINK)
        unrefOperation(pa_context_get_sink_info_by_index(context, index, onSink, nullptr));
    else
        unrefOperation(pa_context_get_source_info_by_index(context, index, onSource, nullptr));
}

void onSubscribed(pa_context*, int success, void*)
{
    qCCritical(hotplugLog) << "DeviceManager::initIMMDeviceEnumerator"
                           << (success ? "注册成功" : "注册失败");
}

void onState(pa_context* context, void*)
{
    if (pa_context_get_state(context) != PA_CONTEXT_READY)
        return;
    qCCritical(hotplugLog) << "DeviceManager::initIMMDeviceEnumerator"
                           << "接口创建成功";
    pa_context_set_subscribe_callback(context, onEvent, nullptr);
    const auto mask = static_cast<pa_subscription_mask_t>(PA_SUBSCRIPTION_MASK_SINK |
                                                          PA_SUBSCRIPTION_MASK_SOURCE);
    unrefOperation(pa_context_subscribe(context, mask, onSubscribed, nullptr));
}

} // namespace

void SDMMNotificationClient::MainLoopDeleter::operator()(pa_threaded_mainloop* loop) const
{
    pa_threaded_mainloop_free(loop);
}

SDMMNotificationClient::SDMMNotificationClient() = default;

SDMMNotificationClient::~SDMMNotificationClient()
{
    disconnect();
}

void SDMMNotificationClient::registerCallback()
{
    disconnect();
    m_loop.reset(pa_threaded_mainloop_new());
    if (!m_loop)
        return;
    m_context = pa_context_new(pa_threaded_mainloop_get_api(m_loop.get()), "MarvikTools");
    if (!m_context)
        return;
    pa_context_set_state_callback(m_context, onState, nullptr);
    if (pa_context_connect(m_context, nullptr, PA_CONTEXT_NOAUTOSPAWN, nullptr) < 0)
        return;
    pa_threaded_mainloop_start(m_loop.get());
}

void SDMMNotificationClient::disconnect()
{
    if (!m_loop)
        return;
    pa_threaded_mainloop_stop(m_loop.get());
    if (m_context) {
        pa_context_set_state_callback(m_context, nullptr, nullptr);
        pa_context_disconnect(m_context);
        pa_context_unref(m_context);
        m_context = nullptr;
    }
    m_loop.reset();
}
