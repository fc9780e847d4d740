#pragma once

#include "DeviceSettings.h"
#include "VideoProcAmp.h"

#include <map>
#include <set>
#include <variant>

/// One value that a camera keeps: over its HID interface or as a property of its picture.
using Register = std::variant<DeviceSetting, PictureProperty>;
using Registers = std::set<Register>;
using RegisterValues = std::map<Register, int>;

[[nodiscard]] inline bool isPicture(const Register& id)
{
    return std::holds_alternative<PictureProperty>(id);
}
