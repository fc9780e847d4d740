#pragma once

#include <QLabel>

/// The text in the preview area that says why there is no picture. It is as high as its text and
/// stands on the bottom of its place in the form.
class PreviewReason : public QLabel
{
    Q_OBJECT

public:
    explicit PreviewReason(QWidget* parent = nullptr);

    /// Shows the text; hides itself for an empty one.
    void say(const QString& reason);
};
