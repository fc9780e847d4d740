#pragma once

#include "FileDescriptor.h"
#include "UsbipWire.h"

#include <chrono>
#include <map>
#include <optional>
#include <vector>

namespace virtualcamera {

/// A minimal USB/IP host for tests: sends transfers and collects their answers. Throws
/// std::runtime_error when the connection ends unexpectedly or an answer does not arrive in time.
class UsbipClient
{
public:
    struct Answer
    {
        std::uint32_t code = 0;
        std::int32_t status = 0;
        std::uint32_t actual = 0;
        Bytes data;
        std::vector<usbip::IsoPacket> packets;
    };

    explicit UsbipClient(FileDescriptor socket)
        : m_socket(std::move(socket))
    {
    }

    Answer controlIn(std::uint8_t type, std::uint8_t request, unsigned value, unsigned index,
                     unsigned length);
    Answer controlOut(std::uint8_t type, std::uint8_t request, unsigned value, unsigned index,
                      const Bytes& data = {});
    Answer out(std::uint8_t endpoint, const Bytes& data);

    /// Each queues a transfer and returns its number.
    std::uint32_t submitIn(std::uint8_t endpoint, unsigned length);
    std::uint32_t submitIsochronous(std::uint8_t endpoint, unsigned packets, unsigned packetSize);
    std::uint32_t submitUnlink(std::uint32_t number);
    /// Sends the header of a transfer with any length, without data.
    std::uint32_t submitHeader(bool in, std::uint8_t endpoint, std::uint32_t length,
                               std::uint32_t packets);

    /// Returns the answer to this transfer; answers that arrive before it are kept.
    Answer wait(std::uint32_t number);
    /// Whether the answer arrived before any later one.
    bool hasAnswer(std::uint32_t number) const { return m_answers.count(number) != 0; }
    /// Reads until the other side closes the connection; false when it does not do so in time.
    bool readToTheEnd();

    const FileDescriptor& socket() const { return m_socket; }

private:
    std::uint32_t send(bool in, std::uint32_t code, std::uint8_t endpoint, std::uint32_t length,
                       std::uint32_t packets, const Bytes& setup, const Bytes& data);
    bool readAnswer();
    bool read(std::uint8_t* to, std::size_t size);

    FileDescriptor m_socket;
    std::uint32_t m_last = 0;
    std::map<std::uint32_t, bool> m_isIn;
    std::map<std::uint32_t, Answer> m_answers;
};

} // namespace virtualcamera
