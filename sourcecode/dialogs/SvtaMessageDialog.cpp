#include "SvtaMessageDialog.h"

#include "ui_SvtaMessageDialog.h"

SvtaMessageDialog::SvtaMessageDialog(QWidget* parent)
    : SvtaBaseDialog(parent)
    , ui(std::make_unique<Ui::SvtaMessageDialog>())
{
    ui->setupUi(this);
    connect(ui->btnCancel, &QPushButton::clicked, this,
            &SvtaMessageDialog::sigDownloadFailedCancel);
    connect(ui->btnConfirm, &QPushButton::clicked, this, &SvtaMessageDialog::sigRetry);
}

SvtaMessageDialog::~SvtaMessageDialog() = default;

void SvtaMessageDialog::setMessage(const QString& message, const QString& confirmText,
                                   const QString& cancelText, bool force)
{
    constexpr int confirmAloneX = 100;
    constexpr int confirmBesideX = 148;
    constexpr int confirmY = 96;
    m_forced = force;
    ui->btnCancel->setVisible(!force);
    ui->btnConfirm->move(force ? confirmAloneX : confirmBesideX, confirmY);
    ui->labMessage->setText(message);
    ui->btnConfirm->setText(confirmText);
    ui->btnCancel->setText(cancelText);
}

void SvtaMessageDialog::reject()
{
    if (!m_forced)
        emit sigDownloadFailedCancel();
}
