#include "WholeFile.h"

#include <QSaveFile>

namespace Brivane {

class WholeFile::Storage : public QSaveFile
{
};

WholeFile::WholeFile()
    : m_storage(std::make_unique<Storage>())
{
}

WholeFile::~WholeFile() = default;

bool WholeFile::open(const QString& name)
{
    m_storage->setFileName(name);
    return m_storage->open(QIODevice::WriteOnly | QIODevice::Unbuffered);
}

bool WholeFile::isOpen() const
{
    return m_storage->isOpen();
}

bool WholeFile::write(const char* data, std::int64_t size)
{
    return m_storage->write(data, size) == size;
}

int WholeFile::handle() const
{
    return m_storage->handle();
}

bool WholeFile::commit()
{
    return m_storage->commit();
}

void WholeFile::discard()
{
    if (!isOpen())
        return;
    m_storage->cancelWriting();
    // Closes and removes it.
    m_storage->commit();
}

QString WholeFile::errorString() const
{
    return m_storage->errorString();
}

} // namespace Brivane
