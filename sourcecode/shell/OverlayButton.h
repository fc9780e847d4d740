#pragma once

#include <QLabel>
#include <QWidget>

/// A round-cornered image button that floats over the preview in a window of its own. Kinds of it
/// watch the events of its label.
class OverlayButton : public QWidget
{
    Q_OBJECT

public:
    void setLabelStyle(const QString& styleSheet) { m_label.setStyleSheet(styleSheet); }
    [[nodiscard]] QString labelStyle() const { return m_label.styleSheet(); }

protected:
    /// @param image the style that shows the button's image; its owner changes it later
    OverlayButton(const QString& name, const QString& accessibleName, const QString& image,
                  QWidget* parent);

    [[nodiscard]] bool isLabel(const QObject* watched) const { return watched == &m_label; }

private:
    QLabel m_label;
};
