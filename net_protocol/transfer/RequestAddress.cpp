#include "RequestAddress.h"

#include "HttpError.h"

namespace Brivane {

RequestAddress RequestAddress::parse(const std::string& text)
{
    RequestAddress address;
    address.url = QUrl(QString::fromStdString(text), QUrl::TolerantMode);
    if (!address.url.isValid() || address.url.isRelative())
        address.error = HttpError::InvalidUrl;
    else if (address.url.scheme() != QLatin1String("https"))
        address.error = HttpError::UnsupportedScheme;
    else if (address.url.host().isEmpty())
        address.error = HttpError::InvalidUrl;
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
