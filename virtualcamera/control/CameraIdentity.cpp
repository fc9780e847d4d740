#include "CameraIdentity.h"

namespace virtualcamera {

std::string CameraIdentity::usbLocation() const
{
    return "0000:00:14.0-" + std::to_string(port);
}

std::string CameraIdentity::videoBusInfo() const
{
    return onUsb ? "usb-" + usbLocation() : "platform:virtual-" + std::to_string(port);
}

std::string CameraIdentity::hidName() const
{
    return usbString(manufacturer + ' ' + product);
}

std::string CameraIdentity::hidPhysicalPath() const
{
    return "usb-" + usbLocation() + "/input3";
}

std::string usbString(const std::string& text)
{
    constexpr std::size_t longest = 126;
    std::string result = text.substr(0, longest);
    // Do not cut a UTF-8 sequence in two.
    if (text.size() > longest) {
        while (!result.empty() && (static_cast<unsigned char>(text[result.size()]) & 0xC0U) == 0x80)
            result.pop_back();
    }
    for (char& character : result)
        if (static_cast<unsigned char>(character) < 0x20 || character == 0x7F)
            character = '_';
    return result;
}

} // namespace virtualcamera
