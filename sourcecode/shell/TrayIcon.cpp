#include "TrayIcon.h"

#include "Style.h"

#include <QAction>
#include <QApplication>
#include <QMenu>

namespace {

const char* const kMenuStyle =
    "QMenu { background-color: white; border: 1px solid white; }"
    // Without a colour the text has that of the system, which is white in a dark mode.
    "QMenu::item { color: @text; background-color: transparent; padding: 8px 32px; margin: 0px;"
    " border-bottom: 1px solid @control-line; }"
    "QMenu::item:selected { background-color: @menu-hover; }";

} // namespace

TrayIcon::TrayIcon(QWidget* window)
    : QObject(window)
    , m_icon(new QSystemTrayIcon(window))
    , m_quitAction(new QAction(tr("Quit"), window))
    , m_showAction(new QAction(tr("Show"), window))
    , m_menu(new QMenu(window))
{
    // As a picture: a file name would make Qt load its icon engines.
    m_icon->setIcon(QIcon(QPixmap(QStringLiteral(":/images/MarvikTools.png"))));
    m_icon->setToolTip(QStringLiteral("MarvikTools"));

    connect(m_quitAction, SIGNAL(triggered()), qApp, SLOT(quit()));
    // The application has no such slot; Qt logs a warning about it at the start.
    connect(m_showAction, SIGNAL(triggered()), qApp, SLOT(showNormal()));

    m_menu->setStyleSheet(Style::sheet(kMenuStyle));
    m_menu->addAction(m_quitAction);
    m_icon->setContextMenu(m_menu);
    m_icon->show();
    connect(m_icon, &QSystemTrayIcon::activated, this, &TrayIcon::activated);
}

bool TrayIcon::isReachable() const
{
    return m_icon->isVisible() && QSystemTrayIcon::isSystemTrayAvailable();
}

void TrayIcon::hide()
{
    m_icon->hide();
}
