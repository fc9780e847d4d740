#pragma once

#include "SvtaBaseDialog.h"

#include <memory>

namespace Ui {
class SvtaParamSaveDialog;
}

/// Asks before the settings are saved. The receiver of the signals hides it.
class SvtaParamSaveDialog : public SvtaBaseDialog
{
    Q_OBJECT

public:
    explicit SvtaParamSaveDialog(QWidget* parent = nullptr);
    ~SvtaParamSaveDialog() override;

signals:
    void sigCancel();
    void sigConfirm();

private:
    std::unique_ptr<Ui::SvtaParamSaveDialog> ui;
};
