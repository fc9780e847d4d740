#include "Pointer.h"

#include <qt_windows.h>
#include <QtGlobal>
#include <QWidget>

namespace {

constexpr QPoint kParking(2, 1000);

void send(DWORD flags, const QPoint& position = QPoint())
{
    // The pointer's own scale divides the screen into 65536 parts each way.
    constexpr int parts = 65536;
    const auto scaled = [](int at, int size) { return (at * parts + size / 2) / size; };
    INPUT input{};
    input.type = INPUT_MOUSE;
    input.mi.dwFlags = flags;
    if ((flags & MOUSEEVENTF_ABSOLUTE) != 0) {
        input.mi.dx = scaled(position.x(), ::GetSystemMetrics(SM_CXSCREEN));
        input.mi.dy = scaled(position.y(), ::GetSystemMetrics(SM_CYSCREEN));
    }
    if (::SendInput(1, &input, sizeof input) != 1)
        qFatal("the pointer cannot be moved");
}

} // namespace

void Pointer::moveTo(const QPoint& position)
{
    send(MOUSEEVENTF_ABSOLUTE | MOUSEEVENTF_MOVE, position);
}

void Pointer::press(int button)
{
    send(button == 1   ? MOUSEEVENTF_LEFTDOWN
         : button == 2 ? MOUSEEVENTF_MIDDLEDOWN
                       : MOUSEEVENTF_RIGHTDOWN);
}

void Pointer::release(int button)
{
    send(button == 1   ? MOUSEEVENTF_LEFTUP
         : button == 2 ? MOUSEEVENTF_MIDDLEUP
                       : MOUSEEVENTF_RIGHTUP);
}

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
