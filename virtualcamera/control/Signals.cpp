#include "Signals.h"

#include <csignal>
#include <initializer_list>
#include <sys/signalfd.h>

namespace virtualcamera {

FileDescriptor blockSignals()
{
    sigset_t signals;
    ::sigemptyset(&signals);
    for (const int number : {SIGTERM, SIGINT, SIGHUP, SIGCHLD})
        ::sigaddset(&signals, number);
    ::sigprocmask(SIG_BLOCK, &signals, nullptr);
    ::signal(SIGPIPE, SIG_IGN);
    return FileDescriptor(::signalfd(-1, &signals, SFD_CLOEXEC));
}

} // namespace virtualcamera
