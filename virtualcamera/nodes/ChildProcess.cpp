#include "ChildProcess.h"

#include <cerrno>
#include <csignal>
#include <cstdlib>
#include <cstring>
#include <sys/prctl.h>
#include <sys/wait.h>
#include <system_error>
#include <unistd.h>

namespace virtualcamera {

namespace {

constexpr int kCannotStart = 127;

std::vector<char*> pointers(const std::vector<std::string>& texts)
{
    std::vector<char*> list;
    list.reserve(texts.size() + 1);
    for (const std::string& text : texts)
        list.push_back(const_cast<char*>(text.c_str()));
    list.push_back(nullptr);
    return list;
}

std::vector<std::string> extendedEnvironment(const Environment& variables)
{
    std::vector<std::string> result;
    for (char** each = environ; *each; ++each) {
        const std::string entry = *each;
        bool replaced = false;
        for (const auto& [name, value] : variables)
            replaced = replaced || entry.rfind(name + '=', 0) == 0;
        if (!replaced)
            result.push_back(entry);
    }
    for (const auto& [name, value] : variables)
        result.emplace_back(name).append(1, '=').append(value);
    return result;
}

} // namespace

ChildProcess::ChildProcess(const std::vector<std::string>& arguments, const Environment& variables)
{
    // All allocations are made before fork(): another thread may hold the allocator's lock.
    const std::vector<std::string> environment = extendedEnvironment(variables);
    std::vector<char*> argv = pointers(arguments);
    std::vector<char*> envp = pointers(environment);
    const pid_t parent = ::getpid();
    m_pid = ::fork();
    if (m_pid < 0)
        throw std::system_error(errno, std::generic_category(), "fork");
    if (m_pid > 0)
        return;

    ::prctl(PR_SET_PDEATHSIG, SIGKILL);
    if (::getppid() != parent)
        ::_exit(kCannotStart); // the parent died before the line above took effect
    sigset_t none;
    ::sigemptyset(&none);
    ::sigprocmask(SIG_SETMASK, &none, nullptr);
    ::execvpe(argv[0], argv.data(), envp.data());
    const char* reason = std::strerror(errno);
    const char* const parts[] = {"virtualcamera: ", argv[0], ": ", reason, "\n"};
    for (const char* part : parts)
        if (::write(STDERR_FILENO, part, std::strlen(part)) < 0)
            break;
    ::_exit(kCannotStart);
}

void ChildProcess::signal(int number) const
{
    if (m_running)
        ::kill(m_pid, number);
}

std::optional<int> ChildProcess::poll()
{
    int status = 0;
    if (!m_running || ::waitpid(m_pid, &status, WNOHANG) != m_pid)
        return std::nullopt;
    m_running = false;
    return WIFEXITED(status) ? WEXITSTATUS(status) : 128 + WTERMSIG(status);
}

} // namespace virtualcamera
