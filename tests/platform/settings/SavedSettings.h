#pragma once

#include <memory>
#include <QByteArray>
#include <QMap>
#include <QString>
#include <QStringList>
#include <QTemporaryDir>

/// The program's cache location for the duration of a test, and the saved settings in it.
class SavedSettings
{
public:
    /// Makes an empty, writable cache location.
    SavedSettings();
    /// Places the cache location below @p directory.
    explicit SavedSettings(const QString& directory);
    ~SavedSettings();
    SavedSettings(const SavedSettings&) = delete;
    SavedSettings& operator=(const SavedSettings&) = delete;

    /// The path of the file.
    [[nodiscard]] QString path() const { return m_location + QStringLiteral("/device.ini"); }
    [[nodiscard]] bool exists() const;
    [[nodiscard]] QByteArray contents() const;
    /// Writes the file.
    [[nodiscard]] bool put(const QByteArray& contents) const;

    /// The names of the groups as they are between the brackets.
    [[nodiscard]] QStringList groups() const;
    /// The lines of a group as numbers.
    [[nodiscard]] QMap<QString, int> group(const QString& name) const;
    /// Every file in and below the cache location.
    [[nodiscard]] QStringList files() const;

private:
    void use(const QString& directory);

    QTemporaryDir m_directory;
    QByteArray m_previous;
    bool m_wasSet = false;
    QString m_location;
};
