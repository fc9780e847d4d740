#include "Requests.h"

#include "core/Checksum.h"

#include <gtest/gtest.h>

namespace virtualcamera {

namespace {

std::uint16_t checksumOf(const Bytes& report)
{
    return loadLittleEndian16(&report[kChecksumOffset]);
}

Verdict verdictOf(const Bytes& report)
{
    return parseRequest(report.data(), report.size()).verdict;
}

} // namespace

TEST(Checksum, MatchesKnownValues)
{
    EXPECT_EQ(0x04A3, checksumOf(buildRequest(readOf(0x5001))));
    EXPECT_EQ(0x05E7, checksumOf(buildRequest(readOf(0x5000))));
    EXPECT_EQ(0x03BA, checksumOf(buildRequest(writeOf(0x5091, 1))));
    EXPECT_EQ(0x0A39, checksumOf(buildRequest(makeRequest(0x4000, DataStatus::Control))));
}

TEST(Checksum, CanBeContinued)
{
    const Bytes bytes{1, 2, 3, 4, 5, 6, 7};
    EXPECT_EQ(checksum(bytes.data(), bytes.size()),
              checksum(bytes.data() + 3, 4, checksum(bytes.data(), 3)));
    EXPECT_EQ(0xFFFF, checksum(bytes.data(), 0));
}

TEST(Frame, ParsesWhatAHostBuilds)
{
    const Request request = makeRequest(0x4200, DataStatus::Payload, Bytes(kMaxPayload, 0xA5), 7);
    const Bytes report = buildRequest(request);
    ASSERT_EQ(kReportSize, report.size());
    const ParsedRequest parsed = parseRequest(report.data(), report.size());
    EXPECT_EQ(Verdict::Ok, parsed.verdict);
    EXPECT_EQ(0x4200, parsed.request.command);
    EXPECT_EQ(1, parsed.request.dataStatus);
    EXPECT_EQ(7U, parsed.request.packNumber);
    EXPECT_EQ(request.payload, parsed.request.payload);
}

TEST(Frame, RejectsInvalidFrames)
{
    const Bytes good = buildRequest(writeOf(0x5091, 1));
    EXPECT_EQ(Verdict::Ok, verdictOf(good));
    Bytes bad = good;
    bad[0] = 2;
    EXPECT_EQ(Verdict::BadReportId, verdictOf(bad));
    bad = good;
    bad[2] = 0x5B;
    EXPECT_EQ(Verdict::BadMagic, verdictOf(bad));
    bad = good;
    bad[7] = 0x04; // 1025 bytes
    EXPECT_EQ(Verdict::BadDataLength, verdictOf(bad));
    bad = good;
    bad[14] = 0;
    EXPECT_EQ(Verdict::BadChecksum, verdictOf(bad));
    bad = good;
    bad[12] ^= 1;
    EXPECT_EQ(Verdict::BadChecksum, verdictOf(bad));
    bad = good;
    bad.pop_back();
    EXPECT_EQ(Verdict::BadLength, verdictOf(bad));
    EXPECT_EQ(Verdict::BadLength, verdictOf({1, 0x5A}));
}

TEST(Frame, IgnoresBytesAfterThePayload)
{
    Bytes report = buildRequest(writeOf(0x5091, 1));
    report[500] = 0x77;
    EXPECT_EQ(Verdict::Ok, verdictOf(report));
}

TEST(Frame, ResponseCarriesStatusAndPayload)
{
    Response response;
    response.command = 0x5010;
    response.status = 3;
    response.payload = {'a', 'b'};
    const Bytes report = buildResponse(response);
    ASSERT_EQ(kReportSize, report.size());
    EXPECT_EQ(1, report[0]);
    EXPECT_EQ(0x5010, commandOf(report));
    EXPECT_EQ(3U, statusOf(report));
    EXPECT_EQ(response.payload, payloadOf(report));
    EXPECT_EQ(Verdict::Ok, verdictOf(report));
}

} // namespace virtualcamera
