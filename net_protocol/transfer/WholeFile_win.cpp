#include "WholeFile.h"

#include <chrono>
#include <QDir>
#include <QFile>
#include <QRandomGenerator>
#include <qt_windows.h>
#include <thread>

namespace {

/// A virus scanner holds a file open after it was written. Until it has finished, the file cannot
/// be renamed.
constexpr std::chrono::seconds kHeldTimeout{5};
constexpr std::chrono::milliseconds kHeldInterval{50};
constexpr int kAttempts = 100;
constexpr int kLetters = 6;

QString temporaryName(const QString& name)
{
    QString result = name + QLatin1Char('.');
    for (int i = 0; i < kLetters; ++i)
        result += QLatin1Char(static_cast<char>('a' + QRandomGenerator::global()->bounded(26)));
    return result;
}

bool isHeld(DWORD error)
{
    return error == ERROR_SHARING_VIOLATION || error == ERROR_LOCK_VIOLATION ||
           error == ERROR_USER_MAPPED_FILE || error == ERROR_ACCESS_DENIED;
}

} // namespace

namespace Brivane {

/// QSaveFile renames its file once, and removes it when that fails.
class WholeFile::Storage
{
public:
    QFile file;
    QString name;
    QString error;
};

WholeFile::WholeFile()
    : m_storage(std::make_unique<Storage>())
{
}

WholeFile::~WholeFile()
{
    discard();
}

bool WholeFile::open(const QString& name)
{
    m_storage->name = name;
    bool opened = false;
    for (int attempt = 0; attempt < kAttempts && !opened; ++attempt) {
        m_storage->file.setFileName(temporaryName(name));
        opened =
            m_storage->file.open(QIODevice::WriteOnly | QIODevice::NewOnly | QIODevice::Unbuffered);
        if (!opened && !m_storage->file.exists())
            break;
    }
    m_storage->error = m_storage->file.errorString();
    return opened;
}

bool WholeFile::isOpen() const
{
    return m_storage->file.isOpen();
}

bool WholeFile::write(const char* data, std::int64_t size)
{
    const bool written = m_storage->file.write(data, size) == size;
    m_storage->error = m_storage->file.errorString();
    return written;
}

int WholeFile::handle() const
{
    return m_storage->file.handle();
}

bool WholeFile::commit()
{
    const QString from = QDir::toNativeSeparators(m_storage->file.fileName());
    const QString to = QDir::toNativeSeparators(m_storage->name);
    m_storage->file.close();
    const auto deadline = std::chrono::steady_clock::now() + kHeldTimeout;
    while (!::MoveFileExW(reinterpret_cast<const wchar_t*>(from.utf16()),
                          reinterpret_cast<const wchar_t*>(to.utf16()),
                          MOVEFILE_REPLACE_EXISTING | MOVEFILE_WRITE_THROUGH)) {
        const DWORD error = ::GetLastError();
        if (!isHeld(error) || std::chrono::steady_clock::now() >= deadline) {
            m_storage->error = qt_error_string(static_cast<int>(error));
            m_storage->file.remove();
            return false;
        }
        std::this_thread::sleep_for(kHeldInterval);
    }
    return true;
}

void WholeFile::discard()
{
    if (isOpen())
        m_storage->file.remove();
}

QString WholeFile::errorString() const
{
    return m_storage->error;
}

} // namespace Brivane
