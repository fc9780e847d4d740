#pragma once

#include "STHTTPDownloadRequest.h"

#include <cstdint>
#include <memory>
#include <string>

namespace Brivane {

class Mailbox;
class RequestState;

/// A request that was sent, with a copy of its record from that moment. It reports its end once.
class RequestJob
{
public:
    RequestJob(const std::shared_ptr<STHTTPRequest>& record, std::shared_ptr<RequestState> state,
               std::shared_ptr<Mailbox> client, std::string extraCaFile);
    RequestJob(RequestJob&&) = default;
    RequestJob& operator=(RequestJob&&) = default;
    RequestJob(const RequestJob&) = delete;
    RequestJob& operator=(const RequestJob&) = delete;
    ~RequestJob();

    [[nodiscard]] const STHTTPRequest& request() const { return *m_request; }
    /// nullptr for a request that is not a download.
    [[nodiscard]] const STHTTPDownloadRequest* download() const { return m_download; }
    [[nodiscard]] const std::string& extraCaFile() const { return m_extraCaFile; }
    [[nodiscard]] bool isCancelled() const;

    /// Ends the request through onError; with HttpError::Cancelled if it was cancelled.
    void fail(std::int32_t code, const std::string& message);
    /// A cancel() after this call has no effect any more.
    /// @return false when the request was cancelled before, so it has to end as cancelled
    [[nodiscard]] bool settle();
    /// The two ways to end the request after settle().
    void respond(std::string body);
    void failSettled(std::int32_t code, const std::string& message);

private:
    // The sender's record is kept alive because its callbacks may call cancel() on it.
    std::shared_ptr<STHTTPRequest> m_record;
    // A copy, because the sender may change the record.
    std::unique_ptr<STHTTPRequest> m_request;
    const STHTTPDownloadRequest* m_download = nullptr;
    std::shared_ptr<RequestState> m_state;
    std::shared_ptr<Mailbox> m_client;
    std::string m_extraCaFile;
};

} // namespace Brivane
