#pragma once

#include "CaptureGraph.h"

#include <functional>
#include <map>
#include <memory>
#include <QString>
#include <QStringList>
#include <set>

/// What a recording graph is told to do, and what was asked of it. Outlives the graph, which
/// belongs to the camera.
struct CaptureScript
{
    QStringList steps;         ///< in the order they were asked for, with their arguments
    std::set<QString> failing; ///< names of the steps that fail

    int screenColourDepth = 32;
    QSize frameSize{1280, 720};
    SampleGrabberCallback* callback = nullptr;
    std::function<void()> onRelease; ///< runs inside release(), the last moment of the stream

    bool hasSource = true; ///< whether a helper for the picture properties can be made
    std::map<int, VideoProcAmpRecord> properties; ///< what the camera tells, by property id
    std::vector<std::pair<VideoProcAmpRecord, long>> propertyWrites;

    /// Forgets the steps so far and gives them back.
    QStringList takeSteps();
};

/// Makes none of the platform's calls; records what the camera wants and follows a script.
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
    void hideVideoWindow() override;
    bool run() override;
    void stop() override;
    void clearNotifyWindow() override;
    std::unique_ptr<VideoProcAmp> makeVideoProcAmp() override;

private:
    bool step(const QString& name, const QString& argument = {}) const;

    std::shared_ptr<CaptureScript> m_script;
};
