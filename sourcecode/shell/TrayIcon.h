#pragma once

#include <QObject>
#include <QSystemTrayIcon>

class QAction;
class QMenu;
class QWidget;

/// The program's icon in the system tray, with its menu. GUI thread.
class TrayIcon : public QObject
{
    Q_OBJECT

public:
    /// Shown at once, where the desktop has a tray.
    explicit TrayIcon(QWidget* window);

    /// Whether the user can bring a hidden window back with the icon.
    [[nodiscard]] bool isReachable() const;
    void hide();

signals:
    void activated(QSystemTrayIcon::ActivationReason reason);

private:
    QSystemTrayIcon* m_icon;
    QAction* m_quitAction;
    QAction* m_showAction; ///< not in the menu: a click on the icon shows the window
    QMenu* m_menu;
};
