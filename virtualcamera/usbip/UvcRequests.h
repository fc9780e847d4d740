#pragma once

#include <cstdint>

/// Request codes of the USB video class, and the error codes of a refusal.
namespace virtualcamera::uvc {

constexpr std::uint8_t kSetCurrent = 0x01;
constexpr std::uint8_t kGetCurrent = 0x81;
constexpr std::uint8_t kGetMinimum = 0x82;
constexpr std::uint8_t kGetMaximum = 0x83;
constexpr std::uint8_t kGetResolution = 0x84;
constexpr std::uint8_t kGetLength = 0x85;
constexpr std::uint8_t kGetInfo = 0x86;
constexpr std::uint8_t kGetDefault = 0x87;

/// Answer to kGetInfo: the value can be read and written.
constexpr std::uint8_t kReadsAndWrites = 0x03;

constexpr std::uint8_t kOutOfRange = 0x04;
constexpr std::uint8_t kInvalidUnit = 0x05;
constexpr std::uint8_t kInvalidControl = 0x06;
constexpr std::uint8_t kInvalidRequest = 0x07;
constexpr std::uint8_t kUnknownRefusal = 0xFF;

} // namespace virtualcamera::uvc
