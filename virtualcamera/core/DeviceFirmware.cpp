#include "DeviceFirmware.h"

#include "Checksum.h"

#include <algorithm>
#include <string_view>

namespace virtualcamera {

namespace {

constexpr std::string_view kImageMagic = "MVFW";

std::uint16_t imageChecksum(const Bytes& bytes, std::size_t checksumAt)
{
    const std::uint16_t head = checksum(bytes.data(), checksumAt);
    const std::size_t tailAt = checksumAt + 2;
    return checksum(bytes.data() + tailAt, bytes.size() - tailAt, head);
}

} // namespace

Bytes DeviceFirmware::encode() const
{
    Bytes bytes(kImageMagic.begin(), kImageMagic.end());
    const std::size_t count = std::min<std::size_t>(version.size(), 255);
    bytes.push_back(static_cast<std::uint8_t>(count));
    bytes.insert(bytes.end(), version.begin(),
                 version.begin() + static_cast<Bytes::difference_type>(count));
    const std::size_t checksumAt = bytes.size();
    bytes.insert(bytes.end(), 2, 0);
    bytes.insert(bytes.end(), payload.begin(), payload.end());
    storeLittleEndian16(&bytes[checksumAt], imageChecksum(bytes, checksumAt));
    return bytes;
}

std::optional<DeviceFirmware> DeviceFirmware::decode(const Bytes& bytes)
{
    const std::size_t versionAt = kImageMagic.size() + 1;
    if (bytes.size() < versionAt ||
        !std::equal(kImageMagic.begin(), kImageMagic.end(), bytes.begin()))
        return std::nullopt;
    const std::size_t checksumAt = versionAt + bytes[kImageMagic.size()];
    if (bytes.size() < checksumAt + 2)
        return std::nullopt;
    if (imageChecksum(bytes, checksumAt) != loadLittleEndian16(&bytes[checksumAt]))
        return std::nullopt;
    const auto at = [&bytes](std::size_t offset) {
        return bytes.begin() + static_cast<Bytes::difference_type>(offset);
    };
    return DeviceFirmware{Bytes(at(versionAt), at(checksumAt)),
                          Bytes(at(checksumAt + 2), bytes.end())};
}

} // namespace virtualcamera
