#pragma once

#include "Result.h"

#include <QByteArray>
#include <QCoreApplication>
#include <QString>
#include <QTemporaryDir>

/// A .tar.gz of a few files, made by the system's program "tar", which Windows has too since
/// version 1803.
class TarArchive
{
    Q_DECLARE_TR_FUNCTIONS(TarArchive)

public:
    /// @param folder in which all files of the archive lie
    explicit TarArchive(QString folder);

    /// @param name of a file in the folder
    void add(const QString& name, const QByteArray& content);
    /// Blocks while "tar" runs.
    [[nodiscard]] Result<QByteArray> compressed() const;

private:
    QString m_folder;
    QTemporaryDir m_place;
    bool m_isComplete = false; ///< every file could be written
};
