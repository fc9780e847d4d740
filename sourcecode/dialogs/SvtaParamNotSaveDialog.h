#pragma once

#include "SvtaBaseDialog.h"

#include <memory>

namespace Ui {
class SvtaParamNotSaveDialog;
}

/// Asks what becomes of unsaved settings when the user leaves them. Its close button only closes
/// it; after the other two the receiver of the signals hides it.
class SvtaParamNotSaveDialog : public SvtaBaseDialog
{
    Q_OBJECT

public:
    explicit SvtaParamNotSaveDialog(QWidget* parent = nullptr);
    ~SvtaParamNotSaveDialog() override;

signals:
    void sigExit();
    void sigSaveAndExit();
    void sigStay(); ///< the dialog was closed without an answer

private:
    std::unique_ptr<Ui::SvtaParamNotSaveDialog> ui;
};
