#pragma once

#include "SvtaBaseDialog.h"

#include <memory>

namespace Ui {
class SvtaMessageDialog;
}

/// Reports a failed download or installation and asks what to do. Neither button hides it: the
/// receiver of the signals does.
class SvtaMessageDialog : public SvtaBaseDialog
{
    Q_OBJECT

public:
    explicit SvtaMessageDialog(QWidget* parent = nullptr);
    ~SvtaMessageDialog() override;

    /// Sets the texts. @p force leaves the user no choice but the confirming button.
    void setMessage(const QString& message, const QString& confirmText, const QString& cancelText,
                    bool force);

signals:
    void sigRetry();                ///< the confirming button
    void sigDownloadFailedCancel(); ///< the cancelling button

private:
    std::unique_ptr<Ui::SvtaMessageDialog> ui;
};
