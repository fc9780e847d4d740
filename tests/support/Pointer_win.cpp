#include "Pointer.h"

#include <qt_windows.h>
#include <QtGlobal>

namespace {

void send(DWORD flags, const QPoint& position = QPoint())
{
    // Pointer coordinates divide the width and the height of the screen into 65536 parts.
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
