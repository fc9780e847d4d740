#include "CodePages.h"

namespace CodePages {

QByteArray encode(const QString& text)
{
    return text.toLocal8Bit();
}

} // namespace CodePages
