#include "CHttpClient.h"

#include "transfer/ClientThread.h"
#include "transfer/Log.h"
#include "transfer/RequestJob.h"

namespace Brivane {

CHttpClient::CHttpClient() = default;

CHttpClient::~CHttpClient()
{
    // Callbacks still use the client.
    if (m_thread)
        m_thread->end();
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
    if (!m_thread)
        m_thread = std::make_unique<ClientThread>();
    m_thread->post(request, request->m_state, m_extraCaFile);
}

} // namespace Brivane
