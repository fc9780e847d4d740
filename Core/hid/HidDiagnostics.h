#pragma once

#include <QString>

namespace HidDiagnostics {

/// Logs the identity strings of the HID interface at @p path and the first bytes of a report, if
/// the camera has sent one. Waits at most 20 ms for it; nothing depends on the result.
void logIdentity(const QString& path);

} // namespace HidDiagnostics
