#pragma once

#include "core/Commands.h"
#include "core/Device.h"

#include <string>

namespace virtualcamera {

inline Request makeRequest(std::uint16_t command, DataStatus status, Bytes payload = {},
                           std::uint32_t packNumber = 0)
{
    Request request;
    request.command = command;
    request.dataStatus = static_cast<std::uint8_t>(status);
    request.dataLength = static_cast<std::uint16_t>(payload.size());
    request.packNumber = packNumber;
    request.payload = std::move(payload);
    return request;
}

inline Request readOf(std::uint16_t command)
{
    return makeRequest(command, DataStatus::Final);
}

inline Request writeOf(std::uint16_t command, std::uint8_t value)
{
    return makeRequest(command, DataStatus::Payload, {value});
}

inline Request storeRequest()
{
    return makeRequest(command::kStoreSettings, DataStatus::Payload);
}

inline Reaction send(Device& device, const Request& request)
{
    const Bytes report = buildRequest(request);
    return device.handleReport(report.data(), report.size());
}

inline std::uint16_t commandOf(const Bytes& report)
{
    return loadLittleEndian16(&report.at(3));
}

inline std::uint32_t statusOf(const Bytes& report)
{
    return loadLittleEndian32(&report.at(8));
}

inline Bytes payloadOf(const Bytes& report)
{
    const auto begin = report.begin() + static_cast<Bytes::difference_type>(kHeaderSize);
    return Bytes(begin, begin + loadLittleEndian16(&report.at(6)));
}

/// The status of the only report of the reaction; without a report, a value that no device returns.
inline std::uint32_t answerOf(const Reaction& reaction)
{
    return reaction.reports.size() == 1 ? statusOf(reaction.reports.front()) : 0xDEADU;
}

inline DeviceConfig testConfig()
{
    DeviceConfig config;
    const std::string serial = "SVAA009500551";
    config.serial.assign(serial.begin(), serial.end());
    return config;
}

} // namespace virtualcamera
