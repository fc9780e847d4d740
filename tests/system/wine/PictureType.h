#pragma once

#include <optional>
#include <strmif.h>

/// An uncompressed picture as described by a media type.
struct PictureType
{
    LONG width = 0;
    LONG height = 0; ///< negative: the first row in memory is the top one
    int bitsPerPixel = 0;

    /// Empty when the type is not a picture of 24 or 32 bits per pixel.
    static std::optional<PictureType> of(const AM_MEDIA_TYPE& type);

    [[nodiscard]] PictureType withBits(int bits) const { return {width, height, bits}; }
    [[nodiscard]] LONG rows() const { return height < 0 ? -height : height; }
    /// Rows are padded to four bytes.
    [[nodiscard]] LONG bytesPerRow() const { return (width * bitsPerPixel / 8 + 3) & ~3; }
    [[nodiscard]] LONG bytes() const { return bytesPerRow() * rows(); }

    /// The type with its format block; the caller owns the block.
    void fill(AM_MEDIA_TYPE& type) const;
    [[nodiscard]] AM_MEDIA_TYPE* make() const;
};
