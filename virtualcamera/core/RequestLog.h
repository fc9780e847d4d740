#pragma once

#include "Frame.h"

#include <deque>
#include <optional>
#include <string>

namespace virtualcamera {

struct LogEntry
{
    /// Counted from 1 over the life of the device, also across clear().
    std::uint64_t sequence = 0;
    Request request;
    Verdict verdict = Verdict::Ok;
    /// The status in the answer; no value when the device did not answer.
    std::optional<std::uint32_t> answerStatus;
};

class RequestLog
{
public:
    /// Appends an entry and numbers it.
    LogEntry& append(const Request& request, Verdict verdict);
    void clear() { m_entries.clear(); }

    const std::deque<LogEntry>& entries() const { return m_entries; }
    std::uint64_t total() const { return m_total; }
    std::uint64_t violations() const { return m_violations; }
    void countViolation() { ++m_violations; }

private:
    // A whole firmware image makes some thousand entries; beyond this number the oldest are
    // dropped.
    static constexpr std::size_t kCapacity = 20000;

    std::deque<LogEntry> m_entries;
    std::uint64_t m_total = 0;
    std::uint64_t m_violations = 0;
};

} // namespace virtualcamera
