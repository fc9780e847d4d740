#pragma once

#include <memory>
#include <mutex>
#include <vector>

namespace Brivane {

class Mailbox;

/// What a record and its copies have in common: whether they were cancelled, and where they run.
/// Thread-safe.
class RequestState
{
public:
    /// A request with this state was sent to that client.
    void begin(const std::shared_ptr<Mailbox>& client);
    /// A request with this state is about to be told its end.
    /// @return whether that end has to be the cancelled one
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
