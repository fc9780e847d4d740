#include "SvtaSupportedProductDialog.h"

#include "ui_SvtaSupportedProductDialog.h"

SvtaSupportedProductDialog::SvtaSupportedProductDialog(QWidget* parent)
    : QDialog(parent)
    , ui(std::make_unique<Ui::SvtaSupportedProductDialog>())
{
    ui->setupUi(this);
    setAttribute(Qt::WA_TranslucentBackground);
    setWindowFlags(Qt::Dialog | Qt::FramelessWindowHint);
    connect(ui->btnClose, &QPushButton::clicked, this, &QWidget::hide);
}

SvtaSupportedProductDialog::~SvtaSupportedProductDialog() = default;
