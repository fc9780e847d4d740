#pragma once

#include <QCryptographicHash>
#include <QDir>
#include <QDirIterator>
#include <QFile>
#include <QMap>
#include <QProcess>
#include <QSettings>
#include <QStandardPaths>
#include <QString>
#include <qt_windows.h>

/// The installed program, as the tests of installers see it.
namespace Installation {

constexpr int kTimeoutMs = 60000;

inline QString localData()
{
    return QStandardPaths::writableLocation(QStandardPaths::GenericDataLocation);
}

/// A value of the program's entry in the list of programs.
/// @param root "HKEY_CURRENT_USER" or "HKEY_LOCAL_MACHINE"
inline QVariant entry(const QString& root, const QString& name,
                      const QString& key = QStringLiteral("MarvikTools"))
{
    // The list of 64-bit programs, which a test is, too.
    return QSettings(root +
                         QStringLiteral("\\Software\\Microsoft\\Windows\\CurrentVersion\\"
                                        "Uninstall\\") +
                         key,
                     QSettings::NativeFormat)
        .value(name);
}

/// Runs @p program and waits for it.
/// @return its exit code; -1 when it does not end in time
inline int run(const QString& program, const QString& arguments, const QString& folder = QString())
{
    QProcess process;
    process.setNativeArguments(arguments);
    process.setWorkingDirectory(folder);
    process.start(program, {});
    return process.waitForFinished(kTimeoutMs) ? process.exitCode() : -1;
}

/// The paths of all files in @p folder, sorted. Opens none: an open file cannot be removed.
inline QStringList fileNames(const QString& folder)
{
    QStringList names;
    QDirIterator walk(folder, QDir::Files | QDir::Hidden, QDirIterator::Subdirectories);
    while (walk.hasNext())
        names.append(walk.next().mid(folder.size()));
    names.sort();
    return names;
}

/// The hash of each file in @p folder, by its path there.
inline QMap<QString, QByteArray> contents(const QString& folder)
{
    QMap<QString, QByteArray> files;
    for (const QString& name : fileNames(folder)) {
        QFile file(folder + name);
        QCryptographicHash hash(QCryptographicHash::Sha1);
        if (file.open(QIODevice::ReadOnly) && hash.addData(&file))
            files.insert(name, hash.result());
    }
    return files;
}

/// Unlike QFileInfo, it does not follow a shortcut to its target.
inline bool isThere(const QString& path)
{
    const QString native = QDir::toNativeSeparators(path);
    return ::GetFileAttributesW(reinterpret_cast<const wchar_t*>(native.utf16())) !=
           INVALID_FILE_ATTRIBUTES;
}

inline bool writeFile(const QString& path, const QByteArray& text = "x")
{
    QFile file(path);
    return file.open(QIODevice::WriteOnly) && file.write(text) == text.size();
}

/// A file that others may read only, as long as this object exists.
class HeldFile
{
public:
    explicit HeldFile(const QString& path)
        : m_handle(::CreateFileW(reinterpret_cast<const wchar_t*>(path.utf16()), GENERIC_READ,
                                 FILE_SHARE_READ, nullptr, OPEN_EXISTING, 0, nullptr))
    {
    }
    ~HeldFile() { ::CloseHandle(m_handle); }
    HeldFile(const HeldFile&) = delete;
    HeldFile& operator=(const HeldFile&) = delete;
    [[nodiscard]] bool isHeld() const { return m_handle != INVALID_HANDLE_VALUE; }

private:
    HANDLE m_handle;
};

/// The mutex of a program that is at work: it has no windows any more and writes a camera.
class HeldMutex
{
public:
    explicit HeldMutex(const wchar_t* name)
        : m_handle(::CreateMutexW(nullptr, FALSE, name))
    {
    }
    ~HeldMutex() { ::CloseHandle(m_handle); }
    HeldMutex(const HeldMutex&) = delete;
    HeldMutex& operator=(const HeldMutex&) = delete;
    [[nodiscard]] bool isHeld() const { return m_handle != nullptr; }

private:
    HANDLE m_handle;
};

} // namespace Installation
