#pragma once

#include <cstdint>
#include <functional>
#include <list>
#include <map>
#include <memory>
#include <string>

namespace Brivane {

class RequestState;

/// One HTTPS request: what to ask, and whom to tell how it ended. A request of this kind is a POST
/// of JSON text.
///
/// A plain record: filled by its owner, then handed to CHttpClient::request(), which takes what it
/// needs from it before it returns. Texts are UTF-8. Changing a record from two threads at once
/// needs the owner's lock; cancel() alone may be called from any thread at any time.
struct STHTTPRequest
{
    using Headers = std::list<std::map<std::string, std::string>>;

    static constexpr std::int32_t kConnectTimeoutMs = 15000;
    static constexpr std::int32_t kInactivityTimeoutMs = 30000;
    static constexpr std::int32_t kRedirectLimit = 5;

    STHTTPRequest();
    /// Copies share the state of the request: cancel() on one ends what was sent by any.
    STHTTPRequest(const STHTTPRequest& other);
    STHTTPRequest& operator=(const STHTTPRequest& other);
    virtual ~STHTTPRequest();

    /// Ends the request through onError with HttpError::Cancelled. Before the request is sent, it
    /// ends so as soon as it is sent; once onResponse or onError has been chosen it does nothing.
    /// A cancelled record stays cancelled. Returns at once; the callback comes on the library's
    /// thread, after this call when it is made there.
    void cancel();

    /// Absolute, "https" only.
    std::string url;
    /// Extra header lines, applied in order, a later one of the same name replacing an earlier. A
    /// request that has any is redirected only within its own scheme, host and port, since a header
    /// may carry a secret.
    Headers headers;
    std::string body;
    /// Called once, on the library's thread, with the body of an answer of status 2xx, at most
    /// CHttpClient::kMaxAnswerBytes long. A download passes an empty text: its body is in the file.
    std::function<void(std::string body)> onResponse;
    /// Called once, on the library's thread, instead of onResponse: a value of HttpError or the
    /// status of an answer other than 2xx, and an English sentence.
    std::function<void(std::int32_t code, std::string message)> onError;

    /// Most time for resolving, connecting and the secure handshake, again after each redirect.
    /// Values below 1 stand for the default.
    std::int32_t connectTimeoutMs = kConnectTimeoutMs;
    /// Most time in which nothing at all arrives. Values below 1 stand for the default. The whole
    /// of an answer that is not a download has four times as long.
    std::int32_t inactivityTimeoutMs = kInactivityTimeoutMs;
    /// How many redirects are followed; 0 or less for none.
    std::int32_t redirectLimit = kRedirectLimit;

private:
    friend class CHttpClient;

    std::shared_ptr<RequestState> m_state;
};

} // namespace Brivane
