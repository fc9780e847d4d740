#pragma once

#include "ILogObserver.h"

#include <string>

namespace Brivane {

/// Hands one line to the observer, if there is one that wants lines of this level. Any thread. The
/// text must not hold what a support log should not: no query, no header, no body.
void log(ILogObserver::Level level, const std::string& text);

} // namespace Brivane
