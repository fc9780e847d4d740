#include "RequestLog.h"

namespace virtualcamera {

LogEntry& RequestLog::append(const Request& request, Verdict verdict)
{
    if (m_entries.size() == kCapacity)
        m_entries.pop_front();
    LogEntry entry;
    entry.sequence = ++m_total;
    entry.request = request;
    entry.verdict = verdict;
    m_entries.push_back(std::move(entry));
    return m_entries.back();
}

} // namespace virtualcamera
