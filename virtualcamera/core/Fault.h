#pragma once

#include <cstdint>
#include <optional>
#include <string>
#include <string_view>
#include <vector>

namespace virtualcamera {

enum class FaultKind {
    NoReply,
    Late,
    WrongEcho,
    Status,
    Short,
    Oversize,
    ReadError,
    WriteError,
    UnplugAt,
    RefuseStart,
    NackPacket,
    OldVersion,
    NeverReturn,
    Busy,
    Stale,
    BadChecksum,
    OpenError,
    Denied,
    Frozen,
    ControlError
};

struct FaultInfo
{
    FaultKind kind;
    std::string_view name;
    /// Names of the arguments in order, for messages and for the panel.
    std::vector<std::string_view> arguments;
    std::string_view help;
};

const std::vector<FaultInfo>& faultInfos();
const FaultInfo& faultInfo(FaultKind kind);

/// One kind of fault. Requests (for OpenError: opens) that match the command filter are counted
/// from the moment the rule is added; the rule applies to number `from` and to `times` of them.
struct FaultRule
{
    FaultKind kind = FaultKind::NoReply;
    std::uint32_t first = 0;
    std::uint32_t second = 0;
    std::uint32_t from = 1;
    /// 0 means without limit.
    std::uint32_t times = 0;
    std::optional<std::uint16_t> command;

    std::uint32_t seen = 0;
    std::uint32_t applied = 0;

    /// `words` is the name, the arguments and the options from=, times=, cmd=.
    /// Throws std::invalid_argument with a message for the user.
    static FaultRule parse(const std::vector<std::string>& words);
    std::string describe() const;
};

/// The faults of one device.
class FaultPlan
{
public:
    /// Replaces a rule of the same kind and command filter.
    void add(const FaultRule& rule);
    void clear() { m_rules.clear(); }
    const std::vector<FaultRule>& rules() const { return m_rules; }

    /// Counts this request and returns the rules that apply to it.
    std::vector<FaultRule> countRequest(std::uint16_t command, std::uint32_t packNumber);
    /// Counts an attempt to open the HID node; true when it has to fail.
    bool countOpen();
    /// Whether a fault of this kind is set; for faults that do not depend on a request.
    bool isActive(FaultKind kind) const;

private:
    static bool count(FaultRule& rule);

    std::vector<FaultRule> m_rules;
};

} // namespace virtualcamera
