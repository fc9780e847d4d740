#include "Desktop.h"

#include <QFont>
#include <qt_windows.h>

void Desktop::chooseWindowSystem()
{
    // There is only one.
}

std::optional<int> Desktop::monitorWidth()
{
    HMONITOR monitor = ::MonitorFromWindow(::GetDesktopWindow(), MONITOR_DEFAULTTONEAREST);
    MONITORINFOEXW information{};
    information.cbSize = sizeof information;
    if (!::GetMonitorInfoW(monitor, &information))
        return std::nullopt;
    DEVMODEW mode{};
    mode.dmSize = sizeof mode;
    if (!::EnumDisplaySettingsW(information.szDevice, ENUM_CURRENT_SETTINGS, &mode))
        return std::nullopt;
    return static_cast<int>(mode.dmPelsWidth);
}

void Desktop::setFontSubstitutes()
{
    // Systems in other languages may come without it.
    const QStringList substitutes{QStringLiteral("Microsoft YaHei"), QStringLiteral("Segoe UI"),
                                  QStringLiteral("SimSun"), QStringLiteral("Noto Sans CJK SC")};
    QFont::insertSubstitutions(QStringLiteral("Microsoft YaHei UI"), substitutes);
    QFont::insertSubstitutions(QStringLiteral("Microsoft YaHei"), substitutes.mid(1));
}
