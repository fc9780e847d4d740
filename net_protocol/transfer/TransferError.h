#pragma once

#include <cstdint>
#include <QNetworkReply>
#include <string>

namespace Brivane {

/// What a transfer that broke off is told as.
struct TransferError
{
    std::int32_t code;
    std::string message;

    [[nodiscard]] static TransferError of(QNetworkReply::NetworkError error);
};

} // namespace Brivane
