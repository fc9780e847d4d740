#pragma once

#include "CameraPin.h"
#include "CameraScript.h"
#include "ComObject.h"
#include "windows/ComPtr.h"

#include <memory>
#include <mutex>
#include <oaidl.h>
#include <ocidl.h>
#include <string>
#include <strmif.h>
#include <vector>

/// The software camera as a capture filter with a capture and a preview pin. Which camera it is, it
/// learns from the property bag of the device that it was bound from.
class CameraFilter final : public ComObject<IBaseFilter, IPersistPropertyBag, IAMVideoProcAmp>
{
public:
    CameraFilter();
    ~CameraFilter() override;

    [[nodiscard]] CameraScript& script() const { return *m_script; }

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

    HRESULT STDMETHODCALLTYPE InitNew() override;
    HRESULT STDMETHODCALLTYPE Load(IPropertyBag* bag, IErrorLog* log) override;
    HRESULT STDMETHODCALLTYPE Save(IPropertyBag* bag, BOOL clear, BOOL all) override;

    HRESULT STDMETHODCALLTYPE GetRange(long property, long* minimum, long* maximum, long* step,
                                       long* defaultValue, long* flags) override;
    HRESULT STDMETHODCALLTYPE Set(long property, long value, long flags) override;
    HRESULT STDMETHODCALLTYPE Get(long property, long* value, long* flags) override;

protected:
    void* find(REFIID iid) override;

private:
    HRESULT startPins();

    std::shared_ptr<CameraScript> m_script;
    std::vector<std::unique_ptr<CameraPin>> m_pins;
    std::mutex m_mutex;
    FILTER_STATE m_state = State_Stopped;
    ComPtr<IReferenceClock> m_clock;
    IFilterGraph* m_graph = nullptr; ///< not owned: the graph owns the filter
    std::wstring m_name;
};
