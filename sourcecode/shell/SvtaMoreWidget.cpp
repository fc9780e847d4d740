#include "SvtaMoreWidget.h"

#include "ui_SvtaMoreWidget.h"

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
