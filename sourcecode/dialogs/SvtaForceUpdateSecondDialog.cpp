#include "SvtaForceUpdateSecondDialog.h"

#include "ui_SvtaForceUpdateSecondDialog.h"

SvtaForceUpdateSecondDialog::SvtaForceUpdateSecondDialog(QWidget* parent)
    : SvtaBaseDialog(parent)
    , ui(std::make_unique<Ui::SvtaForceUpdateSecondDialog>())
{
    ui->setupUi(this);
    connect(ui->btnCancel, &QPushButton::clicked, this, &QWidget::hide);
    connect(ui->btnConfirm, &QPushButton::clicked, this, &SvtaForceUpdateSecondDialog::sigCloseApp);
}

SvtaForceUpdateSecondDialog::~SvtaForceUpdateSecondDialog() = default;
