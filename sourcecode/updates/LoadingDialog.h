#pragma once

#include "SvtaBaseDialog.h"

#include <memory>

class QMovie;

namespace Ui {
class LoadingDialog;
}

/// Shown while firmware is written into a camera.
class LoadingDialog : public SvtaBaseDialog
{
    Q_OBJECT

public:
    explicit LoadingDialog(QWidget* parent = nullptr);
    ~LoadingDialog() override;

    /// Does nothing: the user cannot close the dialog while a camera is being written.
    void reject() override;

protected:
    void showEvent(QShowEvent* event) override;
    void hideEvent(QHideEvent* event) override;

private:
    std::unique_ptr<Ui::LoadingDialog> ui;
    QMovie* m_movie;
};
