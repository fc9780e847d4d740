#pragma once

#include <functional>
#include <string>
#include <vector>

namespace virtualcamera {

/// A file of control requests. The requests above the line "start" are executed before
/// the program starts, those below it while the program runs; without the line, all while it runs.
class Script
{
public:
    /// Throws std::runtime_error when the file cannot be read.
    static Script load(const std::string& path);

    const std::vector<std::string>& before() const { return m_before; }
    const std::vector<std::string>& beside() const { return m_beside; }

    /// Calls `sleep` for "sleep <ms>" and `execute`, which returns the reply, for any other line.
    /// Failed requests are reported on stderr with their line.
    static void run(const std::vector<std::string>& lines,
                    const std::function<std::string(const std::string&)>& execute,
                    const std::function<bool(long)>& sleep);

private:
    std::vector<std::string> m_before;
    std::vector<std::string> m_beside;
};

} // namespace virtualcamera
