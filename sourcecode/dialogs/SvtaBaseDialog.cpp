#include "SvtaBaseDialog.h"

#include "Style.h"

#include <QGuiApplication>
#include <QKeyEvent>
#include <QMetaObject>
#include <QMouseEvent>
#include <QScreen>

namespace {

/// The style that all dialogs share. A form adds the rules that it alone needs.
constexpr const char* kStyle = R"(
QWidget { font-family: "Microsoft YaHei UI"; font-size: 14px; color: @text; }
#bgWidget { background-color: @surface; border: 1px solid @panel-line; border-radius: 8px; }
QLabel { background: transparent; }
QLabel#labTitle { font-size: 16px; font-weight: 500; }
QPushButton { border-radius: 4px; }
QPushButton#btnConfirm { background-color: @accent; color: @surface; border: 1px solid transparent; }
QPushButton#btnConfirm:hover { background-color: @accent-hover; }
QPushButton#btnConfirm:pressed { background-color: @accent-pressed; }
QPushButton#btnConfirm:focus { border: 1px solid @focus; }
QPushButton#btnCancel { background-color: @surface; border: 1px solid @control-line; }
QPushButton#btnCancel:hover { border: 1px solid @accent; color: @accent; }
QPushButton#btnCancel:pressed { background-color: @accent-light; }
QPushButton#btnCancel:focus { border: 1px solid @accent; }
)";

} // namespace

SvtaBaseDialog::SvtaBaseDialog(QWidget* parent)
    : QDialog(parent, Qt::WindowFlags())
{
    if (objectName().isEmpty())
        setObjectName(QStringLiteral("SvtaBaseDialog"));
    resize(400, 300);
    setWindowTitle(tr("Dialog"));
    QMetaObject::connectSlotsByName(this);
    setAttribute(Qt::WA_TranslucentBackground);
    setWindowFlags(Qt::Dialog | Qt::FramelessWindowHint);
    setStyleSheet(Style::sheet(kStyle));
    raise();
}

SvtaBaseDialog::~SvtaBaseDialog() = default;

void SvtaBaseDialog::mousePressEvent(QMouseEvent* event)
{
    QWidget::mousePressEvent(event);
    if ((event->button() == Qt::LeftButton) == m_movable) {
        m_dragOrigin = event->globalPos();
        m_pressed = true;
        event->accept();
    }
}

void SvtaBaseDialog::mouseReleaseEvent(QMouseEvent* event)
{
    QWidget::mouseReleaseEvent(event);
    m_pressed = false;
}

void SvtaBaseDialog::mouseMoveEvent(QMouseEvent* event)
{
    // The user cannot move a dialog: it stays over the mask. The event is not passed on to QDialog.
    Q_UNUSED(event)
}

void SvtaBaseDialog::keyPressEvent(QKeyEvent* event)
{
    if (event->key() == Qt::Key_Escape)
        return;
    // QDialog::keyPressEvent() is not called, because on Return it presses the default button. The
    // release handler ignores the event, so Qt passes the key on to the parent.
    QWidget::keyReleaseEvent(event);
}

void SvtaBaseDialog::resizeEvent(QResizeEvent* event)
{
    QDialog::resizeEvent(event);
    const QRect screen = QGuiApplication::primaryScreen()->geometry();
    move(screen.width() / 2 - width() / 2, screen.height() / 2 - height() / 2);
}
