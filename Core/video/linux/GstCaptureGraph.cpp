#include "GstCaptureGraph.h"

#include "../SampleGrabberCallback.h"
#include "../VideoDevices.h"
#include "LogCategories.h"
#include "NodeFailure.h"
#include "PreviewFrames.h"
#include "PreviewSurface.h"
#include "V4l2Modes.h"
#include "V4l2Node.h"
#include "V4l2ProcAmp.h"

#include <algorithm>
#include <array>
#include <cerrno>
#include <QBuffer>
#include <QGuiApplication>
#include <QImageReader>
#include <QScreen>

namespace {

/// Of a picture whose window does not exist: such a preview runs without a place.
constexpr QSize kUnplacedSize(320, 180);
constexpr const char* kInUse = "preview: camera in use by another program:";

/// Bits per pixel of the screens that show pictures.
constexpr std::array<int, 3> kPixelSizes{8, 16, 32};

constexpr const char* kCorePackage = "libgstreamer1.0-0";
constexpr const char* kBasePackage = "gstreamer1.0-plugins-base";
constexpr const char* kGoodPackage = "gstreamer1.0-plugins-good";

GstCapsPtr capsFromText(const QString& text)
{
    return GstCapsPtr(gst_caps_from_string(text.toLatin1().constData()));
}

GstCapsPtr sourceCaps(const VideoMode& mode)
{
    const QString size =
        QStringLiteral(",width=%1,height=%2").arg(mode.size.width()).arg(mode.size.height());
    switch (mode.format) {
    case VideoMode::Format::Yuy2:
        return capsFromText(QStringLiteral("video/x-raw,format=YUY2") + size);
    case VideoMode::Format::Nv12:
        return capsFromText(QStringLiteral("video/x-raw,format=NV12") + size);
    case VideoMode::Format::Mjpeg:
        return capsFromText(QStringLiteral("image/jpeg") + size);
    }
    return {};
}

} // namespace

std::unique_ptr<CaptureGraph> CaptureGraph::makePlatformGraph()
{
    return std::make_unique<GstCaptureGraph>();
}

GstCaptureGraph::GstCaptureGraph()
    : m_frames(std::make_shared<PreviewFrames>())
{
}

GstCaptureGraph::~GstCaptureGraph()
{
    GstCaptureGraph::release();
}

bool GstCaptureGraph::create()
{
    // The pipeline is made when a camera is opened: loading the framework takes longer than
    // anything else at the program's start, and many starts never open one.
    return true;
}

void GstCaptureGraph::release()
{
    GstCaptureGraph::stop();
    m_source = nullptr;
    m_grabber = nullptr;
    m_pipeline.reset();
    m_node.clear();
    delete m_surface;
}

/// @param package Debian's, which has the element
GstElement* GstCaptureGraph::addElement(const char* factory, const char* package, const char* name)
{
    GstElement* element = gst_element_factory_make(factory, name);
    if (!element) {
        qCWarning(videoLog) << "GStreamer element missing:" << factory;
        m_failure = {PreviewFailure::Cause::PartMissing,
                     QStringLiteral("%1 (%2)").arg(QLatin1String(factory), QLatin1String(package))};
        return nullptr;
    }
    gst_bin_add(GST_BIN(m_pipeline.get()), element);
    return element;
}

bool GstCaptureGraph::createSampleGrabber()
{
    release();
    m_failure = {};
    GError* error = nullptr;
    if (!gst_init_check(nullptr, nullptr, &error)) {
        const GErrorPtr owned(error);
        qCWarning(videoLog) << "GStreamer does not start:" << (owned ? owned->message : "");
        m_failure = {PreviewFailure::Cause::PartMissing, QLatin1String(kCorePackage)};
        return false;
    }
    m_pipeline.reset(gst_pipeline_new("preview"));
    gst_object_ref_sink(m_pipeline.get());
    const GstBusPtr bus(gst_element_get_bus(m_pipeline.get()));
    gst_bus_set_sync_handler(bus.get(), &GstCaptureGraph::onMessage, this, nullptr);

    m_grabber = addElement("appsink", kBasePackage, "Sample Grabber");
    if (!m_grabber)
        return false;
    g_object_set(m_grabber, "emit-signals", TRUE, "sync", FALSE, "max-buffers", 1U, "drop", TRUE,
                 nullptr);
    g_signal_connect(m_grabber, "new-sample", G_CALLBACK(&GstCaptureGraph::onNewSample), this);
    return true;
}

bool GstCaptureGraph::bindCaptureSource(const QString& devicePath)
{
    for (const VideoDevices::Properties& properties : VideoDevices::list()) {
        if (VideoDevices::withFallbacks(properties).devicePath == devicePath) {
            m_node = properties.displayName;
            return true;
        }
    }
    m_failure.cause = PreviewFailure::Cause::Gone;
    return false;
}

bool GstCaptureGraph::addFilters()
{
    m_source = addElement("v4l2src", kGoodPackage, "Video Filter");
    if (!m_source)
        return false;
    g_object_set(m_source, "device", m_node.toLocal8Bit().constData(), nullptr);
    const GstPadPtr pad(gst_element_get_static_pad(m_source, "src"));
    gst_pad_add_probe(pad.get(), GST_PAD_PROBE_TYPE_BUFFER, &GstCaptureGraph::onSourceBuffer, this,
                      nullptr);
    return true;
}

