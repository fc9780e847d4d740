#include "ColourConverter.h"

#include "PinList.h"

#include <uuids.h>
#include <vfwmsgs.h>

ColourConverter::ColourConverter()
    : m_input(*this)
    , m_output(*this)
{
}

void* ColourConverter::find(REFIID iid)
{
    if (iid == __uuidof(IMediaFilter) || iid == __uuidof(IPersist))
        return static_cast<IBaseFilter*>(this);
    return ComObject::find(iid);
}

HRESULT ColourConverter::GetClassID(CLSID* classId)
{
    *classId = CLSID_Colour;
    return S_OK;
}

HRESULT ColourConverter::start(FILTER_STATE state)
{
    const HRESULT started = m_output.start();
    if (SUCCEEDED(started))
        m_state = state;
    return started;
}

HRESULT ColourConverter::Stop()
{
    m_state = State_Stopped;
    m_output.stop();
    return S_OK;
}

HRESULT ColourConverter::Pause()
{
    return start(State_Paused);
}

HRESULT ColourConverter::Run(REFERENCE_TIME)
{
    return start(State_Running);
}

HRESULT ColourConverter::GetState(DWORD, FILTER_STATE* state)
{
    *state = m_state;
    return S_OK;
}

HRESULT ColourConverter::SetSyncSource(IReferenceClock* clock)
{
    if (clock)
        clock->AddRef();
    m_clock = ComPtr<IReferenceClock>(clock);
    return S_OK;
}

HRESULT ColourConverter::GetSyncSource(IReferenceClock** clock)
{
    *clock = m_clock.get();
    if (m_clock)
        m_clock->AddRef();
    return S_OK;
}

HRESULT ColourConverter::EnumPins(IEnumPins** pins)
{
    std::vector<ComPtr<IPin>> list;
    for (IPin* pin : {static_cast<IPin*>(&m_input), static_cast<IPin*>(&m_output)}) {
        pin->AddRef();
        list.emplace_back(pin);
    }
    *pins = new PinList(std::move(list));
    return S_OK;
}

HRESULT ColourConverter::FindPin(LPCWSTR id, IPin** pin)
{
    *pin = nullptr;
    if (m_input.name() == id)
        *pin = &m_input;
    else if (m_output.name() == id)
        *pin = &m_output;
    else
        return VFW_E_NOT_FOUND;
    (*pin)->AddRef();
    return S_OK;
}

HRESULT ColourConverter::QueryFilterInfo(FILTER_INFO* info)
{
    *info = {};
    m_name.copy(info->achName, MAX_FILTER_NAME - 1);
    info->pGraph = m_graph;
    if (m_graph)
        m_graph->AddRef();
    return S_OK;
}

HRESULT ColourConverter::JoinFilterGraph(IFilterGraph* graph, LPCWSTR name)
{
    m_graph = graph;
    m_name = name ? name : L"";
    return S_OK;
}

HRESULT ColourConverter::QueryVendorInfo(LPWSTR*)
{
    return E_NOTIMPL;
}
