#pragma once

#include "PreviewFailure.h"
#include "VideoProcAmp.h"

#include <memory>
#include <optional>
#include <QSize>
#include <QString>
#include <QtGui/qwindowdefs.h>

class SampleGrabberCallback;

/// Frame formats that a preview may ask for; chosen by the colour depth of the screen.
enum class PreviewFormat {
    Rgb8,
    Rgb555,
    Rgb24,
    Rgb32,
};

/// The interface between the preview and the platform's capture framework: the steps of building
/// and running a preview graph. UVCCamera decides their order and what a failure means; an
/// implementation only makes the platform's calls.
///
/// All operations belong to the GUI thread.
class CaptureGraph
{
public:
    /// The platform's graph; defined in linux/GstCaptureGraph.cpp and
    /// windows/DirectShowCaptureGraph.cpp.
    static std::unique_ptr<CaptureGraph> makePlatformGraph();

    virtual ~CaptureGraph() = default;

    /// Makes an empty graph with its controls.
    virtual bool create() = 0;
    /// Releases everything, in the order capture source, builder, graph, control, events,
    /// grabber, video window.
    virtual void release() = 0;

    virtual bool createSampleGrabber() = 0;
    /// Binds the first video device whose device path equals @p devicePath.
    virtual bool bindCaptureSource(const QString& devicePath) = 0;
    /// Puts source ("Video Filter") and grabber ("Sample Grabber") into the graph.
    virtual bool addFilters() = 0;
    /// Bits per pixel of the screen.
    [[nodiscard]] virtual int screenColourDepth() const = 0;
    virtual bool setGrabberFormat(PreviewFormat format) = 0;
    /// Connects the source's preview through the grabber to the video window, whose place will be
    /// @p window.
    virtual bool renderPreview(WId window) = 0;
    /// The frame size that the connected grabber delivers.
    [[nodiscard]] virtual std::optional<QSize> connectedFrameSize() = 0;
    /// Streams continuously, every frame to @p callback on the streaming thread. The callback
    /// outlives the graph.
    virtual void installCallback(SampleGrabberCallback* callback) = 0;

    /// Places the video window over the whole of @p window and shows it.
    virtual void placeVideoWindow(WId window) = 0;
    /// The size of @p window has changed: the video window covers the whole of it again.
    virtual void fitVideoWindow(WId window) = 0;
    virtual void hideVideoWindow() = 0;
    /// Does not wait for the first frame. A stream that ends later reports that to the callback.
    /// @return false when the camera does not stream, for example because another program holds it
    virtual bool run() = 0;
    virtual void stop() = 0;
    /// Whether the stream has ended with an error since run().
    [[nodiscard]] virtual bool hasFailed() const = 0;
    /// The cause of the failure of the last step or of the stream. The cause is Other when the
    /// platform does not report one.
    [[nodiscard]] virtual PreviewFailure failure() const = 0;
    virtual void clearNotifyWindow() = 0;

    /// Access to the picture properties of the bound source; null when there is no source.
    virtual std::unique_ptr<VideoProcAmp> makeVideoProcAmp() = 0;
};
