#include "ChildProcess.h"
#include "CommandLine.h"
#include "ControlCommands.h"
#include "ControlServer.h"
#include "NodeBus.h"
#include "protocol/ControlText.h"
#include "SanitizerPreload.h"
#include "Script.h"
#include "Signals.h"
#include "StopFlag.h"

#include <array>
#include <csignal>
#include <filesystem>
#include <iostream>
#include <optional>
#include <poll.h>
#include <sys/eventfd.h>
#include <sys/signalfd.h>
#include <thread>
#include <unistd.h>

using namespace virtualcamera;

namespace {

constexpr int kUsageError = 2;
constexpr std::chrono::milliseconds kEndTimeoutMs{5000};

const char* usage()
{
    return "usage: virtualcamera [--control SOCKET] [--script FILE]\n"
           "                     [--plug ID[,key=value...]]... [-- program arguments...]\n"
           "\n"
           "Runs the program with virtual conference cameras in /dev and /sys. Without a program\n"
           "it prints the environment for programs to be started by hand, and runs until SIGTERM.\n"
           "Values are percent-encoded; a blank is %20, a comma %2c.\n";
}

Environment childEnvironment(const NodeBus& bus, const std::string& socket,
                             const std::string& program)
{
    // Our library fills gaps of umockdev's, so it must come first; a sanitizer comes before both.
    const std::filesystem::path directory =
        std::filesystem::read_symlink("/proc/self/exe").parent_path();
    std::string preload = (directory / "libvirtualcamera-preload.so").string();
    preload += ":libumockdev-preload.so.0";
    const std::string sanitizer = program.empty() ? std::string() : sanitizerPreload(program);
    if (!sanitizer.empty())
        preload = sanitizer + ':' + preload;
    if (const char* inherited = std::getenv("LD_PRELOAD"); inherited && *inherited)
        preload += std::string(":") + inherited;
    return {{"LD_PRELOAD", preload}, {"UMOCKDEV_DIR", bus.root()}, {kSocketVariable, socket}};
}

/// Waits for signals, for the program's end and for the "quit" request.
int mainLoop(const FileDescriptor& signals, const FileDescriptor& quit,
             std::optional<ChildProcess>& child)
{
    using Clock = std::chrono::steady_clock;
    std::optional<Clock::time_point> killAt;
    for (;;) {
        std::array<pollfd, 2> events{{{signals.get(), POLLIN, 0}, {quit.get(), POLLIN, 0}}};
        const int timeoutMs = killAt ? 200 : -1;
        ::poll(events.data(), killAt ? 1 : 2, timeoutMs);
        if ((events[1].revents & POLLIN) != 0) {
            if (!child)
                return 0;
            child->signal(SIGTERM);
            killAt = Clock::now() + kEndTimeoutMs;
        }
        if ((events[0].revents & POLLIN) != 0) {
            signalfd_siginfo info{};
            if (::read(signals.get(), &info, sizeof info) == sizeof info &&
                info.ssi_signo != SIGCHLD) {
                if (!child)
                    return 0;
                // The terminal has already sent the signal of a key press to the program.
                if (info.ssi_code != SI_KERNEL)
                    child->signal(static_cast<int>(info.ssi_signo));
            }
        }
        if (child) {
            if (const auto status = child->poll())
                return *status;
            if (killAt && Clock::now() > *killAt)
                child->signal(SIGKILL);
        }
    }
}

void printEnvironment(const Environment& environment)
{
    for (const auto& [name, value] : environment)
        std::cout << "export " << name << "='" << value << "'\n";
    std::cout << std::flush;
}

/// umockdev's thread closes the handles of an ended program a moment later.
bool waitUntilIdle(NodeBus& bus)
{
    for (int i = 0; i < 100 && !bus.isIdle(); ++i)
        std::this_thread::sleep_for(std::chrono::milliseconds(10));
    return bus.isIdle();
}

int run(const CommandLine& line)
{
    const FileDescriptor signals = blockSignals();
    const FileDescriptor quit(::eventfd(0, EFD_CLOEXEC));
    auto bus = std::make_unique<NodeBus>();
    ControlCommands commands(*bus, [&quit] { ::eventfd_write(quit.get(), 1); });
    const std::string socket =
        line.controlSocket.empty() ? bus->root() + "/control" : line.controlSocket;
    auto server = std::make_unique<ControlServer>(commands, socket);
    const auto execute = [&commands](const std::string& request) {
        return commands.execute(request);
    };
    StopFlag stop;
    const auto sleep = [&stop](long milliseconds) { return stop.sleep(milliseconds); };

    const Script script = line.script.empty() ? Script() : Script::load(line.script);
    commands.executeAll(line.plugs);
    Script::run(script.before(), execute, sleep);

    const std::string program = line.program.empty() ? std::string() : line.program.front();
    const Environment environment = childEnvironment(*bus, socket, program);
    std::optional<ChildProcess> child;
    if (program.empty())
        printEnvironment(environment);
    else
        child.emplace(line.program, environment);
    std::thread besideProgram([&] { Script::run(script.beside(), execute, sleep); });

    const int status = mainLoop(signals, quit, child);
    stop.raise();
    commands.stop();
    besideProgram.join();
    server.reset();
    if (!waitUntilIdle(*bus)) {
        // A process that the program started still has open nodes. The threads of the bus serve its
        // calls, so the bus must not be destroyed; but the files must be removed.
        std::error_code ignored;
        std::filesystem::remove_all(bus->root(), ignored);
        std::_Exit(status);
    }
    bus.reset();
    return status;
}

} // namespace

int main(int argc, char** argv)
{
    try {
        const CommandLine line = CommandLine::parse(argc, argv);
        if (line.wantsHelp) {
            std::cout << usage();
            return 0;
        }
        return run(line);
    } catch (const std::invalid_argument& error) {
        std::cerr << "virtualcamera: " << error.what() << '\n' << usage();
        return kUsageError;
    } catch (const std::exception& error) {
        std::cerr << "virtualcamera: " << error.what() << '\n';
        return 1;
    }
}
