#include "DownloadFile.h"

#include "FileSync.h"

#include <QFileInfo>

namespace Brivane {

DownloadFile::DownloadFile() = default;

DownloadFile::~DownloadFile() = default;

bool DownloadFile::open(const std::string& path)
{
    const QString name = QString::fromStdString(path);
    const QFileInfo existing(name);
    // Renaming onto a device node would replace the node.
    if (name.isEmpty() || (existing.exists() && !existing.isFile()))
        return fail(QStringLiteral("There is something else of that name"));
    if (!m_file.open(name))
        return fail(m_file.errorString());
    return true;
}

bool DownloadFile::write(const char* data, std::int64_t size)
{
    if (!m_file.write(data, size))
        return fail(m_file.errorString());
    return true;
}

bool DownloadFile::commit()
{
    // Some file systems report only here that the disk is full.
    if (!syncToDisk(m_file.handle())) {
        discard();
        return fail(QStringLiteral("It did not get onto the disk"));
    }
    if (!m_file.commit())
        return fail(m_file.errorString());
    return true;
}

void DownloadFile::discard()
{
    m_file.discard();
}

bool DownloadFile::fail(const QString& reason)
{
    m_errorText = "The file could not be written: " + reason.toStdString() + ".";
    return false;
}

} // namespace Brivane
