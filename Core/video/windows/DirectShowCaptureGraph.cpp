#include "DirectShowCaptureGraph.h"

#include "DirectShowProcAmp.h"
#include "HresultFailure.h"
#include "MediaType.h"
#include "VideoInputs.h"

#include <cstdlib>
#include <uuids.h>

// After strmif.h, whose types it uses.
#include <amvideo.h>

namespace {

// The headers of current toolchains do not declare the grabber's class.
constexpr CLSID kSampleGrabberClass = {
    0xC1F400A0, 0x3F08, 0x11D3, {0x9F, 0x0B, 0x00, 0x60, 0x08, 0x03, 0x9E, 0x37}};

constexpr long kGraphEventMessage = WM_APP + 100;
constexpr long kGrabByBuffer = 1;
/// What connects the camera with the grabber when both have no format in common.
constexpr const char* kDecoder = "the decoder for the camera's picture format";
// Boolean values of the graph's automation interfaces.
constexpr long kTrue = VARIANT_TRUE;
constexpr long kFalse = VARIANT_FALSE;

GUID subtypeOf(PreviewFormat format)
{
    switch (format) {
    case PreviewFormat::Rgb8:
        return MEDIASUBTYPE_RGB8;
    case PreviewFormat::Rgb555:
        return MEDIASUBTYPE_RGB555;
    case PreviewFormat::Rgb24:
        return MEDIASUBTYPE_RGB24;
    case PreviewFormat::Rgb32:
        return MEDIASUBTYPE_RGB32;
    }
    return GUID_NULL;
}

template <typename Interface>
HRESULT createObject(const CLSID& classId, ComPtr<Interface>& object)
{
    return ::CoCreateInstance(classId, nullptr, CLSCTX_INPROC_SERVER, __uuidof(Interface),
                              object.putVoid());
}

} // namespace

std::unique_ptr<CaptureGraph> CaptureGraph::makePlatformGraph()
{
    return std::make_unique<DirectShowCaptureGraph>();
}

DirectShowCaptureGraph::~DirectShowCaptureGraph()
{
    DirectShowCaptureGraph::release();
}

bool DirectShowCaptureGraph::create()
{
    if (FAILED(createObject(CLSID_FilterGraph, m_graph)) ||
        FAILED(createObject(CLSID_CaptureGraphBuilder2, m_builder)))
        return false;
    m_mediaControl = m_graph.query<IMediaControl>();
    m_videoWindow = m_graph.query<IVideoWindow>(IID_IVideoWindow);
    if (!m_mediaControl || !m_videoWindow)
        return false;
    m_videoWindow->put_Owner(0);
    m_mediaEvent = m_graph.query<IMediaEventEx>(IID_IMediaEventEx);
    return m_mediaEvent && SUCCEEDED(m_builder->SetFiltergraph(m_graph.get()));
}

void DirectShowCaptureGraph::release()
{
    // A video window that still has an owner when it is destroyed sends it messages, and with it
    // may fall the window that it lies in.
    if (m_videoWindow)
        m_videoWindow->put_Owner(0);
    m_captureFilter.reset();
    m_builder.reset();
    m_graph.reset();
    m_mediaControl.reset();
    m_mediaEvent.reset();
    m_grabberFilter.reset();
    m_grabber.reset();
    m_videoWindow.reset();
}

bool DirectShowCaptureGraph::createSampleGrabber()
{
    // On a screen without a preview format the filters of the last device are still in the graph,
    // where they hold the camera.
    if (m_captureFilter || m_grabberFilter) {
        release();
        create();
    }
    m_failure = {};
    return noteResult(createObject(kSampleGrabberClass, m_grabberFilter), "qedit.dll");
}

/// Keeps the cause of a failure.
/// @param part the library whose classes the call needs
bool DirectShowCaptureGraph::noteResult(HRESULT result, const char* part)
{
    m_failure = hresultFailure(result);
    if (m_failure.cause == PreviewFailure::Cause::PartMissing)
        m_failure.detail = QString::fromLatin1(part);
    return SUCCEEDED(result);
}

bool DirectShowCaptureGraph::bindCaptureSource(const QString& devicePath)
{
    for (const VideoInput& input : listVideoInputs()) {
        if (VideoDevices::withFallbacks(input.properties).devicePath == devicePath)
            return noteResult(input.moniker->BindToObject(nullptr, nullptr, __uuidof(IBaseFilter),
                                                          m_captureFilter.putVoid()),
                              "ksproxy.ax");
    }
    m_failure = {PreviewFailure::Cause::Gone, {}};
    return false;
}

