#include "ForegroundRight.h"

void ForegroundRight::passToOtherInstance()
{
    // Nothing to pass on: the window manager decides whether it raises a window that requests it or
    // only marks it in the task bar.
}
