#pragma once

#include <chrono>
#include <memory>
#include <QByteArray>
#include <QString>

/// The right to talk to one camera. Every open handle of a HID interface receives every answer of
/// the camera, so programs that use the same camera at once would read each other's answers, and a
/// command during a firmware transfer can spoil it. All programs of this package take this lock for
/// an exchange and hold it for a transfer.
///
/// The lock is advisory and belongs to the HID interface. The system releases it when its owner
/// dies. On Linux it is a file lock (flock) on a file in the folder of the locks: the value of
/// MARVIK_LOCK_DIRECTORY, else /run/marviktools, which all users of the computer share, else
/// "marviktools" in the user's runtime folder. On Windows it is a mutex of the session's name space
/// "Global". Where neither can be made, the exchange takes place without a lock, and the log says
/// so.
///
/// Blocks the calling thread. A lock is acquired and released on the same thread (Windows).
class CameraLock
{
public:
    /// What the owner does with the camera.
    enum class Use {
        Exchange, ///< ends within seconds
        Firmware  ///< takes minutes
    };

    /// Who holds a lock.
    struct Holder
    {
        qint64 process = 0; ///< 0 when it is not known
        QString program;    ///< name of its executable file; empty when it is not known
        Use use = Use::Exchange;

        /// For people and logs: "marvikctl (process 123)".
        [[nodiscard]] QString toString() const;
    };

    CameraLock();
    ~CameraLock();
    CameraLock(const CameraLock&) = delete;
    CameraLock& operator=(const CameraLock&) = delete;

    /// Takes the lock of the interface at @p hidPath, or waits for it.
    /// @param limit for the wait. A lock that is held for a firmware transfer is not waited for.
    /// @return false when another program holds it; see holder(). A program that holds the lock may
    ///         talk to the camera on every thread; it keeps its own commands apart.
    bool acquire(const QByteArray& hidPath, Use use, std::chrono::milliseconds limit);
    void release();
    [[nodiscard]] bool isHeld() const { return m_platform != nullptr; }

    /// Who held the lock when acquire() returned false.
    [[nodiscard]] const Holder& holder() const { return m_holder; }

private:
    struct Platform;

    std::unique_ptr<Platform> m_platform; ///< null while the lock is not held
    Holder m_holder;
};
