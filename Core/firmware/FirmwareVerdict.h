#pragma once

#include <chrono>
#include <QString>

/// The result of a firmware transfer, as the returned camera reports it. The transfer itself
/// has no result: the camera checks the image, and also acknowledges one that it does not run.
enum class FirmwareVerdict {
    Updated,
    NotConnected, ///< the camera is there, but does not report itself as connected
    SameVersion,  ///< it runs the firmware that it had before
};

/// How long a camera may take from the beginning of the transfer until it is back.
constexpr std::chrono::milliseconds kFirmwareInstallTimeout{240000};

[[nodiscard]] inline FirmwareVerdict firmwareVerdict(bool isConnected, const QString& before,
                                                     const QString& now)
{
    if (!isConnected)
        return FirmwareVerdict::NotConnected;
    return before == now ? FirmwareVerdict::SameVersion : FirmwareVerdict::Updated;
}
