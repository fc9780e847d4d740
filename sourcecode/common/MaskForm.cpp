#include "MaskForm.h"

#include <QApplication>
#include <QDialog>
#include <QEvent>
#include <QShowEvent>
#include <QWindow>

MaskForm::MaskForm(QWidget* parent)
    : QWidget(parent, Qt::Tool | Qt::FramelessWindowHint)
    , m_covered(QApplication::activeWindow())
{
    QPalette dark = palette();
    dark.setBrush(QPalette::Window, QColor(0, 0, 0, 255));
    setPalette(dark);
    setWindowOpacity(0.5);
    setAttribute(Qt::WA_ShowWithoutActivating);
}

void MaskForm::setCoveredWidget(QWidget* widget)
{
    if (!widget)
        return;
    if (m_covered)
        m_covered->window()->removeEventFilter(this);
    m_covered = widget;
    m_covered->window()->installEventFilter(this);
}

void MaskForm::follow(QDialog* dialog)
{
    if (!dialog || dialog == m_dialog)
        return;
    if (m_dialog) {
        m_dialog->removeEventFilter(this);
        disconnect(m_dialog, &QObject::destroyed, this, nullptr);
    }
    m_dialog = dialog;
    m_dialog->installEventFilter(this);
    connect(m_dialog, &QObject::destroyed, this, [this] { m_dialog = nullptr; });
}

void MaskForm::showUnder(QDialog* dialog)
{
    follow(dialog);
    dialog->show();
}

void MaskForm::raiseDialog()
{
    if (!isVisible() || !m_dialog)
        return;
    raise();
    m_dialog->raise();
}

void MaskForm::showEvent(QShowEvent* event)
{
    if (m_covered)
        setGeometry(m_covered->window()->geometry());
    QWidget::showEvent(event);
}

bool MaskForm::eventFilter(QObject* watched, QEvent* event)
{
    // Spontaneous: the window manager has minimised or restored the dialog with its window, and the
    // mask with them. It restores a dialog only together with the windows that it belongs to.
    if (m_dialog && watched == m_dialog && !event->spontaneous()) {
        if (event->type() == QEvent::Show) {
            // A dialog that is shown while its window is minimised blocks the window, and a window
            // manager may not restore a blocked window.
            if (m_covered && m_covered->window()->isMinimized())
                m_covered->window()->showNormal();
            show();
            placeDialog();
            // Keeps the dialog above the mask: without this, a click on the mask would raise the
            // mask over the dialog.
            if (QWindow* window = m_dialog->windowHandle())
                window->setTransientParent(windowHandle());
            m_dialog->raise();
        } else if (event->type() == QEvent::Hide) {
            hide();
        }
    }
    // A window manager may move the covered window after the dialog was shown.
    const bool moved = event->type() == QEvent::Move || event->type() == QEvent::Resize;
    if (moved && isVisible() && m_covered && watched == m_covered->window())
        cover();
    return QWidget::eventFilter(watched, event);
}

void MaskForm::cover()
{
    setGeometry(m_covered->window()->geometry());
    placeDialog();
}

void MaskForm::placeDialog()
{
    if (!m_covered || !m_dialog)
        return;
    const QRect covered = m_covered->window()->geometry();
    const int x = covered.x() + (covered.width() - m_dialog->width()) / 2;
    const bool atBottom = m_dialog->objectName() == QLatin1String("SvtaSupportedProductDialog");
    const int y = atBottom ? covered.y() + covered.height() - m_dialog->height()
                           : covered.y() + (covered.height() - m_dialog->height()) / 2;
    m_dialog->move(x, y);
}
