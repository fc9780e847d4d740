#include "SvtaParamSaveDialog.h"

#include "ui_SvtaParamSaveDialog.h"

SvtaParamSaveDialog::SvtaParamSaveDialog(QWidget* parent)
    : SvtaBaseDialog(parent)
    , ui(std::make_unique<Ui::SvtaParamSaveDialog>())
{
    ui->setupUi(this);
    connect(ui->btnCancel, &QPushButton::clicked, this, &SvtaParamSaveDialog::sigCancel);
    connect(ui->btnConfirm, &QPushButton::clicked, this, &SvtaParamSaveDialog::sigConfirm);
}

SvtaParamSaveDialog::~SvtaParamSaveDialog() = default;
