#pragma once

#include <QString>

/// Why there is no preview.
struct PreviewFailure
{
    enum class Cause {
        None,
        InUse,        ///< by another program; the detail is its name
        NoPermission, ///< the user may not open the camera
        PartMissing,  ///< of the platform's capture framework; the detail names it
        Gone,         ///< the device has left
        Other,
    };

    Cause cause = Cause::None;
    QString detail; ///< empty when the platform does not tell
};
