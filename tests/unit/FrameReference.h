#pragma once

#include <cstdint>
#include <QByteArray>

/// The frame as the device understands it, written a second time and as plainly as possible: what
/// the program sends is held against this.
namespace FrameReference {

/// The checksum bit by bit.
[[nodiscard]] std::uint16_t checksum(const QByteArray& bytes);

/// The 1024 bytes of a request.
[[nodiscard]] QByteArray request(int cmd, int dataStatus, const QByteArray& payload, int dataLen,
                                 std::uint32_t packNum = 0);

} // namespace FrameReference
