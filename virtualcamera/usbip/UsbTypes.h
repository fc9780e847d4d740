#pragma once

#include "core/Frame.h"

namespace virtualcamera {

/// Endpoint numbers, without the direction.
namespace endpoint {
constexpr std::uint8_t kVideoIn = 1;
constexpr std::uint8_t kHidIn = 2;
constexpr std::uint8_t kHidOut = 3;
} // namespace endpoint

/// The eight bytes at the start of a control transfer.
struct SetupPacket
{
    std::uint8_t requestType = 0;
    std::uint8_t request = 0;
    std::uint16_t value = 0;
    std::uint16_t index = 0;
    std::uint16_t length = 0;

    static SetupPacket parse(const std::uint8_t* bytes)
    {
        return {bytes[0], bytes[1], loadLittleEndian16(bytes + 2), loadLittleEndian16(bytes + 4),
                loadLittleEndian16(bytes + 6)};
    }
};

/// The answer to a control transfer; `data` is empty when the host sends the data.
struct ControlAnswer
{
    bool stalled = false;
    Bytes data;

    static ControlAnswer stall() { return {true, {}}; }
};

} // namespace virtualcamera
