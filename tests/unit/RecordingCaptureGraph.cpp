#include "RecordingCaptureGraph.h"

namespace {

class RecordingProcAmp : public VideoProcAmp
{
public:
    explicit RecordingProcAmp(std::shared_ptr<CaptureScript> script)
        : m_script(std::move(script))
    {
    }
    ~RecordingProcAmp() override { m_script->steps << QStringLiteral("dropVideoProcAmp"); }

    bool getRange(VideoProcAmpRecord& record) override
    {
        const VideoProcAmpRecord* known = lookUp("getRange", record);
        if (!known)
            return false;
        record.minimum = known->minimum;
        record.maximum = known->maximum;
        record.defaultValue = known->defaultValue;
        record.step = known->step;
        record.flags = known->flags;
        return true;
    }

    bool get(VideoProcAmpRecord& record) override
    {
        const VideoProcAmpRecord* known = lookUp("get", record);
        if (!known)
            return false;
        record.value = known->value;
        record.flags = known->flags;
        return true;
    }

    bool set(const VideoProcAmpRecord& record, long value) override
    {
        m_script->propertyWrites.emplace_back(record, value);
        return lookUp("set", record) != nullptr;
    }

private:
    const VideoProcAmpRecord* lookUp(const char* operation, const VideoProcAmpRecord& record)
    {
        const int id = static_cast<int>(record.property);
        const QString name = QString::fromLatin1(operation);
        m_script->steps << QStringLiteral("%1(%2)").arg(name).arg(id);
        const auto known = m_script->properties.find(id);
        if (known == m_script->properties.end() || m_script->failing.count(name) != 0)
            return nullptr;
        return &known->second;
    }

    std::shared_ptr<CaptureScript> m_script;
};

QString nameOf(PreviewFormat format)
{
    switch (format) {
    case PreviewFormat::Rgb8:
        return QStringLiteral("Rgb8");
    case PreviewFormat::Rgb555:
        return QStringLiteral("Rgb555");
    case PreviewFormat::Rgb24:
        return QStringLiteral("Rgb24");
    case PreviewFormat::Rgb32:
        return QStringLiteral("Rgb32");
    }
    return {};
}

} // namespace

QStringList CaptureScript::takeSteps()
{
    QStringList taken;
    taken.swap(steps);
    return taken;
}

RecordingCaptureGraph::RecordingCaptureGraph(std::shared_ptr<CaptureScript> script)
    : m_script(std::move(script))
{
}

RecordingCaptureGraph::~RecordingCaptureGraph()
{
    m_script->steps << QStringLiteral("dropGraph");
}

bool RecordingCaptureGraph::step(const QString& name, const QString& argument) const
{
    m_script->steps << (argument.isEmpty() ? name : QStringLiteral("%1(%2)").arg(name, argument));
    return m_script->failing.count(name) == 0;
}

bool RecordingCaptureGraph::create()
{
    return step("create");
}

void RecordingCaptureGraph::release()
{
    step("release");
    if (m_script->onRelease)
        m_script->onRelease();
}

bool RecordingCaptureGraph::createSampleGrabber()
{
    return step("createSampleGrabber");
}

bool RecordingCaptureGraph::bindCaptureSource(const QString& devicePath)
{
    return step("bindCaptureSource", devicePath);
}

bool RecordingCaptureGraph::addFilters()
{
    return step("addFilters");
}

int RecordingCaptureGraph::screenColourDepth() const
{
    step("screenColourDepth");
    return m_script->screenColourDepth;
}

bool RecordingCaptureGraph::setGrabberFormat(PreviewFormat format)
{
    return step("setGrabberFormat", nameOf(format));
}

bool RecordingCaptureGraph::renderPreview(WId window)
{
    return step("renderPreview", QString::number(window));
}

std::optional<QSize> RecordingCaptureGraph::connectedFrameSize()
{
    if (!step("connectedFrameSize"))
        return std::nullopt;
    return m_script->frameSize;
}

void RecordingCaptureGraph::installCallback(SampleGrabberCallback* callback)
{
    step("installCallback");
    m_script->callback = callback;
}

void RecordingCaptureGraph::placeVideoWindow(WId window)
{
    step("placeVideoWindow", QString::number(window));
}

void RecordingCaptureGraph::fitVideoWindow(WId window)
{
    step("fitVideoWindow", QString::number(window));
}

void RecordingCaptureGraph::hideVideoWindow()
{
    step("hideVideoWindow");
}

bool RecordingCaptureGraph::run()
{
    return step("run");
}

void RecordingCaptureGraph::stop()
{
    step("stop");
}

void RecordingCaptureGraph::clearNotifyWindow()
{
    step("clearNotifyWindow");
}

std::unique_ptr<VideoProcAmp> RecordingCaptureGraph::makeVideoProcAmp()
{
    step("makeVideoProcAmp");
    if (!m_script->hasSource)
        return nullptr;
    return std::make_unique<RecordingProcAmp>(m_script);
}
