#include "SliderScale.h"

#include <QtGlobal>

namespace SliderScale {

int percent(int value)
{
    return qBound(kMinimum, value, kMaximum) - kMinimum;
}

QString labelText(int value)
{
    const QString number = QString::number(percent(value));
    return percent(value) == 0 ? number : number + QLatin1Char('%');
}

int valueAt(int x, int width, int minimum, int maximum)
{
    const int travel = width - kHandleWidth;
    if (travel <= 0)
        return minimum;
    const int position = qBound(0, x - kHandleWidth / 2, travel);
    // Whole numbers all the way: a quotient of floating point numbers would now and then end just
    // below the value that belongs to the position.
    return minimum + static_cast<int>(qint64(position) * (maximum - minimum) / travel);
}

} // namespace SliderScale
