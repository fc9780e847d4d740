#pragma once

#include <array>
#include <cstddef>
#include <cstdint>
#include <optional>
#include <vector>

namespace virtualcamera {

using Bytes = std::vector<std::uint8_t>;

constexpr std::size_t kReportSize = 1024;
constexpr std::size_t kHeaderSize = 14;
constexpr std::size_t kChecksumOffset = 12;
constexpr std::size_t kMaxPayload = kReportSize - kHeaderSize;
constexpr std::uint8_t kReportId = 0x01;
constexpr std::uint16_t kMagic = 0x5A5A;

/// Values of the `data_status` field of a request.
enum class DataStatus : std::uint8_t { Control = 0, Payload = 1, Final = 2 };

/// The device's judgement of a request. It never answers a frame from BadLength to BadChecksum,
/// because it cannot trust it.
enum class Verdict {
    Ok,
    BadLength,
    BadReportId,
    BadMagic,
    BadDataLength,
    BadChecksum,
    BadDataStatus,
    BadPackNumber,
    BadPayload,
    UnknownCommand,
    Refused,
    Violation
};

const char* verdictName(Verdict verdict);
bool isUntrusted(Verdict verdict);

struct Request
{
    std::uint16_t command = 0;
    std::uint8_t dataStatus = 0;
    std::uint16_t dataLength = 0;
    std::uint32_t packNumber = 0;
    Bytes payload;
};

struct ParsedRequest
{
    Verdict verdict = Verdict::Ok;
    /// The fields, as far as the report is long enough; a bad frame is logged with them too.
    Request request;
};

ParsedRequest parseRequest(const std::uint8_t* report, std::size_t size);

struct Response
{
    std::uint16_t command = 0;
    std::uint32_t status = 0;
    Bytes payload;
    /// A payload length for the header that differs from the true one.
    std::optional<std::uint16_t> claimedLength;
    bool corruptChecksum = false;
};

/// A full report of kReportSize bytes; the payload is cut at kMaxPayload.
Bytes buildResponse(const Response& response);

/// A full request report, as a host would send it.
Bytes buildRequest(const Request& request);

void storeLittleEndian16(std::uint8_t* to, std::uint16_t value);
void storeLittleEndian32(std::uint8_t* to, std::uint32_t value);
std::uint16_t loadLittleEndian16(const std::uint8_t* from);
std::uint32_t loadLittleEndian32(const std::uint8_t* from);

} // namespace virtualcamera
