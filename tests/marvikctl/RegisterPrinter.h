#pragma once

#include "WritePlan.h"

#include <ostream>

// Lets GoogleTest print registers in failure messages.

inline void PrintTo(const RegisterWrite& write, std::ostream* out)
{
    if (isPicture(write.id))
        *out << "picture " << static_cast<int>(std::get<PictureProperty>(write.id));
    else
        *out << DeviceSettings::row(std::get<DeviceSetting>(write.id)).name;
    *out << '=' << write.value;
}
