#pragma once

#include <QLabel>
#include <QWidget>

/// A button with an image and round corners over the preview, in its own window. Subclasses filter
/// the events of its label.
class OverlayButton : public QWidget
{
    Q_OBJECT

public:
    void setLabelStyle(const QString& styleSheet) { m_label.setStyleSheet(styleSheet); }

protected:
    /// @param image the style sheet with the first image; see setLabelStyle()
    OverlayButton(const QString& name, const QString& accessibleName, const QString& image,
                  QWidget* parent);

    [[nodiscard]] bool isLabel(const QObject* watched) const { return watched == &m_label; }

private:
    QLabel m_label;
};
