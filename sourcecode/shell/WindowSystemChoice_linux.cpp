#include "WindowSystemChoice.h"

#include <QByteArray>

WindowSystemChoice::WindowSystemChoice()
{
    // The program places the overlay windows of the preview itself. Wayland does not allow that to
    // any program, but the X server inside it does.
    if (!qEnvironmentVariableIsEmpty("WAYLAND_DISPLAY") && !qEnvironmentVariableIsEmpty("DISPLAY"))
        choose("QT_QPA_PLATFORM", "xcb");
    // No window is drawn with GL. Loading the driver takes a third of a start and 26 MB.
    choose("QT_XCB_GL_INTEGRATION", "none");
}

WindowSystemChoice::~WindowSystemChoice()
{
    for (const char* variable : m_chosen)
        qunsetenv(variable);
}

void WindowSystemChoice::choose(const char* variable, const char* value)
{
    if (!qEnvironmentVariableIsEmpty(variable))
        return;
    qputenv(variable, value);
    m_chosen.push_back(variable);
}
