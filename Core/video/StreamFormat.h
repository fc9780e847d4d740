#pragma once

#include <QMap>
#include <QString>

/// What a camera streams at the moment, to whichever program takes the picture.
struct StreamFormat
{
    int width = 0;    ///< pixels
    int height = 0;   ///< pixels
    int streamOn = 0; ///< not 0 while a program takes pictures

    /// @param answer as UVCHid::readResolutionFromDevice() fills it
    static StreamFormat of(const QMap<QString, int>& answer)
    {
        return {answer.value(QStringLiteral("width")), answer.value(QStringLiteral("height")),
                answer.value(QStringLiteral("streamon"))};
    }

    /// In this format the camera has no computing time left for framing and for the narrowest view.
    [[nodiscard]] bool is4k() const { return width == 3840 && height == 2160; }
};
