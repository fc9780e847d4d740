#pragma once

#include "STHTTPRequest.h"

#include <cstdint>
#include <memory>
#include <string>

namespace Brivane {

class ClientThread;

/// Runs HTTPS requests on a thread of its own, which starts with the first of them.
///
/// For every request exactly one of onResponse and onError is called, on that thread. Certificates
/// are always verified; TLS 1.2 is the least. At most kMaxParallelRequests of a client run at a
/// time, the others wait their turn; a client's requests share no connection, cookie or cache.
///
/// A QCoreApplication must exist while the client does. The client itself belongs to one thread at
/// a time; callbacks may call request() and may destroy the client.
class CHttpClient
{
public:
    /// An answer that is not a download may be so long; the service's are some hundred bytes.
    static constexpr std::int64_t kMaxAnswerBytes = std::int64_t{1} << 20;
    /// A download may be so long; packages are some ten megabytes.
    static constexpr std::int64_t kMaxDownloadBytes = std::int64_t{512} << 20;
    static constexpr int kMaxParallelRequests = 8;

    CHttpClient();
    /// Ends what is under way through onError with HttpError::Cancelled and returns when the last
    /// callback has. A callback that waits for the thread that destroys the client blocks forever.
    ~CHttpClient();
    CHttpClient(const CHttpClient&) = delete;
    CHttpClient& operator=(const CHttpClient&) = delete;

    /// Trusts the authorities in this PEM file, in addition to the system's, for requests made from
    /// now on. A client reads the file once; one that cannot be read is logged and adds nobody.
    /// Empty: only the system's.
    void setExtraCaFile(const std::string& path);

    /// Sends the request; a STHTTPDownloadRequest is downloaded. Returns at once, also when the
    /// request is bad: it is told through onError. The library keeps a reference to the record
    /// until it has called back. Without a record nothing happens.
    void request(std::shared_ptr<STHTTPRequest>& request);

private:
    std::string m_extraCaFile;
    std::unique_ptr<ClientThread> m_thread;
};

} // namespace Brivane
