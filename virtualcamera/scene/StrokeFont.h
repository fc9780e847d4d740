#pragma once

#include <QPainter>
#include <string>

namespace virtualcamera {

/// Capital letters and digits as pen strokes: Qt's own text needs a running GUI application and
/// installed fonts, neither of which virtualcamera has.
class StrokeFont
{
public:
    /// `height` is the height of a capital letter.
    static void draw(QPainter& painter, QPointF topLeft, double height, const std::string& text);
    static double width(double height, const std::string& text);
};

} // namespace virtualcamera
