#pragma once

#include <QLockFile>
#include <QString>

/// The lock by which the instances of one user find out which of them runs.
///
/// Only a live process of this machine counts as the holder. A lock file that no process holds is
/// removed, whatever it contains: the lock of a process that has crashed, of a machine that had
/// another host name, an empty or a damaged file.
class InstanceLock
{
public:
    enum class Result {
        Taken,       ///< this object holds the lock until it is destroyed
        HeldByOther, ///< another process holds it
        Unusable,    ///< nobody holds it, but the file cannot be written; see problem()
    };

    /// @param path the lock file; its folder exists
    explicit InstanceLock(const QString& path);

    /// Tries once to take the lock.
    [[nodiscard]] Result take();

    /// Why the lock is unusable, with the path of the file; for the log.
    [[nodiscard]] QString problem() const;

private:
    /// Whether a live process holds the file. Defined in InstanceLock_<platform>.cpp.
    static bool isHeld(const QString& path);
    [[nodiscard]] bool isHeldNowOrSoon() const;

    QString m_path;
    QLockFile m_file;
};
