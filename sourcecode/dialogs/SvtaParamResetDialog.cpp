#include "SvtaParamResetDialog.h"

#include "ui_SvtaParamResetDialog.h"

SvtaParamResetDialog::SvtaParamResetDialog(QWidget* parent)
    : SvtaBaseDialog(parent)
    , ui(std::make_unique<Ui::SvtaParamResetDialog>())
{
    ui->setupUi(this);
    connect(ui->btnCancel, &QPushButton::clicked, this, &SvtaParamResetDialog::sigCancel);
    connect(ui->btnConfirm, &QPushButton::clicked, this, &SvtaParamResetDialog::sigConfirm);
}

SvtaParamResetDialog::~SvtaParamResetDialog() = default;
