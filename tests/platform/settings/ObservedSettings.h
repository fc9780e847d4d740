#pragma once

#include "CameraDesk.h"
#include "SettingsModel.h"

/// What cameras, file and page are now, in the form of the model.
namespace ObservedSettings {

[[nodiscard]] SettingsModel::Registers registersOf(PluggedCamera& camera);
[[nodiscard]] SettingsModel::Page shownPage(const CameraDesk& desk);
[[nodiscard]] QMap<QString, SettingsModel::Saved> savedFile(const SavedSettings& stored);
/// The requests to a camera since its log was cleared, but for those of the list.
[[nodiscard]] QStringList requestsOf(PluggedCamera& camera);

} // namespace ObservedSettings
