#include "ForegroundRight.h"

#include <qt_windows.h>

void ForegroundRight::passToOtherInstance()
{
    // Windows gives the foreground only to the program that last received the user's input.
    ::AllowSetForegroundWindow(ASFW_ANY);
}
