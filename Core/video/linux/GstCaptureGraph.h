#pragma once

#include "../CaptureGraph.h"
#include "../VideoMode.h"
#include "GstHandles.h"

#include <mutex>
#include <QPointer>

class PreviewFrames;
class PreviewSurface;

/// The preview as a GStreamer pipeline:
///
///     v4l2src ! mode ! queue (leaky) ! videoconvertscale ! BGRx in the window's size ! appsink
///
/// Frames are scaled before they are converted: the opposite order costs 2.8 times as much. A
/// compressed mode goes to the appsink as it is and is decoded at a reduced scale there, which
/// halves the cost of a 4K picture. The frame that reaches the screen is the pipeline's own memory.
class GstCaptureGraph : public CaptureGraph
{
public:
    GstCaptureGraph();
    ~GstCaptureGraph() override;

    bool create() override;
    void release() override;
    bool createSampleGrabber() override;
    bool bindCaptureSource(const QString& devicePath) override;
    bool addFilters() override;
    [[nodiscard]] int screenColourDepth() const override;
    bool setGrabberFormat(PreviewFormat format) override;
    bool renderPreview(WId window) override;
    [[nodiscard]] std::optional<QSize> connectedFrameSize() override;
    void installCallback(SampleGrabberCallback* callback) override;
    void placeVideoWindow(WId window) override;
    void fitVideoWindow(WId window) override;
    void hideVideoWindow() override;
    bool run() override;
    void stop() override;
    [[nodiscard]] bool hasFailed() const override;
    [[nodiscard]] PreviewFailure failure() const override;
    void clearNotifyWindow() override;
    std::unique_ptr<VideoProcAmp> makeVideoProcAmp() override;

private:
    static GstFlowReturn onNewSample(GstElement* appsink, gpointer self);
    static GstBusSyncReply onMessage(GstBus* bus, GstMessage* message, gpointer self);
    static GstPadProbeReturn onSourceBuffer(GstPad* pad, GstPadProbeInfo* info, gpointer self);
    void deliver(GstSamplePtr sample);
    static QImage decode(const unsigned char* data, std::size_t size, const QSize& frameSize);
    void noteError(const GError& error);
    GstElement* addElement(const char* factory, const char* package, const char* name);

    GstElementPtr m_pipeline;
    // Owned by the pipeline.
    GstElement* m_source = nullptr;
    GstElement* m_grabber = nullptr;

    QString m_node;
    VideoMode m_mode;
    QSize m_frameSize;
    SampleGrabberCallback* m_callback = nullptr;
    std::shared_ptr<PreviewFrames> m_frames;
    QPointer<PreviewSurface> m_surface;

    bool m_playing = false;
    PreviewFailure m_failure; ///< of the last step

    mutable std::mutex m_streamMutex;
    bool m_failed = false;  ///< the stream ended with an error
    bool m_refused = false; ///< because another program has the camera
};
