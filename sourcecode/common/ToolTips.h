#pragma once

#include <QObject>
#include <QWidget>

/// Shows the tool tips of all widgets, as long as it lives, and gives them one look.
///
/// Qt takes the look of a tool tip from the style sheets of its widget and of the ancestors, and a
/// declaration without a selector, like an image or a transparent background, belongs to the tool
/// tip too. Here it comes from the sheet of a widget that is not shown.
///
/// GUI thread.
class ToolTips : public QObject
{
    Q_OBJECT

public:
    explicit ToolTips(QObject* parent = nullptr);
    ~ToolTips() override;

    bool eventFilter(QObject* watched, QEvent* event) override;

private:
    void show(const QWidget& widget, const QPoint& position);

    QWidget m_look;
};
