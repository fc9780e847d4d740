#include "Pointer.h"

#include <QWidget>

namespace {

constexpr QPoint kParking(2, 1000);

} // namespace

void Pointer::clickAt(const QPoint& position, int button)
{
    moveTo(position);
    press(button);
    release(button);
}

void Pointer::park()
{
    moveTo(kParking);
}

QPoint Pointer::middleOf(const QWidget& widget)
{
    return widget.mapToGlobal(widget.rect().center());
}
