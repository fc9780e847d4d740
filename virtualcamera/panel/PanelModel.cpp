#include "PanelModel.h"

#include <algorithm>

namespace virtualcamera {

namespace {

constexpr std::uint64_t kShownRequests = 50;

} // namespace

PanelModel::PanelModel(std::string socket, QObject* parent)
    : QObject(parent)
    , m_socket(std::move(socket))
{
}

void PanelModel::attempt(const std::function<void(VirtualCameraClient&)>& action)
{
    try {
        if (!m_client)
            m_client = std::make_unique<VirtualCameraClient>(m_socket);
        action(*m_client);
        emit messageChanged(QString());
    } catch (const std::exception& error) {
        // The connection may be in the middle of a reply; the next request makes a new one.
        m_client.reset();
        emit messageChanged(QString::fromUtf8(error.what()));
    }
}

void PanelModel::select(const QString& id)
{
    if (m_selected == id)
        return;
    m_selected = id;
    refresh();
}

void PanelModel::refresh()
{
    attempt([this](VirtualCameraClient& client) {
        m_cameras = client.list();
        const bool known = std::any_of(m_cameras.begin(), m_cameras.end(), [this](const auto& c) {
            return c.id == m_selected.toStdString();
        });
        if (!known)
            m_selected =
                m_cameras.empty() ? QString() : QString::fromStdString(m_cameras.front().id);
        fetchSelected(client);
    });
    emit refreshed();
}

void PanelModel::fetchSelected(VirtualCameraClient& client)
{
    m_registers.clear();
    m_requests.clear();
    m_stats = {};
    if (m_selected.isEmpty())
        return;
    const std::string id = m_selected.toStdString();
    m_registers = client.registers(id);
    m_stats = client.stats(id);
    const std::uint64_t from =
        m_stats.requests > kShownRequests ? m_stats.requests - kShownRequests + 1 : 0;
    m_requests = client.log(id, from);
}

void PanelModel::plug(const QString& id)
{
    attempt([&id](VirtualCameraClient& client) { client.plug(id.toStdString()); });
    refresh();
}

void PanelModel::unplug(const QString& id)
{
    attempt([&id](VirtualCameraClient& client) { client.unplug(id.toStdString()); });
    refresh();
}

void PanelModel::addCamera(const QString& id, const QString& name)
{
    attempt([&](VirtualCameraClient& client) {
        client.plug(id.toStdString(),
                    {{"card", name.toStdString()}, {"product", name.toStdString()}});
    });
    refresh();
}

void PanelModel::applyFault(const QString& fault)
{
    attempt([this, &fault](VirtualCameraClient& client) {
        client.fault(m_selected.toStdString(), fault.toStdString());
    });
}

void PanelModel::clearFaults()
{
    attempt([this](VirtualCameraClient& client) { client.clear(m_selected.toStdString()); });
}

void PanelModel::setRegister(const QString& name, const QString& value)
{
    attempt([&](VirtualCameraClient& client) {
        client.set(m_selected.toStdString(), name.toStdString(), value.toStdString());
    });
}

} // namespace virtualcamera
