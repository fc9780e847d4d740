#include "Desktop.h"

#include <QCryptographicHash>
#include <QFont>
#include <QStandardPaths>
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

QString Desktop::instanceDirectory()
{
    return QStandardPaths::writableLocation(QStandardPaths::AppLocalDataLocation);
}

QString Desktop::instanceSocket()
{
    // Pipes of all users share one folder without subfolders, so the user's own folder is in the
    // name.
    const QByteArray user =
        QCryptographicHash::hash(instanceDirectory().toUtf8(), QCryptographicHash::Sha256);
    return QStringLiteral("MarvikTools-") + QString::fromLatin1(user.toHex());
}

void Desktop::passForeground()
{
    // Windows gives it only to the program that the user has dealt with last.
    ::AllowSetForegroundWindow(ASFW_ANY);
}

void Desktop::setFontSubstitutes()
{
    // Systems in other languages may come without it.
    const QStringList substitutes{QStringLiteral("Microsoft YaHei"), QStringLiteral("Segoe UI"),
                                  QStringLiteral("SimSun"), QStringLiteral("Noto Sans CJK SC")};
    QFont::insertSubstitutions(QStringLiteral("Microsoft YaHei UI"), substitutes);
    QFont::insertSubstitutions(QStringLiteral("Microsoft YaHei"), substitutes.mid(1));
}
