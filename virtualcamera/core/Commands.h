#pragma once

#include <cstdint>

namespace virtualcamera::command {

constexpr std::uint16_t kFirmwareStart = 0x4000;
constexpr std::uint16_t kFirmwarePacket = 0x4200;
constexpr std::uint16_t kFirmwareEnd = 0x4300;
constexpr std::uint16_t kProbe = 0x5000;
constexpr std::uint16_t kFirmwareVersion = 0x5001;
constexpr std::uint16_t kSerialNumber = 0x5010;
constexpr std::uint16_t kVideoFormat = 0x5020;
constexpr std::uint16_t kStoreSettings = 0x5100;

} // namespace virtualcamera::command
