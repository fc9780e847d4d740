#include "CameraFilter.h"

#include "Amplifier.h"
#include "RefusalFilter.h"
#include "SoftCamera.h"

#include <oleauto.h>
#include <uuids.h>

CameraFilter::CameraFilter()
    : m_script(std::make_shared<CameraScript>())
{
    // The capture pin comes first, as with a real camera: a graph builder that looks for the
    // preview pin checks both.
    m_pins.push_back(std::make_unique<CameraPin>(*this, PIN_CATEGORY_CAPTURE, L"Capture"));
    m_pins.push_back(std::make_unique<CameraPin>(*this, PIN_CATEGORY_PREVIEW, L"Preview"));
    ++m_script->filtersAlive;
}

CameraFilter::~CameraFilter()
{
    m_pins.clear();
    --m_script->filtersAlive;
}

void* CameraFilter::find(REFIID iid)
{
    if (iid == __uuidof(IAMVideoProcAmp) && !m_script->hasAmplifier)
        return nullptr;
    return FilterBase::find(iid);
}

std::vector<CameraFilter::NamedPin> CameraFilter::namedPins()
{
    std::vector<NamedPin> pins;
    for (const auto& pin : m_pins)
        pins.emplace_back(pin->name(), pin.get());
    return pins;
}

HRESULT CameraFilter::GetClassID(CLSID* classId)
{
    *classId = SoftCamera::classId();
    return S_OK;
}

HRESULT CameraFilter::Load(IPropertyBag* bag, IErrorLog*)
{
    VARIANT number;
    ::VariantInit(&number);
    number.vt = VT_I4;
    const HRESULT read = bag->Read(SoftCamera::kNumberValue, &number, nullptr);
    if (FAILED(read))
        return read;
    std::shared_ptr<CameraScript> script = SoftCamera::scriptOf(number.lVal);
    if (!script)
        return E_UNEXPECTED;
    --m_script->filtersAlive;
    m_script = std::move(script);
    ++m_script->filtersAlive;
    ++m_script->binds;
    return m_script->bindResult;
}

HRESULT CameraFilter::InitNew()
{
    return S_OK;
}

HRESULT CameraFilter::Save(IPropertyBag*, BOOL, BOOL)
{
    return E_NOTIMPL;
}

HRESULT CameraFilter::startPins()
{
    for (const auto& pin : m_pins) {
        const HRESULT started = pin->startStream();
        if (FAILED(started))
            return started;
    }
    return S_OK;
}

HRESULT CameraFilter::Stop()
{
    {
        const std::lock_guard<std::mutex> lock(m_mutex);
        setState(State_Stopped);
    }
    for (const auto& pin : m_pins)
        pin->stopStream();
    return S_OK;
}

HRESULT CameraFilter::Pause()
{
    const HRESULT refusal = m_script->pauseResult;
    if (FAILED(refusal))
        return refusal;
    const std::lock_guard<std::mutex> lock(m_mutex);
    setState(State_Paused);
    return startPins();
}

HRESULT CameraFilter::Run(REFERENCE_TIME)
{
    const HRESULT refusal = m_script->pauseResult;
    if (FAILED(refusal))
        return refusal;
    const std::lock_guard<std::mutex> lock(m_mutex);
    setState(State_Running);
    return startPins();
}

HRESULT CameraFilter::JoinFilterGraph(IFilterGraph* graph, LPCWSTR name)
{
    const HRESULT joined = FilterBase::JoinFilterGraph(graph, name);
    if (graph && m_script->reportsRefusal) {
        const ComPtr<IBaseFilter> refusal(new RefusalFilter(m_script));
        graph->AddFilter(refusal.get(), nullptr);
    }
    return joined;
}

HRESULT CameraFilter::GetRange(long property, long* minimum, long* maximum, long* step,
                               long* defaultValue, long* flags)
{
    const Amplifier::Range* range = Amplifier::rangeOf(property);
    if (!range)
        return E_PROP_ID_UNSUPPORTED;
    *minimum = range->minimum;
    *maximum = range->maximum;
    *step = range->step;
    *defaultValue = range->defaultValue;
    *flags = Amplifier::kCapabilities;
    return S_OK;
}

HRESULT CameraFilter::Set(long property, long value, long flags)
{
    const Amplifier::Range* range = Amplifier::rangeOf(property);
    if (!range)
        return E_PROP_ID_UNSUPPORTED;
    if (value < range->minimum || value > range->maximum)
        return E_INVALIDARG;
    m_script->noteWrite({property, value, flags});
    return S_OK;
}

HRESULT CameraFilter::Get(long property, long* value, long* flags)
{
    const Amplifier::Range* range = Amplifier::rangeOf(property);
    if (!range)
        return E_PROP_ID_UNSUPPORTED;
    *value = range->defaultValue;
    for (const CameraScript::Write& write : m_script->writes()) {
        if (write.property == property)
            *value = write.value;
    }
    *flags = Amplifier::kManual;
    return S_OK;
}