bool DirectShowCaptureGraph::addFilters()
{
    if (!m_graph) {
        m_failure = {PreviewFailure::Cause::PartMissing, QStringLiteral("quartz.dll")};
        return false;
    }
    if (!noteResult(m_graph->AddFilter(m_captureFilter.get(), L"Video Filter"), "quartz.dll") ||
        !noteResult(m_graph->AddFilter(m_grabberFilter.get(), L"Sample Grabber"), "quartz.dll"))
        return false;
    m_grabber = m_grabberFilter.query<ISampleGrabber>();
    return static_cast<bool>(m_grabber);
}

int DirectShowCaptureGraph::screenColourDepth() const
{
    HDC screen = ::GetDC(nullptr);
    const int depth = ::GetDeviceCaps(screen, BITSPIXEL);
    ::ReleaseDC(nullptr, screen);
    return depth;
}

bool DirectShowCaptureGraph::setGrabberFormat(PreviewFormat format)
{
    AM_MEDIA_TYPE type{};
    type.majortype = MEDIATYPE_Video;
    type.subtype = subtypeOf(format);
    type.formattype = FORMAT_VideoInfo;
    return SUCCEEDED(m_grabber->SetMediaType(&type));
}

bool DirectShowCaptureGraph::renderPreview(WId window)
{
    // The video window gets its place when the preview starts.
    Q_UNUSED(window)
    return m_builder && noteResult(m_builder->RenderStream(&PIN_CATEGORY_PREVIEW, &MEDIATYPE_Video,
                                                           m_captureFilter.get(),
                                                           m_grabberFilter.get(), nullptr),
                                   kDecoder);
}

std::optional<QSize> DirectShowCaptureGraph::connectedFrameSize()
{
    MediaType type;
    if (FAILED(m_grabber->GetConnectedMediaType(type.put())))
        return std::nullopt;
    if (type.get().formattype != FORMAT_VideoInfo || !type.get().pbFormat ||
        type.get().cbFormat < sizeof(VIDEOINFOHEADER))
        return std::nullopt;
    const auto* header = reinterpret_cast<const VIDEOINFOHEADER*>(type.get().pbFormat);
    // A negative height only tells that the top row comes first.
    return QSize(static_cast<int>(header->bmiHeader.biWidth),
                 static_cast<int>(std::abs(header->bmiHeader.biHeight)));
}

void DirectShowCaptureGraph::installCallback(SampleGrabberCallback* callback)
{
    m_callback.setReceiver(callback);
    m_grabber->SetOneShot(FALSE);
    m_grabber->SetBufferSamples(TRUE);
    m_grabber->SetCallback(&m_callback, kGrabByBuffer);
    m_grabberFilter.reset();
}

void DirectShowCaptureGraph::placeVideoWindow(WId window)
{
    if (!m_videoWindow || FAILED(m_videoWindow->put_Owner(static_cast<OAHWND>(window))))
        return;
    m_videoWindow->put_WindowStyle(WS_CHILD | WS_CLIPCHILDREN);
    fitVideoWindow(window);
    m_videoWindow->put_Visible(kTrue);
}

void DirectShowCaptureGraph::fitVideoWindow(WId window)
{
    RECT area{};
    // NOLINTNEXTLINE(performance-no-int-to-ptr): the toolkit keeps handles as numbers.
    if (m_videoWindow && ::GetClientRect(reinterpret_cast<HWND>(window), &area))
        m_videoWindow->SetWindowPosition(0, 0, area.right, area.bottom);
}

void DirectShowCaptureGraph::hideVideoWindow()
{
    if (m_videoWindow)
        m_videoWindow->put_Visible(kFalse);
}

bool DirectShowCaptureGraph::run()
{
    return m_mediaControl && noteResult(m_mediaControl->Run(), "quartz.dll");
}

void DirectShowCaptureGraph::stop()
{
    if (m_mediaControl)
        m_mediaControl->Stop();
}

void DirectShowCaptureGraph::clearNotifyWindow()
{
    if (m_mediaEvent)
        m_mediaEvent->SetNotifyWindow(0, kGraphEventMessage, 0);
}

std::unique_ptr<VideoProcAmp> DirectShowCaptureGraph::makeVideoProcAmp()
{
    if (!m_captureFilter)
        return nullptr;
    return std::make_unique<DirectShowProcAmp>(m_captureFilter);
}
