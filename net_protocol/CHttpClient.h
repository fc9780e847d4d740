#pragma once

#include "STHTTPRequest.h"

#include <cstdint>
#include <memory>
#include <string>
#include <thread>

namespace Brivane {

class Mailbox;

/// Runs HTTPS requests on a thread of its own, which starts with the first of them.
///
/// For every request exactly one of onResponse and onError is called, on that thread. Certificates
/// are always verified; TLS 1.2 is the least. The requests of a client run in parallel and share no
/// connection, cookie or cache.
///
/// A QCoreApplication must exist while the client does. The client itself belongs to one thread at
/// a time; callbacks may call request() and may destroy the client.
class CHttpClient
{
public:
    /// Longest answer that is not a download; those of the service have some hundred bytes.
    static constexpr std::int64_t kMaxAnswerBytes = std::int64_t{1} << 20;
    /// Longest download; packages have some ten megabytes.
    static constexpr std::int64_t kMaxDownloadBytes = std::int64_t{512} << 20;

    CHttpClient();
    /// Ends all requests through onError with HttpError::Cancelled and returns after the last
    /// callback. A callback must not wait for the thread that destroys the client: both would block
    /// for ever.
    ~CHttpClient();
    CHttpClient(const CHttpClient&) = delete;
    CHttpClient& operator=(const CHttpClient&) = delete;

    /// Trusts the authorities in this PEM file, in addition to the system's, for requests sent from
    /// now on. A client reads the file once. A file that cannot be read is logged and adds no
    /// authority. Empty: only the system's authorities.
    void setExtraCaFile(const std::string& path);

    /// Sends the request; a STHTTPDownloadRequest is downloaded. Returns at once. A bad request is
    /// reported through onError. The library keeps a reference to the record until the last
    /// callback has returned. A null record is logged and does nothing else.
    void request(std::shared_ptr<STHTTPRequest>& request);

private:
    std::string m_extraCaFile;
    // The thread and the requests hold it too: they may outlive the client.
    std::shared_ptr<Mailbox> m_mailbox; ///< null before the first request
    std::thread m_thread;
};

} // namespace Brivane
