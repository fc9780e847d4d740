#pragma once

#include <QByteArray>
#include <QString>
#include <QTemporaryDir>

/// While it exists, the cache location is one of the test's own, which nobody has made yet. Where
/// the platform lets a test choose it, its path has blanks.
class CacheHome
{
public:
    CacheHome();
    ~CacheHome();
    CacheHome(const CacheHome&) = delete;
    CacheHome& operator=(const CacheHome&) = delete;

    /// A folder that goes with it; on Linux the one around the cache location.
    [[nodiscard]] QString path() const { return m_directory.path(); }

private:
    QTemporaryDir m_directory;
    QByteArray m_before;
};
