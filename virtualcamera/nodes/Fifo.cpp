#include "Fifo.h"

#include <array>
#include <cerrno>
#include <fcntl.h>
#include <stdexcept>
#include <sys/stat.h>
#include <system_error>
#include <unistd.h>

namespace virtualcamera {

namespace {

// A packet takes a page of the pipe. The kernel's hidraw also queues 64 reports per handle and
// drops the newest ones when the program does not read.
constexpr int kQueueBytes = 64 * 4096;

} // namespace

Fifo Fifo::create(const std::string& path)
{
    const auto fail = [&path](const char* what) {
        throw std::system_error(errno, std::generic_category(), std::string(what) + ' ' + path);
    };
    // Created under another name and renamed, so that the node is never missing.
    const std::string fresh = path + ".new";
    ::unlink(fresh.c_str());
    if (::mkfifo(fresh.c_str(), 0666) != 0)
        fail("mkfifo");
    Fifo fifo;
    fifo.m_fd.reset(::open(fresh.c_str(), O_RDWR | O_NONBLOCK | O_CLOEXEC));
    struct stat status
    {
    };
    if (!fifo.m_fd || ::fchmod(fifo.m_fd.get(), 0666) != 0 ||
        ::fstat(fifo.m_fd.get(), &status) != 0)
        fail("open");
    fifo.m_inode = status.st_ino;
    const int flags = ::fcntl(fifo.m_fd.get(), F_GETFL);
    if (::fcntl(fifo.m_fd.get(), F_SETFL, flags | O_DIRECT) != 0)
        fail("set packet mode of");
    ::fcntl(fifo.m_fd.get(), F_SETPIPE_SZ, kQueueBytes);
    if (::rename(fresh.c_str(), path.c_str()) != 0)
        fail("rename");
    return fifo;
}

bool Fifo::push(const std::vector<std::uint8_t>& packet)
{
    return ::write(m_fd.get(), packet.data(), packet.size()) >= 0;
}

bool Fifo::pop()
{
    std::array<char, 4096> buffer{};
    return ::read(m_fd.get(), buffer.data(), buffer.size()) > 0;
}

void Fifo::drain()
{
    while (pop()) {
    }
}

} // namespace virtualcamera
