#pragma once

#include <memory>
#include <mutex>
#include <vector>

namespace Brivane {

class Mailbox;

/// The state that a record shares with its copies: whether they were cancelled, and which clients
/// run them. Thread-safe.
class RequestState
{
public:
    /// A request with this state was sent by that client.
    void begin(const std::shared_ptr<Mailbox>& client);
    /// A request with this state is about to report its end.
    /// @return whether it has to end as cancelled
    bool end(const std::shared_ptr<Mailbox>& client);

    void cancel();
    [[nodiscard]] bool isCancelled() const;

private:
    mutable std::mutex m_mutex;
    bool m_sent = false;
    bool m_cancelled = false;
    std::vector<std::shared_ptr<Mailbox>> m_running;
};

} // namespace Brivane
