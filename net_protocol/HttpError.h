#pragma once

#include <cstdint>

namespace Brivane {

/// Codes of STHTTPRequest::onError that are not HTTP status codes. A status code, which has three
/// digits, is passed as it is.
enum HttpError : std::int32_t {
    InvalidUrl = 4001,        ///< empty, relative, without a host, or not parsable
    UnsupportedScheme = 4002, ///< anything but https
    HostNotFound = 4004,
    ConnectionRefused = 4005, ///< no service at that address, or no network
    ConnectTimeout = 4006,
    InactivityTimeout = 4007, ///< nothing arrived, or the whole answer took too long
    SecureConnection = 4008,  ///< certificate not trusted, or no TLS 1.2 or later in common
    RedirectRefused = 4009,   ///< to an insecure or bad address, or elsewhere with extra headers
    TooManyRedirects = 4010,
    ConnectionLost = 4011, ///< the connection ended within the answer
    UnknownLength = 4012,  ///< an answer that does not say where it ends
    AnswerTooLarge = 4013,
    UnsupportedEncoding = 4014, ///< a compressed answer, which was not asked for
    FileError = 4015,           ///< the file could not be written
    Cancelled = 4016,           ///< by cancel(), or because the client was destroyed
    TransferFailed = 4017,      ///< anything else
};

} // namespace Brivane
