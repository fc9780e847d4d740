#include "SvtaBaseDialog.h"

#include <QGuiApplication>
#include <QKeyEvent>
#include <QMetaObject>
#include <QMouseEvent>
#include <QScreen>

namespace {

/// The look that all dialogs share; forms add to it what is their own.
constexpr const char* kStyle = R"(
QWidget { font-family: "Microsoft YaHei UI"; font-size: 14px; color: #141414; }
#bgWidget { background-color: #FFFFFF; border: 1px solid #E4E4E4; border-radius: 8px; }
QLabel { background: transparent; }
QLabel#labTitle { font-size: 16px; font-weight: 500; }
QPushButton { border-radius: 4px; }
QPushButton#btnConfirm { background-color: #3476FF; color: #FFFFFF; border: 1px solid transparent; }
QPushButton#btnConfirm:hover { background-color: #5289FF; }
QPushButton#btnConfirm:pressed { background-color: #2A62D9; }
QPushButton#btnConfirm:focus { border: 1px solid #1B4AB0; }
QPushButton#btnCancel { background-color: #FFFFFF; border: 1px solid #DBDBDB; }
QPushButton#btnCancel:hover { border: 1px solid #3476FF; color: #3476FF; }
QPushButton#btnCancel:pressed { background-color: #EEF3FF; }
QPushButton#btnCancel:focus { border: 1px solid #3476FF; }
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
    setStyleSheet(QString::fromLatin1(kStyle));
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
    // Presses are recorded, but a dialog stays where it is: it belongs to the middle of the screen,
    // over the mask. Moves end here, before QDialog sees them.
    Q_UNUSED(event)
}

void SvtaBaseDialog::keyPressEvent(QKeyEvent* event)
{
    if (event->key() == Qt::Key_Escape)
        return;
    // Not QDialog's handling: Return must not press a default button and decide for the user. The
    // release handler ignores the event, so the key goes on to the parent.
    QWidget::keyReleaseEvent(event);
}

void SvtaBaseDialog::resizeEvent(QResizeEvent* event)
{
    QDialog::resizeEvent(event);
    const QRect screen = QGuiApplication::primaryScreen()->geometry();
    move(screen.width() / 2 - width() / 2, screen.height() / 2 - height() / 2);
}
