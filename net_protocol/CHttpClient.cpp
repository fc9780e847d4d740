#include "CHttpClient.h"

#include "transfer/Log.h"
#include "transfer/Mailbox.h"
#include "transfer/RequestJob.h"
#include "transfer/RequestWorker.h"

#include <QEventLoop>

namespace Brivane {

namespace {

void runWorker(const std::shared_ptr<Mailbox>& mailbox)
{
    QEventLoop loop;
    RequestWorker worker(mailbox, loop);
    mailbox->setWorker(&worker);
    loop.exec();
    mailbox->setWorker(nullptr);
}

} // namespace

CHttpClient::CHttpClient() = default;

CHttpClient::~CHttpClient()
{
    if (!m_thread.joinable())
        return;
    if (m_thread.get_id() != std::this_thread::get_id()) {
        m_mailbox->close();
        m_thread.join();
        return;
    }
    // A callback destroys the client: the thread ends by itself when the callback has returned.
    m_mailbox->worker()->close();
    m_thread.detach();
}

void CHttpClient::setExtraCaFile(const std::string& path)
{
    m_extraCaFile = path;
}

void CHttpClient::request(std::shared_ptr<STHTTPRequest>& request)
{
    if (!request) {
        log(ILogObserver::Error, "There is no request to send.");
        return;
    }
    if (!m_mailbox) {
        m_mailbox = std::make_shared<Mailbox>();
        m_thread = std::thread([mailbox = m_mailbox] { runWorker(mailbox); });
    }
    m_mailbox->post(RequestJob(request, request->m_state, m_mailbox, m_extraCaFile));
}

} // namespace Brivane