int GstCaptureGraph::screenColourDepth() const
{
    const QScreen* screen = QGuiApplication::primaryScreen();
    if (!screen)
        return 0;
    // Qt reports the significant bits of a pixel. In the memory of an X server a pixel has more:
    // one of 15 bits takes 16, one of 24 or 30 bits takes 32.
    const auto* const size =
        std::lower_bound(kPixelSizes.begin(), kPixelSizes.end(), screen->depth());
    return size == kPixelSizes.end() ? screen->depth() : *size;
}

bool GstCaptureGraph::setGrabberFormat(PreviewFormat format)
{
    // Frames are always made as 32-bit RGB: Qt converts to the screen's own depth when it paints.
    Q_UNUSED(format)
    return true;
}

bool GstCaptureGraph::renderPreview(WId window)
{
    const QWidget* target = QWidget::find(window);
    const V4l2Node node(m_node);
    if (!node.isOpen())
        m_failure = nodeFailure(m_node, node.openError());
    if (!node.isOpen())
        return false;

    const QSize targetSize =
        target ? (QSizeF(target->size()) * target->devicePixelRatioF()).toSize() : kUnplacedSize;
    const std::optional<VideoMode> mode = selectVideoMode(listVideoModes(node), targetSize);
    if (!mode)
        return false;
    m_mode = *mode;
    m_frameSize = fittedSize(m_mode.size, targetSize);

    GstElement* queue = addElement("queue", kCorePackage, "queue");
    if (!queue)
        return false;
    gst_util_set_object_arg(G_OBJECT(queue), "leaky", "downstream");
    g_object_set(queue, "max-size-buffers", 2U, "max-size-bytes", 0U, "max-size-time", guint64{0},
                 nullptr);
    const GstCapsPtr caps = sourceCaps(m_mode);
    if (!gst_element_link_filtered(m_source, queue, caps.get()))
        return false;
    if (m_mode.format == VideoMode::Format::Mjpeg)
        return gst_element_link(queue, m_grabber);

    GstElement* scale = addElement("videoconvertscale", kBasePackage, "scale");
    if (!scale)
        return false;
    g_object_set(scale, "add-borders", FALSE, nullptr);
    // Chroma is not interpolated at full size, because the picture is scaled down afterwards. This
    // saves a third of the time and makes no visible difference.
    gst_util_set_object_arg(G_OBJECT(scale), "chroma-mode", "none");
    const GstCapsPtr shown = capsFromText(
        QStringLiteral("video/x-raw,format=BGRx,pixel-aspect-ratio=1/1,width=%1,height=%2")
            .arg(m_frameSize.width())
            .arg(m_frameSize.height()));
    return gst_element_link(queue, scale) &&
           gst_element_link_filtered(scale, m_grabber, shown.get());
}

std::optional<QSize> GstCaptureGraph::connectedFrameSize()
{
    return m_frameSize;
}

void GstCaptureGraph::installCallback(SampleGrabberCallback* callback)
{
    m_callback = callback;
}

void GstCaptureGraph::placeVideoWindow(WId window)
{
    QWidget* target = QWidget::find(window);
    if (!target)
        return;
    delete m_surface;
    m_surface = new PreviewSurface(m_frames, target);
    // A new frame is announced only after the previous one was taken. The old surface may have left
    // one, so the queue is cleared.
    m_frames->clear();
    m_surface->show();
}

void GstCaptureGraph::fitVideoWindow(WId window)
{
    const QWidget* target = QWidget::find(window);
    if (m_surface && target)
        m_surface->setGeometry(target->rect());
}

void GstCaptureGraph::hideVideoWindow()
{
    if (m_surface)
        m_surface->hide();
}

bool GstCaptureGraph::run()
{
    if (!m_pipeline)
        return false;
    if (m_playing && !hasFailed())
        return true;
    stop();
    {
        const std::lock_guard<std::mutex> lock(m_streamMutex);
        m_failed = false;
        m_refused = false;
    }
    // The pipeline asks the camera for its stream on a thread of its own, and the first frame may
    // take long. Whether another program has the stream can be asked at once.
    const int error = V4l2Node(m_node).streamError();
    m_failure = nodeFailure(m_node, error);
    if (error == EBUSY)
        qCWarning(videoLog) << kInUse << m_node << m_failure.detail;
    else if (error != 0)
        qCWarning(videoLog) << "preview:" << m_node << qt_error_string(error);
    if (error != 0)
        return false;
    m_playing =
        gst_element_set_state(m_pipeline.get(), GST_STATE_PLAYING) != GST_STATE_CHANGE_FAILURE;
    if (!m_playing)
        stop();
    return m_playing;
}

void GstCaptureGraph::stop()
{
    if (m_pipeline)
        gst_element_set_state(m_pipeline.get(), GST_STATE_NULL);
    m_playing = false;
    m_frames->clear();
}

