#include "CameraLock.h"
#include "FileDescriptor.h"
#include "LogCategories.h"

#include <array>
#include <cerrno>
#include <csignal>
#include <cstring>
#include <fcntl.h>
#include <QDir>
#include <QFile>
#include <QFileInfo>
#include <QStandardPaths>
#include <sys/file.h>
#include <sys/stat.h>
#include <thread>
#include <unistd.h>

struct CameraLock::Platform
{
    /// Open on the lock's file, which stays when the lock is released: a file that is removed could
    /// be locked by one program while another makes a new one. Not open when there is no file, and
    /// when another object of this program holds the lock.
    FileDescriptor file;

    ~Platform();
};

namespace {

/// flock() has no time-out.
constexpr std::chrono::milliseconds kRetryPause{1};
constexpr mode_t kEveryone = 0666;
constexpr char kFirmwareMark = 'F';
constexpr char kExchangeMark = 'E';

QString lockFolder()
{
    QString chosen = qEnvironmentVariable("MARVIK_LOCK_DIRECTORY");
    if (!chosen.isEmpty())
        return chosen;
    QString shared = QStringLiteral("/run/marviktools");
    if (QFileInfo(shared).isWritable())
        return shared;
    return QStandardPaths::writableLocation(QStandardPaths::RuntimeLocation) +
           QStringLiteral("/marviktools");
}

QByteArray lockFile(const QByteArray& hidPath)
{
    static const QByteArray folder = [] {
        const QString path = lockFolder();
        QDir().mkpath(path);
        return QFile::encodeName(path);
    }();
    QByteArray name = hidPath;
    name.replace('/', '-');
    return folder + '/' + name.mid(name.startsWith('-') ? 1 : 0) + ".lock";
}

/// A system that protects files of others in a shared folder refuses O_CREAT for one that exists.
FileDescriptor openLockFile(const QByteArray& path)
{
    constexpr int flags = O_RDWR | O_CLOEXEC | O_NOFOLLOW;
    FileDescriptor file(::open(path.constData(), flags));
    if (file || errno != ENOENT)
        return file;
    FileDescriptor created(::open(path.constData(), flags | O_CREAT | O_EXCL, kEveryone));
    if (created) {
        // Whatever the umask is, all users of the camera share the file.
        if (::fchmod(created.get(), kEveryone) != 0)
            qCDebug(hidLog) << "The lock file" << path << "belongs to one user alone";
        return created;
    }
    return FileDescriptor(::open(path.constData(), flags));
}

/// The owner's mark and process, for those who wait.
/// @param process 0 when there is no owner
void writeOwner(int file, CameraLock::Use use, pid_t process)
{
    const QByteArray owner = (use == CameraLock::Use::Firmware ? kFirmwareMark : kExchangeMark) +
                             QByteArray::number(static_cast<qint64>(process)) + '\n';
    if (::pwrite(file, owner.constData(), static_cast<std::size_t>(owner.size()), 0) !=
        owner.size())
        qCDebug(hidLog) << "The owner of a camera's lock cannot be written";
}

CameraLock::Holder readOwner(int file)
{
    std::array<char, 32> text{};
    CameraLock::Holder holder;
    const ssize_t length = ::pread(file, text.data(), text.size() - 1, 0);
    if (length < 2)
        return holder;
    holder.use =
        text.front() == kFirmwareMark ? CameraLock::Use::Firmware : CameraLock::Use::Exchange;
    const QByteArray number(text.data() + 1);
    holder.process = number.left(number.indexOf('\n')).toLongLong();
    // An owner that died has left its mark; the next one has not written its own yet.
    if (::kill(static_cast<pid_t>(holder.process), 0) != 0 && errno == ESRCH)
        return {};
    // A service may be unable to see the processes of other users.
    QFile name(QStringLiteral("/proc/%1/comm").arg(holder.process));
    if (name.open(QIODevice::ReadOnly))
        holder.program = QString::fromLocal8Bit(name.readAll().trimmed());
    return holder;
}

} // namespace

CameraLock::Platform::~Platform()
{
    // The mark must not be taken for that of the next owner.
    if (file)
        writeOwner(file.get(), Use::Exchange, 0);
}

CameraLock::CameraLock() = default;
CameraLock::~CameraLock() = default;

bool CameraLock::acquire(const QByteArray& hidPath, Use use, std::chrono::milliseconds limit)
{
    release();
    const QByteArray path = lockFile(hidPath);
    FileDescriptor file = openLockFile(path);
    const auto end = std::chrono::steady_clock::now() + limit;
    while (file && ::flock(file.get(), LOCK_EX | LOCK_NB) != 0) {
        if (errno == EINTR)
            continue;
        if (errno != EWOULDBLOCK) {
            file = FileDescriptor();
            break;
        }
        m_holder = readOwner(file.get());
        if (m_holder.process == ::getpid()) {
            m_platform = std::make_unique<Platform>();
            return true;
        }
        if (m_holder.use == Use::Firmware || std::chrono::steady_clock::now() >= end)
            return false;
        std::this_thread::sleep_for(kRetryPause);
    }
    if (file)
        writeOwner(file.get(), use, ::getpid());
    else
        qCWarning(hidLog) << "The camera is used without a lock:" << path << std::strerror(errno);
    m_platform = std::make_unique<Platform>();
    m_platform->file = std::move(file);
    return true;
}

void CameraLock::release()
{
    m_platform.reset();
}
