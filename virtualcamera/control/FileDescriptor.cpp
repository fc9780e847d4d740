#include "FileDescriptor.h"

#include <cerrno>
#include <sys/socket.h>
#include <unistd.h>

namespace virtualcamera {

void FileDescriptor::reset(int fd)
{
    if (m_fd >= 0)
        ::close(m_fd);
    m_fd = fd;
}

FileDescriptor acceptConnection(const FileDescriptor& listener)
{
    for (;;) {
        FileDescriptor socket(::accept4(listener.get(), nullptr, nullptr, SOCK_CLOEXEC));
        if (socket || (errno != EINTR && errno != ECONNABORTED))
            return socket;
    }
}

} // namespace virtualcamera
