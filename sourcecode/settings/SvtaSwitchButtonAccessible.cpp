#include "SvtaSwitchButtonAccessible.h"

#include "SvtaSwitchButton.h"

namespace {

QAccessibleInterface* makeInterface(const QString& /*className*/, QObject* object)
{
    auto* button = qobject_cast<SvtaSwitchButton*>(object);
    return button ? new SvtaSwitchButtonAccessible(button) : nullptr; // owned by Qt's cache
}

} // namespace

void SvtaSwitchButtonAccessible::install()
{
    QAccessible::installFactory(makeInterface); // Qt keeps one entry for one function
}

SvtaSwitchButtonAccessible::SvtaSwitchButtonAccessible(SvtaSwitchButton* button)
    : QAccessibleWidget(button, QAccessible::CheckBox)
{
}

QAccessible::State SvtaSwitchButtonAccessible::state() const
{
    QAccessible::State state = QAccessibleWidget::state();
    state.checkable = true;
    state.checked = button()->isChecked();
    return state;
}

QStringList SvtaSwitchButtonAccessible::actionNames() const
{
    QStringList names = QAccessibleWidget::actionNames();
    if (button()->isEnabled())
        names.prepend(toggleAction());
    return names;
}

void SvtaSwitchButtonAccessible::doAction(const QString& actionName)
{
    if (actionName != toggleAction())
        QAccessibleWidget::doAction(actionName);
    else if (button()->isEnabled())
        button()->toggle();
}

SvtaSwitchButton* SvtaSwitchButtonAccessible::button() const
{
    return static_cast<SvtaSwitchButton*>(widget());
}
