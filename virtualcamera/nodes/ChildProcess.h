#pragma once

#include <optional>
#include <string>
#include <utility>
#include <vector>

#include <sys/types.h>

namespace virtualcamera {

using Environment = std::vector<std::pair<std::string, std::string>>;

/// The program that virtualcamera starts. The kernel kills it when virtualcamera ends for any
/// reason.
class ChildProcess
{
public:
    /// Throws std::system_error when the process cannot be created; when the program cannot be
    /// started, the process exits with 127. `variables` are added to the environment.
    ChildProcess(const std::vector<std::string>& arguments, const Environment& variables);

    void signal(int number) const;
    /// The exit status (128 plus the signal for a killed program) once the program has ended.
    std::optional<int> poll();

private:
    pid_t m_pid;
    bool m_running = true;
};

} // namespace virtualcamera
