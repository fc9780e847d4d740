#include "CacheHome.h"

#include <QFile>

namespace {

const char* const kVariable = "XDG_CACHE_HOME";

} // namespace

CacheHome::CacheHome()
    : m_before(qgetenv(kVariable))
{
    qputenv(kVariable, QFile::encodeName(m_directory.filePath(QStringLiteral("a user's cache"))));
}

CacheHome::~CacheHome()
{
    if (m_before.isNull())
        qunsetenv(kVariable);
    else
        qputenv(kVariable, m_before);
}
