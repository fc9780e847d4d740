#include "ControlCommands.h"

#include "CameraOptions.h"
#include "core/Checksum.h"
#include "PixelFormats.h"
#include "protocol/ControlText.h"
#include "WaitCondition.h"

#include <climits>
#include <cstdio>
#include <map>
#include <stdexcept>

namespace virtualcamera {

namespace {

std::string hexNumber(unsigned value)
{
    char text[16];
    std::snprintf(text, sizeof text, "0x%04x", value);
    return text;
}

std::string text(const Bytes& bytes)
{
    return std::string(bytes.begin(), bytes.end());
}

/// The reply "ok name=value ...".
class Reply
{
public:
    Reply& add(std::string_view name, std::string_view value)
    {
        m_text += ' ' + formatKeyValue(name, value);
        return *this;
    }
    template <typename Number, typename = std::enable_if_t<std::is_arithmetic_v<Number>>>
    Reply& add(std::string_view name, Number value)
    {
        return add(name, std::to_string(value));
    }
    Reply& add(std::string_view name, bool value) { return add(name, value ? "1" : "0"); }
    Reply& add(std::string_view name, const char* value)
    {
        return add(name, std::string_view(value));
    }
    /// A value of several fields; the commas between them are not encoded.
    Reply& addFields(std::string_view name, const std::vector<std::string>& fields)
    {
        m_text += ' ' + std::string(name) + '=';
        for (std::size_t i = 0; i < fields.size(); ++i)
            m_text += (i == 0 ? "" : ",") + percentEncode(fields[i]);
        return *this;
    }
    std::string take() { return std::move(m_text); }

private:
    std::string m_text = "ok";
};

const std::string& wordAt(const std::vector<std::string>& words, std::size_t index)
{
    if (index >= words.size())
        throw std::invalid_argument("too few words");
    return words[index];
}

std::vector<std::string> logFields(const LogEntry& entry)
{
    const Request& request = entry.request;
    return {std::to_string(entry.sequence),
            hexNumber(request.command),
            std::to_string(request.dataStatus),
            std::to_string(request.dataLength),
            std::to_string(request.packNumber),
            toHex(request.payload),
            verdictName(entry.verdict),
            entry.answerStatus ? std::to_string(*entry.answerStatus) : "none"};
}

} // namespace

ControlCommands::ControlCommands(CameraBus& bus, std::function<void()> onQuit)
    : m_bus(bus)
    , m_onQuit(std::move(onQuit))
{
}

void ControlCommands::stop()
{
    m_stopping = true;
    const std::lock_guard<std::mutex> lock(m_bus.context().mutex);
    m_bus.context().changed.notify_all();
}

std::string ControlCommands::execute(const std::string& line)
{
    try {
        Words words = splitWords(line);
        if (words.empty())
            throw std::invalid_argument("empty request");
        return dispatch(words);
    } catch (const std::exception& error) {
        return std::string("error ") + error.what();
    }
}

void ControlCommands::executeAll(const std::vector<std::string>& lines)
{
    for (const std::string& line : lines) {
        std::string message = line + ": ";
        const std::string reply = execute(line);
        if (reply != "ok")
            throw std::invalid_argument(message.append(reply));
    }
}

std::string ControlCommands::dispatch(const Words& words)
{
    if (m_stopping)
        throw std::runtime_error("the virtual camera is ending");
    using Handler = std::string (ControlCommands::*)(const Words&);
    static const std::map<std::string, Handler> handlers{
        {"plug", &ControlCommands::plug},
        {"fault", &ControlCommands::fault},
        {"registers", &ControlCommands::registers},
        {"set", &ControlCommands::set},
        {"log", &ControlCommands::log},
        {"handles", &ControlCommands::handles},
        {"stats", &ControlCommands::stats},
        {"firmware", &ControlCommands::firmware},
        {"nodes", &ControlCommands::nodes},
        {"wait", &ControlCommands::wait},
    };
    const std::string& verb = words.front();
    if (const auto found = handlers.find(verb); found != handlers.end())
        return (this->*found->second)(words);
    if (verb == "list")
        return list();
    if (verb == "unplug") {
        m_bus.unplug(percentDecode(wordAt(words, 1)));
        return "ok";
    }
    if (verb == "clear" || verb == "clearlog") {
        const std::lock_guard<std::mutex> lock(m_bus.context().mutex);
        Device& device = m_bus.camera(percentDecode(wordAt(words, 1))).device;
        if (verb == "clear")
            device.faults().clear();
        else
            device.log().clear();
        return "ok";
    }
    if (verb == "quit") {
        m_onQuit();
        return "ok";
    }
    throw std::invalid_argument("unknown request: " + verb);
}

std::string ControlCommands::plug(const Words& words)
{
    m_bus.plug(percentDecode(wordAt(words, 1)), [&words](CameraSpec& spec) {
        for (std::size_t i = 2; i < words.size(); ++i) {
            const auto option = parseKeyValue(words[i]);
            if (!option)
                throw std::invalid_argument("not key=value: " + words[i]);
            applyOption(spec, option->first, option->second);
        }
    });
    return "ok";
}

std::string ControlCommands::list()
{
    const std::lock_guard<std::mutex> lock(m_bus.context().mutex);
    const std::vector<Camera*> cameras = m_bus.cameras();
    Reply reply;
    reply.add("count", cameras.size());
    for (const Camera* camera : cameras)
        reply.addFields("camera",
                        {camera->id, camera->onBus ? "on" : "off", camera->spec.identity.card,
                         text(camera->device.config().serial)});
    return reply.take();
}

std::string ControlCommands::fault(const Words& words)
{
    Words rule;
    for (std::size_t i = 2; i < words.size(); ++i)
        rule.push_back(percentDecode(words[i]));
    const std::lock_guard<std::mutex> lock(m_bus.context().mutex);
    FaultPlan& plan = m_bus.camera(percentDecode(wordAt(words, 1))).device.faults();
    if (wordAt(rule, 0) == "none")
        plan.clear();
    else
        plan.add(FaultRule::parse(rule));
    return "ok";
}

std::string ControlCommands::registers(const Words& words)
{
    const std::lock_guard<std::mutex> lock(m_bus.context().mutex);
    const Camera& camera = m_bus.camera(percentDecode(wordAt(words, 1)));
    const Device& device = camera.device;
    Reply reply;
    for (const SettingInfo& info : settingInfos())
        reply.add(info.name, device.current()[info.setting]);
    for (const ControlInfo& info : controlInfos())
        reply.add(info.name, device.current()[info.control]);
    reply.add("serial", text(device.config().serial));
    reply.add("firmware", device.firmwareVersionText());
    reply.add("probe", device.config().probe);
    const VideoFormat format = device.reportedFormat();
    reply.add("width", format.width).add("height", format.height);
    reply.add("streamon", format.streaming);
    for (const SettingInfo& info : settingInfos())
        reply.add("stored." + std::string(info.name), device.stored()[info.setting]);
    for (const ControlInfo& info : controlInfos())
        reply.add("stored." + std::string(info.name), device.stored()[info.control]);
    for (const FaultRule& rule : device.faults().rules())
        reply.add("fault", rule.describe());
    return reply.take();
}

std::string ControlCommands::set(const Words& words)
{
    const std::lock_guard<std::mutex> lock(m_bus.context().mutex);
    Camera& camera = m_bus.camera(percentDecode(wordAt(words, 1)));
    // Splitting drops an empty value.
    const std::string value = words.size() > 3 ? percentDecode(words[3]) : std::string();
    applyRegister(camera, percentDecode(wordAt(words, 2)), value);
    return "ok";
}

std::string ControlCommands::log(const Words& words)
{
    std::uint64_t from = 0;
    for (std::size_t i = 2; i < words.size(); ++i) {
        const auto option = parseKeyValue(words[i]);
        if (!option || option->first != "from")
            throw std::invalid_argument("unknown option: " + words[i]);
        from = static_cast<std::uint64_t>(parseInteger(option->second, 0, LONG_MAX));
    }
    const std::lock_guard<std::mutex> lock(m_bus.context().mutex);
    const RequestLog& log = m_bus.camera(percentDecode(wordAt(words, 1))).device.log();
    Reply entries;
    std::size_t count = 0;
    for (const LogEntry& entry : log.entries()) {
        if (entry.sequence >= from) {
            entries.addFields("entry", logFields(entry));
            ++count;
        }
    }
    Reply reply;
    reply.add("count", count);
    return reply.take() + entries.take().substr(2);
}

std::string ControlCommands::handles(const Words& words)
{
    const std::lock_guard<std::mutex> lock(m_bus.context().mutex);
    const HandleState handles = m_bus.camera(percentDecode(wordAt(words, 1))).handles();
    Reply reply;
    reply.add("hid", handles.hid).add("video", handles.video);
    reply.add("hidtotal", handles.hidTotal).add("videototal", handles.videoTotal);
    return reply.take();
}

std::string ControlCommands::stats(const Words& words)
{
    const std::lock_guard<std::mutex> lock(m_bus.context().mutex);
    const Camera& camera = m_bus.camera(percentDecode(wordAt(words, 1)));
    const StreamState stream = camera.stream();
    Reply reply;
    reply.add("bus", camera.onBus ? "on" : "off");
    reply.add("connections", camera.connection);
    reply.add("streaming", stream.streaming);
    reply.add("width", stream.width).add("height", stream.height);
    reply.add("fourcc", fourccText(stream.fourcc));
    reply.add("rate", stream.rate);
    reply.add("frames", stream.frames);
    reply.add("requests", camera.device.log().total());
    reply.add("violations", camera.device.log().violations());
    return reply.take();
}

std::string ControlCommands::firmware(const Words& words)
{
    const std::lock_guard<std::mutex> lock(m_bus.context().mutex);
    const Device& device = m_bus.camera(percentDecode(wordAt(words, 1))).device;
    const FirmwareReceiver& receiver = device.firmware();
    Reply reply;
    reply.add("version", device.firmwareVersionText());
    reply.add("size", receiver.image().size());
    reply.add("checksum", hexNumber(checksum(receiver.image().data(), receiver.image().size())));
    reply.add("packets", receiver.packetCount());
    reply.add("receiving", receiver.isReceiving()).add("complete", receiver.isComplete());
    return reply.take();
}

std::string ControlCommands::nodes(const Words& words)
{
    const std::lock_guard<std::mutex> lock(m_bus.context().mutex);
    Reply reply;
    for (const auto& [name, place] : m_bus.camera(percentDecode(wordAt(words, 1))).places())
        reply.add(name, place);
    return reply.take();
}

std::string ControlCommands::wait(const Words& words)
{
    const WaitCondition condition = WaitCondition::parse(percentDecode(wordAt(words, 2)));
    const std::chrono::milliseconds timeoutMs(parseInteger(wordAt(words, 3), 0, INT_MAX));
    std::unique_lock<std::mutex> lock(m_bus.context().mutex);
    const Camera& camera = m_bus.camera(percentDecode(wordAt(words, 1)));
    const bool held = m_bus.context().changed.wait_for(
        lock, timeoutMs, [&] { return m_stopping || condition.holds(camera); });
    if (!held || m_stopping)
        throw std::runtime_error("timeout");
    return "ok";
}

} // namespace virtualcamera
