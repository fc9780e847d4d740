#include "ColourConverter.h"

#include <uuids.h>

ColourConverter::ColourConverter()
    : m_input(*this)
    , m_output(*this)
{
}

std::vector<ColourConverter::NamedPin> ColourConverter::namedPins()
{
    return {{m_input.name(), &m_input}, {m_output.name(), &m_output}};
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
        setState(state);
    return started;
}

HRESULT ColourConverter::Stop()
{
    setState(State_Stopped);
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
