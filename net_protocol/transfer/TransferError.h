#pragma once

#include <cstdint>
#include <QNetworkReply>
#include <string>

namespace Brivane {

/// How an error of Qt Network is reported.
struct TransferError
{
    std::int32_t code;
    std::string message;

    [[nodiscard]] static TransferError of(QNetworkReply::NetworkError error);
};

} // namespace Brivane
