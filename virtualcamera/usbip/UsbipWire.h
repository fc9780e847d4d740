#pragma once

#include "UsbTypes.h"

#include <array>
#include <optional>
#include <string>

/// The USB/IP protocol, version 1.1.1, as the Linux kernel documents it. Numbers are big-endian.
namespace virtualcamera::usbip {

constexpr std::uint16_t kVersion = 0x0111;
constexpr std::uint16_t kRequestDeviceList = 0x8005;
constexpr std::uint16_t kReplyDeviceList = 0x0005;
constexpr std::uint16_t kRequestImport = 0x8003;
constexpr std::uint16_t kReplyImport = 0x0003;
constexpr std::uint32_t kSubmit = 1;
constexpr std::uint32_t kUnlink = 2;
constexpr std::uint32_t kSubmitted = 3;
constexpr std::uint32_t kUnlinked = 4;

constexpr std::size_t kOperationSize = 8;
constexpr std::size_t kBusIdSize = 32;
constexpr std::size_t kDeviceRecordSize = 312;
constexpr std::size_t kHeaderSize = 48;
constexpr std::size_t kIsoPacketSize = 16;
constexpr std::uint32_t kHighSpeed = 3;

/// Number of packets in the header of a transfer that is not isochronous.
constexpr std::uint32_t kNotIsochronous = 0xFFFFFFFF;

struct Operation
{
    std::uint16_t version = kVersion;
    std::uint16_t code = 0;
    std::uint32_t status = 0;

    static Operation parse(const std::uint8_t* bytes);
    Bytes encode() const;
};

/// The description of a device in the reply to an import or a list.
struct DeviceRecord
{
    std::string path;
    std::string busId;
    std::uint32_t busNumber = 1;
    std::uint32_t deviceNumber = 0;
    std::uint16_t vendorId = 0;
    std::uint16_t productId = 0;
    std::uint16_t version = 0;
    std::uint8_t deviceClass = 0;
    std::uint8_t deviceSubclass = 0;
    std::uint8_t deviceProtocol = 0;
    std::uint8_t interfaceCount = 0;

    Bytes encode() const;
};

/// One packet of an isochronous transfer.
struct IsoPacket
{
    std::uint32_t offset = 0;
    std::uint32_t length = 0;
    std::uint32_t actual = 0;
    std::uint32_t status = 0;

    static IsoPacket parse(const std::uint8_t* bytes);
    Bytes encode() const;
};

/// The header of a host's command: a transfer to submit or to unlink.
struct Command
{
    std::uint32_t code = 0;
    std::uint32_t sequence = 0;
    bool in = false;
    std::uint32_t endpoint = 0;
    std::uint32_t length = 0;
    std::uint32_t startFrame = 0;
    std::uint32_t packetCount = 0;
    std::array<std::uint8_t, 8> setup{};
    /// The transfer that kUnlink cancels.
    std::uint32_t unlinked = 0;

    static Command parse(const std::uint8_t* bytes);
};

struct Reply
{
    std::uint32_t code = kSubmitted;
    std::uint32_t sequence = 0;
    /// 0 or a negative errno.
    std::int32_t status = 0;
    std::uint32_t actual = 0;
    std::uint32_t startFrame = 0;
    std::uint32_t packetCount = 0;

    Bytes encode() const;
};

} // namespace virtualcamera::usbip
