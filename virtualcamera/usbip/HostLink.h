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

/// The connection to the one host that has imported a camera. Receives its transfers, queues those
/// of IN endpoints until there is an answer, and returns those that the host unlinks. Thread-safe.
class HostLink
{
public:
    /// A queued IN transfer.
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
        /// Cut at the length of the transfer, unless the transfer is isochronous: then `make` also
        /// fills in the packets, which say which part of the data belongs to which packet.
        Bytes data;
    };
    using Maker = std::function<Answer(Transfer&)>;

    HostLink(FileDescriptor socket, TransferHandler& handler);
    /// Calls close().
    ~HostLink();
    HostLink(const HostLink&) = delete;
    HostLink& operator=(const HostLink&) = delete;

    void start();

    /// Answers the oldest transfer of the endpoint; false when none is queued or after quiet().
    bool answer(std::uint8_t endpoint, const Maker& make);
    /// Waits for a transfer and answers it. False when `isCancelled` became true (see wake()) or
    /// after quiet().
    bool answerWhenAsked(std::uint8_t endpoint, const Maker& make,
                         const std::function<bool()>& isCancelled);
    /// Makes answerWhenAsked() check its `isCancelled` again.
    void wake();

    /// From now on IN endpoints answer nothing; control transfers are still answered. Called some
    /// time before close(), so that the host's drivers are not in the middle of a transfer when the
    /// device leaves.
    void quiet();
    /// Ends the connection and waits until no handler runs. Must not be called from a handler.
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
    /// Held while a transfer is taken from its queue and answered: when the answer followed that
    /// of a later unlink, the host would drop the connection.
    std::mutex m_mutex;
    std::condition_variable m_changed;
    std::map<std::uint8_t, std::deque<Transfer>> m_waiting;
    bool m_quiet = false;
    bool m_ended = false;
    std::thread m_thread;
};

} // namespace virtualcamera
