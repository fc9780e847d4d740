#pragma once

namespace Brivane {

class ILogObserver;

/// From now on the library passes its log lines to @p observer, which the caller keeps alive. With
/// nullptr they go to Qt's log. In both cases the rules for the logging category "marvik.net"
/// decide which lines are logged: all by default. When this returns, the observer before is not
/// called any more. Any thread.
void setLogObserver(ILogObserver* observer);

} // namespace Brivane
