#include "PictureType.h"

#include <uuids.h>

// After strmif.h, whose types it uses.
#include <amvideo.h>

std::optional<PictureType> PictureType::of(const AM_MEDIA_TYPE& type)
{
    const bool isColour = type.subtype == MEDIASUBTYPE_RGB24 || type.subtype == MEDIASUBTYPE_RGB32;
    if (type.majortype != MEDIATYPE_Video || !isColour || type.formattype != FORMAT_VideoInfo ||
        !type.pbFormat || type.cbFormat < sizeof(VIDEOINFOHEADER))
        return std::nullopt;
    const auto& info = *reinterpret_cast<const VIDEOINFOHEADER*>(type.pbFormat);
    return PictureType{info.bmiHeader.biWidth, info.bmiHeader.biHeight,
                       type.subtype == MEDIASUBTYPE_RGB24 ? 24 : 32};
}

void PictureType::fill(AM_MEDIA_TYPE& type) const
{
    auto* info = static_cast<VIDEOINFOHEADER*>(::CoTaskMemAlloc(sizeof(VIDEOINFOHEADER)));
    *info = {};
    info->bmiHeader.biSize = sizeof info->bmiHeader;
    info->bmiHeader.biWidth = width;
    info->bmiHeader.biHeight = height;
    info->bmiHeader.biPlanes = 1;
    info->bmiHeader.biBitCount = static_cast<WORD>(bitsPerPixel);
    info->bmiHeader.biCompression = BI_RGB;
    info->bmiHeader.biSizeImage = static_cast<DWORD>(bytes());

    type = {};
    type.majortype = MEDIATYPE_Video;
    type.subtype = bitsPerPixel == 24 ? MEDIASUBTYPE_RGB24 : MEDIASUBTYPE_RGB32;
    type.bFixedSizeSamples = TRUE;
    type.lSampleSize = static_cast<ULONG>(bytes());
    type.formattype = FORMAT_VideoInfo;
    type.cbFormat = sizeof(VIDEOINFOHEADER);
    type.pbFormat = reinterpret_cast<BYTE*>(info);
}

AM_MEDIA_TYPE* PictureType::make() const
{
    auto* type = static_cast<AM_MEDIA_TYPE*>(::CoTaskMemAlloc(sizeof(AM_MEDIA_TYPE)));
    fill(*type);
    return type;
}
