#pragma once

#include <QByteArray>
#include <QMap>

namespace updateservice {

/// A request as it was received.
struct RequestRecord
{
    QByteArray method;
    QByteArray path;                      ///< with its query
    QMap<QByteArray, QByteArray> headers; ///< by lower-case name
    QByteArray body;
};

} // namespace updateservice
