#pragma once

#include "Fault.h"
#include "FirmwareReceiver.h"
#include "RequestLog.h"
#include "Settings.h"

#include <chrono>
#include <optional>
#include <string>

namespace virtualcamera {

struct DeviceConfig
{
    Bytes serial;
    Bytes firmwareVersion{1, 0, 5};
    /// Payload byte 0 of the probe's answer; 0 means connected.
    std::uint8_t probe = 0;
    /// Bytes before the value in the answer to a settings read.
    Bytes replyPrefix;
    std::array<ControlRange, kControlCount> controlRanges{};
    /// Whether the settings are lost without power unless they were stored. By default the camera
    /// keeps them as they are.
    bool volatileSettings = false;
    /// Time from acknowledging the end of a firmware transfer to leaving the bus. The host needs
    /// time to read the acknowledgement, because the queue goes with the device.
    std::chrono::milliseconds dropDelay{150};
    std::chrono::milliseconds returnDelay{1000};
};

struct VideoFormat
{
    std::uint32_t width = 1920;
    std::uint32_t height = 1080;
    bool streaming = false;
};

struct BusDrop
{
    std::chrono::milliseconds after{0};
    /// No value when the device does not return.
    std::optional<std::chrono::milliseconds> returnsAfter;
};

/// What happens on the bus as the result of one request.
struct Reaction
{
    bool writeFails = false;
    bool nextReadFails = false;
    std::chrono::milliseconds delay{0};
    std::vector<Bytes> reports;
    std::optional<BusDrop> drop;
};

/// The camera behind the HID interface: its registers, firmware and request log. Independent of the
/// operating system: a front end passes reports in and executes the reactions. Not thread-safe.
class Device
{
public:
    explicit Device(DeviceConfig config);

    Reaction handleReport(const std::uint8_t* data, std::size_t size);
    /// Called after the device was without power: loads what was stored of the values that it does
    /// not keep by itself, and runs a firmware that was received intact.
    void powerCycle();

    DeviceConfig& config() { return m_config; }
    const DeviceConfig& config() const { return m_config; }
    SettingsBank& current() { return m_current; }
    const SettingsBank& current() const { return m_current; }
    const SettingsBank& stored() const { return m_stored; }
    const ControlRange& range(Control control) const;

    /// The format that is reported while the camera does not stream.
    VideoFormat& configuredFormat() { return m_configuredFormat; }
    const VideoFormat& configuredFormat() const { return m_configuredFormat; }
    /// Set by the video front end; no value when the stream has stopped.
    void setStream(std::optional<VideoFormat> stream) { m_stream = stream; }
    VideoFormat reportedFormat() const;

    FaultPlan& faults() { return m_faults; }
    const FaultPlan& faults() const { return m_faults; }
    RequestLog& log() { return m_log; }
    const RequestLog& log() const { return m_log; }
    const FirmwareReceiver& firmware() const { return m_receiver; }

    std::string firmwareVersionText() const;

private:
    struct Outcome
    {
        Verdict verdict = Verdict::Ok;
        std::uint32_t status = 0;
        Bytes payload;
        bool endsTransfer = false;
    };

    Outcome execute(const Request& request);
    Outcome readSetting(const SettingInfo& info) const;
    Outcome writeSetting(const SettingInfo& info, const Request& request);
    Outcome runFirmwareCommand(const Request& request);
    bool breaksExclusivity(Setting setting, std::uint8_t value) const;
    Bytes videoFormatPayload() const;
    BusDrop restartAfterUpdate();
    Bytes staleReport() const;

    DeviceConfig m_config;
    SettingsBank m_current;
    SettingsBank m_stored;
    VideoFormat m_configuredFormat;
    std::optional<VideoFormat> m_stream;
    FaultPlan m_faults;
    RequestLog m_log;
    FirmwareReceiver m_receiver;
    std::optional<Bytes> m_pendingVersion;
    Bytes m_lastReport;
};

} // namespace virtualcamera
