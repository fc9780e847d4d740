#pragma once

#include <array>
#include <cstddef>
#include <cstdint>
#include <QByteArray>

/// The one frame that travels between the program and a camera, in both directions: 1024 bytes, all
/// multi-byte fields little-endian.
///
/// | offset | size | request          | response          |
/// |--------|------|------------------|-------------------|
/// | 0      | 1    | report id, 1     | not checked       |
/// | 1      | 2    | magic, 0x5A5A    | not checked       |
/// | 3      | 2    | command          | command answered  |
/// | 5      | 1    | data status      | not checked       |
/// | 6      | 2    | payload length   | payload length    |
/// | 8      | 4    | packet number    | status, 0 is good |
/// | 12     | 2    | checksum         | not checked       |
/// | 14     | 1010 | payload          | payload           |
///
/// Everything here is a pure function of its arguments and may be called on any thread.
namespace HidFrame {

constexpr std::size_t kSize = 1024;
constexpr std::size_t kHeaderSize = 14;
constexpr std::size_t kMaxPayload = kSize - kHeaderSize;
/// The checksum covers the header up to itself; its own two bytes are left out.
constexpr std::size_t kChecksummedHeader = 12;

constexpr std::uint8_t kReportId = 0x01;
constexpr std::uint16_t kMagic = 0x5A5A;
constexpr std::uint16_t kChecksumSeed = 0xFFFF;

/// Meaning of the data status byte of a request.
enum DataStatus : std::uint8_t {
    Control = 0,        ///< start or end of a firmware transfer
    PayloadFollows = 1, ///< a parameter write, or a firmware packet that is not the last
    ReadOrFinal = 2,    ///< a read without payload, or the last firmware packet
};

using Buffer = std::array<std::uint8_t, kSize>;

/// The device's 16-bit checksum: seed 0xFFFF, each byte XORed into the low half, then eight right
/// shifts; each 1 that is shifted out XORs 0x1021 into the sum. Textbooks use 0x1021 with left
/// shifts; this device uses right shifts and rejects any other checksum.
/// @param seed the result of a preceding call, to continue over a second block
[[nodiscard]] std::uint16_t checksum(const std::uint8_t* data, std::size_t size,
                                     std::uint16_t seed = kChecksumSeed);

/// Writes the twelve header bytes before the checksum.
void packHeader(Buffer& frame, std::uint16_t cmd, std::uint8_t dataStatus, std::uint16_t dataLen,
                std::uint32_t packNum);

/// Computes the checksum over header and @p payloadSize payload bytes and stores it.
void sealFrame(Buffer& frame, std::size_t payloadSize);

/// A complete request. @p dataLen stands in the header; the checksum covers all of @p payload. Both
/// are equal for every request except a text write, whose header counts characters.
/// @pre payload.size() <= kMaxPayload
[[nodiscard]] Buffer packRequest(std::uint16_t cmd, std::uint8_t dataStatus,
                                 const QByteArray& payload, std::uint16_t dataLen,
                                 std::uint32_t packNum = 0);

/// The fields of a received frame.
struct Response
{
    std::uint8_t reportId = 0;
    std::uint16_t magic = 0;
    std::uint16_t cmd = 0;
    std::uint8_t dataStatus = 0;
    std::uint16_t dataLen = 0; ///< as the device claims it; may be wrong
    std::uint32_t status = 0;
    std::uint16_t crc = 0;

    [[nodiscard]] bool answers(std::uint16_t request) const
    {
        return status == 0 && cmd == request;
    }
};

[[nodiscard]] Response parseResponse(const Buffer& frame);

/// The payload of a received frame, cut to what a frame can hold: a device that claims more cannot
/// cause a read past the end of the report.
[[nodiscard]] QByteArray payloadOf(const Buffer& frame);

/// Little-endian 32-bit value at @p offset of the payload.
/// @pre offset + 4 <= kMaxPayload
[[nodiscard]] std::int32_t payloadInt32(const Buffer& frame, std::size_t offset);

} // namespace HidFrame
