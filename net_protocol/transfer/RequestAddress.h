#pragma once

#include <cstdint>
#include <QUrl>
#include <string>

namespace Brivane {

/// The address of a request.
struct RequestAddress
{
    QUrl url;
    /// A value of HttpError when no request can be sent there, otherwise 0.
    std::int32_t error = 0;

    /// @param text UTF-8; blanks and letters outside of ASCII are escaped, as in a browser
    [[nodiscard]] static RequestAddress parse(const std::string& text);

    /// The address for the log: without query, fragment and user, which may hold a secret.
    [[nodiscard]] static std::string loggable(const QUrl& url);
};

} // namespace Brivane
