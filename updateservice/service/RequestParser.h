#pragma once

#include "RequestRecord.h"

namespace updateservice {

/// Reads one request from a connection.
class RequestParser
{
public:
    enum class State { Incomplete, Complete, Bad };

    State add(const QByteArray& data);
    [[nodiscard]] const RequestRecord& record() const { return m_record; }

private:
    bool readHead(const QByteArray& head);

    QByteArray m_data;
    RequestRecord m_record;
    int m_bodySize = -1; ///< negative until the head is there
};

} // namespace updateservice
