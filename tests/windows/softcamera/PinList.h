#pragma once

#include "ComList.h"
#include "windows/ComPtr.h"

#include <strmif.h>

inline IPin* handOutPin(const ComPtr<IPin>& pin)
{
    pin->AddRef();
    return pin.get();
}

/// Enumerates the pins of a filter.
using PinList = ComList<IEnumPins, ComPtr<IPin>, IPin*, handOutPin>;
