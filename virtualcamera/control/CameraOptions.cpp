#include "CameraOptions.h"

#include "protocol/ControlText.h"

#include <algorithm>
#include <cerrno>
#include <climits>
#include <cstdlib>
#include <functional>
#include <map>
#include <sstream>
#include <stdexcept>

namespace virtualcamera {

namespace {

Bytes toBytes(const std::string& text)
{
    return Bytes(text.begin(), text.end());
}

bool parseFlag(const std::string& text)
{
    return parseInteger(text, 0, 1) == 1;
}

std::uint8_t parseByte(const std::string& text)
{
    return static_cast<std::uint8_t>(parseInteger(text, 0, 255));
}

std::uint16_t parseHexId(const std::string& text)
{
    const auto bytes = fromHex(text);
    if (!bytes || bytes->size() != 2)
        throw std::invalid_argument("not a four-digit hexadecimal number: " + text);
    return static_cast<std::uint16_t>((*bytes)[0] * 256 + (*bytes)[1]);
}

std::chrono::milliseconds parseMilliseconds(const std::string& text)
{
    return std::chrono::milliseconds(parseInteger(text, 0, INT_MAX));
}

Bytes parseVersion(const std::string& text)
{
    Bytes version;
    std::istringstream parts(text);
    for (std::string part; std::getline(parts, part, '.');)
        version.push_back(parseByte(part));
    return version;
}

Bytes parseSerial(const std::string& value)
{
    if (value.size() > kMaxPayload)
        throw std::invalid_argument("a serial number has at most 1010 bytes");
    return toBytes(value);
}

Bytes parseHex(const std::string& text)
{
    const auto bytes = fromHex(text);
    if (!bytes)
        throw std::invalid_argument("not hexadecimal: " + text);
    return *bytes;
}

/// A serial number may have any bytes, a USB string may not.
std::string usbSerialOf(const std::string& serial)
{
    std::string text = usbString(serial);
    std::replace_if(
        text.begin(), text.end(), [](char c) { return static_cast<unsigned char>(c) > 0x7E; }, '_');
    return text;
}

ControlRange parseRange(const std::string& text)
{
    std::vector<int> values;
    std::istringstream parts(text);
    for (std::string part; std::getline(parts, part, ':');)
        values.push_back(static_cast<int>(parseInteger(part, -65536, 65536)));
    if (values.size() != 4 || values[0] > values[1] || values[2] < 1)
        throw std::invalid_argument("a range is minimum:maximum:step:default");
    return {values[0], values[1], values[2], values[3]};
}

bool applyControlRange(CameraSpec& spec, const std::string& key, const std::string& value)
{
    for (const ControlInfo& info : controlInfos()) {
        if (key == "range-" + std::string(info.name)) {
            spec.device.controlRanges[static_cast<std::size_t>(info.control)] = parseRange(value);
            return true;
        }
    }
    return false;
}

using Setter = std::function<void(CameraSpec&, const std::string&)>;

const std::map<std::string, Setter>& setters()
{
    static const std::map<std::string, Setter> map{
        {"serial",
         [](CameraSpec& s, const std::string& v) {
             s.device.serial = parseSerial(v);
             s.identity.usbSerial = usbSerialOf(v);
         }},
        {"usbserial",
         [](CameraSpec& s, const std::string& v) { s.identity.usbSerial = usbString(v); }},
        {"firmware",
         [](CameraSpec& s, const std::string& v) { s.device.firmwareVersion = parseVersion(v); }},
        {"card", [](CameraSpec& s, const std::string& v) { s.identity.card = usbString(v); }},
        {"product", [](CameraSpec& s, const std::string& v) { s.identity.product = usbString(v); }},
        {"manufacturer",
         [](CameraSpec& s, const std::string& v) { s.identity.manufacturer = usbString(v); }},
        {"vid", [](CameraSpec& s, const std::string& v) { s.identity.vendorId = parseHexId(v); }},
        {"pid", [](CameraSpec& s, const std::string& v) { s.identity.productId = parseHexId(v); }},
        {"usb", [](CameraSpec& s, const std::string& v) { s.identity.onUsb = parseFlag(v); }},
        {"port",
         [](CameraSpec& s, const std::string& v) {
             s.identity.port = static_cast<int>(parseInteger(v, 1, 255));
         }},
        {"hid", [](CameraSpec& s, const std::string& v) { s.hasHid = parseFlag(v); }},
        {"video", [](CameraSpec& s, const std::string& v) { s.hasVideo = parseFlag(v); }},
        {"amp", [](CameraSpec& s, const std::string& v) { s.hasAmplifier = parseFlag(v); }},
        {"modes", [](CameraSpec& s, const std::string& v) { s.modes = parsePixelFormats(v); }},
        {"broadcast", [](CameraSpec& s, const std::string& v) { s.broadcast = parseFlag(v); }},
        {"probe", [](CameraSpec& s, const std::string& v) { s.device.probe = parseByte(v); }},
        {"prefix", [](CameraSpec& s, const std::string& v) { s.device.replyPrefix = parseHex(v); }},
        {"volatile",
         [](CameraSpec& s, const std::string& v) { s.device.volatileSettings = parseFlag(v); }},
        {"returndelay",
         [](CameraSpec& s, const std::string& v) { s.device.returnDelay = parseMilliseconds(v); }},
        {"dropdelay",
         [](CameraSpec& s, const std::string& v) { s.device.dropDelay = parseMilliseconds(v); }},
    };
    return map;
}

} // namespace

long parseInteger(const std::string& text, long lowest, long highest)
{
    char* end = nullptr;
    errno = 0;
    const long value = std::strtol(text.c_str(), &end, 0);
    if (text.empty() || *end != '\0' || errno != 0)
        throw std::invalid_argument("not a number: " + text);
    if (value < lowest || value > highest)
        throw std::invalid_argument("out of range: " + text);
    return value;
}

void applyOption(CameraSpec& spec, const std::string& key, const std::string& value)
{
    if (applyControlRange(spec, key, value))
        return;
    const auto found = setters().find(key);
    if (found == setters().end())
        throw std::invalid_argument("unknown option: " + key);
    found->second(spec, value);
    // Only the video node can exist without a USB device.
    if (!spec.identity.onUsb)
        spec.hasHid = false;
}

void applyRegister(Camera& camera, const std::string& name, const std::string& value)
{
    Device& device = camera.device;
    for (const SettingInfo& info : settingInfos()) {
        if (info.name == name) {
            device.current()[info.setting] = parseByte(value);
            return;
        }
    }
    for (const ControlInfo& info : controlInfos()) {
        if (info.name == name) {
            const ControlRange& range = device.range(info.control);
            device.current()[info.control] =
                static_cast<int>(parseInteger(value, range.minimum, range.maximum));
            return;
        }
    }
    if (name == "streamon") { // as if another program streams in the configured format
        device.configuredFormat().streaming = parseInteger(value, 0, 1) != 0;
        return;
    }
    if (name == "width") {
        device.configuredFormat().width = static_cast<std::uint32_t>(parseInteger(value, 0, 65535));
    } else if (name == "height") {
        device.configuredFormat().height =
            static_cast<std::uint32_t>(parseInteger(value, 0, 65535));
    } else {
        CameraSpec spec = camera.spec;
        spec.device = device.config();
        applyOption(spec, name, value);
        camera.update(spec);
    }
}

} // namespace virtualcamera
