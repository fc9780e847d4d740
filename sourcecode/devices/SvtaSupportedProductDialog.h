#pragma once

#include <memory>
#include <QDialog>

namespace Ui {
class SvtaSupportedProductDialog;
}

/// The list of supported products, opened from the empty device list. Its object name places it at
/// the bottom of the main window (MaskForm).
class SvtaSupportedProductDialog : public QDialog
{
    Q_OBJECT

public:
    explicit SvtaSupportedProductDialog(QWidget* parent = nullptr);
    ~SvtaSupportedProductDialog() override;

private:
    std::unique_ptr<Ui::SvtaSupportedProductDialog> ui;
};
