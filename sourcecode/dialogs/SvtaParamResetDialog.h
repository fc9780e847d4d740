#pragma once

#include "SvtaBaseDialog.h"

#include <memory>

namespace Ui {
class SvtaParamResetDialog;
}

/// Asks before the settings go back to the factory's. The receiver of the signals hides it.
class SvtaParamResetDialog : public SvtaBaseDialog
{
    Q_OBJECT

public:
    explicit SvtaParamResetDialog(QWidget* parent = nullptr);
    ~SvtaParamResetDialog() override;

signals:
    void sigCancel();
    void sigConfirm();

private:
    std::unique_ptr<Ui::SvtaParamResetDialog> ui;
};
