#include "OpenCamera.h"

#include "CameraHandle.h"

OpenCamera::OpenCamera(UVCCamera& camera)
    : m_camera(camera)
    , m_session(std::make_unique<CameraSession>(camera, DeviceWidgetInfo()))
{
}

OpenCamera::~OpenCamera() = default;

void OpenCamera::open(const DeviceWidgetInfo& info)
{
    m_session->flushDeferred();
    begin(info);
}

void OpenCamera::leave()
{
    if (!m_session->isOpen())
        return;
    m_session->flushDeferred();
    m_session->closeLink();
    begin({});
}

void OpenCamera::drop()
{
    m_session->closeLink();
    begin({});
}

void OpenCamera::begin(const DeviceWidgetInfo& info)
{
    m_session = std::make_unique<CameraSession>(m_camera, info);
    CameraHandle::instance().setCurrentDevice(info);
}
