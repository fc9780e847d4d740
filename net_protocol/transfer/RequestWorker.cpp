#include "RequestWorker.h"

#include "CHttpClient.h"
#include "HttpError.h"
#include "Mailbox.h"
#include "Transfer.h"

#include <algorithm>
#include <QEventLoop>
#include <utility>

namespace Brivane {

RequestWorker::RequestWorker(std::shared_ptr<Mailbox> mailbox, QEventLoop& loop)
    : m_mailbox(std::move(mailbox))
    , m_loop(loop)
{
}

RequestWorker::~RequestWorker() = default;

bool RequestWorker::event(QEvent* event)
{
    if (event->type() != kMail)
        return QObject::event(event);
    if (!takeIn()) {
        close();
        return true;
    }
    endCancelled();
    startWaiting();
    return true;
}

bool RequestWorker::takeIn()
{
    Mailbox::Mail mail = m_mailbox->take();
    for (RequestJob& job : mail.jobs)
        m_waiting.push_back(std::move(job));
    return !mail.close;
}

void RequestWorker::close()
{
    // A callback of one that ends may send another, which ends the same way.
    for (takeIn(); !m_running.empty() || !m_waiting.empty(); takeIn()) {
        if (!m_running.empty()) {
            m_running.front()->cancel();
        } else {
            RequestJob job = std::move(m_waiting.front());
            m_waiting.pop_front();
            job.fail(HttpError::Cancelled, {});
        }
    }
    m_closed = true;
    m_loop.quit();
}

void RequestWorker::endCancelled()
{
    const auto waitsInVain = [](const RequestJob& job) { return job.isCancelled(); };
    for (auto found = std::find_if(m_waiting.begin(), m_waiting.end(), waitsInVain);
         found != m_waiting.end();
         found = std::find_if(m_waiting.begin(), m_waiting.end(), waitsInVain)) {
        RequestJob job = std::move(*found);
        m_waiting.erase(found);
        job.fail(HttpError::Cancelled, {});
    }
    const auto runsInVain = [](const Transfer* transfer) { return transfer->isCancelled(); };
    for (auto found = std::find_if(m_running.begin(), m_running.end(), runsInVain);
         found != m_running.end();
         found = std::find_if(m_running.begin(), m_running.end(), runsInVain)) {
        (*found)->cancel();
    }
}

void RequestWorker::startWaiting()
{
    while (!m_closed && !m_waiting.empty() &&
           m_running.size() < static_cast<std::size_t>(CHttpClient::kMaxParallelRequests)) {
        auto* transfer = new Transfer(std::move(m_waiting.front()), m_trust, this);
        m_waiting.pop_front();
        m_running.push_back(transfer);
        connect(transfer, &Transfer::ended, this, &RequestWorker::onEnded);
        transfer->start();
    }
}

void RequestWorker::onEnded(Transfer* transfer)
{
    m_running.erase(std::remove(m_running.begin(), m_running.end(), transfer), m_running.end());
    // Its own functions are still on the stack.
    transfer->deleteLater();
    m_mailbox->wake();
}

} // namespace Brivane
