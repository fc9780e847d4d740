#pragma once

#include <hidapi/hidapi.h>
#include <QString>

/// hidapi's text about the last failure of @p device; empty when it has none.
inline QString hidErrorText(hid_device* device)
{
    const wchar_t* text = hid_error(device);
    return text ? QString::fromWCharArray(text) : QString();
}
