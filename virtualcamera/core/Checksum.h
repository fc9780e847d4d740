#pragma once

#include <cstddef>
#include <cstdint>

namespace virtualcamera {

constexpr std::uint16_t kChecksumStart = 0xFFFF;

/// The camera's frame checksum. For separate pieces of memory, pass the result of one call as
/// `start` of the next.
std::uint16_t checksum(const std::uint8_t* data, std::size_t size,
                       std::uint16_t start = kChecksumStart);

} // namespace virtualcamera
