#pragma once

#include <QAccessibleWidget>

class SvtaSwitchButton;

/// Tells assistive programs that a switch button is a box to check, and lets them toggle it.
class SvtaSwitchButtonAccessible : public QAccessibleWidget
{
public:
    /// Makes the interface known for all switch buttons; further calls change nothing.
    static void install();

    explicit SvtaSwitchButtonAccessible(SvtaSwitchButton* button);

    [[nodiscard]] QAccessible::State state() const override;
    [[nodiscard]] QStringList actionNames() const override;
    void doAction(const QString& actionName) override;

private:
    [[nodiscard]] SvtaSwitchButton* button() const;
};
