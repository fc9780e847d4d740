#pragma once

#include <QString>

namespace HidDiagnostics {

/// Logs the identity strings of the HID interface at @p path and the first bytes of a report,
/// should one be waiting. Waits at most a few hundredths of a second; nothing depends on the
/// outcome.
void logIdentity(const QString& path);

} // namespace HidDiagnostics
