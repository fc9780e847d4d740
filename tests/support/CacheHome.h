#pragma once

#include <QByteArray>
#include <QString>
#include <QTemporaryDir>

/// While it exists, the cache location is a path of the test that does not exist yet. Where the
/// platform lets the test choose the path, it contains blanks.
class CacheHome
{
public:
    CacheHome();
    ~CacheHome();
    CacheHome(const CacheHome&) = delete;
    CacheHome& operator=(const CacheHome&) = delete;

    /// A folder that is removed with this object; on Linux the parent of the cache location.
    [[nodiscard]] QString path() const { return m_directory.path(); }

private:
    QTemporaryDir m_directory;
    QByteArray m_before;
};
