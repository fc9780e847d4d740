#pragma once

#include <cstdint>

namespace Brivane {

/// Codes of STHTTPRequest::onError that are no HTTP status. Status codes, which have three digits,
/// are passed as they are.
enum HttpError : std::int32_t {
    InvalidUrl = 4001,        ///< empty, relative, without a host, or unreadable
    UnsupportedScheme = 4002, ///< anything but https
    InvalidHeader = 4003,     ///< an extra header that is no header, or one the library needs
    HostNotFound = 4004,
    ConnectionRefused = 4005, ///< nobody listens, or the network is not reachable
    ConnectTimeout = 4006,
    InactivityTimeout = 4007, ///< nothing came, or an answer took too long as a whole
    SecureConnection = 4008,  ///< certificate not trusted, or no TLS 1.2 or later in common
    RedirectRefused = 4009,   ///< to an insecure address, to elsewhere with extra headers, or bad
    TooManyRedirects = 4010,
    ConnectionLost = 4011, ///< the answer broke off
    UnknownLength = 4012,  ///< an answer that does not tell where it ends
    AnswerTooLarge = 4013,
    UnsupportedEncoding = 4014, ///< a compressed answer, which was not asked for
    FileError = 4015,           ///< the file could not be written
    Cancelled = 4016,           ///< by cancel(), or because the client was destroyed
    TransferFailed = 4017,      ///< anything else
};

} // namespace Brivane
