#include "TransferFault.h"

namespace {

constexpr int kStartAttempts = 3;
constexpr int kSends = 7; // number of sends of a packet that is never acknowledged

} // namespace

QString TransferFault::request() const
{
    const QString times = scope == Once ? QStringLiteral(" times=1") : QStringLiteral(" times=999");
    if (scope != SameCommand)
        return name + QStringLiteral(" from=%1").arg(at) + times;
    if (at == kStart)
        return name + QStringLiteral(" cmd=0x4000") + times;
    if (at == kEnd)
        return name + QStringLiteral(" cmd=0x4300") + times;
    return name + QStringLiteral(" cmd=0x4200 from=%1").arg(at - kStart) + times;
}

QString TransferFault::title() const
{
    const QString place = at == kStart ? QStringLiteral("start")
                          : at == kEnd ? QStringLiteral("end")
                                       : QStringLiteral("packet %1").arg(at - kStart);
    const QString often = scope == Once          ? QStringLiteral("once")
                          : scope == SameCommand ? QStringLiteral("always")
                                                 : QStringLiteral("from then on");
    return name + QStringLiteral(", ") + place + QStringLiteral(", ") + often;
}

TransferFault::Outcome TransferFault::outcome() const
{
    Outcome outcome;
    if (effect == Acknowledged)
        return outcome;
    const bool done = effect == RefusedDone || effect == LostDone;
    const bool lost = effect == LostNotDone || effect == LostDone;
    if (at == kStart) {
        outcome.sent = scope == Once;
        outcome.cameraHasAll = outcome.sent;
        outcome.requests = outcome.sent ? kEnd + 1 : kStartAttempts;
        outcome.lostControls = lost ? (outcome.sent ? 1 : kStartAttempts) : 0;
        return outcome;
    }
    if (at == kEnd) {
        outcome.sent = false;
        outcome.cameraHasAll = done; // and restarts: the program no longer waits for its answer
        return outcome;
    }
    if (scope == Once && !lost) {
        outcome.requests = kEnd + 1; // it is sent again
        return outcome;
    }
    // No further packet is sent, but the end command is.
    outcome.requests = at - 1 + (lost ? 1 : kSends) + 1;
    outcome.lostPackets = lost ? 1 : 0;
    outcome.sent = scope != FromThenOn;
    outcome.cameraHasAll = done && at == kEnd - 1;
    return outcome;
}
