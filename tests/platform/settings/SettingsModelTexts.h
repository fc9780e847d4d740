#pragma once

#include "SettingsModel.h"

/// Parts of the model as text, for comparisons and messages.
namespace SettingsModelTexts {

[[nodiscard]] QString described(const SettingsModel::Registers& registers);
[[nodiscard]] QString described(const SettingsModel::Faults& faults);
[[nodiscard]] QString described(const SettingsModel::Page& page);
[[nodiscard]] QString described(const QMap<QString, SettingsModel::Saved>& file);

} // namespace SettingsModelTexts
