#pragma once

#include <QAccessibleWidget>

class SvtaSwitchButton;

/// Presents a switch button to assistive programs as a check box, and lets them toggle it.
class SvtaSwitchButtonAccessible : public QAccessibleWidget
{
public:
    /// Registers the interface for all switch buttons; further calls change nothing.
    static void install();

    explicit SvtaSwitchButtonAccessible(SvtaSwitchButton* button);

    [[nodiscard]] QAccessible::State state() const override;
    [[nodiscard]] QStringList actionNames() const override;
    void doAction(const QString& actionName) override;

private:
    [[nodiscard]] SvtaSwitchButton* button() const;
};
