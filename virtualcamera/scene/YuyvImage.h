#pragma once

#include <cstdint>
#include <QImage>
#include <vector>

namespace virtualcamera {

class PictureGrade;

/// A picture in packed YUV 4:2:2 of video range, the camera's uncompressed format.
class YuyvImage
{
public:
    YuyvImage() = default;
    YuyvImage(int width, int height);
    /// The image must have a 32-bit format and an even width.
    static YuyvImage fromImage(const QImage& image);

    int width() const { return m_width; }
    int height() const { return m_height; }
    std::uint8_t* row(int y) { return m_data.data() + rowBytes() * static_cast<std::size_t>(y); }
    const std::uint8_t* row(int y) const
    {
        return m_data.data() + rowBytes() * static_cast<std::size_t>(y);
    }

    /// From -1 (soft) to 1 (crisp).
    void sharpen(double amount);
    YuyvImage graded(const PictureGrade& grade) const;

private:
    std::size_t rowBytes() const { return static_cast<std::size_t>(m_width) * 2; }

    int m_width = 0;
    int m_height = 0;
    std::vector<std::uint8_t> m_data;
};

} // namespace virtualcamera
