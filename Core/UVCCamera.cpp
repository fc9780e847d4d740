#include "UVCCamera.h"

#include "CaptureGraph.h"
#include "VideoDevices.h"

#include <QDebug>

namespace {

std::optional<PreviewFormat> previewFormatFor(int screenColourDepth)
{
    switch (screenColourDepth) {
    case 8:
        return PreviewFormat::Rgb8;
    case 16:
        return PreviewFormat::Rgb555;
    case 24:
        return PreviewFormat::Rgb24;
    case 32:
        return PreviewFormat::Rgb32;
    default:
        return std::nullopt;
    }
}

} // namespace

UVCCamera::UVCCamera(QObject* parent)
    : UVCCamera(CaptureGraph::makePlatformGraph(), parent)
{
}

UVCCamera::UVCCamera(std::unique_ptr<CaptureGraph> graph, QObject* parent)
    : QObject(parent)
    , m_graph(std::move(graph))
{
    connect(&m_callback, &SampleGrabberCallback::sigImage, this, &UVCCamera::sigImage,
            Qt::DirectConnection);
    m_graph->create();
}

UVCCamera::~UVCCamera()
{
    releaseGraph();
}

void UVCCamera::releaseGraph()
{
    m_graph->stop();
    m_graph->hideVideoWindow();
    m_graph->clearNotifyWindow();
    m_videoProcAmp.reset();
    m_graphBuilt = false;
    m_opened = false;
    m_running = false;
    m_graph->release();
}

void UVCCamera::enumerateCameras(QList<UVCDeviceInfo>& out)
{
    for (const VideoDevices::Properties& properties : VideoDevices::list())
        out.append(VideoDevices::withFallbacks(properties));
}

bool UVCCamera::openDevice(const QString& devicePath, WId window)
{
    qDebug() << "openDevice";
    m_currentDevicePath = devicePath;
    m_targetWindow = window;
    if (m_graphBuilt) {
        releaseGraph();
        m_graph->create();
    }

    if (!m_graph->createSampleGrabber() || !m_graph->bindCaptureSource(devicePath))
        return false;

    qDebug() << "setResolution";
    if (!m_graph->addFilters())
        return false;

    m_screenColourDepth = m_graph->screenColourDepth();
    const std::optional<PreviewFormat> format = previewFormatFor(m_screenColourDepth);
    if (!format)
        return true;

    if (!m_graph->setGrabberFormat(*format) || !m_graph->renderPreview(window))
        return false;

    const std::optional<QSize> size = m_graph->connectedFrameSize();
    if (!size)
        return false;
    m_width = size->width();
    m_height = size->height();
    m_callback.setFrameSize(*size);
    m_graph->installCallback(&m_callback);

    m_opened = true;
    m_graphBuilt = true;
    return true;
}

bool UVCCamera::startCapture()
{
    if (!m_graphBuilt)
        return false;
    m_graph->placeVideoWindow(m_targetWindow);
    if (!m_graph->run())
        return false;
    m_running = true;
    return true;
}

void UVCCamera::stopCapture()
{
    m_running = false;
    if (m_graphBuilt) {
        m_graph->stop();
        m_graph->hideVideoWindow();
    }
}

void UVCCamera::closeDevice()
{
    releaseGraph();
    m_graph->create();
}

void UVCCamera::initVideoProcAmp()
{
    m_videoProcAmp = m_graph->makeVideoProcAmp();
}

int UVCCamera::currentValue(VideoProcAmpRecord& record)
{
    if (m_videoProcAmp)
        m_videoProcAmp->get(record);
    return static_cast<int>(record.value);
}

QPair<int, int> UVCCamera::range(VideoProcAmpRecord& record)
{
    if (!m_videoProcAmp || !m_videoProcAmp->getRange(record))
        return {0, 0};
    return {static_cast<int>(record.minimum), static_cast<int>(record.maximum)};
}

bool UVCCamera::setValue(VideoProcAmpRecord& record, int value)
{
    if (!m_videoProcAmp || !m_videoProcAmp->set(record, value))
        return false;
    record.value = value;
    return true;
}

int UVCCamera::getBright()
{
    return currentValue(m_brightness);
}

int UVCCamera::getContrast()
{
    return currentValue(m_contrast);
}

int UVCCamera::getSaturation()
{
    return currentValue(m_saturation);
}

int UVCCamera::getSharpness()
{
    return currentValue(m_sharpness);
}

QPair<int, int> UVCCamera::getBrightRange()
{
    return range(m_brightness);
}

QPair<int, int> UVCCamera::getContrastRange()
{
    return range(m_contrast);
}

QPair<int, int> UVCCamera::getSaturationRange()
{
    return range(m_saturation);
}

QPair<int, int> UVCCamera::getSharpnessRange()
{
    return range(m_sharpness);
}

bool UVCCamera::setBright(int value)
{
    return setValue(m_brightness, value);
}

bool UVCCamera::setContrast(int value)
{
    return setValue(m_contrast, value);
}

bool UVCCamera::setSaturation(int value)
{
    return setValue(m_saturation, value);
}

bool UVCCamera::setSharpness(int value)
{
    return setValue(m_sharpness, value);
}
