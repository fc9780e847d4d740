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
    m_woken = false;
    wakeLocked();
}

void Mailbox::post(RequestJob job)
{
    const std::lock_guard<std::mutex> lock(m_mutex);
    m_mail.jobs.push_back(std::move(job));
    wakeLocked();
}

void Mailbox::close()
{
    const std::lock_guard<std::mutex> lock(m_mutex);
    m_mail.close = true;
    wakeLocked();
}

void Mailbox::wake()
{
    const std::lock_guard<std::mutex> lock(m_mutex);
    wakeLocked();
}

Mailbox::Mail Mailbox::take()
{
    const std::lock_guard<std::mutex> lock(m_mutex);
    m_woken = false;
    Mail mail{std::move(m_mail.jobs), m_mail.close};
    m_mail.jobs.clear();
    return mail;
}

RequestWorker* Mailbox::worker() const
{
    const std::lock_guard<std::mutex> lock(m_mutex);
    return m_worker;
}

void Mailbox::wakeLocked()
{
    if (!m_worker || m_woken)
        return;
    m_woken = true;
    QCoreApplication::postEvent(m_worker, new QEvent(RequestWorker::kMail));
}

} // namespace Brivane
