#include "UVCCamera.h"

#include "CaptureGraph.h"
#include "LogCategories.h"
#include "VideoDevices.h"

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
    resetPicture();
    connect(&m_callback, &SampleGrabberCallback::sigImage, this, &UVCCamera::sigImage,
            Qt::DirectConnection);
    connect(&m_callback, &SampleGrabberCallback::sigCaptureFailed, this,
            &UVCCamera::endFailedCapture, Qt::QueuedConnection);
    m_hasGraph = m_graph->create();
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
    m_failure = {};
    const bool built = buildPreview(devicePath, window);
    if (!built) {
        noteFailure();
        closeDevice();
    }
    return built;
}

bool UVCCamera::buildPreview(const QString& devicePath, WId window)
{
    qCDebug(videoLog) << "openDevice";
    m_currentDevicePath = devicePath;
    m_targetWindow = window;
    if (m_picturePath != devicePath)
        resetPicture();
    m_picturePath = devicePath;
    // An empty graph that could not be made before may succeed now.
    if (m_opened || !m_hasGraph) {
        releaseGraph();
        m_hasGraph = m_graph->create();
    }

    if (!m_graph->createSampleGrabber() || !m_graph->bindCaptureSource(devicePath))
        return false;

    qCDebug(videoLog) << "setResolution";
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
    return true;
}

bool UVCCamera::startCapture()
{
    if (!m_opened)
        return false;
    m_failure = {};
    m_graph->placeVideoWindow(m_targetWindow);
    if (!m_graph->run()) {
        noteFailure();
        return false;
    }
    m_running = true;
    return true;
}

void UVCCamera::stopCapture()
{
    m_running = false;
    if (m_opened) {
        m_graph->stop();
        m_graph->hideVideoWindow();
    }
}

void UVCCamera::fitVideoWindow()
{
    // A preview that starts later gets its place then.
    if (m_running)
        m_graph->fitVideoWindow(m_targetWindow);
}

void UVCCamera::endFailedCapture()
{
    // The preview may have been stopped, and even started again, since the stream ended.
    if (!m_running || !m_graph->hasFailed())
        return;
    noteFailure();
    stopCapture();
    emit sigCaptureFailed();
}

void UVCCamera::noteFailure()
{
    m_failure = m_graph->failure();
    if (m_failure.cause == PreviewFailure::Cause::None)
        m_failure.cause = PreviewFailure::Cause::Other;
}

void UVCCamera::closeDevice()
{
    releaseGraph();
    m_hasGraph = m_graph->create();
}

void UVCCamera::initVideoProcAmp()
{
    m_videoProcAmp = m_graph->makeVideoProcAmp();
}

/// What was learned of one camera is not valid for another.
void UVCCamera::resetPicture()
{
    for (const PictureSettingRow& row : PictureSettings::rows()) {
        record(row.property) = VideoProcAmpRecord();
        record(row.property).property = row.property;
    }
}

VideoProcAmpRecord& UVCCamera::record(PictureProperty property)
{
    return m_picture.at(PictureSettings::indexOf(property));
}

int UVCCamera::picture(PictureProperty property)
{
    return readPicture(property).value_or(static_cast<int>(record(property).value));
}

std::optional<int> UVCCamera::readPicture(PictureProperty property)
{
    VideoProcAmpRecord& known = record(property);
    if (!m_videoProcAmp || !m_videoProcAmp->get(known))
        return std::nullopt;
    return static_cast<int>(known.value);
}

QPair<int, int> UVCCamera::pictureRange(PictureProperty property)
{
    VideoProcAmpRecord& known = record(property);
    if (!m_videoProcAmp || !m_videoProcAmp->getRange(known))
        return {0, 0};
    return {static_cast<int>(known.minimum), static_cast<int>(known.maximum)};
}

bool UVCCamera::setPicture(PictureProperty property, int value)
{
    VideoProcAmpRecord& known = record(property);
    if (!m_videoProcAmp || !m_videoProcAmp->set(known, value))
        return false;
    known.value = value;
    return true;
}
