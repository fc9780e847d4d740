#include "SorvantaHome.h"
#include "TransparentBtn.h"
#include "TransparentWidget.h"
#include "TransPrewBtn.h"
#include "ui_SorvantaHome.h"

#include <QCloseEvent>
#include <QDebug>
#include <QKeyEvent>
#include <QMouseEvent>
#include <QTimer>

namespace {

constexpr QPoint kGridOffset(0, 80);
constexpr QPoint kGridBtnOffset(284, 248);
constexpr QPoint kPreviewBtnOffset(320, 248);

const char* const kGridOffImage = "image: url(:/images/jiugongge.svg)";
const char* const kGridOnImage = "image: url(:/images/bandengfeng.svg)";

} // namespace

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
        // Keys belong to the controls of a page. What reaches the frame around them goes nowhere.
        if (static_cast<QKeyEvent*>(event)->key() == Qt::Key_Tab)
            qDebug() << "Tab in edit Keyboard";
        return true;
    default:
        break;
    }
    return QWidget::eventFilter(watched, event);
}

void SorvantaHome::logStreamSize() const
{
    const int width = m_resolution.value(QStringLiteral("width"));
    const int height = m_resolution.value(QStringLiteral("height"));
    const int streaming = m_resolution.value(QStringLiteral("streamon"));
    if (width == 3840 && height == 2160 && streaming != 0)
        qDebug() << "4k";
}

void SorvantaHome::focusInEvent(QFocusEvent* event)
{
    logStreamSize();
    QWidget::focusInEvent(event);
}

void SorvantaHome::moveEvent(QMoveEvent* event)
{
    placeOverlays();
    QWidget::moveEvent(event);
}

void SorvantaHome::showEvent(QShowEvent* event)
{
    placeOverlays();
    QWidget::showEvent(event);
}

void SorvantaHome::placeOverlays()
{
    const QPoint origin = geometry().topLeft();
    m_grid->move(origin + kGridOffset);
    m_gridBtn->move(origin + kGridBtnOffset);
    m_previewBtn->move(origin + kPreviewBtnOffset);
}

void SorvantaHome::hideOverlays()
{
    m_gridBtn->hide();
    m_previewBtn->hide();
    m_grid->hide();
    m_gridBtn->setLabelStyle(QString::fromLatin1(kGridOffImage));
}

/// Shows again what the current page wants over it.
void SorvantaHome::restoreOverlays()
{
    if (currentPage() != SvtaPagesView::SettingPage)
        return;
    placeOverlays();
    showGrid(m_gridShown && m_previewBtn->isPreviewOpen());
    m_gridBtn->setVisible(m_previewBtn->isPreviewOpen());
    m_previewBtn->show();
}

void SorvantaHome::showGrid(bool shown)
{
    m_grid->setVisible(shown);
    m_gridBtn->setLabelStyle(QString::fromLatin1(shown ? kGridOnImage : kGridOffImage));
    if (!shown)
        return;
    // The grid lies over the whole picture; the buttons must stay within reach above it.
    m_gridBtn->raise();
    m_previewBtn->raise();
}

void SorvantaHome::clearGridMark()
{
    if (!m_gridShown)
        return;
    m_gridShown = false;
    showGrid(false);
}

void SorvantaHome::slotShowLine()
{
    m_gridShown = !m_gridShown;
    showGrid(m_gridShown);
}

void SorvantaHome::slotActivateWindow()
{
    // The pair brings a window back to the front. One that is shown needs no bringing back, and a
    // window manager may carry out the two requests for it in the other order.
    if (isHidden() || isMinimized()) {
        showMinimized();
        showNormal();
    }
    raise();
    activateWindow();
    restoreOverlays();
    // "Quit" forgets the values of the settings page before it hides the window.
    if (currentPage() == SvtaPagesView::SettingPage && !m_valuesKnown)
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
        // Not here: showing an overlay takes the next change in before it returns.
        QTimer::singleShot(0, this, &SorvantaHome::followWindowState);
    }
    QWidget::changeEvent(event);
}

/// Not every window manager takes the overlays down with the window.
void SorvantaHome::followWindowState()
{
    if (isHidden() || isMinimized())
        hideOverlays();
    else
        restoreOverlays();
}

void SorvantaHome::closeEvent(QCloseEvent* event)
{
    // Without a tray nobody could bring the window back, so there the program ends.
    if (!m_trayIcon->isVisible() || !QSystemTrayIcon::isSystemTrayAvailable())
        return;
    clearGridMark();
    m_gridBtn->hide();
    m_previewBtn->hide();
    hide();
    event->ignore();
}
