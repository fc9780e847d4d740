#pragma once

#include <QPainter>
#include <string>
#include <vector>

namespace virtualcamera {

/// The room in front of the virtual camera, in a world of 1920 by 1080 units. A lens of 120
/// degrees sees all of it.
class MeetingRoom
{
public:
    static constexpr double kWidth = 1920;
    static constexpr double kHeight = 1080;
    /// All movement repeats after this time.
    static constexpr double kPeriod = 4.0;

    explicit MeetingRoom(std::string cameraName)
        : m_cameraName(std::move(cameraName))
    {
    }

    /// `seconds` is a moment within the period.
    void paint(QPainter& painter, double seconds) const;

    /// Nothing moves outside of these areas.
    static std::vector<QRectF> movingParts();
    /// Where the faces are, for the framing.
    static QPointF leftPerson() { return {700, 500}; }
    static QPointF rightPerson() { return {1240, 500}; }
    static QPointF stage() { return {1240, 430}; }

private:
    std::string m_cameraName;
};

} // namespace virtualcamera
