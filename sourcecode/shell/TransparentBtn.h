#pragma once

#include <QLabel>
#include <QWidget>

/// The button over the preview that switches the grid of guide lines. Its owner sets the image.
class TransparentBtn : public QWidget
{
    Q_OBJECT

public:
    explicit TransparentBtn(QWidget* parent = nullptr);

    void setLabelStyle(const QString& styleSheet) { m_label.setStyleSheet(styleSheet); }
    [[nodiscard]] QString labelStyle() const { return m_label.styleSheet(); }

signals:
    void sigShowLine();

protected:
    bool eventFilter(QObject* watched, QEvent* event) override;

private:
    QLabel m_label;
};
