#include "PictureFormat.h"

#include <algorithm>
#include <cstring>
#include <new>
#include <objbase.h>
#include <QtGlobal>
#include <uuids.h>

// After strmif.h, whose types it uses.
#include <amvideo.h>

namespace PictureFormat {

namespace {

constexpr int kPaletteSize = 256;
constexpr int kFramesPerSecond = 30;
constexpr REFERENCE_TIME kSecond = 10'000'000;

/// Three bits of red and green, two of blue.
RGBQUAD paletteColour(int index)
{
    RGBQUAD colour{};
    colour.rgbRed = static_cast<BYTE>((index >> 5) * 255 / 7);
    colour.rgbGreen = static_cast<BYTE>(((index >> 2) & 7) * 255 / 7);
    colour.rgbBlue = static_cast<BYTE>((index & 3) * 255 / 3);
    return colour;
}

long rowBytes(const GUID& subtype, int width)
{
    return (width * bitsPerPixel(subtype) + 31) / 32 * 4;
}

void putPixel(unsigned char* row, int bits, int x, QRgb colour)
{
    const int red = qRed(colour);
    const int green = qGreen(colour);
    const int blue = qBlue(colour);
    switch (bits) {
    case 8:
        row[x] = static_cast<unsigned char>((red >> 5 << 5) | (green >> 5 << 2) | (blue >> 6));
        break;
    case 16: {
        const auto pixel = static_cast<quint16>((red >> 3 << 10) | (green >> 3 << 5) | (blue >> 3));
        std::memcpy(row + 2 * x, &pixel, sizeof pixel);
        break;
    }
    default: {
        unsigned char* pixel = row + bits / 8 * x;
        pixel[0] = static_cast<unsigned char>(blue);
        pixel[1] = static_cast<unsigned char>(green);
        pixel[2] = static_cast<unsigned char>(red);
        break;
    }
    }
}

AM_MEDIA_TYPE* allocateType(ULONG formatBytes)
{
    auto* type = static_cast<AM_MEDIA_TYPE*>(::CoTaskMemAlloc(sizeof(AM_MEDIA_TYPE)));
    auto* format = static_cast<BYTE*>(::CoTaskMemAlloc(formatBytes));
    if (!type || !format)
        throw std::bad_alloc();
    *type = {};
    std::memset(format, 0, formatBytes);
    type->pbFormat = format;
    type->cbFormat = formatBytes;
    return type;
}

} // namespace

const std::vector<GUID>& all()
{
    static const std::vector<GUID> subtypes{MEDIASUBTYPE_RGB32, MEDIASUBTYPE_RGB24,
                                            MEDIASUBTYPE_RGB555, MEDIASUBTYPE_RGB8};
    return subtypes;
}

int bitsPerPixel(const GUID& subtype)
{
    if (subtype == MEDIASUBTYPE_RGB8)
        return 8;
    if (subtype == MEDIASUBTYPE_RGB555)
        return 16;
    return subtype == MEDIASUBTYPE_RGB24 ? 24 : 32;
}

long frameBytes(const GUID& subtype, const QSize& size)
{
    return rowBytes(subtype, size.width()) * size.height();
}

AM_MEDIA_TYPE* makeMediaType(const GUID& subtype, const QSize& size, bool topDown)
{
    const bool hasPalette = subtype == MEDIASUBTYPE_RGB8;
    const ULONG paletteBytes = hasPalette ? kPaletteSize * sizeof(RGBQUAD) : 0;
    AM_MEDIA_TYPE* type = allocateType(sizeof(VIDEOINFOHEADER) + paletteBytes);
    type->majortype = MEDIATYPE_Video;
    type->subtype = subtype;
    type->formattype = FORMAT_VideoInfo;
    type->bFixedSizeSamples = TRUE;
    type->lSampleSize = static_cast<ULONG>(frameBytes(subtype, size));

    auto* info = reinterpret_cast<VIDEOINFOHEADER*>(type->pbFormat);
    info->AvgTimePerFrame = kSecond / kFramesPerSecond;
    info->dwBitRate = type->lSampleSize * 8 * kFramesPerSecond;
    info->bmiHeader.biSize = sizeof(BITMAPINFOHEADER);
    info->bmiHeader.biWidth = size.width();
    info->bmiHeader.biHeight = topDown ? -size.height() : size.height();
    info->bmiHeader.biPlanes = 1;
    info->bmiHeader.biBitCount = static_cast<WORD>(bitsPerPixel(subtype));
    const std::vector<GUID> rgb = all();
    const bool isRgb = std::find(rgb.begin(), rgb.end(), subtype) != rgb.end();
    info->bmiHeader.biCompression = isRgb ? BI_RGB : subtype.Data1;
    info->bmiHeader.biSizeImage = type->lSampleSize;
    if (hasPalette) {
        info->bmiHeader.biClrUsed = kPaletteSize;
        for (int i = 0; i < kPaletteSize; ++i) {
            const RGBQUAD colour = paletteColour(i);
            std::memcpy(type->pbFormat + sizeof(VIDEOINFOHEADER) + std::size_t(i) * sizeof colour,
                        &colour, sizeof colour);
        }
    }
    return type;
}

AM_MEDIA_TYPE* copyMediaType(const AM_MEDIA_TYPE& type)
{
    AM_MEDIA_TYPE* copy = allocateType(type.cbFormat);
    BYTE* format = copy->pbFormat;
    *copy = type;
    copy->pbFormat = format;
    std::memcpy(format, type.pbFormat, type.cbFormat);
    if (copy->pUnk)
        copy->pUnk->AddRef();
    return copy;
}

void clearMediaType(AM_MEDIA_TYPE& type)
{
    ::CoTaskMemFree(type.pbFormat);
    if (type.pUnk)
        type.pUnk->Release();
    type = {};
}

void deleteMediaType(AM_MEDIA_TYPE* type)
{
    clearMediaType(*type);
    ::CoTaskMemFree(type);
}

QRgb colourAt(const QSize& size, int x, int y)
{
    const bool isLeft = x < size.width() / 2;
    if (y < size.height() / 2)
        return isLeft ? qRgb(255, 0, 0) : qRgb(0, 255, 0);
    return isLeft ? qRgb(0, 0, 255) : qRgb(255, 255, 255);
}

void paint(unsigned char* bytes, const GUID& subtype, const QSize& size, bool topDown)
{
    const int bits = bitsPerPixel(subtype);
    for (int y = 0; y < size.height(); ++y) {
        const int rowInMemory = topDown ? y : size.height() - 1 - y;
        unsigned char* row = bytes + rowBytes(subtype, size.width()) * rowInMemory;
        for (int x = 0; x < size.width(); ++x)
            putPixel(row, bits, x, colourAt(size, x, y));
    }
}

} // namespace PictureFormat
