#pragma once

#include <QByteArray>
#include <QString>

/// The platform's 8-bit encodings for text that goes to a camera.
namespace CodePages {

/// @p text in the encoding the camera expects, without a terminating zero. Windows sizes the text
/// by its ANSI and converts by its OEM code page; elsewhere both are the local 8-bit encoding. They
/// agree for ASCII, the only text that is ever sent.
[[nodiscard]] QByteArray encode(const QString& text);

} // namespace CodePages
