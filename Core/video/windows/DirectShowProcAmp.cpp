#include "DirectShowProcAmp.h"

DirectShowProcAmp::DirectShowProcAmp(ComPtr<IBaseFilter> captureFilter)
    : m_captureFilter(std::move(captureFilter))
{
}

bool DirectShowProcAmp::getRange(VideoProcAmpRecord& record)
{
    const auto amplifier = m_captureFilter.query<IAMVideoProcAmp>();
    VideoProcAmpRecord read = record;
    if (!amplifier ||
        FAILED(amplifier->GetRange(static_cast<long>(record.property), &read.minimum, &read.maximum,
                                   &read.step, &read.defaultValue, &read.flags)))
        return false;
    record = read;
    return true;
}

bool DirectShowProcAmp::get(VideoProcAmpRecord& record)
{
    const auto amplifier = m_captureFilter.query<IAMVideoProcAmp>();
    VideoProcAmpRecord read = record;
    if (!amplifier ||
        FAILED(amplifier->Get(static_cast<long>(record.property), &read.value, &read.flags)))
        return false;
    record = read;
    return true;
}

bool DirectShowProcAmp::set(const VideoProcAmpRecord& record, long value)
{
    const auto amplifier = m_captureFilter.query<IAMVideoProcAmp>();
    return amplifier &&
           SUCCEEDED(amplifier->Set(static_cast<long>(record.property), value, record.flags));
}
