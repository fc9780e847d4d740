#pragma once

#include "SvtaBaseDialog.h"

#include <memory>

namespace Ui {
class SvtaCenterTipDialog;
}

/// Explains person centring.
class SvtaCenterTipDialog : public SvtaBaseDialog
{
    Q_OBJECT

public:
    explicit SvtaCenterTipDialog(QWidget* parent = nullptr);
    ~SvtaCenterTipDialog() override;

private:
    std::unique_ptr<Ui::SvtaCenterTipDialog> ui;
};
