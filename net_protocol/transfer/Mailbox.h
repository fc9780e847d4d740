#pragma once

#include "RequestJob.h"

#include <mutex>
#include <vector>

namespace Brivane {

class RequestWorker;

/// The way from any thread to a client's own. Thread-safe.
class Mailbox
{
public:
    struct Mail
    {
        std::vector<RequestJob> jobs;
        bool close = false;
    };

    /// The worker is woken from now on, and at once; nobody is after it was set to nullptr.
    void setWorker(RequestWorker* worker);

    void post(RequestJob job);
    /// The client is going away.
    void close();
    /// Has the worker look for mail and for cancelled requests.
    void wake();
    [[nodiscard]] Mail take();

    /// The worker itself, for its own thread alone.
    [[nodiscard]] RequestWorker* worker() const;

private:
    void wakeLocked();

    mutable std::mutex m_mutex;
    Mail m_mail;
    RequestWorker* m_worker = nullptr;
    bool m_woken = false;
};

} // namespace Brivane
