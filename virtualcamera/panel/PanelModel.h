#pragma once

#include "client/VirtualCameraClient.h"

#include <functional>
#include <memory>
#include <QObject>
#include <QStringList>
#include <vector>

namespace virtualcamera {

/// What the panel shows, fetched over the control socket on request. Failures are reported by a
/// signal, so that the panel stays when the server ends.
class PanelModel : public QObject
{
    Q_OBJECT

public:
    using Registers = std::multimap<std::string, std::string>;

    explicit PanelModel(std::string socket, QObject* parent = nullptr);

    const std::vector<VirtualCameraClient::CameraEntry>& cameras() const { return m_cameras; }
    QString selected() const { return m_selected; }
    void select(const QString& id);
    const Registers& registers() const { return m_registers; }
    const VirtualCameraClient::Stats& stats() const { return m_stats; }
    /// The newest requests of the selected camera, oldest first.
    const std::vector<VirtualCameraClient::LogEntry>& requests() const { return m_requests; }

    void refresh();
    void plug(const QString& id);
    void unplug(const QString& id);
    void addCamera(const QString& id, const QString& name);
    void applyFault(const QString& fault);
    void clearFaults();
    void setRegister(const QString& name, const QString& value);

signals:
    void refreshed();
    /// Empty when the last request succeeded.
    void messageChanged(const QString& message);

private:
    void attempt(const std::function<void(VirtualCameraClient&)>& action);
    void fetchSelected(VirtualCameraClient& client);

    const std::string m_socket;
    std::unique_ptr<VirtualCameraClient> m_client;
    std::vector<VirtualCameraClient::CameraEntry> m_cameras;
    QString m_selected;
    Registers m_registers;
    VirtualCameraClient::Stats m_stats;
    std::vector<VirtualCameraClient::LogEntry> m_requests;
};

} // namespace virtualcamera
