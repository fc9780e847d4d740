#include "Frame.h"

#include "Checksum.h"

#include <algorithm>

namespace virtualcamera {

namespace {

enum Offset : std::size_t {
    ReportIdAt = 0,
    MagicAt = 1,
    CommandAt = 3,
    DataStatusAt = 5,
    DataLengthAt = 6,
    PackNumberAt = 8
};

std::uint16_t frameChecksum(const Bytes& report, std::size_t payloadSize)
{
    // The checksum skips its own field: header up to the field, then the payload behind it.
    const std::uint16_t header = checksum(report.data(), kChecksumOffset);
    return checksum(report.data() + kHeaderSize, payloadSize, header);
}

Bytes emptyReport(std::uint16_t command)
{
    Bytes report(kReportSize, 0);
    report[ReportIdAt] = kReportId;
    storeLittleEndian16(&report[MagicAt], kMagic);
    storeLittleEndian16(&report[CommandAt], command);
    return report;
}

} // namespace

const char* verdictName(Verdict verdict)
{
    switch (verdict) {
    case Verdict::Ok:
        return "ok";
    case Verdict::BadLength:
        return "badlength";
    case Verdict::BadReportId:
        return "badreportid";
    case Verdict::BadMagic:
        return "badmagic";
    case Verdict::BadDataLength:
        return "baddatalength";
    case Verdict::BadChecksum:
        return "badcrc";
    case Verdict::BadDataStatus:
        return "baddatastatus";
    case Verdict::BadPackNumber:
        return "badpacknum";
    case Verdict::BadPayload:
        return "badpayload";
    case Verdict::UnknownCommand:
        return "unknown";
    case Verdict::Refused:
        return "refused";
    case Verdict::Violation:
        return "violation";
    }
    return "?";
}

bool isUntrusted(Verdict verdict)
{
    switch (verdict) {
    case Verdict::BadLength:
    case Verdict::BadReportId:
    case Verdict::BadMagic:
    case Verdict::BadDataLength:
    case Verdict::BadChecksum:
        return true;
    default:
        return false;
    }
}

ParsedRequest parseRequest(const std::uint8_t* report, std::size_t size)
{
    ParsedRequest parsed;
    Request& request = parsed.request;
    if (size < kHeaderSize) {
        parsed.verdict = Verdict::BadLength;
        return parsed;
    }
    request.command = loadLittleEndian16(report + CommandAt);
    request.dataStatus = report[DataStatusAt];
    request.dataLength = loadLittleEndian16(report + DataLengthAt);
    request.packNumber = loadLittleEndian32(report + PackNumberAt);
    const std::size_t present = std::min<std::size_t>(request.dataLength, size - kHeaderSize);
    request.payload.assign(report + kHeaderSize, report + kHeaderSize + present);

    if (size != kReportSize)
        parsed.verdict = Verdict::BadLength;
    else if (report[ReportIdAt] != kReportId)
        parsed.verdict = Verdict::BadReportId;
    else if (loadLittleEndian16(report + MagicAt) != kMagic)
        parsed.verdict = Verdict::BadMagic;
    else if (request.dataLength > kMaxPayload)
        parsed.verdict = Verdict::BadDataLength;
    else if (frameChecksum(Bytes(report, report + size), request.dataLength) !=
             loadLittleEndian16(report + kChecksumOffset))
        parsed.verdict = Verdict::BadChecksum;
    return parsed;
}

Bytes buildResponse(const Response& response)
{
    Bytes report = emptyReport(response.command);
    const std::size_t size = std::min(response.payload.size(), kMaxPayload);
    const auto claimed = response.claimedLength.value_or(static_cast<std::uint16_t>(size));
    report[DataStatusAt] =
        static_cast<std::uint8_t>(size > 0 ? DataStatus::Payload : DataStatus::Control);
    storeLittleEndian16(&report[DataLengthAt], claimed);
    storeLittleEndian32(&report[PackNumberAt], response.status);
    std::copy_n(response.payload.begin(), size, report.begin() + kHeaderSize);
    std::uint16_t sum = frameChecksum(report, size);
    if (response.corruptChecksum)
        sum = static_cast<std::uint16_t>(~sum);
    storeLittleEndian16(&report[kChecksumOffset], sum);
    return report;
}

Bytes buildRequest(const Request& request)
{
    Bytes report = emptyReport(request.command);
    const std::size_t size = std::min(request.payload.size(), kMaxPayload);
    report[DataStatusAt] = request.dataStatus;
    storeLittleEndian16(&report[DataLengthAt], request.dataLength);
    storeLittleEndian32(&report[PackNumberAt], request.packNumber);
    std::copy_n(request.payload.begin(), size, report.begin() + kHeaderSize);
    storeLittleEndian16(
        &report[kChecksumOffset],
        frameChecksum(report, std::min<std::size_t>(request.dataLength, kMaxPayload)));
    return report;
}

void storeLittleEndian16(std::uint8_t* to, std::uint16_t value)
{
    to[0] = static_cast<std::uint8_t>(value & 0xFFU);
    to[1] = static_cast<std::uint8_t>(value >> 8U);
}

void storeLittleEndian32(std::uint8_t* to, std::uint32_t value)
{
    storeLittleEndian16(to, static_cast<std::uint16_t>(value & 0xFFFFU));
    storeLittleEndian16(to + 2, static_cast<std::uint16_t>(value >> 16U));
}

std::uint16_t loadLittleEndian16(const std::uint8_t* from)
{
    return static_cast<std::uint16_t>(from[0] | (from[1] << 8U));
}

std::uint32_t loadLittleEndian32(const std::uint8_t* from)
{
    return loadLittleEndian16(from) |
           (static_cast<std::uint32_t>(loadLittleEndian16(from + 2)) << 16U);
}

} // namespace virtualcamera
