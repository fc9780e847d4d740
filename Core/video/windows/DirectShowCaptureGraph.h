#pragma once

#include "../CaptureGraph.h"
#include "ComApartment.h"
#include "ComPtr.h"
#include "GrabberCallback.h"

// control.h spells pointers with a type of this header.
#include <oaidl.h>

#include <control.h>
#include <qedit.h>
#include <strmif.h>

/// The preview as a DirectShow graph: capture filter, sample grabber, default video renderer. The
/// renderer's window becomes a child of the preview's window.
class DirectShowCaptureGraph : public CaptureGraph
{
public:
    ~DirectShowCaptureGraph() override;

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
    [[nodiscard]] bool hasFailed() const override { return false; } // the graph keeps running
    [[nodiscard]] PreviewFailure failure() const override { return m_failure; }
    void clearNotifyWindow() override;
    std::unique_ptr<VideoProcAmp> makeVideoProcAmp() override;

private:
    bool noteResult(HRESULT result, const char* part);

    PreviewFailure m_failure; ///< of the last step
    ComApartment m_com;       ///< made first, destroyed last
    GrabberCallback m_callback;
    ComPtr<IBaseFilter> m_captureFilter;
    ComPtr<ICaptureGraphBuilder2> m_builder;
    ComPtr<IGraphBuilder> m_graph;
    ComPtr<IMediaControl> m_mediaControl;
    ComPtr<IMediaEventEx> m_mediaEvent;
    ComPtr<IBaseFilter> m_grabberFilter; ///< until the graph is connected
    ComPtr<ISampleGrabber> m_grabber;
    ComPtr<IVideoWindow> m_videoWindow;
};
