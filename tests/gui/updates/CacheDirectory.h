#pragma once

#include "CacheHome.h"

#include <QByteArray>
#include <QString>
#include <QStringList>

/// A separate cache location, as long as this object exists. It is not created before it is needed,
/// as on a new account.
class CacheDirectory
{
public:
    /// Where the program keeps its files.
    [[nodiscard]] QString path() const;
    [[nodiscard]] QString filePath(const QString& name) const;
    [[nodiscard]] QStringList files() const;
    [[nodiscard]] QByteArray contentOf(const QString& name) const;
    /// Creates the directory with this file in it.
    [[nodiscard]] bool put(const QString& name, const QByteArray& content) const;

private:
    CacheHome m_home;
};
