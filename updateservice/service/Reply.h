#pragma once

#include <memory>
#include <QByteArray>
#include <QIODevice>
#include <QList>
#include <QPair>

namespace updateservice {

using Header = QPair<QByteArray, QByteArray>;

/// The answer of the service to one request.
struct Reply
{
    int status = 200;
    QList<Header> headers;
    std::unique_ptr<QIODevice> body; ///< open and not sequential
};

} // namespace updateservice
