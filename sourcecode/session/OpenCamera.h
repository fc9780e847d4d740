#pragma once

#include "CameraSession.h"

#include <memory>

class UVCCamera;

/// The camera whose pages are open, if there is one: holds its session and replaces it when another
/// camera is opened or this one is left. GUI thread.
class OpenCamera
{
public:
    explicit OpenCamera(UVCCamera& camera);
    ~OpenCamera();
    OpenCamera(const OpenCamera&) = delete;
    OpenCamera& operator=(const OpenCamera&) = delete;

    /// The preview and HID endpoint, which points at this camera unless another one is being asked.
    [[nodiscard]] UVCCamera& camera() const { return m_camera; }
    /// The current session; one that is not open when there is no camera. A reference ends with the
    /// next change of the camera, so do not keep it.
    [[nodiscard]] CameraSession& session() const { return *m_session; }

    /// Begins the session of @p info. What was deferred for the previous camera runs first.
    void open(const DeviceWidgetInfo& info);
    /// The user has left the pages of the camera. What was deferred for it runs first; then its
    /// link is closed.
    void leave();
    /// The camera has left the bus: closes its link, because the system does not reuse the name of
    /// an interface while a handle is open, and drops what was deferred.
    void drop();

private:
    void begin(const DeviceWidgetInfo& info);

    UVCCamera& m_camera;
    std::unique_ptr<CameraSession> m_session;
};
