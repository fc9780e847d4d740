#include "FileDescriptor.h"
#include "FileLock.h"

#include <cerrno>
#include <fcntl.h>
#include <QFile>
#include <sys/file.h>
#include <sys/stat.h>
#include <thread>

struct FileLock::Platform
{
    QByteArray path;
    FileDescriptor file;

    ~Platform()
    {
        // Before the lock is released: no other program can hold a lock on the file now.
        if (file)
            ::unlink(path.constData());
    }
};

namespace {

/// flock() has no time-out.
constexpr std::chrono::milliseconds kRetryPause{1};
constexpr mode_t kOwnerOnly = 0600;

/// Whether the file is still the one of this name: its owner before has removed it, and another
/// program may have locked a new one.
bool isCurrent(const FileDescriptor& file, const QByteArray& path)
{
    struct stat opened
    {
    };
    struct stat named
    {
    };
    return ::fstat(file.get(), &opened) == 0 && ::stat(path.constData(), &named) == 0 &&
           opened.st_dev == named.st_dev && opened.st_ino == named.st_ino;
}

} // namespace

FileLock::FileLock() = default;
FileLock::~FileLock() = default;

bool FileLock::acquire(const QString& path, std::chrono::milliseconds limit)
{
    const QByteArray name = QFile::encodeName(path);
    const auto end = std::chrono::steady_clock::now() + limit;
    for (;;) {
        FileDescriptor file(::open(name.constData(), O_RDWR | O_CREAT | O_CLOEXEC, kOwnerOnly));
        if (!file)
            return false;
        if (::flock(file.get(), LOCK_EX | LOCK_NB) == 0) {
            if (!isCurrent(file, name))
                continue;
            m_platform = std::make_unique<Platform>();
            m_platform->path = name;
            m_platform->file = std::move(file);
            return true;
        }
        if ((errno != EWOULDBLOCK && errno != EINTR) || std::chrono::steady_clock::now() >= end)
            return false;
        std::this_thread::sleep_for(kRetryPause);
    }
}
