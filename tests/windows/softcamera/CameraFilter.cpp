#include "CameraFilter.h"

#include "Amplifier.h"
#include "PinList.h"
#include "RefusalFilter.h"
#include "SoftCamera.h"

#include <oleauto.h>
#include <uuids.h>
#include <vfwmsgs.h>

CameraFilter::CameraFilter()
    : m_script(std::make_shared<CameraScript>())
{
    // The capture pin comes first, as with a real camera: a graph builder that is asked for the
    // preview looks at both.
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
    if (iid == __uuidof(IMediaFilter) || iid == __uuidof(IPersist))
        return static_cast<IBaseFilter*>(this);
    return ComObject::find(iid);
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
        m_state = State_Stopped;
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
    m_state = State_Paused;
    return startPins();
}

HRESULT CameraFilter::Run(REFERENCE_TIME)
{
    const HRESULT refusal = m_script->pauseResult;
    if (FAILED(refusal))
        return refusal;
    const std::lock_guard<std::mutex> lock(m_mutex);
    m_state = State_Running;
    return startPins();
}

HRESULT CameraFilter::GetState(DWORD, FILTER_STATE* state)
{
    const std::lock_guard<std::mutex> lock(m_mutex);
    *state = m_state;
    return S_OK;
}

HRESULT CameraFilter::SetSyncSource(IReferenceClock* clock)
{
    if (clock)
        clock->AddRef();
    m_clock = ComPtr<IReferenceClock>(clock);
    return S_OK;
}

HRESULT CameraFilter::GetSyncSource(IReferenceClock** clock)
{
    *clock = m_clock.get();
    if (m_clock)
        m_clock->AddRef();
    return S_OK;
}

HRESULT CameraFilter::EnumPins(IEnumPins** pins)
{
    std::vector<ComPtr<IPin>> list;
    for (const auto& pin : m_pins) {
        pin->AddRef();
        list.emplace_back(pin.get());
    }
    *pins = new PinList(std::move(list));
    return S_OK;
}

HRESULT CameraFilter::FindPin(LPCWSTR id, IPin** pin)
{
    for (const auto& candidate : m_pins) {
        if (candidate->name() == id) {
            *pin = candidate.get();
            candidate->AddRef();
            return S_OK;
        }
    }
    *pin = nullptr;
    return VFW_E_NOT_FOUND;
}

HRESULT CameraFilter::QueryFilterInfo(FILTER_INFO* info)
{
    *info = {};
    m_name.copy(info->achName, MAX_FILTER_NAME - 1);
    info->pGraph = m_graph;
    if (m_graph)
        m_graph->AddRef();
    return S_OK;
}

HRESULT CameraFilter::JoinFilterGraph(IFilterGraph* graph, LPCWSTR name)
{
    m_graph = graph;
    m_name = name ? name : L"";
    if (graph && m_script->reportsRefusal) {
        const ComPtr<IBaseFilter> refusal(new RefusalFilter(m_script));
        graph->AddFilter(refusal.get(), nullptr);
    }
    return S_OK;
}

HRESULT CameraFilter::QueryVendorInfo(LPWSTR*)
{
    return E_NOTIMPL;
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
