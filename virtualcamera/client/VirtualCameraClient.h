#pragma once

#include <chrono>
#include <cstdint>
#include <map>
#include <optional>
#include <string>
#include <vector>

namespace virtualcamera {

/// Talks to virtualcamera or virtualcamera-usbip over the control socket. Every method throws
/// std::runtime_error when the server cannot be reached or refuses the request. Not thread-safe.
class VirtualCameraClient
{
public:
    using Options = std::map<std::string, std::string>;

    struct CameraEntry
    {
        std::string id;
        bool onBus = false;
        std::string card;
        std::string serial;
    };

    struct LogEntry
    {
        std::uint64_t sequence = 0;
        std::uint16_t command = 0;
        unsigned dataStatus = 0;
        unsigned dataLength = 0;
        std::uint32_t packNumber = 0;
        std::vector<std::uint8_t> payload;
        std::string verdict;
        /// No value when the device did not answer.
        std::optional<std::uint32_t> answerStatus;
    };

    struct Handles
    {
        std::uint64_t hid = 0;
        std::uint64_t video = 0;
        std::uint64_t hidTotal = 0;
        std::uint64_t videoTotal = 0;
    };

    struct Stats
    {
        bool onBus = false;
        /// How often it has appeared on the bus.
        std::uint64_t connections = 0;
        bool streaming = false;
        int width = 0;
        int height = 0;
        std::string fourcc;
        int rate = 0;
        std::uint64_t frames = 0;
        std::uint64_t requests = 0;
        std::uint64_t violations = 0;
    };

    struct Firmware
    {
        /// The version that is running.
        std::string version;
        /// The image of the running or the last transfer.
        std::uint64_t size = 0;
        std::uint16_t checksum = 0;
        std::uint32_t packets = 0;
        bool receiving = false;
        bool complete = false;
    };

    struct Nodes
    {
        /// Empty when the camera has no such node now.
        std::string hid;
        std::string video;
        std::string metadata;
    };

    /// Without a path the environment variable VIRTUALCAMERA_SOCKET names the socket.
    explicit VirtualCameraClient(const std::string& path = {});
    ~VirtualCameraClient();
    VirtualCameraClient(const VirtualCameraClient&) = delete;
    VirtualCameraClient& operator=(const VirtualCameraClient&) = delete;

    void plug(const std::string& id, const Options& options = {});
    void unplug(const std::string& id);
    std::vector<CameraEntry> list();

    /// `fault` is the name with arguments and options, for example "late 500 cmd=0x5001".
    void fault(const std::string& id, const std::string& fault);
    void clear(const std::string& id);
    std::multimap<std::string, std::string> registers(const std::string& id);
    /// The value of one register; throws when no register has that name.
    std::string registerValue(const std::string& id, const std::string& name);
    void set(const std::string& id, const std::string& name, const std::string& value);
    void set(const std::string& id, const std::string& name, int value);

    std::vector<LogEntry> log(const std::string& id, std::uint64_t fromSequence = 0);
    void clearLog(const std::string& id);
    Handles handles(const std::string& id);
    Stats stats(const std::string& id);
    Firmware firmware(const std::string& id);
    Nodes nodes(const std::string& id);

    /// False when the condition, such as "frames>=10" or "onbus", did not become true in time.
    bool wait(const std::string& id, const std::string& condition,
              std::chrono::milliseconds timeoutMs);
    void quit();

    /// Sends a raw request line; returns the words after "ok".
    std::vector<std::string> request(const std::string& line);

private:
    using Fields = std::multimap<std::string, std::string>;

    std::string exchange(const std::string& line);
    Fields fields(const std::string& line);

    int m_socket = -1;
    std::string m_received;
};

} // namespace virtualcamera
