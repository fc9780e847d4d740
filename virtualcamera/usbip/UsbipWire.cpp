#include "UsbipWire.h"

#include <algorithm>

namespace virtualcamera::usbip {

namespace {

std::uint16_t load16(const std::uint8_t* from)
{
    return static_cast<std::uint16_t>(from[0] << 8 | from[1]);
}

std::uint32_t load32(const std::uint8_t* from)
{
    return static_cast<std::uint32_t>(load16(from)) << 16U | load16(from + 2);
}

void append16(Bytes& to, std::uint32_t value)
{
    to.push_back(static_cast<std::uint8_t>(value >> 8U & 0xFFU));
    to.push_back(static_cast<std::uint8_t>(value & 0xFFU));
}

void append32(Bytes& to, std::uint32_t value)
{
    append16(to, value >> 16U);
    append16(to, value);
}

/// A text in a field of fixed size, with at least one zero at its end.
void appendText(Bytes& to, const std::string& text, std::size_t size)
{
    const std::size_t used = std::min(text.size(), size - 1);
    to.insert(to.end(), text.begin(), text.begin() + static_cast<std::ptrdiff_t>(used));
    to.insert(to.end(), size - used, 0);
}

} // namespace

Operation Operation::parse(const std::uint8_t* bytes)
{
    return {load16(bytes), load16(bytes + 2), load32(bytes + 4)};
}

Bytes Operation::encode() const
{
    Bytes bytes;
    append16(bytes, version);
    append16(bytes, code);
    append32(bytes, status);
    return bytes;
}

Bytes DeviceRecord::encode() const
{
    Bytes bytes;
    appendText(bytes, path, 256);
    appendText(bytes, busId, kBusIdSize);
    append32(bytes, busNumber);
    append32(bytes, deviceNumber);
    append32(bytes, kHighSpeed);
    append16(bytes, vendorId);
    append16(bytes, productId);
    append16(bytes, version);
    // The current configuration, and the number of configurations.
    for (const std::uint8_t value :
         {deviceClass, deviceSubclass, deviceProtocol, std::uint8_t{1}, std::uint8_t{1}})
        bytes.push_back(value);
    bytes.push_back(interfaceCount);
    return bytes;
}

IsoPacket IsoPacket::parse(const std::uint8_t* bytes)
{
    return {load32(bytes), load32(bytes + 4), load32(bytes + 8), load32(bytes + 12)};
}

Bytes IsoPacket::encode() const
{
    Bytes bytes;
    for (const std::uint32_t value : {offset, length, actual, status})
        append32(bytes, value);
    return bytes;
}

Command Command::parse(const std::uint8_t* bytes)
{
    Command command;
    command.code = load32(bytes);
    command.sequence = load32(bytes + 4);
    command.in = load32(bytes + 12) != 0;
    command.endpoint = load32(bytes + 16);
    if (command.code == kUnlink) {
        command.unlinked = load32(bytes + 20);
        return command;
    }
    command.length = load32(bytes + 24);
    command.startFrame = load32(bytes + 28);
    command.packetCount = load32(bytes + 32);
    std::copy_n(bytes + 40, command.setup.size(), command.setup.begin());
    if (command.packetCount == kNotIsochronous)
        command.packetCount = 0;
    return command;
}

Bytes Reply::encode() const
{
    Bytes bytes;
    append32(bytes, code);
    append32(bytes, sequence);
    for (int i = 0; i < 3; ++i) // device, direction and endpoint are not used in answers
        append32(bytes, 0);
    append32(bytes, static_cast<std::uint32_t>(status));
    append32(bytes, actual);
    append32(bytes, startFrame);
    append32(bytes, packetCount);
    bytes.resize(kHeaderSize, 0);
    return bytes;
}

} // namespace virtualcamera::usbip
