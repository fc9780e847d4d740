#include "RequestJob.h"

#include "HttpError.h"
#include "Log.h"
#include "Mailbox.h"
#include "RequestState.h"

#include <utility>

namespace Brivane {

namespace {

constexpr const char* kCancelledText = "The request was cancelled.";

} // namespace

RequestJob::RequestJob(const std::shared_ptr<STHTTPRequest>& record,
                       std::shared_ptr<RequestState> state, std::shared_ptr<Mailbox> client,
                       std::string extraCaFile)
    : m_record(record)
    , m_state(std::move(state))
    , m_client(std::move(client))
    , m_extraCaFile(std::move(extraCaFile))
{
    if (const auto* download = dynamic_cast<const STHTTPDownloadRequest*>(record.get())) {
        auto copy = std::make_unique<STHTTPDownloadRequest>(*download);
        m_download = copy.get();
        m_request = std::move(copy);
    } else {
        m_request = std::make_unique<STHTTPRequest>(*record);
    }
    m_state->begin(m_client);
}

RequestJob::~RequestJob() = default;

bool RequestJob::isCancelled() const
{
    return m_state->isCancelled();
}

void RequestJob::fail(std::int32_t code, const std::string& message)
{
    if (settle())
        failSettled(code, message);
    else
        failSettled(HttpError::Cancelled, {});
}

bool RequestJob::settle()
{
    return !m_state->end(m_client);
}

void RequestJob::respond(std::string body)
{
    log(ILogObserver::Info, "The request is complete.");
    if (m_request->onResponse)
        m_request->onResponse(std::move(body));
}

void RequestJob::failSettled(std::int32_t code, const std::string& message)
{
    const bool cancelled = code == HttpError::Cancelled;
    const std::string text = cancelled ? kCancelledText : message;
    log(cancelled ? ILogObserver::Info : ILogObserver::Warning,
        "The request failed with code " + std::to_string(code) + ": " + text);
    if (m_request->onError)
        m_request->onError(code, text);
}

} // namespace Brivane
