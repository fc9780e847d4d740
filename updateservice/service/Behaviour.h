#pragma once

#include <cstdint>
#include <QSsl>
#include <QString>

namespace updateservice {

/// The faults that the service shows. By default it has none.
struct Behaviour
{
    enum class Certificate { Trusted, SelfSigned, WrongHost, Expired, Unknown };
    enum class Answer { Offer, UpToDate, Broken, Huge, Bomb };
    enum class Redirect { None, Once, Loop, Http, File, Elsewhere };
    enum class Framing { Length, Chunked, Close };
    enum class Stall { None, Handshake, Head, Body };

    Certificate certificate = Certificate::Trusted;
    QSsl::SslProtocol protocol = QSsl::SecureProtocols; ///< if it is a single version: the only one
    int status = 200;
    Answer answer = Answer::Offer;
    std::int64_t hugeBytes = 10'000'000;
    Redirect redirect = Redirect::None;
    Framing framing = Framing::Length;
    Stall stall = Stall::None;
    std::int64_t stallAt = 0;        ///< bytes of the body before it stalls
    std::int64_t bytesPerSecond = 0; ///< of the body; 0 for no limit
    std::int64_t truncateAt = -1;    ///< bytes of the body before the connection ends; -1 for all
    bool endAtPieces = false;        ///< a chunked body that is cut off is cut between two chunks

    /// Adds the fault of a line such as "status 500" or "stall body 1000".
    /// @return false, with nothing changed, when there is no such fault
    bool apply(const QString& line);
};

} // namespace updateservice
