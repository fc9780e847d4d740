#include "FrameReference.h"

namespace FrameReference {

std::uint16_t checksum(const QByteArray& bytes)
{
    unsigned crc = 0xFFFF;
    for (const char byte : bytes) {
        crc ^= static_cast<unsigned char>(byte);
        for (int bit = 0; bit < 8; ++bit)
            crc = (crc % 2 == 1) ? (crc / 2) ^ 0x1021U : crc / 2;
    }
    return static_cast<std::uint16_t>(crc);
}

QByteArray request(int cmd, int dataStatus, const QByteArray& payload, int dataLen,
                   std::uint32_t packNum)
{
    QByteArray header;
    header.append('\x01').append('\x5A').append('\x5A');
    header.append(static_cast<char>(cmd % 256)).append(static_cast<char>(cmd / 256));
    header.append(static_cast<char>(dataStatus));
    header.append(static_cast<char>(dataLen % 256)).append(static_cast<char>(dataLen / 256));
    for (int i = 0; i < 4; ++i)
        header.append(static_cast<char>((packNum >> (8 * i)) % 256));

    const int crc = checksum(header + payload);
    QByteArray frame = header;
    frame.append(static_cast<char>(crc % 256)).append(static_cast<char>(crc / 256));
    frame.append(payload);
    frame.append(QByteArray(1024 - frame.size(), '\0'));
    return frame;
}

} // namespace FrameReference
