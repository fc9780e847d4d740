#include "RefusalFilter.h"

#include "PinList.h"

#include <vfwmsgs.h>

RefusalFilter::RefusalFilter(std::shared_ptr<CameraScript> script)
    : m_script(std::move(script))
{
}

void* RefusalFilter::find(REFIID iid)
{
    if (iid == __uuidof(IMediaFilter) || iid == __uuidof(IPersist))
        return static_cast<IBaseFilter*>(this);
    return ComObject::find(iid);
}

HRESULT RefusalFilter::GetClassID(CLSID* classId)
{
    *classId = GUID_NULL;
    return S_OK;
}

HRESULT RefusalFilter::Stop()
{
    m_state = State_Stopped;
    return S_OK;
}

HRESULT RefusalFilter::Pause()
{
    const HRESULT refusal = m_script->pauseResult;
    if (SUCCEEDED(refusal))
        m_state = State_Paused;
    return refusal;
}

HRESULT RefusalFilter::Run(REFERENCE_TIME)
{
    m_state = State_Running;
    return S_OK;
}

HRESULT RefusalFilter::GetState(DWORD, FILTER_STATE* state)
{
    *state = m_state;
    return S_OK;
}

HRESULT RefusalFilter::SetSyncSource(IReferenceClock*)
{
    return S_OK;
}

HRESULT RefusalFilter::GetSyncSource(IReferenceClock** clock)
{
    *clock = nullptr;
    return S_OK;
}

HRESULT RefusalFilter::EnumPins(IEnumPins** pins)
{
    *pins = new PinList({});
    return S_OK;
}

HRESULT RefusalFilter::FindPin(LPCWSTR, IPin** pin)
{
    *pin = nullptr;
    return VFW_E_NOT_FOUND;
}

HRESULT RefusalFilter::QueryFilterInfo(FILTER_INFO* info)
{
    *info = {};
    m_name.copy(info->achName, MAX_FILTER_NAME - 1);
    info->pGraph = m_graph;
    if (m_graph)
        m_graph->AddRef();
    return S_OK;
}

HRESULT RefusalFilter::JoinFilterGraph(IFilterGraph* graph, LPCWSTR name)
{
    m_graph = graph;
    m_name = name ? name : L"";
    return S_OK;
}

HRESULT RefusalFilter::QueryVendorInfo(LPWSTR*)
{
    return E_NOTIMPL;
}
