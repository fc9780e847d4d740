#include "Device.h"

#include "Commands.h"
#include "DeviceFirmware.h"

#include <algorithm>
#include <utility>

namespace virtualcamera {

namespace {

constexpr std::uint32_t kRefused = 1;

const SettingInfo* findSetting(std::uint16_t command)
{
    const auto readCode = static_cast<std::uint16_t>(command & 0xFFFEU);
    const auto& infos = settingInfos();
    const auto found =
        std::find_if(infos.begin(), infos.end(),
                     [readCode](const SettingInfo& info) { return info.readCommand == readCode; });
    return found == infos.end() ? nullptr : &*found;
}

bool isStatusRead(std::uint16_t command)
{
    return command == command::kProbe || command == command::kFirmwareVersion ||
           command == command::kSerialNumber || command == command::kVideoFormat;
}

bool isWrite(std::uint16_t command)
{
    return command == command::kStoreSettings || (findSetting(command) && (command & 1U) != 0);
}

bool isFirmware(std::uint16_t command)
{
    return command == command::kFirmwareStart || command == command::kFirmwarePacket ||
           command == command::kFirmwareEnd;
}

/// Checks the header of every command except the firmware packet, which has its own check.
Verdict checkHeader(const Request& request)
{
    const std::uint16_t command = request.command;
    if (command == command::kFirmwarePacket)
        return Verdict::Ok;
    DataStatus expected = DataStatus::Final;
    if (isFirmware(command))
        expected = DataStatus::Control;
    else if (isWrite(command))
        expected = DataStatus::Payload;
    if (request.dataStatus != static_cast<std::uint8_t>(expected))
        return Verdict::BadDataStatus;
    if (request.packNumber != 0)
        return Verdict::BadPackNumber;
    const bool carriesValue = isWrite(command) && command != command::kStoreSettings;
    if (request.payload.size() != (carriesValue ? 1U : 0U))
        return Verdict::BadPayload;
    return Verdict::Ok;
}

/// A refusal because of a fault, before the command is executed.
std::optional<std::uint32_t> refusal(const std::vector<FaultRule>& faults)
{
    for (const FaultRule& fault : faults) {
        if (fault.kind == FaultKind::Status)
            return fault.first;
        if (fault.kind == FaultKind::RefuseStart || fault.kind == FaultKind::NackPacket)
            return kRefused;
    }
    return std::nullopt;
}

const FaultRule* findFault(const std::vector<FaultRule>& faults, FaultKind kind)
{
    const auto found = std::find_if(faults.begin(), faults.end(),
                                    [kind](const FaultRule& rule) { return rule.kind == kind; });
    return found == faults.end() ? nullptr : &*found;
}

} // namespace

Device::Device(DeviceConfig config)
    : m_config(std::move(config))
    , m_current(SettingsBank::factory(m_config.controlRanges))
    , m_stored(m_current)
{
}

Reaction Device::handleReport(const std::uint8_t* data, std::size_t size)
{
    const ParsedRequest parsed = parseRequest(data, size);
    const Request& request = parsed.request;
    LogEntry& entry = m_log.append(request, parsed.verdict);
    Reaction reaction;
    const std::vector<FaultRule> faults =
        m_faults.countRequest(request.command, request.packNumber);

    if (findFault(faults, FaultKind::WriteError)) {
        entry.verdict = Verdict::Refused;
        reaction.writeFails = true;
        return reaction;
    }
    if (findFault(faults, FaultKind::UnplugAt)) {
        reaction.drop = BusDrop{};
        return reaction;
    }
    reaction.nextReadFails = findFault(faults, FaultKind::ReadError) != nullptr;
    if (isUntrusted(parsed.verdict))
        return reaction;

    Outcome outcome;
    if (const auto status = refusal(faults)) {
        outcome.verdict = Verdict::Refused;
        outcome.status = *status;
    } else {
        outcome = execute(request);
    }
    entry.verdict = outcome.verdict;
    if (outcome.verdict == Verdict::Violation)
        m_log.countViolation();
    if (outcome.endsTransfer)
        reaction.drop = restartAfterUpdate();
    if (reaction.nextReadFails || findFault(faults, FaultKind::NoReply))
        return reaction;

    Response response;
    response.command = request.command;
    response.status = outcome.status;
    response.payload = std::move(outcome.payload);
    if (findFault(faults, FaultKind::WrongEcho))
        response.command = static_cast<std::uint16_t>(response.command ^ 0x00FFU);
    if (const FaultRule* oversize = findFault(faults, FaultKind::Oversize))
        response.claimedLength = static_cast<std::uint16_t>(oversize->first);
    response.corruptChecksum = findFault(faults, FaultKind::BadChecksum) != nullptr;
    entry.answerStatus = response.status;

    Bytes report = buildResponse(response);
    if (const FaultRule* stale = findFault(faults, FaultKind::Stale))
        reaction.reports.insert(reaction.reports.end(), stale->first, staleReport());
    m_lastReport = report;
    if (const FaultRule* cut = findFault(faults, FaultKind::Short))
        report.resize(std::min<std::size_t>(cut->first, report.size()));
    if (!report.empty())
        reaction.reports.push_back(std::move(report));
    if (const FaultRule* late = findFault(faults, FaultKind::Late))
        reaction.delay = std::chrono::milliseconds(late->first);
    return reaction;
}

void Device::powerCycle()
{
    // The picture controls belong to the video interface, which starts anew.
    m_current.controls = m_stored.controls;
    if (m_config.volatileSettings)
        m_current.settings = m_stored.settings;
    m_stream.reset();
    m_lastReport.clear();
    if (m_pendingVersion)
        m_config.firmwareVersion = *std::exchange(m_pendingVersion, std::nullopt);
    m_receiver.finish();
}

const ControlRange& Device::range(Control control) const
{
    return m_config.controlRanges[static_cast<std::size_t>(control)];
}

VideoFormat Device::reportedFormat() const
{
    return m_stream.value_or(m_configuredFormat);
}

std::string Device::firmwareVersionText() const
{
    std::string text;
    for (const std::uint8_t part : m_config.firmwareVersion) {
        if (!text.empty())
            text += '.';
        text += std::to_string(part);
    }
    return text;
}

Device::Outcome Device::execute(const Request& request)
{
    const SettingInfo* setting = findSetting(request.command);
    const std::uint16_t command = request.command;
    if (!setting && !isFirmware(command) && !isStatusRead(command) &&
        command != command::kStoreSettings)
        return {Verdict::UnknownCommand, kRefused, {}, false};
    if (const Verdict verdict = checkHeader(request); verdict != Verdict::Ok)
        return {verdict, kRefused, {}, false};
    if (isFirmware(command))
        return runFirmwareCommand(request);
    if (setting)
        return isWrite(command) ? writeSetting(*setting, request) : readSetting(*setting);

    Outcome outcome;
    switch (command) {
    case command::kProbe:
        outcome.payload = {m_config.probe};
        break;
    case command::kFirmwareVersion:
        outcome.payload = m_config.firmwareVersion;
        break;
    case command::kSerialNumber:
        outcome.payload = m_config.serial;
        break;
    case command::kVideoFormat:
        outcome.payload = videoFormatPayload();
        break;
    default:
        m_stored = m_current;
        break;
    }
    return outcome;
}

Device::Outcome Device::readSetting(const SettingInfo& info) const
{
    Outcome outcome;
    outcome.payload = m_config.replyPrefix;
    outcome.payload.push_back(m_current[info.setting]);
    return outcome;
}

Device::Outcome Device::writeSetting(const SettingInfo& info, const Request& request)
{
    const std::uint8_t value = request.payload.front();
    if (breaksExclusivity(info.setting, value))
        return {Verdict::Violation, kRefused, {}, false};
    m_current[info.setting] = value;
    return {};
}

bool Device::breaksExclusivity(Setting setting, std::uint8_t value) const
{
    // The camera crops either after the speaker or after the presenter's stage, never both.
    if (value == 0)
        return false;
    if (setting == Setting::AutoFrameSwitch)
        return m_current[Setting::FrameMaster] != 0;
    if (setting == Setting::FrameMaster)
        return m_current[Setting::AutoFrameSwitch] != 0;
    return false;
}

Device::Outcome Device::runFirmwareCommand(const Request& request)
{
    if (request.command == command::kFirmwareStart) {
        m_receiver.start();
        return {};
    }
    if (request.command == command::kFirmwarePacket) {
        const Verdict verdict = m_receiver.takePacket(request);
        return {verdict, verdict == Verdict::Ok ? 0 : kRefused, {}, false};
    }
    if (!m_receiver.finish())
        return {Verdict::Violation, kRefused, {}, false};
    return {Verdict::Ok, 0, {}, true};
}

Bytes Device::videoFormatPayload() const
{
    const VideoFormat format = reportedFormat();
    Bytes payload(36, 0);
    storeLittleEndian32(&payload[0], format.width);
    storeLittleEndian32(&payload[4], format.height);
    storeLittleEndian32(&payload[32], format.streaming ? 1 : 0);
    return payload;
}

BusDrop Device::restartAfterUpdate()
{
    // The device restarts after any image; the version that runs then depends on the image.
    const auto image = DeviceFirmware::decode(m_receiver.image());
    if (m_receiver.isComplete() && image && !m_faults.isActive(FaultKind::OldVersion))
        m_pendingVersion = image->version;
    BusDrop drop;
    drop.after = m_config.dropDelay;
    if (!m_faults.isActive(FaultKind::NeverReturn))
        drop.returnsAfter = m_config.returnDelay;
    return drop;
}

Bytes Device::staleReport() const
{
    if (!m_lastReport.empty())
        return m_lastReport;
    Response probe;
    probe.command = command::kProbe;
    probe.payload = {m_config.probe};
    return buildResponse(probe);
}

} // namespace virtualcamera
