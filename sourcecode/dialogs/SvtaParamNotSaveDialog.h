#pragma once

#include "SvtaBaseDialog.h"

#include <memory>

namespace Ui {
class SvtaParamNotSaveDialog;
}

/// Asks whether to save changed settings before the user leaves the settings page. The close button
/// hides the dialog; after the other two buttons the receiver of the signals hides it.
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
