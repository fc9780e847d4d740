#pragma once

#include "ComObject.h"
#include "ConverterPins.h"

#include <atomic>
#include <string>
#include <strmif.h>

/// The filter between a picture of 24 bits a pixel and one of 32, which every Windows has and Wine
/// 8 has not: its cameras deliver 24, its screens have 32.
class ColourConverter final : public ComObject<IBaseFilter>
{
public:
    ColourConverter();

    [[nodiscard]] InputPin& input() { return m_input; }
    [[nodiscard]] OutputPin& output() { return m_output; }
    [[nodiscard]] bool isStopped() const { return m_state == State_Stopped; }

    HRESULT STDMETHODCALLTYPE GetClassID(CLSID* classId) override;

    HRESULT STDMETHODCALLTYPE Stop() override;
    HRESULT STDMETHODCALLTYPE Pause() override;
    HRESULT STDMETHODCALLTYPE Run(REFERENCE_TIME start) override;
    HRESULT STDMETHODCALLTYPE GetState(DWORD timeout, FILTER_STATE* state) override;
    HRESULT STDMETHODCALLTYPE SetSyncSource(IReferenceClock* clock) override;
    HRESULT STDMETHODCALLTYPE GetSyncSource(IReferenceClock** clock) override;

    HRESULT STDMETHODCALLTYPE EnumPins(IEnumPins** pins) override;
    HRESULT STDMETHODCALLTYPE FindPin(LPCWSTR id, IPin** pin) override;
    HRESULT STDMETHODCALLTYPE QueryFilterInfo(FILTER_INFO* info) override;
    HRESULT STDMETHODCALLTYPE JoinFilterGraph(IFilterGraph* graph, LPCWSTR name) override;
    HRESULT STDMETHODCALLTYPE QueryVendorInfo(LPWSTR* info) override;

protected:
    void* find(REFIID iid) override;

private:
    HRESULT start(FILTER_STATE state);

    InputPin m_input;
    OutputPin m_output;
    IFilterGraph* m_graph = nullptr; ///< not owned: the graph owns the filter
    std::wstring m_name;
    ComPtr<IReferenceClock> m_clock;
    std::atomic<FILTER_STATE> m_state{State_Stopped};
};
