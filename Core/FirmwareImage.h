#pragma once

#include <optional>
#include <QByteArray>
#include <QString>

/// Firmware image files.
namespace FirmwareImage {

/// The device family has room for no more.
constexpr qint64 kMaxBytes = qint64{8} * 1024 * 1024;

/// The whole image in @p path.
/// @return nothing when the path has characters outside GB2312 (no camera tool of this family opens
///         such a file, so none is sent that only this one could), when the file cannot be read or
///         is larger than kMaxBytes, which is refused before a byte is read
[[nodiscard]] std::optional<QByteArray> read(const QString& path);

} // namespace FirmwareImage
