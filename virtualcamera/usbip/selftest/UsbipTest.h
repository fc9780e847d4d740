#pragma once

#include "ControlCommands.h"
#include "UsbipBus.h"
#include "UsbipClient.h"

#include <gtest/gtest.h>

#include <string>

namespace virtualcamera {

/// A bus, and requests to it as they come over the control socket.
class UsbipTest : public testing::Test
{
protected:
    /// Executes the request and expects "ok".
    std::string request(const std::string& line);
    /// The value of one word "name=value" of the answer.
    std::string value(const std::string& line, const std::string& name);
    /// Imports a camera that is on the bus, through a socket pair.
    UsbipClient import(const std::string& id);

    /// Writes a report and reads the answer as a HID driver does.
    Bytes exchange(UsbipClient& host, const Bytes& report);

    UsbipBus m_bus;
    ControlCommands m_commands{m_bus, [] {}};
};

Bytes readRequest(std::uint16_t command);
Bytes writeRequest(std::uint16_t command, std::uint8_t value);
/// The status of an answer, and its payload.
std::uint32_t statusOf(const Bytes& report);
Bytes payloadOf(const Bytes& report);

} // namespace virtualcamera
