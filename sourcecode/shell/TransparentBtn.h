#pragma once

#include "OverlayButton.h"

/// The button over the preview that switches the grid of guide lines. Its owner sets the image.
class TransparentBtn : public OverlayButton
{
    Q_OBJECT

public:
    explicit TransparentBtn(QWidget* parent = nullptr);

signals:
    void sigShowLine();

protected:
    bool eventFilter(QObject* watched, QEvent* event) override;
};
