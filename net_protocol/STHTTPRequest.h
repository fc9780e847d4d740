#pragma once

#include <cstdint>
#include <functional>
#include <list>
#include <map>
#include <memory>
#include <string>

namespace Brivane {

class RequestState;

/// One HTTPS request and the callbacks for its end. A request of this type is a POST of JSON text.
///
/// A plain record: its owner fills it and passes it to CHttpClient::request(), which copies it
/// before it returns. Texts are UTF-8. A record is not thread-safe, except for cancel(), which may
/// be called from any thread at any time.
struct STHTTPRequest
{
    using Headers = std::list<std::map<std::string, std::string>>;

    static constexpr std::int32_t kConnectTimeoutMs = 15000;
    static constexpr std::int32_t kInactivityTimeoutMs = 30000;
    static constexpr std::int32_t kRedirectLimit = 5;

    STHTTPRequest();
    /// Copies share the state of the request: cancel() on one of them ends the requests of all.
    STHTTPRequest(const STHTTPRequest& other);
    STHTTPRequest& operator=(const STHTTPRequest& other);
    virtual ~STHTTPRequest();

    /// Ends the request through onError with HttpError::Cancelled. A request that is sent later
    /// ends in the same way at once. Does nothing when the request has ended or is about to call
    /// onResponse or onError. A cancelled record stays cancelled. Returns at once; the callback
    /// comes on the library's thread, and after this call when the call is made on that thread.
    void cancel();

    /// Absolute, "https" only.
    std::string url;
    /// Extra header lines in order; a later line replaces an earlier one of the same name. They are
    /// sent unchecked, so they must not come from outside of the program. A request with extra
    /// headers is redirected only within its own host and port, because a header may hold a secret.
    /// The library's interface has them, although the program leaves them empty.
    Headers headers;
    std::string body;
    /// Called once, on the library's thread, with the body of an answer of status 2xx, at most
    /// CHttpClient::kMaxAnswerBytes long. A download passes an empty text: its body is in the file.
    std::function<void(std::string body)> onResponse;
    /// Called once, on the library's thread, instead of onResponse, with a value of HttpError or
    /// the status of an answer other than 2xx, and an English sentence.
    std::function<void(std::int32_t code, std::string message)> onError;

    // The program sets none of the three settings below.
    /// Longest time for name resolution, connection and TLS handshake together; it starts again
    /// after each redirect. Values below 1 mean the default.
    std::int32_t connectTimeoutMs = kConnectTimeoutMs;
    /// Longest time in which no data arrives. Values below 1 mean the default. The whole of an
    /// answer that is not a download must arrive within four times this time.
    std::int32_t inactivityTimeoutMs = kInactivityTimeoutMs;
    /// How many redirects are followed; 0 or less: none.
    std::int32_t redirectLimit = kRedirectLimit;

private:
    friend class CHttpClient;

    std::shared_ptr<RequestState> m_state;
};

} // namespace Brivane
