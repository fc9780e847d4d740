#include "Mailbox.h"

#include "RequestWorker.h"

#include <QCoreApplication>
#include <QEvent>
#include <utility>

namespace Brivane {

void Mailbox::setWorker(RequestWorker* worker)
{
    const std::lock_guard<std::mutex> lock(m_mutex);
    m_worker = worker;
    wakeLocked();
}

void Mailbox::post(RequestJob job)
{
    const std::lock_guard<std::mutex> lock(m_mutex);
    m_jobs.push_back(std::move(job));
    wakeLocked();
}

void Mailbox::close()
{
    const std::lock_guard<std::mutex> lock(m_mutex);
    m_closed = true;
    wakeLocked();
}

void Mailbox::wake()
{
    const std::lock_guard<std::mutex> lock(m_mutex);
    wakeLocked();
}

std::optional<RequestJob> Mailbox::take()
{
    const std::lock_guard<std::mutex> lock(m_mutex);
    if (m_jobs.empty())
        return {};
    std::optional<RequestJob> job(std::move(m_jobs.front()));
    m_jobs.pop_front();
    return job;
}

bool Mailbox::isClosed() const
{
    const std::lock_guard<std::mutex> lock(m_mutex);
    return m_closed;
}

RequestWorker* Mailbox::worker() const
{
    const std::lock_guard<std::mutex> lock(m_mutex);
    return m_worker;
}

void Mailbox::wakeLocked()
{
    if (m_worker)
        QCoreApplication::postEvent(m_worker, new QEvent(RequestWorker::kMail));
}

} // namespace Brivane
