#pragma once

#include <cstdint>

/// Command codes of the camera. The read and the write code of a setting differ in the low bit.
namespace HidCommands {

constexpr std::uint16_t FirmwareStart = 0x4000;
constexpr std::uint16_t FirmwarePacket = 0x4200;
constexpr std::uint16_t FirmwareEnd = 0x4300;

constexpr std::uint16_t ConnectionProbe = 0x5000;
constexpr std::uint16_t FirmwareVersion = 0x5001;
constexpr std::uint16_t SerialNumber = 0x5010;
constexpr std::uint16_t VideoFormat = 0x5020;

constexpr std::uint16_t ReadAutoFrameMode = 0x5030;
constexpr std::uint16_t WriteAutoFrameMode = 0x5031;
constexpr std::uint16_t ReadFrameMaster = 0x5040;
constexpr std::uint16_t WriteFrameMaster = 0x5041;
constexpr std::uint16_t ReadPickupSensitivity = 0x5070;
constexpr std::uint16_t WritePickupSensitivity = 0x5071;
constexpr std::uint16_t ReadAutoFrameSwitch = 0x5080;
constexpr std::uint16_t WriteAutoFrameSwitch = 0x5081;
constexpr std::uint16_t ReadHorizontalMirror = 0x5090;
constexpr std::uint16_t WriteHorizontalMirror = 0x5091;
constexpr std::uint16_t ReadCameraView = 0x50A0;
constexpr std::uint16_t WriteCameraView = 0x50A1;
constexpr std::uint16_t StoreSettings = 0x5100;

} // namespace HidCommands
