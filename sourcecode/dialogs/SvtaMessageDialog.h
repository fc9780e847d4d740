#pragma once

#include "SvtaBaseDialog.h"

#include <memory>

namespace Ui {
class SvtaMessageDialog;
}

/// Reports a failed download or installation and asks what to do. The buttons do not hide it; the
/// receiver of the signals does.
class SvtaMessageDialog : public SvtaBaseDialog
{
    Q_OBJECT

public:
    explicit SvtaMessageDialog(QWidget* parent = nullptr);
    ~SvtaMessageDialog() override;

    /// Sets the texts. With @p force there is no cancelling button.
    void setMessage(const QString& message, const QString& confirmText, const QString& cancelText,
                    bool force);

    /// Called when the window manager closes the dialog: does the same as the cancelling button,
    /// or nothing where the user has no such button.
    void reject() override;

signals:
    void sigRetry();                ///< the confirming button
    void sigDownloadFailedCancel(); ///< the cancelling button

private:
    std::unique_ptr<Ui::SvtaMessageDialog> ui;
    bool m_forced = false;
};
