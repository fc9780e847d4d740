#pragma once

#include "FileDescriptor.h"
#include "TransferHandler.h"
#include "UsbipWire.h"

#include <condition_variable>
#include <deque>
#include <functional>
#include <map>
#include <mutex>
#include <thread>
#include <vector>

namespace virtualcamera {

/// The connection to the one host that has imported a camera: takes its transfers, keeps those of
/// IN endpoints until there is something to answer, and gives back what it unlinks. May be used
/// from several threads.
class HostLink
{
public:
    /// An IN transfer that waits.
    struct Transfer
    {
        std::uint32_t sequence = 0;
        std::uint32_t length = 0;
        std::uint32_t startFrame = 0;
        std::vector<usbip::IsoPacket> packets;
    };

    struct Answer
    {
        /// 0 or a negative errno.
        std::int32_t status = 0;
        /// Cut at the length of the transfer, unless that is isochronous: then the packets of the
        /// transfer, which `make` fills in, tell what of it belongs where.
        Bytes data;
    };
    using Maker = std::function<Answer(Transfer&)>;

    HostLink(FileDescriptor socket, TransferHandler& handler);
    /// Closes.
    ~HostLink();
    HostLink(const HostLink&) = delete;
    HostLink& operator=(const HostLink&) = delete;

    void start();

    /// Answers the oldest transfer of the endpoint; false when none waits or no answer may go out
    /// any more.
    bool answer(std::uint8_t endpoint, const Maker& make);
    /// Waits for a transfer first. False when `isCancelled` became true (see wake()) or no answer
    /// may go out any more.
    bool answerWhenAsked(std::uint8_t endpoint, const Maker& make,
                         const std::function<bool()>& isCancelled);
    /// Lets answerWhenAsked() look at its `isCancelled` again.
    void wake();

    /// No IN endpoint answers any more; control transfers do. What comes before close(), so that
    /// the host's drivers are not in the middle of a transfer when the device leaves.
    void quiet();
    /// Ends the connection and waits until no handler is called any more. Not from a handler.
    void close();

private:
    void run();
    bool receive(std::uint8_t* to, std::size_t size);
    bool send(const Bytes& bytes);
    bool serve(const usbip::Command& command);
    bool submit(const usbip::Command& command);
    bool runControl(const usbip::Command& command, const Bytes& data);
    bool reply(const usbip::Command& command, std::int32_t status, std::uint32_t actual,
               const Bytes& data);
    bool unlink(const usbip::Command& command);
    bool answerLocked(std::uint8_t endpoint, const Maker& make);

    FileDescriptor m_socket;
    TransferHandler& m_handler;
    /// Taking a transfer out of its queue and sending its answer are one step: an answer that came
    /// after that of a later unlink would make the host drop the connection.
    std::mutex m_mutex;
    std::condition_variable m_changed;
    std::map<std::uint8_t, std::deque<Transfer>> m_waiting;
    bool m_quiet = false;
    bool m_ended = false;
    std::thread m_thread;
};

} // namespace virtualcamera
