#pragma once

#include "STHTTPDownloadRequest.h"

#include <cstdint>
#include <memory>
#include <string>

namespace Brivane {

class Mailbox;
class RequestState;

/// A request that was sent: what its record said at that moment, and the promise that its end is
/// told once.
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
    /// Nothing for a request that is no download.
    [[nodiscard]] const STHTTPDownloadRequest* download() const { return m_download; }
    [[nodiscard]] const std::string& extraCaFile() const { return m_extraCaFile; }
    [[nodiscard]] bool isCancelled() const;

    /// Ends it through onError; as cancelled when it was, whatever the code says.
    void fail(std::int32_t code, const std::string& message);
    /// From here on a cancel() comes too late.
    /// @return false when one came before, so that it has to end as cancelled
    [[nodiscard]] bool settle();
    /// After settle(): the end it comes to.
    void respond(std::string body);
    void failSettled(std::int32_t code, const std::string& message);

private:
    // The sender's record, kept alive for a cancel() from inside its own callbacks.
    std::shared_ptr<STHTTPRequest> m_record;
    // The copy in use: the sender may change the record meanwhile.
    std::unique_ptr<STHTTPRequest> m_request;
    const STHTTPDownloadRequest* m_download = nullptr;
    std::shared_ptr<RequestState> m_state;
    std::shared_ptr<Mailbox> m_client;
    std::string m_extraCaFile;
};

} // namespace Brivane
