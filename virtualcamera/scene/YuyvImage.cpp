#include "YuyvImage.h"

#include "PictureGrade.h"

#include <algorithm>
#include <cmath>

namespace virtualcamera {

namespace {

// ITU-R BT.601, video range, in 1/256.
std::uint8_t lumaOf(int r, int g, int b)
{
    return static_cast<std::uint8_t>(((66 * r + 129 * g + 25 * b + 128) >> 8) + 16);
}

std::uint8_t blueOf(int r, int g, int b)
{
    return static_cast<std::uint8_t>(((-38 * r - 74 * g + 112 * b + 128) >> 8) + 128);
}

std::uint8_t redOf(int r, int g, int b)
{
    return static_cast<std::uint8_t>(((112 * r - 94 * g - 18 * b + 128) >> 8) + 128);
}

} // namespace

YuyvImage::YuyvImage(int width, int height)
    : m_width(width)
    , m_height(height)
    , m_data(rowBytes() * static_cast<std::size_t>(height))
{
}

YuyvImage YuyvImage::fromImage(const QImage& image)
{
    YuyvImage result(image.width(), image.height());
    for (int y = 0; y < image.height(); ++y) {
        const auto* from = reinterpret_cast<const QRgb*>(image.constScanLine(y));
        std::uint8_t* to = result.row(y);
        for (int x = 0; x + 1 < image.width(); x += 2, from += 2, to += 4) {
            const int r0 = qRed(from[0]), g0 = qGreen(from[0]), b0 = qBlue(from[0]);
            const int r1 = qRed(from[1]), g1 = qGreen(from[1]), b1 = qBlue(from[1]);
            const int r = (r0 + r1) / 2, g = (g0 + g1) / 2, b = (b0 + b1) / 2;
            to[0] = lumaOf(r0, g0, b0);
            to[1] = blueOf(r, g, b);
            to[2] = lumaOf(r1, g1, b1);
            to[3] = redOf(r, g, b);
        }
    }
    return result;
}

void YuyvImage::sharpen(double amount)
{
    if (std::abs(amount) < 0.01 || m_height < 3 || m_width < 4)
        return;
    // Moves each luma sample away from the average of its neighbours, or towards it.
    const int strength = static_cast<int>(std::lround(amount * (amount > 0 ? 384 : 256)));
    const YuyvImage source = *this;
    const int rounds = amount < -0.5 ? 2 : 1;
    YuyvImage base = source;
    for (int round = 0; round < rounds; ++round) {
        if (round > 0)
            base = *this;
        for (int y = 1; y + 1 < m_height; ++y) {
            const std::uint8_t* above = base.row(y - 1);
            const std::uint8_t* here = base.row(y);
            const std::uint8_t* below = base.row(y + 1);
            std::uint8_t* to = row(y);
            for (int i = 2; i + 2 < m_width * 2; i += 2) {
                const int around = above[i - 2] + above[i] + above[i + 2] + here[i - 2] +
                                   here[i + 2] + below[i - 2] + below[i] + below[i + 2];
                const int value = here[i] + (here[i] * 8 - around) * strength / (256 * 8);
                to[i] = static_cast<std::uint8_t>(std::clamp(value, 16, 235));
            }
        }
    }
}

YuyvImage YuyvImage::graded(const PictureGrade& grade) const
{
    YuyvImage result(m_width, m_height);
    for (std::size_t i = 0; i + 1 < m_data.size(); i += 2) {
        result.m_data[i] = grade.luma(m_data[i]);
        result.m_data[i + 1] = grade.chroma(m_data[i + 1]);
    }
    return result;
}

} // namespace virtualcamera
