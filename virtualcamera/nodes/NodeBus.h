#pragma once

#include "CameraBus.h"
#include "DeviceFileTree.h"
#include "NodeCamera.h"
#include "NodeSlot.h"
#include "UeventSender.h"

#include <map>
#include <memory>

namespace virtualcamera {

/// All virtual cameras behind device nodes, and the bus they are plugged into.
class NodeBus : public CameraBus
{
public:
    NodeBus();
    ~NodeBus() override;

    const std::string& root() const { return m_files.root(); }

    /// Whether the started programs have closed all nodes.
    bool isIdle();

protected:
    std::unique_ptr<Camera> create(const std::string& id, CameraSpec spec) override;
    void appear(Camera& camera, Lock& lock) override;
    void vanish(Camera& camera, Lock& lock) override;

private:
    int claimNode(const std::string& prefix, NodeBackend& backend);
    NodeSlot& slot(const std::string& name) { return *m_slots.at(name); }
    void releaseNodes(const NodeCamera& camera);

    // The order matters for destruction: nothing may run once the files are removed.
    DeviceFileTree m_files;
    NodeContext m_context;
    UeventSender m_uevents;
    std::map<std::string, std::unique_ptr<NodeSlot>> m_slots;
    BusNumbers m_busNumbers;
};

} // namespace virtualcamera
