#pragma once

#include "CameraBus.h"

#include <atomic>
#include <functional>
#include <string>
#include <vector>

namespace virtualcamera {

/// The requests of the control socket and of scripts. Thread-safe.
class ControlCommands
{
public:
    /// `onQuit` is called when a client asks the bus to end.
    ControlCommands(CameraBus& bus, std::function<void()> onQuit);

    /// Executes a request line; the reply begins with "ok" or "error".
    std::string execute(const std::string& line);
    /// Executes request lines; throws std::invalid_argument for the first one that fails.
    void executeAll(const std::vector<std::string>& lines);
    /// Ends all waiting requests and refuses new ones.
    void stop();

private:
    using Words = std::vector<std::string>;

    std::string dispatch(const Words& words);
    std::string plug(const Words& words);
    std::string list();
    std::string fault(const Words& words);
    std::string registers(const Words& words);
    std::string set(const Words& words);
    std::string log(const Words& words);
    std::string handles(const Words& words);
    std::string stats(const Words& words);
    std::string firmware(const Words& words);
    std::string nodes(const Words& words);
    std::string wait(const Words& words);

    CameraBus& m_bus;
    std::function<void()> m_onQuit;
    std::atomic<bool> m_stopping{false};
};

} // namespace virtualcamera
