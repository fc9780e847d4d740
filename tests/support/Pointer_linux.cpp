#include "Pointer.h"

#include "Xdotool.h"

void Pointer::moveTo(const QPoint& position)
{
    Xdotool::run({QStringLiteral("mousemove"), QString::number(position.x()),
                  QString::number(position.y())});
}

void Pointer::press(int button)
{
    Xdotool::run({QStringLiteral("mousedown"), QString::number(button)});
}

void Pointer::release(int button)
{
    Xdotool::run({QStringLiteral("mouseup"), QString::number(button)});
}
