#include "TarArchive.h"

#include <array>
#include <cstdint>
#include <QtEndian>

namespace {

constexpr int kBlock = 512;

QByteArray octal(qint64 value, int width)
{
    return QByteArray::number(value, 8).rightJustified(width, '0') + '\0';
}

std::uint32_t crc32(const QByteArray& bytes)
{
    std::uint32_t crc = 0xFFFFFFFFU;
    for (const char byte : bytes) {
        crc ^= static_cast<unsigned char>(byte);
        for (int bit = 0; bit < 8; ++bit)
            crc = (crc >> 1U) ^ ((crc & 1U) != 0 ? 0xEDB88320U : 0U);
    }
    return ~crc;
}

QByteArray littleEndian(std::uint32_t value)
{
    std::array<char, 4> bytes{};
    qToLittleEndian(value, bytes.data());
    return {bytes.data(), static_cast<int>(bytes.size())};
}

} // namespace

/// The header that POSIX calls ustar.
void TarArchive::add(const QByteArray& name, const QByteArray& content)
{
    QByteArray header = name.leftJustified(100, '\0', true);
    header += octal(0644, 7) + octal(0, 7) + octal(0, 7);
    header += octal(content.size(), 11) + octal(m_seconds, 11);
    const int checksumAt = header.size();
    header += QByteArray(8, ' ') + '0';
    header = header.leftJustified(257, '\0');
    header += QByteArray("ustar\0"
                         "00",
                         8);
    header = header.leftJustified(kBlock, '\0');
    int sum = 0;
    for (const char byte : qAsConst(header))
        sum += static_cast<unsigned char>(byte);
    header.replace(checksumAt, 8, octal(sum, 6) + ' ');
    m_tar += header + content + QByteArray((kBlock - content.size() % kBlock) % kBlock, '\0');
}

QByteArray TarArchive::compressed() const
{
    const QByteArray tar = m_tar + QByteArray(2 * kBlock, '\0');
    // What qCompress() makes has its own frame around the compressed data: six bytes before them
    // and four behind. A .gz has another one.
    const QByteArray framed = qCompress(tar);
    const QByteArray deflated = framed.mid(6, framed.size() - 10);
    const QByteArray header("\x1f\x8b\x08\0\0\0\0\0\0\xff", 10);
    return header + deflated + littleEndian(crc32(tar)) +
           littleEndian(static_cast<std::uint32_t>(tar.size()));
}
