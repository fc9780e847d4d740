#include "HidFrame.h"

#include <algorithm>
#include <QtGlobal>

namespace HidFrame {

namespace {

constexpr std::uint16_t kPolynomial = 0x1021;

constexpr std::uint16_t shiftOut(std::uint16_t value)
{
    for (int bit = 0; bit < 8; ++bit) {
        const bool carry = (value & 1U) != 0;
        value = static_cast<std::uint16_t>(value >> 1U);
        if (carry)
            value = static_cast<std::uint16_t>(value ^ kPolynomial);
    }
    return value;
}

constexpr std::array<std::uint16_t, 256> makeTable()
{
    std::array<std::uint16_t, 256> table{};
    for (std::size_t i = 0; i < table.size(); ++i)
        table[i] = shiftOut(static_cast<std::uint16_t>(i));
    return table;
}

constexpr std::array<std::uint16_t, 256> kTable = makeTable();

void putUint16(Buffer& frame, std::size_t offset, std::uint16_t value)
{
    frame[offset] = static_cast<std::uint8_t>(value & 0xFFU);
    frame[offset + 1] = static_cast<std::uint8_t>(value >> 8U);
}

std::uint16_t uint16At(const Buffer& frame, std::size_t offset)
{
    return static_cast<std::uint16_t>(frame[offset] | (frame[offset + 1] << 8U));
}

std::uint32_t uint32At(const Buffer& frame, std::size_t offset)
{
    return static_cast<std::uint32_t>(uint16At(frame, offset)) |
           (static_cast<std::uint32_t>(uint16At(frame, offset + 2)) << 16U);
}

} // namespace

std::uint16_t checksum(const std::uint8_t* data, std::size_t size, std::uint16_t seed)
{
    std::uint16_t crc = seed;
    for (std::size_t i = 0; i < size; ++i) {
        const auto index = static_cast<std::uint8_t>(crc ^ data[i]);
        crc = static_cast<std::uint16_t>((crc >> 8U) ^ kTable[index]);
    }
    return crc;
}

void packHeader(Buffer& frame, std::uint16_t cmd, std::uint8_t dataStatus, std::uint16_t dataLen,
                std::uint32_t packNum)
{
    frame[0] = kReportId;
    putUint16(frame, 1, kMagic);
    putUint16(frame, 3, cmd);
    frame[5] = dataStatus;
    putUint16(frame, 6, dataLen);
    putUint16(frame, 8, static_cast<std::uint16_t>(packNum & 0xFFFFU));
    putUint16(frame, 10, static_cast<std::uint16_t>(packNum >> 16U));
}

void sealFrame(Buffer& frame, std::size_t payloadSize)
{
    const std::uint16_t head = checksum(frame.data(), kChecksummedHeader);
    putUint16(frame, kChecksummedHeader, checksum(frame.data() + kHeaderSize, payloadSize, head));
}

Buffer packRequest(std::uint16_t cmd, std::uint8_t dataStatus, const QByteArray& payload,
                   std::uint16_t dataLen, std::uint32_t packNum)
{
    Q_ASSERT(static_cast<std::size_t>(payload.size()) <= kMaxPayload);
    Buffer frame{};
    packHeader(frame, cmd, dataStatus, dataLen, packNum);
    std::copy(payload.begin(), payload.end(), frame.begin() + kHeaderSize);
    sealFrame(frame, static_cast<std::size_t>(payload.size()));
    return frame;
}

Response parseResponse(const Buffer& frame)
{
    Response response;
    response.reportId = frame[0];
    response.magic = uint16At(frame, 1);
    response.cmd = uint16At(frame, 3);
    response.dataStatus = frame[5];
    response.dataLen = uint16At(frame, 6);
    response.status = uint32At(frame, 8);
    response.crc = uint16At(frame, 12);
    return response;
}

QByteArray payloadOf(const Buffer& frame)
{
    const std::size_t length = std::min<std::size_t>(uint16At(frame, 6), kMaxPayload);
    return {reinterpret_cast<const char*>(frame.data() + kHeaderSize), static_cast<int>(length)};
}

std::int32_t payloadInt32(const Buffer& frame, std::size_t offset)
{
    Q_ASSERT(offset + 4 <= kMaxPayload);
    return static_cast<std::int32_t>(uint32At(frame, kHeaderSize + offset));
}

} // namespace HidFrame
