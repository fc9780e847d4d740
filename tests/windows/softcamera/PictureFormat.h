#pragma once

#include <guiddef.h>
#include <QRgb>
#include <QSize>
#include <strmif.h>
#include <vector>

/// The formats and the picture that the software camera delivers.
namespace PictureFormat {

/// RGB with 32, 24, 16 (five bits for each colour) and 8 bits (with a palette) per pixel.
[[nodiscard]] const std::vector<GUID>& all();

[[nodiscard]] int bitsPerPixel(const GUID& subtype);
/// Bytes of a frame; rows are padded to four bytes.
[[nodiscard]] long frameBytes(const GUID& subtype, const QSize& size);

/// The type as an enumerator returns it: to be deleted with deleteMediaType().
/// @param topDown the first row in memory is the top one
[[nodiscard]] AM_MEDIA_TYPE* makeMediaType(const GUID& subtype, const QSize& size, bool topDown);
[[nodiscard]] AM_MEDIA_TYPE* copyMediaType(const AM_MEDIA_TYPE& type);
void clearMediaType(AM_MEDIA_TYPE& type);
void deleteMediaType(AM_MEDIA_TYPE* type);

/// The colour at a position: four quadrants, from the top left red, green, blue and white.
[[nodiscard]] QRgb colourAt(const QSize& size, int x, int y);

/// Writes the picture; @p bytes has frameBytes().
void paint(unsigned char* bytes, const GUID& subtype, const QSize& size, bool topDown);

} // namespace PictureFormat
