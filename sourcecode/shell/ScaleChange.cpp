#include "ScaleChange.h"

#include <QApplication>
#include <QEvent>
#include <QScreen>
#include <QTimer>
#include <QWidget>
#include <QWindow>

namespace {

/// The size in pixels is wrong when Qt, which divides it by the new scale, reads another size from
/// it than the widget has.
void renewSize(QWidget* window)
{
    QWindow* native = window->windowHandle();
    if (!native || !native->handle() || window->isMinimized())
        return;
    const bool isFixed = window->minimumSize() == window->maximumSize();
    const QSize size = isFixed ? window->minimumSize() : window->size();
    window->resize(size);
    native->resize(size);
}

/// As renewSize(), for the place in the window too.
void renewPlaceInWindow(const QWidget* widget)
{
    QWindow* native = widget->windowHandle();
    if (widget->isWindow() || !native || !native->handle())
        return;
    native->setGeometry(
        QRect(widget->mapTo(widget->nativeParentWidget(), QPoint()), widget->size()));
}

} // namespace

ScaleChange::ScaleChange(QWidget* window)
    : QObject(window)
    , m_window(window)
{
    window->installEventFilter(this);
    connect(qGuiApp, &QGuiApplication::screenAdded, this, &ScaleChange::watchScreen);
    const QList<QScreen*> screens = QGuiApplication::screens();
    for (QScreen* screen : screens)
        watchScreen(screen);
}

void ScaleChange::watchScreen(QScreen* screen) const
{
    connect(screen, &QScreen::logicalDotsPerInchChanged, this, &ScaleChange::settleLater);
}

bool ScaleChange::eventFilter(QObject* watched, QEvent* event)
{
    if (event->type() == QEvent::Show || event->type() == QEvent::WinIdChange)
        watchWindow();
    return QObject::eventFilter(watched, event);
}

void ScaleChange::watchWindow()
{
    if (const QWindow* native = m_window->windowHandle())
        connect(native, &QWindow::screenChanged, this, &ScaleChange::settleLater,
                Qt::UniqueConnection);
}

/// Deferred: Qt is still handling the change, and a change of several monitors comes in parts.
void ScaleChange::settleLater()
{
    if (m_isDue)
        return;
    m_isDue = true;
    QTimer::singleShot(0, this, &ScaleChange::settle);
}

void ScaleChange::settle()
{
    m_isDue = false;
    const QWidgetList windows = QApplication::topLevelWidgets();
    for (QWidget* window : windows) {
        renewSize(window);
        // A parent comes before its children.
        const auto children = window->findChildren<QWidget*>();
        for (const QWidget* child : children)
            renewPlaceInWindow(child);
    }
    emit settled();
}
