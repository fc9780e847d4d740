#include "RefusalFilter.h"

RefusalFilter::RefusalFilter(std::shared_ptr<CameraScript> script)
    : m_script(std::move(script))
{
}

HRESULT RefusalFilter::GetClassID(CLSID* classId)
{
    *classId = GUID_NULL;
    return S_OK;
}

HRESULT RefusalFilter::Stop()
{
    setState(State_Stopped);
    return S_OK;
}

HRESULT RefusalFilter::Pause()
{
    const HRESULT refusal = m_script->pauseResult;
    if (SUCCEEDED(refusal))
        setState(State_Paused);
    return refusal;
}

HRESULT RefusalFilter::Run(REFERENCE_TIME)
{
    setState(State_Running);
    return S_OK;
}
