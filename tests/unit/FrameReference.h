#pragma once

#include <cstdint>
#include <QByteArray>

/// A second, simple implementation of the frame, from the device's view. Tests compare the frames
/// of the program with it.
namespace FrameReference {

/// The checksum, computed bit by bit.
[[nodiscard]] std::uint16_t checksum(const QByteArray& bytes);

/// The 1024 bytes of a request.
[[nodiscard]] QByteArray request(int cmd, int dataStatus, const QByteArray& payload, int dataLen,
                                 std::uint32_t packNum = 0);

} // namespace FrameReference
