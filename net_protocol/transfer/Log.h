#pragma once

#include "ILogObserver.h"

#include <QLoggingCategory>
#include <string>

namespace Brivane {

/// "marvik.net": the category of every log line of the library.
Q_DECLARE_LOGGING_CATEGORY(netLog)

/// Passes one line to the observer. Without an observer the line goes to Qt's log. Lines whose
/// level is disabled by the rules for the category, or by the observer, are dropped. Any thread.
/// The text must not hold what a support log should not hold: no query, no header, no body.
void log(ILogObserver::Level level, const std::string& text);

} // namespace Brivane
