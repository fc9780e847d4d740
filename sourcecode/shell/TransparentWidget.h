#pragma once

#include <QLabel>
#include <QWidget>

/// The grid of guide lines over the preview. The main window keeps it in place.
class TransparentWidget : public QWidget
{
    Q_OBJECT

public:
    explicit TransparentWidget(QWidget* parent = nullptr);

protected:
    void showEvent(QShowEvent* event) override;

private:
    QLabel m_label;
};
