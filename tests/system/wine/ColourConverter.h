#pragma once

#include "ConverterPins.h"
#include "FilterBase.h"

#include <vector>

/// The filter that converts a picture from 24 to 32 bits per pixel. Every Windows has one, Wine 8
/// has none: its cameras deliver 24, its screens have 32.
class ColourConverter final : public FilterBase<>
{
public:
    ColourConverter();

    [[nodiscard]] InputPin& input() { return m_input; }
    [[nodiscard]] OutputPin& output() { return m_output; }
    [[nodiscard]] bool isStopped() const { return state() == State_Stopped; }

    HRESULT STDMETHODCALLTYPE GetClassID(CLSID* classId) override;

    HRESULT STDMETHODCALLTYPE Stop() override;
    HRESULT STDMETHODCALLTYPE Pause() override;
    HRESULT STDMETHODCALLTYPE Run(REFERENCE_TIME start) override;

protected:
    std::vector<NamedPin> namedPins() override;

private:
    HRESULT start(FILTER_STATE state);

    InputPin m_input;
    OutputPin m_output;
};
