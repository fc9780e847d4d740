#pragma once

#include "Camera.h"
#include "NodeSlot.h"
#include "Testbed.h"
#include "UeventSender.h"

#include <functional>
#include <map>
#include <memory>
#include <vector>

namespace virtualcamera {

/// All virtual cameras and the bus they are plugged into.
class Bench
{
public:
    Bench();
    ~Bench();
    Bench(const Bench&) = delete;
    Bench& operator=(const Bench&) = delete;

    const std::string& root() const { return m_testbed.root(); }
    BenchContext& context() { return m_context; }

    using SpecEditor = std::function<void(CameraSpec&)>;
    /// `edit` starts from the known camera's spec or from the defaults. Throws
    /// std::runtime_error when the camera is on the bus already.
    void plug(const std::string& id, const SpecEditor& edit);
    void unplug(const std::string& id);

    /// With the context locked. Throws std::runtime_error for an unknown id.
    Camera& camera(const std::string& id);
    /// With the context locked.
    std::vector<Camera*> cameras();

    /// Whether the programs below have closed all nodes.
    bool isIdle();

private:
    using Lock = std::unique_lock<std::mutex>;

    CameraSpec defaultSpec() const;
    void appear(Camera& camera, Lock& lock);
    void vanish(Camera& camera, Lock& lock);
    void scheduleDrop(Camera& camera, const BusDrop& drop);
    void dropNow(const std::string& id, unsigned connection, const BusDrop& drop);
    void comeBack(const std::string& id, unsigned connection);

    int freePort() const;
    int claimNode(const std::string& prefix, NodeBackend& backend);
    NodeSlot& slot(const std::string& name) { return *m_slots.at(name); }
    void releaseNodes(Camera& camera);

    // The order matters for the end: nothing may run any more when the testbed goes.
    Testbed m_testbed;
    Scheduler m_scheduler;
    UeventSender m_uevents;
    BenchContext m_context;
    /// One plug or unplug at a time; taken before the context's mutex.
    std::mutex m_busMutex;
    std::map<std::string, std::unique_ptr<NodeSlot>> m_slots;
    std::map<std::string, std::unique_ptr<Camera>> m_cameras;
    BusNumbers m_busNumbers;
};

} // namespace virtualcamera
