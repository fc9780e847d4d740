#pragma once

#include "DeviceSettings.h"

#include <initializer_list>

class QAbstractButton;
class QButtonGroup;
class QWidget;

/// What the controls of settings have in common: buttons that stand for values, and controls whose
/// value the camera has not reported. GUI thread.
namespace SettingControls {

/// Gives each button of a group its value as its id. The buttons are in the order of the values.
void assignValues(QButtonGroup* group, DeviceSetting setting,
                  std::initializer_list<QAbstractButton*> buttons);

/// The value of the checked button; 0 when no button is checked.
[[nodiscard]] int checkedValue(const QButtonGroup* group);

void uncheckAll(QButtonGroup* group);

/// Makes the tab key move to the checked button of a group, and the arrow keys move inside the
/// group. Qt does so only after the group has had the focus.
void keepOneTabStop(QButtonGroup* group);

/// Says in tool tip and accessible description that the camera has not reported the value of a
/// control, or removes that text.
void markUnknown(QWidget* control, bool unknown);
void markUnknown(QButtonGroup* group, bool unknown);

} // namespace SettingControls
