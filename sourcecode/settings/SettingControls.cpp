#include "SettingControls.h"

#include <QAbstractButton>
#include <QButtonGroup>
#include <QCoreApplication>

void SettingControls::assignValues(QButtonGroup* group, DeviceSetting setting,
                                   std::initializer_list<QAbstractButton*> buttons)
{
    auto value = DeviceSettings::row(setting).values.begin();
    for (QAbstractButton* button : buttons)
        group->setId(button, (value++)->value);
}

int SettingControls::checkedValue(const QButtonGroup* group)
{
    return group->checkedButton() ? group->checkedId() : 0;
}

void SettingControls::uncheckAll(QButtonGroup* group)
{
    // No button of an exclusive group can be unchecked by itself.
    group->setExclusive(false);
    const QList<QAbstractButton*> buttons = group->buttons();
    for (QAbstractButton* button : buttons)
        button->setChecked(false);
    group->setExclusive(true);
}

void SettingControls::keepOneTabStop(QButtonGroup* group)
{
    const auto update = [group] {
        const QList<QAbstractButton*> buttons = group->buttons();
        for (QAbstractButton* button : buttons)
            button->setFocusPolicy(button->isChecked() || !group->checkedButton() ? Qt::TabFocus
                                                                                  : Qt::NoFocus);
    };
    QObject::connect(group, QOverload<QAbstractButton*, bool>::of(&QButtonGroup::buttonToggled),
                     group, update);
    update();
}

void SettingControls::markUnknown(QWidget* control, bool unknown)
{
    const QString text =
        unknown ? QCoreApplication::translate("ParamSettingsPage", "could not be read") : QString();
    if (!unknown && control->accessibleDescription().isEmpty())
        return; // a tool tip of another meaning stays
    control->setToolTip(text);
    control->setAccessibleDescription(text);
}

void SettingControls::markUnknown(QButtonGroup* group, bool unknown)
{
    const QList<QAbstractButton*> buttons = group->buttons();
    for (QAbstractButton* button : buttons)
        markUnknown(button, unknown);
}
