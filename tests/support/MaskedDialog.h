#pragma once

#include "MaskForm.h"

#include <QApplication>
#include <QDialog>
#include <QWindow>

/// The dialog that is shown over @p mask; null when there is none.
inline const QDialog* dialogOver(const MaskForm* mask)
{
    const QWidgetList windows = QApplication::topLevelWidgets();
    for (const QWidget* window : windows) {
        const auto* dialog = qobject_cast<const QDialog*>(window);
        if (dialog && dialog->isVisible() && mask->isVisible() && dialog->windowHandle() &&
            dialog->windowHandle()->transientParent() == mask->windowHandle())
            return dialog;
    }
    return nullptr;
}
