#pragma once

#include "CaptureGraph.h"

#include <functional>
#include <map>
#include <memory>
#include <QString>
#include <QStringList>
#include <set>

/// The script of a recording graph, and its recorded calls. Outlives the graph, which belongs to
/// the camera.
struct CaptureScript
{
    QStringList steps;         ///< calls in order, with their arguments
    std::set<QString> failing; ///< names of the steps that fail

    int screenColourDepth = 32;
    QSize frameSize{1280, 720};
    SampleGrabberCallback* callback = nullptr;
    std::function<void()> onRelease; ///< called by release(), when the stream ends

    PreviewFailure failure;
    bool hasFailed = false; ///< whether the stream has ended with an error
    bool hasSource = true;  ///< whether a helper for the picture properties can be created
    std::map<int, VideoProcAmpRecord> properties; ///< the camera's answers, by property id
    std::vector<std::pair<VideoProcAmpRecord, long>> propertyWrites;

    /// Returns the recorded steps and clears them.
    QStringList takeSteps();
};

/// Makes no calls to the platform; records the camera's calls and follows a script.
class RecordingCaptureGraph : public CaptureGraph
{
public:
    explicit RecordingCaptureGraph(std::shared_ptr<CaptureScript> script);
    ~RecordingCaptureGraph() override;

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
    [[nodiscard]] bool hasFailed() const override { return m_script->hasFailed; }
    [[nodiscard]] PreviewFailure failure() const override { return m_script->failure; }
    void clearNotifyWindow() override;
    std::unique_ptr<VideoProcAmp> makeVideoProcAmp() override;

private:
    bool step(const QString& name, const QString& argument = {}) const;

    std::shared_ptr<CaptureScript> m_script;
};
