#include "SvtaMoreWidget.h"

#include "ui_SvtaMoreWidget.h"

#include <QKeyEvent>

SvtaMoreWidget::SvtaMoreWidget(QWidget* parent)
    : QWidget(parent)
    , ui(std::make_unique<Ui::SvtaMoreWidget>())
{
    ui->setupUi(this);
    setAttribute(Qt::WA_StyledBackground);
    setWindowFlags(windowFlags() | Qt::Popup | Qt::NoDropShadowWindowHint);
    connect(ui->btnAbout, &QPushButton::clicked, this, &SvtaMoreWidget::sigBtnAboutclicked);
    connect(ui->btnQuit, &QPushButton::clicked, this, &SvtaMoreWidget::sigBtnQuitclicked);
}

SvtaMoreWidget::~SvtaMoreWidget() = default;

void SvtaMoreWidget::showEvent(QShowEvent* event)
{
    // The first arrow key goes to the first entry, and none looks chosen before it.
    setFocus(Qt::PopupFocusReason);
    QWidget::showEvent(event);
}

void SvtaMoreWidget::keyPressEvent(QKeyEvent* event)
{
    switch (event->key()) {
    case Qt::Key_Return:
    case Qt::Key_Enter:
        if (auto* button = qobject_cast<QPushButton*>(focusWidget()))
            button->click();
        break;
    case Qt::Key_Down:
        focusNextChild();
        break;
    case Qt::Key_Up:
        focusPreviousChild();
        break;
    case Qt::Key_F10:
        close();
        break;
    default:
        QWidget::keyPressEvent(event);
    }
}
