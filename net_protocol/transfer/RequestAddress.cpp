#include "RequestAddress.h"

#include "HttpError.h"

namespace Brivane {

RequestAddress RequestAddress::parse(const std::string& text)
{
    RequestAddress address;
    address.url = QUrl(QString::fromStdString(text), QUrl::TolerantMode);
    const bool absolute = address.url.isValid() && !address.url.isRelative();
    const bool secure = address.url.scheme() == QLatin1String("https");
    if (!absolute || (secure && address.url.host().isEmpty()))
        address.error = HttpError::InvalidUrl;
    else if (!secure)
        address.error = HttpError::UnsupportedScheme;
    return address;
}

std::string RequestAddress::loggable(const QUrl& url)
{
    return url
        .toString(QUrl::FullyEncoded | QUrl::RemoveQuery | QUrl::RemoveFragment |
                  QUrl::RemoveUserInfo)
        .toStdString();
}

} // namespace Brivane
