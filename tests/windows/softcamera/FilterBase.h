#pragma once

#include "ComObject.h"
#include "PinList.h"
#include "windows/ComPtr.h"

#include <algorithm>
#include <atomic>
#include <string>
#include <strmif.h>
#include <utility>
#include <vector>
#include <vfwmsgs.h>

/// The common part of all filters: graph, clock, state and pins.
template <typename... Interfaces>
class FilterBase : public ComObject<IBaseFilter, Interfaces...>
{
public:
    HRESULT STDMETHODCALLTYPE GetState(DWORD, FILTER_STATE* state) override
    {
        *state = m_state;
        return S_OK;
    }
    HRESULT STDMETHODCALLTYPE SetSyncSource(IReferenceClock* clock) override
    {
        if (clock)
            clock->AddRef();
        m_clock = ComPtr<IReferenceClock>(clock);
        return S_OK;
    }
    HRESULT STDMETHODCALLTYPE GetSyncSource(IReferenceClock** clock) override
    {
        *clock = m_clock.get();
        if (m_clock)
            m_clock->AddRef();
        return S_OK;
    }
    HRESULT STDMETHODCALLTYPE EnumPins(IEnumPins** pins) override
    {
        std::vector<ComPtr<IPin>> list;
        for (const NamedPin& each : namedPins()) {
            each.second->AddRef();
            list.emplace_back(each.second);
        }
        *pins = new PinList(std::move(list));
        return S_OK;
    }
    HRESULT STDMETHODCALLTYPE FindPin(LPCWSTR id, IPin** pin) override
    {
        const std::vector<NamedPin> all = namedPins();
        const auto found = std::find_if(all.begin(), all.end(),
                                        [id](const NamedPin& each) { return each.first == id; });
        *pin = found == all.end() ? nullptr : found->second;
        if (!*pin)
            return VFW_E_NOT_FOUND;
        (*pin)->AddRef();
        return S_OK;
    }
    HRESULT STDMETHODCALLTYPE QueryFilterInfo(FILTER_INFO* info) override
    {
        *info = {};
        m_name.copy(info->achName, MAX_FILTER_NAME - 1);
        info->pGraph = m_graph;
        if (m_graph)
            m_graph->AddRef();
        return S_OK;
    }
    HRESULT STDMETHODCALLTYPE JoinFilterGraph(IFilterGraph* graph, LPCWSTR name) override
    {
        m_graph = graph;
        m_name = name ? name : L"";
        return S_OK;
    }
    HRESULT STDMETHODCALLTYPE QueryVendorInfo(LPWSTR*) override { return E_NOTIMPL; }

protected:
    using NamedPin = std::pair<std::wstring, IPin*>;

    /// The pins in their order, without references.
    virtual std::vector<NamedPin> namedPins() = 0;

    void* find(REFIID iid) override
    {
        if (iid == __uuidof(IMediaFilter) || iid == __uuidof(IPersist))
            return static_cast<IBaseFilter*>(this);
        return ComObject<IBaseFilter, Interfaces...>::find(iid);
    }

    [[nodiscard]] FILTER_STATE state() const { return m_state; }
    void setState(FILTER_STATE state) { m_state = state; }

private:
    std::atomic<FILTER_STATE> m_state{State_Stopped};
    ComPtr<IReferenceClock> m_clock;
    IFilterGraph* m_graph = nullptr; ///< not owned: the graph owns the filter
    std::wstring m_name;
};
