#include "HeaderLines.h"

#include <algorithm>
#include <array>
#include <QByteArray>
#include <QNetworkRequest>
#include <string_view>

namespace Brivane {

namespace {

constexpr std::array<std::string_view, 6> kReserved{
    "accept-encoding", "connection", "content-length", "host", "transfer-encoding", "upgrade"};

bool isNameCharacter(char c)
{
    constexpr std::string_view marks = "!#$%&'*+-.^_`|~";
    return (c >= 'a' && c <= 'z') || (c >= 'A' && c <= 'Z') || (c >= '0' && c <= '9') ||
           marks.find(c) != std::string_view::npos;
}

bool isValueCharacter(char c)
{
    const auto byte = static_cast<unsigned char>(c);
    return c == '\t' || (byte >= 0x20 && byte != 0x7f);
}

bool isReserved(const QByteArray& name)
{
    const QByteArray lower = name.toLower();
    const std::string_view view(lower.constData(), static_cast<std::size_t>(lower.size()));
    return std::find(kReserved.begin(), kReserved.end(), view) != kReserved.end();
}

} // namespace

bool addHeaderLines(const STHTTPRequest::Headers& headers, QNetworkRequest& request)
{
    for (const std::map<std::string, std::string>& lines : headers) {
        for (const auto& [name, value] : lines) {
            const QByteArray rawName = QByteArray::fromStdString(name);
            if (name.empty() || !std::all_of(name.begin(), name.end(), isNameCharacter) ||
                !std::all_of(value.begin(), value.end(), isValueCharacter) || isReserved(rawName))
                return false;
            request.setRawHeader(rawName, QByteArray::fromStdString(value));
        }
    }
    return true;
}

} // namespace Brivane
