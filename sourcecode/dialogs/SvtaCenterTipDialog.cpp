#include "SvtaCenterTipDialog.h"

#include "ui_SvtaCenterTipDialog.h"

SvtaCenterTipDialog::SvtaCenterTipDialog(QWidget* parent)
    : SvtaBaseDialog(parent)
    , ui(std::make_unique<Ui::SvtaCenterTipDialog>())
{
    ui->setupUi(this);
    connect(ui->btnConfirm, &QPushButton::clicked, this, &QWidget::hide);
}

SvtaCenterTipDialog::~SvtaCenterTipDialog() = default;
