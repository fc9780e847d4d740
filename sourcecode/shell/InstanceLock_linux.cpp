#include "InstanceLock.h"

#include <cerrno>
#include <fcntl.h>
#include <QFile>
#include <sys/file.h>
#include <unistd.h>

bool InstanceLock::isHeld(const QString& path)
{
    // QLockFile holds an flock() on its file, which the kernel releases when the process ends.
    const int file = open(QFile::encodeName(path).constData(), O_RDONLY | O_CLOEXEC | O_NONBLOCK);
    if (file < 0)
        return false;
    const bool held = flock(file, LOCK_SH | LOCK_NB) != 0 && errno == EWOULDBLOCK;
    close(file);
    return held;
}
