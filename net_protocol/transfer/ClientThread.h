#pragma once

#include <memory>
#include <string>
#include <thread>

namespace Brivane {

class Mailbox;
class RequestState;
struct STHTTPRequest;

/// The thread on which a client's requests run and their callbacks are called. It runs from
/// construction to end().
class ClientThread
{
public:
    ClientThread();
    ~ClientThread();
    ClientThread(const ClientThread&) = delete;
    ClientThread& operator=(const ClientThread&) = delete;

    void post(const std::shared_ptr<STHTTPRequest>& record,
              const std::shared_ptr<RequestState>& state, const std::string& extraCaFile);

    /// Ends all requests as cancelled and then the thread. Called on that thread itself, that is by
    /// a callback, it leaves the thread to end by itself when the callback has returned.
    void end();

private:
    std::shared_ptr<Mailbox> m_mailbox;
    std::thread m_thread;
};

} // namespace Brivane
