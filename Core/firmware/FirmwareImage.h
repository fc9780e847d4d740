#pragma once

#include <optional>
#include <QByteArray>
#include <QString>

/// Firmware image files.
namespace FirmwareImage {

/// The memory of the device family holds no larger image.
constexpr qint64 kMaxBytes = qint64{8} * 1024 * 1024;

/// The whole image in @p path.
/// @return nothing when the file cannot be opened, cannot be read to its end, or is larger than
///         kMaxBytes; the size is checked before a byte is read
[[nodiscard]] std::optional<QByteArray> read(const QString& path);

} // namespace FirmwareImage
