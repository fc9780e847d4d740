#pragma once

#include <chrono>
#include <memory>
#include <QString>

/// A lock between programs, kept by the system on a file that exists only for it. The system
/// releases it when its owner dies at whatever moment. (QLockFile writes its owner into the file;
/// one whose owner was killed before that blocks everybody for half a minute.)
///
/// Blocks the calling thread. Not for folders on a network.
class FileLock
{
public:
    FileLock();
    ~FileLock();
    FileLock(const FileLock&) = delete;
    FileLock& operator=(const FileLock&) = delete;

    /// Creates the file at @p path, whose folder exists, and takes its lock, or waits for it.
    /// @return false when another object still has it after @p limit, or no file can be created
    [[nodiscard]] bool acquire(const QString& path, std::chrono::milliseconds limit);

private:
    struct Platform;

    std::unique_ptr<Platform> m_platform; ///< null while the lock is not held
};
