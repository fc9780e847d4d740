#include "UsbipTest.h"

#include "core/Frame.h"
#include "protocol/ControlText.h"

#include <array>
#include <sys/socket.h>

namespace virtualcamera {

namespace {

Bytes buildFull(std::uint16_t command, DataStatus status, const Bytes& payload)
{
    Request request;
    request.command = command;
    request.dataStatus = static_cast<std::uint8_t>(status);
    request.dataLength = static_cast<std::uint16_t>(payload.size());
    request.payload = payload;
    return buildRequest(request);
}

} // namespace

std::string UsbipTest::request(const std::string& line)
{
    std::string reply = m_commands.execute(line);
    EXPECT_EQ(reply.rfind("ok", 0), 0U) << line << ": " << reply;
    return reply;
}

std::string UsbipTest::value(const std::string& line, const std::string& name)
{
    for (const std::string& word : splitWords(request(line)))
        if (const auto field = parseKeyValue(word); field && field->first == name)
            return field->second;
    ADD_FAILURE() << name << " is not in the answer to " << line;
    return {};
}

UsbipClient UsbipTest::import(const std::string& id)
{
    std::array<int, 2> sockets{};
    EXPECT_EQ(::socketpair(AF_UNIX, SOCK_STREAM | SOCK_CLOEXEC, 0, sockets.data()), 0);
    m_bus.connect(id, FileDescriptor(sockets[0]));
    return UsbipClient(FileDescriptor(sockets[1]));
}

Bytes UsbipTest::exchange(UsbipClient& host, const Bytes& report)
{
    const std::uint32_t answer = host.submitIn(endpoint::kHidIn, kReportSize);
    EXPECT_EQ(host.out(endpoint::kHidOut, report).status, 0);
    return host.wait(answer).data;
}

Bytes readRequest(std::uint16_t command)
{
    return buildFull(command, DataStatus::Final, {});
}

Bytes writeRequest(std::uint16_t command, std::uint8_t value)
{
    return buildFull(command, DataStatus::Payload, {value});
}

std::uint32_t statusOf(const Bytes& report)
{
    return parseRequest(report.data(), report.size()).request.packNumber;
}

Bytes payloadOf(const Bytes& report)
{
    return parseRequest(report.data(), report.size()).request.payload;
}

} // namespace virtualcamera
