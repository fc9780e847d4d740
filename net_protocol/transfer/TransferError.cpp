#include "TransferError.h"

#include "HttpError.h"

#include <QMetaEnum>

namespace Brivane {

namespace {

std::string nameOf(QNetworkReply::NetworkError error)
{
    const char* name = QMetaEnum::fromType<QNetworkReply::NetworkError>().valueToKey(error);
    return name ? name : std::to_string(error);
}

} // namespace

// Qt's own texts are not used: they are translated and contain the whole address.
TransferError TransferError::of(QNetworkReply::NetworkError error)
{
    switch (error) {
    case QNetworkReply::HostNotFoundError:
        return {HttpError::HostNotFound, "The service's host was not found."};
    case QNetworkReply::ConnectionRefusedError:
        return {HttpError::ConnectionRefused, "The service does not accept connections."};
    case QNetworkReply::TimeoutError:
        return {HttpError::ConnectTimeout, "The service did not answer in time."};
    case QNetworkReply::RemoteHostClosedError:
        return {HttpError::ConnectionLost, "The service closed the connection too early."};
    case QNetworkReply::SslHandshakeFailedError:
        return {HttpError::SecureConnection, "There is no secure connection to the service."};
    default:
        return {HttpError::TransferFailed, "The transfer failed: " + nameOf(error) + "."};
    }
}

} // namespace Brivane
