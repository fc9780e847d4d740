#pragma once

#include "CameraScript.h"
#include "FilterBase.h"

#include <memory>
#include <vector>

/// A filter without pins that refuses to pause when the camera beside it does.
///
/// Windows reports the camera's refusal to the caller that runs the graph. Wine reports the first
/// result other than S_OK, which is the renderer's "not yet". A filter that is added after the
/// camera is called before the renderer.
class RefusalFilter final : public FilterBase<>
{
public:
    explicit RefusalFilter(std::shared_ptr<CameraScript> script);

    HRESULT STDMETHODCALLTYPE GetClassID(CLSID* classId) override;
    HRESULT STDMETHODCALLTYPE Stop() override;
    HRESULT STDMETHODCALLTYPE Pause() override;
    HRESULT STDMETHODCALLTYPE Run(REFERENCE_TIME start) override;

protected:
    std::vector<NamedPin> namedPins() override { return {}; }

private:
    std::shared_ptr<CameraScript> m_script;
};
