#include "RequestWorker.h"

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
    if (m_mailbox->isClosed()) {
        close();
    } else {
        startNew();
        endCancelled();
    }
    return true;
}

void RequestWorker::close()
{
    // A callback of a request that ends may send another request, which ends in the same way.
    for (;;) {
        if (!m_running.empty())
            m_running.front()->cancel();
        else if (std::optional<RequestJob> job = m_mailbox->take())
            job->fail(HttpError::Cancelled, {});
        else
            break;
    }
    m_loop.quit();
}

void RequestWorker::startNew()
{
    while (std::optional<RequestJob> job = m_mailbox->take()) {
        auto* transfer = new Transfer(std::move(*job), m_trust, this);
        m_running.push_back(transfer);
        connect(transfer, &Transfer::ended, this, &RequestWorker::onEnded);
        transfer->start();
    }
}

void RequestWorker::endCancelled()
{
    const auto cancelled = [](const Transfer* transfer) { return transfer->isCancelled(); };
    for (;;) {
        const auto found = std::find_if(m_running.begin(), m_running.end(), cancelled);
        if (found == m_running.end())
            return;
        (*found)->cancel();
    }
}

void RequestWorker::onEnded(Transfer* transfer)
{
    m_running.erase(std::remove(m_running.begin(), m_running.end(), transfer), m_running.end());
    // Its own functions are still on the stack.
    transfer->deleteLater();
}

} // namespace Brivane