bool GstCaptureGraph::hasFailed() const
{
    const std::lock_guard<std::mutex> lock(m_streamMutex);
    return m_failed;
}

PreviewFailure GstCaptureGraph::failure() const
{
    bool refused = false;
    {
        const std::lock_guard<std::mutex> lock(m_streamMutex);
        if (!m_failed)
            return m_failure;
        refused = m_refused;
    }
    // The pipeline's errors have no errno. Whether the camera is still there can be asked again.
    const int nodeError = V4l2Node(m_node).capability() ? 0 : errno;
    return nodeFailure(m_node, refused ? EBUSY : nodeError);
}

void GstCaptureGraph::clearNotifyWindow()
{
    // Errors come through the handler of the bus; there is no window to notify.
    if (!m_pipeline)
        return;
    const GstBusPtr bus(gst_element_get_bus(m_pipeline.get()));
    gst_bus_set_flushing(bus.get(), TRUE);
}

std::unique_ptr<VideoProcAmp> GstCaptureGraph::makeVideoProcAmp()
{
    if (m_node.isEmpty())
        return nullptr;
    return std::make_unique<V4l2ProcAmp>(m_node);
}

GstPadProbeReturn GstCaptureGraph::onSourceBuffer(GstPad* pad, GstPadProbeInfo* info, gpointer self)
{
    Q_UNUSED(pad)
    Q_UNUSED(info)
    // Frames are scaled and decoded only while the picture is visible.
    const auto* graph = static_cast<GstCaptureGraph*>(self);
    return graph->m_frames->isWatched() ? GST_PAD_PROBE_OK : GST_PAD_PROBE_DROP;
}

GstBusSyncReply GstCaptureGraph::onMessage(GstBus* bus, GstMessage* message, gpointer self)
{
    Q_UNUSED(bus)
    if (GST_MESSAGE_TYPE(message) == GST_MESSAGE_ERROR) {
        GError* error = nullptr;
        gst_message_parse_error(message, &error, nullptr);
        const GErrorPtr owned(error);
        static_cast<GstCaptureGraph*>(self)->noteError(*owned);
    }
    gst_message_unref(message);
    return GST_BUS_DROP;
}

void GstCaptureGraph::noteError(const GError& error)
{
    const bool refused = g_error_matches(&error, GST_RESOURCE_ERROR, GST_RESOURCE_ERROR_BUSY);
    if (refused)
        qCWarning(videoLog) << kInUse << error.message;
    else
        qCWarning(videoLog) << "preview:" << error.message;
    SampleGrabberCallback* callback = nullptr;
    {
        const std::lock_guard<std::mutex> lock(m_streamMutex);
        // Elements behind the first one that fails report errors too.
        if (!m_failed) {
            callback = m_callback;
            m_refused = refused;
        }
        m_failed = true;
    }
    if (callback)
        callback->captureFailed();
}

GstFlowReturn GstCaptureGraph::onNewSample(GstElement* appsink, gpointer self)
{
    GstSample* sample = nullptr;
    g_signal_emit_by_name(appsink, "pull-sample", &sample);
    if (!sample)
        return GST_FLOW_EOS;
    static_cast<GstCaptureGraph*>(self)->deliver(GstSamplePtr(sample));
    return GST_FLOW_OK;
}

QImage GstCaptureGraph::decode(const unsigned char* data, std::size_t size, const QSize& frameSize)
{
    QByteArray bytes =
        QByteArray::fromRawData(reinterpret_cast<const char*>(data), static_cast<int>(size));
    QBuffer buffer(&bytes);
    QImageReader reader(&buffer, "JPG");
    reader.setScaledSize(frameSize);
    return reader.read().convertToFormat(QImage::Format_RGB32);
}

void GstCaptureGraph::deliver(GstSamplePtr sample)
{
    auto mapped = std::make_unique<MappedSample>(std::move(sample));
    if (!mapped->data())
        return;

    // The thread that starts the stream sets these first and then takes the lock.
    VideoMode::Format format{};
    QSize frameSize;
    SampleGrabberCallback* callback = nullptr;
    {
        const std::lock_guard<std::mutex> lock(m_streamMutex);
        format = m_mode.format;
        frameSize = m_frameSize;
        callback = m_callback;
    }

    const double time = mapped->time();
    QImage image;
    if (format == VideoMode::Format::Mjpeg) {
        image = decode(mapped->data(), mapped->size(), frameSize);
    } else if (mapped->size() >=
               std::size_t{4} * static_cast<unsigned>(frameSize.width() * frameSize.height())) {
        // The image keeps the sample and releases it with its last copy.
        const unsigned char* pixels = mapped->data();
        image = QImage(
            pixels, frameSize.width(), frameSize.height(), 4 * frameSize.width(),
            QImage::Format_RGB32, [](void* owner) { delete static_cast<MappedSample*>(owner); },
            mapped.release());
    }
    if (image.isNull()) // a frame that the USB bus cut short; the next one follows
        return;
    if (callback)
        callback->bufferCallback(time, image.constBits(), static_cast<long>(image.sizeInBytes()));
    m_frames->put(image);
}
