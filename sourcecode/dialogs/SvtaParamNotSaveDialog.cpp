#include "SvtaParamNotSaveDialog.h"

#include "ui_SvtaParamNotSaveDialog.h"

SvtaParamNotSaveDialog::SvtaParamNotSaveDialog(QWidget* parent)
    : SvtaBaseDialog(parent)
    , ui(std::make_unique<Ui::SvtaParamNotSaveDialog>())
{
    ui->setupUi(this);
    connect(ui->btnClose, &QPushButton::clicked, this, &QWidget::hide);
    connect(ui->btnClose, &QPushButton::clicked, this, &SvtaParamNotSaveDialog::sigStay);
    connect(ui->btnCancel, &QPushButton::clicked, this, &SvtaParamNotSaveDialog::sigExit);
    connect(ui->btnConfirm, &QPushButton::clicked, this, &SvtaParamNotSaveDialog::sigSaveAndExit);
}

SvtaParamNotSaveDialog::~SvtaParamNotSaveDialog() = default;
