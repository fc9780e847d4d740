#include "UsbipClient.h"

#include <cerrno>
#include <poll.h>
#include <stdexcept>
#include <sys/socket.h>

namespace virtualcamera {

namespace {

constexpr int kTimeoutMs = 20000;

void append32(Bytes& to, std::uint32_t value)
{
    for (unsigned shift = 32; shift > 0;) {
        shift -= 8;
        to.push_back(static_cast<std::uint8_t>(value >> shift & 0xFFU));
    }
}

std::uint32_t load32(const std::uint8_t* from)
{
    return static_cast<std::uint32_t>(from[0]) << 24U | static_cast<std::uint32_t>(from[1]) << 16U |
           static_cast<std::uint32_t>(from[2]) << 8U | from[3];
}

Bytes setupBytes(std::uint8_t type, std::uint8_t request, unsigned value, unsigned index,
                 std::size_t length)
{
    Bytes setup{type, request, 0, 0, 0, 0, 0, 0};
    storeLittleEndian16(&setup[2], static_cast<std::uint16_t>(value));
    storeLittleEndian16(&setup[4], static_cast<std::uint16_t>(index));
    storeLittleEndian16(&setup[6], static_cast<std::uint16_t>(length));
    return setup;
}

} // namespace

UsbipClient::Answer UsbipClient::controlIn(std::uint8_t type, std::uint8_t request, unsigned value,
                                           unsigned index, unsigned length)
{
    return wait(send(true, usbip::kSubmit, 0, length, usbip::kNotIsochronous,
                     setupBytes(type, request, value, index, length), {}));
}

UsbipClient::Answer UsbipClient::controlOut(std::uint8_t type, std::uint8_t request, unsigned value,
                                            unsigned index, const Bytes& data)
{
    return wait(send(false, usbip::kSubmit, 0, static_cast<std::uint32_t>(data.size()),
                     usbip::kNotIsochronous, setupBytes(type, request, value, index, data.size()),
                     data));
}

UsbipClient::Answer UsbipClient::out(std::uint8_t endpoint, const Bytes& data)
{
    return wait(send(false, usbip::kSubmit, endpoint, static_cast<std::uint32_t>(data.size()),
                     usbip::kNotIsochronous, Bytes(8), data));
}

std::uint32_t UsbipClient::submitIn(std::uint8_t endpoint, unsigned length)
{
    return send(true, usbip::kSubmit, endpoint, length, usbip::kNotIsochronous, Bytes(8), {});
}

std::uint32_t UsbipClient::submitIsochronous(std::uint8_t endpoint, unsigned packets,
                                             unsigned packetSize)
{
    Bytes encoded;
    for (unsigned i = 0; i < packets; ++i) {
        const Bytes packet = usbip::IsoPacket{i * packetSize, packetSize, 0, 0}.encode();
        encoded.insert(encoded.end(), packet.begin(), packet.end());
    }
    return send(true, usbip::kSubmit, endpoint, packets * packetSize, packets, Bytes(8), encoded);
}

std::uint32_t UsbipClient::submitUnlink(std::uint32_t number)
{
    return send(false, usbip::kUnlink, 0, number, 0, Bytes(8), {});
}

std::uint32_t UsbipClient::submitHeader(bool in, std::uint8_t endpoint, std::uint32_t length,
                                        std::uint32_t packets)
{
    return send(in, usbip::kSubmit, endpoint, length, packets, Bytes(8), {});
}

std::uint32_t UsbipClient::send(bool in, std::uint32_t code, std::uint8_t endpoint,
                                std::uint32_t length, std::uint32_t packets, const Bytes& setup,
                                const Bytes& data)
{
    const std::uint32_t number = ++m_last;
    m_isIn[number] = in;
    Bytes bytes;
    for (const std::uint32_t value :
         {code, number, 0x00010002U, in ? 1U : 0U, static_cast<std::uint32_t>(endpoint)})
        append32(bytes, value);
    if (code == usbip::kUnlink) {
        append32(bytes, length); // the transfer to unlink
    } else {
        for (const std::uint32_t value : {0U, length, 0U, packets, 0U})
            append32(bytes, value);
        bytes.insert(bytes.end(), setup.begin(), setup.end());
    }
    bytes.resize(usbip::kHeaderSize, 0);
    bytes.insert(bytes.end(), data.begin(), data.end());
    if (::send(m_socket.get(), bytes.data(), bytes.size(), MSG_NOSIGNAL) !=
        static_cast<ssize_t>(bytes.size()))
        throw std::runtime_error("the camera accepts no more data");
    return number;
}

UsbipClient::Answer UsbipClient::wait(std::uint32_t number)
{
    while (m_answers.count(number) == 0)
        if (!readAnswer())
            throw std::runtime_error("the camera closed the connection");
    Answer answer = m_answers.at(number);
    m_answers.erase(number);
    return answer;
}

bool UsbipClient::readToTheEnd()
{
    try {
        while (readAnswer()) {
        }
        return true;
    } catch (const std::runtime_error&) {
        return false;
    }
}

bool UsbipClient::readAnswer()
{
    Bytes header(usbip::kHeaderSize);
    if (!read(header.data(), header.size()))
        return false;
    Answer answer;
    answer.code = load32(&header[0]);
    const std::uint32_t number = load32(&header[4]);
    answer.status = static_cast<std::int32_t>(load32(&header[20]));
    if (answer.code == usbip::kSubmitted) {
        answer.actual = load32(&header[24]);
        const std::uint32_t packets = load32(&header[32]);
        answer.data.resize(m_isIn.at(number) ? answer.actual : 0);
        if (!answer.data.empty() && !read(answer.data.data(), answer.data.size()))
            return false;
        Bytes encoded(packets * usbip::kIsoPacketSize);
        if (!encoded.empty() && !read(encoded.data(), encoded.size()))
            return false;
        for (std::size_t at = 0; at < encoded.size(); at += usbip::kIsoPacketSize)
            answer.packets.push_back(usbip::IsoPacket::parse(&encoded[at]));
    }
    m_answers[number] = std::move(answer);
    return true;
}

bool UsbipClient::read(std::uint8_t* to, std::size_t size)
{
    while (size > 0) {
        pollfd event{m_socket.get(), POLLIN, 0};
        if (::poll(&event, 1, kTimeoutMs) == 0)
            throw std::runtime_error("no answer");
        const ssize_t count = ::recv(m_socket.get(), to, size, 0);
        if (count <= 0)
            return false;
        to += count;
        size -= static_cast<std::size_t>(count);
    }
    return true;
}

} // namespace virtualcamera
