#include "CodePages.h"

#include <qt_windows.h>

namespace CodePages {

QByteArray encode(const QString& text)
{
    if (text.isEmpty())
        return {};
    const auto* units = reinterpret_cast<const wchar_t*>(text.utf16());
    const int count =
        ::WideCharToMultiByte(CP_ACP, 0, units, text.size(), nullptr, 0, nullptr, nullptr);
    QByteArray bytes(count + 1, '\0');
    const int written = ::WideCharToMultiByte(CP_OEMCP, 0, units, text.size(), bytes.data(),
                                              bytes.size(), nullptr, nullptr);
    bytes.truncate(written);
    return bytes;
}

} // namespace CodePages
