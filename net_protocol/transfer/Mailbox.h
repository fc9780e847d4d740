#pragma once

#include "RequestJob.h"

#include <deque>
#include <mutex>
#include <optional>

namespace Brivane {

class RequestWorker;

/// Passes requests from any thread to the thread of a client. Thread-safe.
class Mailbox
{
public:
    /// Wakes the worker now and at every change from now on; nullptr: no worker any more.
    void setWorker(RequestWorker* worker);

    void post(RequestJob job);
    /// The client is being destroyed.
    void close();
    /// Makes the worker look for new, cancelled and closed.
    void wake();

    /// The oldest request that no one has taken yet, if there is one.
    [[nodiscard]] std::optional<RequestJob> take();
    [[nodiscard]] bool isClosed() const;

    /// To be used on the worker's own thread only.
    [[nodiscard]] RequestWorker* worker() const;

private:
    void wakeLocked();

    mutable std::mutex m_mutex;
    std::deque<RequestJob> m_jobs;
    RequestWorker* m_worker = nullptr;
    bool m_closed = false;
};

} // namespace Brivane
