#include "SvtaConfirmDialog.h"

#include "ui_SvtaConfirmDialog.h"

SvtaConfirmDialog::SvtaConfirmDialog(const QString& name, const QString& question, QWidget* parent)
    : SvtaBaseDialog(parent)
    , ui(std::make_unique<Ui::SvtaConfirmDialog>())
{
    ui->setupUi(this);
    setObjectName(name);
    ui->labMessage->setText(question);
    connect(ui->btnCancel, &QPushButton::clicked, this, &SvtaConfirmDialog::sigCancel);
    connect(ui->btnConfirm, &QPushButton::clicked, this, &SvtaConfirmDialog::sigConfirm);
}

SvtaConfirmDialog::~SvtaConfirmDialog() = default;
