#pragma once

#include "BusContext.h"
#include "Camera.h"

#include <functional>
#include <map>
#include <memory>
#include <string>
#include <vector>

namespace virtualcamera {

/// The cameras and the bus they are plugged into; a derived class implements the kind of bus.
/// Thread-safe.
class CameraBus
{
public:
    /// The context must outlive the cameras.
    explicit CameraBus(BusContext& context)
        : m_context(context)
    {
    }
    virtual ~CameraBus() = default;
    CameraBus(const CameraBus&) = delete;
    CameraBus& operator=(const CameraBus&) = delete;

    BusContext& context() { return m_context; }

    using SpecEditor = std::function<void(CameraSpec&)>;
    /// Plugs a camera in. `edit` changes the spec of the known camera, or the default spec of a new
    /// one. Throws std::runtime_error when the camera is on the bus already.
    void plug(const std::string& id, const SpecEditor& edit);
    void unplug(const std::string& id);

    /// With the context locked. Throws std::runtime_error for an unknown id.
    Camera& camera(const std::string& id);
    /// With the context locked.
    std::vector<Camera*> cameras();

protected:
    using Lock = std::unique_lock<std::mutex>;

    /// Without the context locked.
    virtual std::unique_ptr<Camera> create(const std::string& id, CameraSpec spec) = 0;
    /// Puts the camera onto the bus and takes it off. Called with the context locked; may unlock it
    /// in between. When appear() throws, the camera is not on the bus.
    virtual void appear(Camera& camera, Lock& lock) = 0;
    virtual void vanish(Camera& camera, Lock& lock) = 0;

    /// Makes the camera leave the bus by itself. With the context locked.
    void scheduleDrop(const std::string& id, const BusDrop& drop);
    /// Destroys the cameras; a derived class calls it while everything that they use still exists.
    void forgetCameras();

private:
    CameraSpec defaultSpec() const;
    int freePort() const;
    void arrive(Camera& camera, Lock& lock);
    void leave(Camera& camera, Lock& lock);
    void dropNow(const std::string& id, unsigned connection, const BusDrop& drop);
    void comeBack(const std::string& id, unsigned connection);

    BusContext& m_context;
    /// One plug or unplug at a time; taken before the context's mutex.
    std::mutex m_busMutex;
    std::map<std::string, std::unique_ptr<Camera>> m_cameras;
};

} // namespace virtualcamera
