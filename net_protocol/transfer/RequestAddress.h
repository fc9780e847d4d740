#pragma once

#include <cstdint>
#include <QUrl>
#include <string>

namespace Brivane {

/// Where a request goes.
struct RequestAddress
{
    QUrl url;
    /// Why nothing can be sent there, as a value of HttpError; 0 when it can.
    std::int32_t error = 0;

    /// UTF-8. Blanks and letters outside of ASCII are escaped, as a browser does.
    [[nodiscard]] static RequestAddress parse(const std::string& text);

    /// For the log: without query, fragment and user, which may hold a secret.
    [[nodiscard]] static std::string loggable(const QUrl& url);
};

} // namespace Brivane
