#include "ClientThread.h"

#include "Mailbox.h"
#include "RequestWorker.h"

#include <QEventLoop>

namespace Brivane {

namespace {

void serve(const std::shared_ptr<Mailbox>& mailbox)
{
    QEventLoop loop;
    RequestWorker worker(mailbox, loop);
    mailbox->setWorker(&worker);
    loop.exec();
    mailbox->setWorker(nullptr);
}

} // namespace

ClientThread::ClientThread()
    : m_mailbox(std::make_shared<Mailbox>())
    , m_thread([mailbox = m_mailbox] { serve(mailbox); })
{
}

ClientThread::~ClientThread()
{
    if (m_thread.joinable())
        end();
}

void ClientThread::end()
{
    if (m_thread.get_id() == std::this_thread::get_id()) {
        m_mailbox->worker()->close();
        m_thread.detach();
        return;
    }
    m_mailbox->close();
    m_thread.join();
}

void ClientThread::post(const std::shared_ptr<STHTTPRequest>& record,
                        const std::shared_ptr<RequestState>& state, const std::string& extraCaFile)
{
    m_mailbox->post(RequestJob(record, state, m_mailbox, extraCaFile));
}

} // namespace Brivane
