#pragma once

#include "CameraScript.h"
#include "ComObject.h"

#include <memory>
#include <string>
#include <strmif.h>

/// A filter without pins that refuses to pause when the camera beside it does.
///
/// Windows hands the camera's refusal to whoever runs the graph. Wine keeps the first answer that
/// is not plain success, which is the renderer's "not yet"; a filter that joins after the camera is
/// asked before the renderer.
class RefusalFilter final : public ComObject<IBaseFilter>
{
public:
    explicit RefusalFilter(std::shared_ptr<CameraScript> script);

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
    HRESULT STDMETHODCALLTYPE QueryVendorInfo(LPWSTR* vendor) override;

protected:
    void* find(REFIID iid) override;

private:
    std::shared_ptr<CameraScript> m_script;
    std::atomic<FILTER_STATE> m_state{State_Stopped};
    IFilterGraph* m_graph = nullptr; ///< not owned: the graph owns the filter
    std::wstring m_name;
};
