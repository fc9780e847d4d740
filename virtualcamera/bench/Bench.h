#pragma once

#include "BenchCamera.h"
#include "CameraBus.h"
#include "NodeSlot.h"
#include "Testbed.h"
#include "UeventSender.h"

#include <map>
#include <memory>

namespace virtualcamera {

/// All virtual cameras behind device nodes, and the bus they are plugged into.
class Bench : public CameraBus
{
public:
    Bench();
    ~Bench() override;

    const std::string& root() const { return m_testbed.root(); }

    /// Whether the programs below have closed all nodes.
    bool isIdle();

protected:
    std::unique_ptr<Camera> create(const std::string& id, CameraSpec spec) override;
    void appear(Camera& camera, Lock& lock) override;
    void vanish(Camera& camera, Lock& lock) override;

private:
    int claimNode(const std::string& prefix, NodeBackend& backend);
    NodeSlot& slot(const std::string& name) { return *m_slots.at(name); }
    void releaseNodes(const BenchCamera& camera);

    // The order matters for the end: nothing may run any more when the testbed goes.
    Testbed m_testbed;
    BenchContext m_context;
    UeventSender m_uevents;
    std::map<std::string, std::unique_ptr<NodeSlot>> m_slots;
    BusNumbers m_busNumbers;
};

} // namespace virtualcamera
