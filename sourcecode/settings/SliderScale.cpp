#include "SliderScale.h"

#include "PictureSettings.h"

#include <QtGlobal>

namespace SliderScale {

int percent(int value)
{
    return PictureSettings::percent(value);
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
    // Integer arithmetic: a floating point quotient can be slightly below the exact value, and
    // would then be truncated to the value before it.
    return minimum + static_cast<int>(qint64(position) * (maximum - minimum) / travel);
}

} // namespace SliderScale
