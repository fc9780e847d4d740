#pragma once

#include "SvtaBaseDialog.h"

#include <memory>

namespace Ui {
class SvtaForceUpdateSecondDialog;
}

/// Asks before a forced update is cancelled. Cancelling it ends the program.
class SvtaForceUpdateSecondDialog : public SvtaBaseDialog
{
    Q_OBJECT

public:
    explicit SvtaForceUpdateSecondDialog(QWidget* parent = nullptr);
    ~SvtaForceUpdateSecondDialog() override;

signals:
    void sigCloseApp();

private:
    std::unique_ptr<Ui::SvtaForceUpdateSecondDialog> ui;
};
