#pragma once

#include "OverlayButton.h"

#include <QLabel>
#include <QString>

/// The style that shows the image of a button over the preview.
inline QString imageStyle(const OverlayButton* button)
{
    return button->findChild<QLabel*>()->styleSheet();
}
