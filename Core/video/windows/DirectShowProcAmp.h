#pragma once

#include "../VideoProcAmp.h"
#include "ComPtr.h"

#include <strmif.h>

/// The picture properties of a capture filter.
class DirectShowProcAmp : public VideoProcAmp
{
public:
    explicit DirectShowProcAmp(ComPtr<IBaseFilter> captureFilter);

    bool getRange(VideoProcAmpRecord& record) override;
    bool get(VideoProcAmpRecord& record) override;
    bool set(const VideoProcAmpRecord& record, long value) override;

private:
    ComPtr<IBaseFilter> m_captureFilter;
};
