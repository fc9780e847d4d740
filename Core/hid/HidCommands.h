#pragma once

#include <cstdint>

/// Command codes of the camera, without those of the settings: see DeviceSettings.
namespace HidCommands {

constexpr std::uint16_t FirmwareStart = 0x4000;
constexpr std::uint16_t FirmwarePacket = 0x4200;
constexpr std::uint16_t FirmwareEnd = 0x4300;

constexpr std::uint16_t ConnectionProbe = 0x5000;
constexpr std::uint16_t FirmwareVersion = 0x5001;
constexpr std::uint16_t SerialNumber = 0x5010;
constexpr std::uint16_t VideoFormat = 0x5020;

constexpr std::uint16_t StoreSettings = 0x5100;

} // namespace HidCommands
