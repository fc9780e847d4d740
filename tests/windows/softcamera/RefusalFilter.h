#pragma once

#include "CameraScript.h"
#include "FilterBase.h"

#include <memory>
#include <vector>

/// A filter without pins that refuses to pause when the camera beside it does.
///
/// Windows hands the camera's refusal to whoever runs the graph. Wine keeps the first answer that
/// is not plain success, which is the renderer's "not yet"; a filter that joins after the camera is
/// asked before the renderer.
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
