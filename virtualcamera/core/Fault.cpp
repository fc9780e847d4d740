#include "Fault.h"

#include "Commands.h"

#include <algorithm>
#include <sstream>
#include <stdexcept>

namespace virtualcamera {

namespace {

std::uint32_t parseNumber(const std::string& text, const std::string& what)
{
    std::size_t used = 0;
    unsigned long value = 0;
    try {
        value = std::stoul(text, &used, 0);
    } catch (const std::exception&) {
        used = 0;
    }
    if (used == 0 || used != text.size() || text[0] == '-' || value > 0xFFFFFFFFUL)
        throw std::invalid_argument(what + ": not a number: " + text);
    return static_cast<std::uint32_t>(value);
}

bool isEvent(FaultKind kind)
{
    switch (kind) {
    case FaultKind::OldVersion:
    case FaultKind::NeverReturn:
    case FaultKind::Busy:
    case FaultKind::OpenError:
    case FaultKind::Denied:
    case FaultKind::Frozen:
    case FaultKind::ControlError:
        return false;
    default:
        return true;
    }
}

void setOption(FaultRule& rule, const std::string& key, const std::string& value)
{
    if (key == "from") {
        rule.from = parseNumber(value, key);
    } else if (key == "times") {
        rule.times = parseNumber(value, key);
    } else if (key == "cmd") {
        const std::uint32_t command = parseNumber(value, key);
        if (command > 0xFFFF)
            throw std::invalid_argument("cmd: larger than 16 bits: " + value);
        rule.command = static_cast<std::uint16_t>(command);
    } else {
        throw std::invalid_argument("unknown option: " + key);
    }
}

/// Copies arguments that are counts into the common members from, times and command.
void assignArguments(FaultRule& rule)
{
    switch (rule.kind) {
    case FaultKind::UnplugAt:
        rule.from = rule.first;
        rule.times = 1;
        break;
    case FaultKind::RefuseStart:
        rule.command = command::kFirmwareStart;
        rule.times = rule.first;
        break;
    case FaultKind::NackPacket:
        rule.command = command::kFirmwarePacket;
        rule.times = rule.second;
        break;
    case FaultKind::ReadError:
        if (rule.times == 0)
            rule.times = 1;
        break;
    default:
        break;
    }
}

} // namespace

const std::vector<FaultInfo>& faultInfos()
{
    static const std::vector<FaultInfo> infos{
        {FaultKind::NoReply, "noreply", {}, "executes the request but does not answer"},
        {FaultKind::Late, "late", {"ms"}, "answers late"},
        {FaultKind::WrongEcho, "wrongecho", {}, "answers with another command code"},
        {FaultKind::Status, "status", {"value"}, "refuses with this status"},
        {FaultKind::Short, "short", {"bytes"}, "answers with a report of this many bytes"},
        {FaultKind::Oversize, "oversize", {"length"}, "claims this payload length"},
        {FaultKind::ReadError, "readerror", {}, "the next read fails"},
        {FaultKind::WriteError, "writeerror", {}, "the write fails"},
        {FaultKind::UnplugAt, "unplug-at", {"request"}, "leaves the bus at this request"},
        {FaultKind::RefuseStart, "refuse-start", {"times"}, "refuses the firmware start"},
        {FaultKind::NackPacket, "nack-packet", {"packet", "times"}, "refuses a firmware packet"},
        {FaultKind::OldVersion, "old-version", {}, "an update leaves the old firmware in place"},
        {FaultKind::NeverReturn, "never-return", {}, "does not come back after an update"},
        {FaultKind::Busy, "busy", {}, "another program uses the video"},
        {FaultKind::Stale, "stale", {"reports"}, "old reports come before the answer"},
        {FaultKind::BadChecksum, "badcrc", {}, "answers with a wrong checksum"},
        {FaultKind::OpenError, "open-error", {}, "the HID node cannot be opened"},
        {FaultKind::Denied, "denied", {}, "the user may not open the video node"},
        {FaultKind::Frozen, "frozen", {}, "the video delivers no more frames"},
        {FaultKind::ControlError, "control-error", {}, "picture controls cannot be set"},
    };
    return infos;
}

const FaultInfo& faultInfo(FaultKind kind)
{
    return *std::find_if(faultInfos().begin(), faultInfos().end(),
                         [kind](const FaultInfo& info) { return info.kind == kind; });
}

FaultRule FaultRule::parse(const std::vector<std::string>& words)
{
    if (words.empty())
        throw std::invalid_argument("name of the fault missing");
    const auto info =
        std::find_if(faultInfos().begin(), faultInfos().end(),
                     [&words](const FaultInfo& each) { return each.name == words.front(); });
    if (info == faultInfos().end())
        throw std::invalid_argument("unknown fault: " + words.front());

    FaultRule rule;
    rule.kind = info->kind;
    std::vector<std::uint32_t> arguments;
    std::vector<std::pair<std::string, std::string>> options;
    for (std::size_t i = 1; i < words.size(); ++i) {
        const std::size_t equals = words[i].find('=');
        if (equals != std::string::npos)
            options.emplace_back(words[i].substr(0, equals), words[i].substr(equals + 1));
        else
            arguments.push_back(parseNumber(words[i], words.front()));
    }
    if (arguments.size() != info->arguments.size())
        throw std::invalid_argument(words.front() + ": takes " +
                                    std::to_string(info->arguments.size()) + " argument(s)");
    if (!arguments.empty())
        rule.first = arguments[0];
    if (arguments.size() > 1)
        rule.second = arguments[1];
    for (const auto& [key, value] : options)
        setOption(rule, key, value);
    assignArguments(rule);
    return rule;
}

std::string FaultRule::describe() const
{
    const FaultInfo& info = faultInfo(kind);
    std::ostringstream text;
    text << info.name;
    if (!info.arguments.empty())
        text << ' ' << first;
    if (info.arguments.size() > 1)
        text << ' ' << second;
    if (from > 1)
        text << " from=" << from;
    if (times > 0)
        text << " times=" << times;
    if (command)
        text << " cmd=0x" << std::hex << *command;
    return text.str();
}

void FaultPlan::add(const FaultRule& rule)
{
    m_rules.erase(std::remove_if(m_rules.begin(), m_rules.end(),
                                 [&rule](const FaultRule& each) {
                                     return each.kind == rule.kind && each.command == rule.command;
                                 }),
                  m_rules.end());
    m_rules.push_back(rule);
}

bool FaultPlan::count(FaultRule& rule)
{
    ++rule.seen;
    if (rule.seen < rule.from || (rule.times != 0 && rule.applied >= rule.times))
        return false;
    ++rule.applied;
    return true;
}

std::vector<FaultRule> FaultPlan::countRequest(std::uint16_t command, std::uint32_t packNumber)
{
    std::vector<FaultRule> applying;
    for (FaultRule& rule : m_rules) {
        if (!isEvent(rule.kind) || (rule.command && *rule.command != command))
            continue;
        if (rule.kind == FaultKind::NackPacket && rule.first != packNumber)
            continue;
        // "nack-packet 3 0" and "refuse-start 0" mean never, not without limit.
        if (rule.times == 0 &&
            (rule.kind == FaultKind::NackPacket || rule.kind == FaultKind::RefuseStart))
            continue;
        if (count(rule))
            applying.push_back(rule);
    }
    return applying;
}

bool FaultPlan::countOpen()
{
    bool fails = false;
    for (FaultRule& rule : m_rules)
        if (rule.kind == FaultKind::OpenError && count(rule))
            fails = true;
    return fails;
}

bool FaultPlan::isActive(FaultKind kind) const
{
    return std::any_of(m_rules.begin(), m_rules.end(),
                       [kind](const FaultRule& rule) { return rule.kind == kind; });
}

} // namespace virtualcamera
