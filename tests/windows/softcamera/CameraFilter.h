#pragma once

#include "CameraPin.h"
#include "CameraScript.h"
#include "FilterBase.h"

#include <memory>
#include <mutex>
#include <oaidl.h>
#include <ocidl.h>
#include <strmif.h>
#include <vector>

/// The software camera as a capture filter with a capture and a preview pin. The property bag of
/// the device to which it is bound identifies the camera.
class CameraFilter final : public FilterBase<IPersistPropertyBag, IAMVideoProcAmp>
{
public:
    CameraFilter();
    ~CameraFilter() override;

    [[nodiscard]] CameraScript& script() const { return *m_script; }

    HRESULT STDMETHODCALLTYPE GetClassID(CLSID* classId) override;
    HRESULT STDMETHODCALLTYPE Stop() override;
    HRESULT STDMETHODCALLTYPE Pause() override;
    HRESULT STDMETHODCALLTYPE Run(REFERENCE_TIME start) override;
    HRESULT STDMETHODCALLTYPE JoinFilterGraph(IFilterGraph* graph, LPCWSTR name) override;

    HRESULT STDMETHODCALLTYPE InitNew() override;
    HRESULT STDMETHODCALLTYPE Load(IPropertyBag* bag, IErrorLog* log) override;
    HRESULT STDMETHODCALLTYPE Save(IPropertyBag* bag, BOOL clear, BOOL all) override;

    HRESULT STDMETHODCALLTYPE GetRange(long property, long* minimum, long* maximum, long* step,
                                       long* defaultValue, long* flags) override;
    HRESULT STDMETHODCALLTYPE Set(long property, long value, long flags) override;
    HRESULT STDMETHODCALLTYPE Get(long property, long* value, long* flags) override;

protected:
    void* find(REFIID iid) override;
    std::vector<NamedPin> namedPins() override;

private:
    HRESULT startPins();

    std::shared_ptr<CameraScript> m_script;
    std::vector<std::unique_ptr<CameraPin>> m_pins;
    std::mutex m_mutex;
};
