#pragma once

#include "OverlayButton.h"

/// The button over the preview that switches the preview. Its owner sets image and flag.
class TransPrewBtn : public OverlayButton
{
    Q_OBJECT

public:
    explicit TransPrewBtn(QWidget* parent = nullptr);

    [[nodiscard]] bool isPreviewOpen() const { return m_previewOpen; }
    void setPreviewOpen(bool open) { m_previewOpen = open; }

signals:
    void sigHandleCapture();
    void sigShowPreviewTip();
    void sigHidePreviewTip();

protected:
    bool eventFilter(QObject* watched, QEvent* event) override;

private:
    bool m_previewOpen = false;
};
