#include "RequestParser.h"

#include <QList>

namespace updateservice {

namespace {

constexpr int kMostBytes = 1 << 20;

} // namespace

RequestParser::State RequestParser::add(const QByteArray& data)
{
    m_data += data;
    if (m_data.size() > kMostBytes)
        return State::Bad;
    if (m_bodySize < 0) {
        const int end = m_data.indexOf("\r\n\r\n");
        if (end < 0)
            return State::Incomplete;
        if (!readHead(m_data.left(end)))
            return State::Bad;
        m_data.remove(0, end + 4);
    }
    if (m_data.size() < m_bodySize)
        return State::Incomplete;
    m_record.body = m_data.left(m_bodySize);
    return State::Complete;
}

bool RequestParser::readHead(const QByteArray& head)
{
    QList<QByteArray> lines = head.split('\n');
    const QList<QByteArray> words = lines.takeFirst().trimmed().split(' ');
    if (words.size() != 3)
        return false;
    m_record.method = words.at(0);
    m_record.path = words.at(1);
    for (const QByteArray& line : lines) {
        const int colon = line.indexOf(':');
        if (colon < 1)
            return false;
        m_record.headers.insert(line.left(colon).trimmed().toLower(),
                                line.mid(colon + 1).trimmed());
    }
    bool good = true;
    m_bodySize = m_record.headers.value("content-length", "0").toInt(&good);
    return good && m_bodySize >= 0;
}

} // namespace updateservice
