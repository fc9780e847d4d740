#include "RequestState.h"

#include "Mailbox.h"

#include <algorithm>

namespace Brivane {

void RequestState::begin(const std::shared_ptr<Mailbox>& client)
{
    const std::lock_guard<std::mutex> lock(m_mutex);
    m_sent = true;
    m_running.push_back(client);
}

bool RequestState::end(const std::shared_ptr<Mailbox>& client)
{
    const std::lock_guard<std::mutex> lock(m_mutex);
    const auto found = std::find(m_running.begin(), m_running.end(), client);
    if (found != m_running.end())
        m_running.erase(found);
    return m_cancelled;
}

void RequestState::cancel()
{
    std::vector<std::shared_ptr<Mailbox>> clients;
    {
        const std::lock_guard<std::mutex> lock(m_mutex);
        if (m_sent && m_running.empty())
            return;
        m_cancelled = true;
        clients = m_running;
    }
    for (const std::shared_ptr<Mailbox>& client : clients)
        client->wake();
}

bool RequestState::isCancelled() const
{
    const std::lock_guard<std::mutex> lock(m_mutex);
    return m_cancelled;
}

} // namespace Brivane
