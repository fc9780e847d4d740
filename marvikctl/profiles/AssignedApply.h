#pragma once

#include "AssignedSettings.h"
#include "Report.h"
#include "SettingsWriter.h"

/// Gives a camera what is assigned to it.
namespace AssignedApply {

/// @param link open
void to(CameraLink& link, const ProfileFolders& folders, SettingsWriter::Mode mode,
        CameraResult& result);

} // namespace AssignedApply
