#pragma once

#include "SvtaBaseDialog.h"

#include <memory>

namespace Ui {
class SvtaConfirmDialog;
}

/// The base of the questions that are answered with "Cancel" or "Confirm". The receiver of the
/// signals hides the dialog.
class SvtaConfirmDialog : public SvtaBaseDialog
{
    Q_OBJECT

public:
    ~SvtaConfirmDialog() override;

signals:
    void sigCancel();
    void sigConfirm();

protected:
    /// @param name the object name
    SvtaConfirmDialog(const QString& name, const QString& question, QWidget* parent);

private:
    std::unique_ptr<Ui::SvtaConfirmDialog> ui;
};
