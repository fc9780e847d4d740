#include "CameraSettings.h"
#include "LogCategories.h"
#include "MaskForm.h"
#include "OpenCamera.h"
#include "PreviewControl.h"
#include "PreviewOverlays.h"
#include "SorvantaHome.h"
#include "TrayIcon.h"
#include "ui_SorvantaHome.h"
#include "UpdateFlow.h"

#include <QApplication>
#include <QCloseEvent>
#include <QKeyEvent>
#include <QMouseEvent>
#include <QTimer>

bool SorvantaHome::eventFilter(QObject* watched, QEvent* event)
{
    switch (event->type()) {
    case QEvent::MouseButtonPress: {
        const auto* mouse = static_cast<QMouseEvent*>(event);
        if (mouse->button() == Qt::LeftButton)
            m_dragOrigin = mouse->globalPos();
        break;
    }
    case QEvent::MouseMove: {
        const auto* mouse = static_cast<QMouseEvent*>(event);
        if (watched != ui->titleWidget || mouse->buttons() != Qt::LeftButton)
            break;
        move(pos() + mouse->globalPos() - m_dragOrigin);
        m_dragOrigin = mouse->globalPos();
        return true;
    }
    case QEvent::MouseButtonDblClick:
        logStreamSize();
        break;
    case QEvent::KeyPress:
        // The controls of a page handle the keys. A key that reaches the frame is dropped.
        if (static_cast<QKeyEvent*>(event)->key() == Qt::Key_Tab)
            qCDebug(shellLog) << "Tab in edit Keyboard";
        return true;
    default:
        break;
    }
    return QWidget::eventFilter(watched, event);
}

void SorvantaHome::logStreamSize() const
{
    const StreamFormat stream = session().stream();
    if (stream.is4k() && stream.streamOn != 0)
        qCDebug(shellLog) << "4k";
}

void SorvantaHome::focusInEvent(QFocusEvent* event)
{
    logStreamSize();
    QWidget::focusInEvent(event);
}

void SorvantaHome::moveEvent(QMoveEvent* event)
{
    m_overlays->place(geometry().topLeft());
    QWidget::moveEvent(event);
}

void SorvantaHome::showEvent(QShowEvent* event)
{
    m_overlays->place(geometry().topLeft());
    QTimer::singleShot(0, this, &SorvantaHome::followWindowState);
    QWidget::showEvent(event);
}

void SorvantaHome::hideEvent(QHideEvent* event)
{
    QTimer::singleShot(0, this, &SorvantaHome::followWindowState);
    QWidget::hideEvent(event);
}

/// Shows the overlays again, if the current page has them.
void SorvantaHome::restoreOverlays()
{
    if (currentPage() != SvtaPagesView::SettingPage)
        return;
    m_overlays->restore(geometry().topLeft());
    m_mask->raiseDialog();
}

void SorvantaHome::slotActivateWindow()
{
    // These two calls bring a hidden or minimised window to the front. A window that is shown does
    // not need them, and a window manager may execute them in the other order.
    if (isHidden() || isMinimized()) {
        showMinimized();
        showNormal();
    }
    raise();
    activateWindow();
    restoreOverlays();
    // "Quit" forgets the values of the settings page before it hides the window.
    if (currentPage() == SvtaPagesView::SettingPage && !session().areValuesKnown())
        startPlay();
}

void SorvantaHome::slotTrayActivated(QSystemTrayIcon::ActivationReason reason)
{
    if (reason == QSystemTrayIcon::DoubleClick || reason == QSystemTrayIcon::Trigger)
        slotActivateWindow();
}

void SorvantaHome::changeEvent(QEvent* event)
{
    if (event->type() == QEvent::WindowStateChange) {
        if (!isMinimized())
            setAttribute(Qt::WA_Mapped, true);
        // Deferred: showing an overlay here would deliver the next state change within this one.
        QTimer::singleShot(0, this, &SorvantaHome::followWindowState);
    }
    QWidget::changeEvent(event);
}

/// Some window managers do not hide the overlays with the window.
void SorvantaHome::followWindowState()
{
    if (isHidden() || isMinimized()) {
        m_overlays->hide();
        m_preview->suspend();
    } else {
        m_preview->resume(m_update->isBusy(session().info().hidPath));
        restoreOverlays();
    }
}

/// The user may have changed the camera with another program before they return to this one.
void SorvantaHome::followApplicationState(Qt::ApplicationState state)
{
    if (state == Qt::ApplicationActive && currentPage() == SvtaPagesView::SettingPage &&
        !m_update->isBusy(session().info().hidPath))
        m_settings->showChangesOfOthers();
}

void SorvantaHome::closeEvent(QCloseEvent* event)
{
    // Without a tray the user could not bring the window back, so the program ends.
    if (!m_trayIcon->isReachable())
        return;
    m_overlays->switchGridOff();
    m_overlays->hideButtons();
    hide();
    event->ignore();
}

void SorvantaHome::finishTransfer()
{
    const QWidgetList windows = QApplication::topLevelWidgets();
    for (QWidget* window : windows)
        window->hide();
    m_trayIcon->hide();
    m_update->finishTransfer();
}
