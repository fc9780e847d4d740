#include "HidFunction.h"

#include <cerrno>

namespace virtualcamera {

namespace {

/// As many as the kernel queues for a program that does not read.
constexpr std::size_t kMostPending = 64;

} // namespace

HidFunction::HidFunction(BusContext& context, Device& device, DropHandler onDrop)
    : m_context(context)
    , m_device(device)
    , m_onDrop(std::move(onDrop))
    , m_lastReport(kReportSize, 0)
{
    m_lastReport.front() = kReportId;
}

void HidFunction::connect(std::shared_ptr<HostLink> link)
{
    const std::lock_guard<std::mutex> lock(m_mutex);
    m_link = std::move(link);
    m_pending.clear();
    ++m_connection;
}

void HidFunction::disconnect()
{
    const std::lock_guard<std::mutex> lock(m_mutex);
    m_link.reset();
    m_pending.clear();
    ++m_connection;
}

bool HidFunction::takeReport(const Bytes& report)
{
    Reaction reaction = m_device.handleReport(report.data(), report.size());
    m_context.changed.notify_all();
    if (reaction.drop)
        m_onDrop(*reaction.drop);
    if (reaction.writeFails)
        return false;
    if (reaction.nextReadFails) {
        const std::lock_guard<std::mutex> lock(m_mutex);
        m_pending.push_back({{}, true});
    }
    if (reaction.delay.count() == 0)
        enqueue(reaction.reports);
    else
        enqueueLate(reaction.delay, std::move(reaction.reports));
    return true;
}

Bytes HidFunction::lastReport()
{
    const std::lock_guard<std::mutex> lock(m_mutex);
    return m_lastReport;
}

void HidFunction::enqueue(const std::vector<Bytes>& reports)
{
    const std::lock_guard<std::mutex> lock(m_mutex);
    for (const Bytes& report : reports)
        if (m_pending.size() < kMostPending)
            m_pending.push_back({report, false});
}

void HidFunction::enqueueLate(std::chrono::milliseconds delay, std::vector<Bytes> reports)
{
    unsigned connection = 0;
    {
        const std::lock_guard<std::mutex> lock(m_mutex);
        connection = m_connection;
    }
    m_context.scheduler.after(delay, [this, connection, reports = std::move(reports)] {
        {
            const std::lock_guard<std::mutex> lock(m_mutex);
            if (connection != m_connection)
                return;
        }
        enqueue(reports);
        pump();
    });
}

void HidFunction::pump()
{
    const std::lock_guard<std::mutex> lock(m_mutex);
    while (m_link && !m_pending.empty()) {
        const Pending& next = m_pending.front();
        const bool sent = m_link->answer(endpoint::kHidIn, [&next](HostLink::Transfer&) {
            return HostLink::Answer{next.fails ? -EPROTO : 0, next.report};
        });
        if (!sent)
            return;
        if (!next.fails)
            m_lastReport = next.report;
        m_pending.pop_front();
    }
}

} // namespace virtualcamera
