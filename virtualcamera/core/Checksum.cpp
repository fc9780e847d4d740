#include "Checksum.h"

namespace virtualcamera {

std::uint16_t checksum(const std::uint8_t* data, std::size_t size, std::uint16_t start)
{
    // The firmware shifts to the right but keeps the left-shift form of the polynomial (0x1021
    // instead of its mirror image 0x8408), so no table of a standard CRC-16 can be used.
    constexpr std::uint16_t polynomial = 0x1021;
    std::uint16_t value = start;
    for (std::size_t i = 0; i < size; ++i) {
        value = static_cast<std::uint16_t>(value ^ data[i]);
        for (int bit = 0; bit < 8; ++bit) {
            const bool carry = (value & 1U) != 0;
            value = static_cast<std::uint16_t>(value >> 1U);
            if (carry)
                value = static_cast<std::uint16_t>(value ^ polynomial);
        }
    }
    return value;
}

} // namespace virtualcamera
