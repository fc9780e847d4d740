#pragma once

namespace Brivane {

class ILogObserver;

/// From now on the library's log lines go to @p observer, which stays the caller's; nullptr for
/// nobody. When this returns, the one before is not called any more. Any thread.
void setLogObserver(ILogObserver* observer);

} // namespace Brivane
