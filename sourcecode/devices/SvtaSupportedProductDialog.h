#pragma once

#include "CameraModels.h"

#include <memory>
#include <QDialog>

namespace Ui {
class SvtaSupportedProductDialog;
}

/// The list of supported products, opened from the empty device list: the models of each group. Its
/// object name places it at the bottom of the main window (MaskForm).
class SvtaSupportedProductDialog : public QDialog
{
    Q_OBJECT

public:
    explicit SvtaSupportedProductDialog(QWidget* parent = nullptr);
    ~SvtaSupportedProductDialog() override;

protected:
    /// Return and Enter press no button: QDialog would press the first one.
    void keyPressEvent(QKeyEvent* event) override;

private:
    int addProducts(CameraModel::Group group, int top);

    std::unique_ptr<Ui::SvtaSupportedProductDialog> ui;
};
