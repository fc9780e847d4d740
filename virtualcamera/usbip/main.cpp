#include "CommandLine.h"
#include "ControlCommands.h"
#include "ControlServer.h"
#include "protocol/ControlText.h"
#include "Script.h"
#include "Signals.h"
#include "StopFlag.h"
#include "UsbipServer.h"

#include <array>
#include <climits>
#include <cstdlib>
#include <iostream>
#include <optional>
#include <poll.h>
#include <stdexcept>
#include <sys/eventfd.h>
#include <thread>
#include <unistd.h>

using namespace virtualcamera;

namespace {

constexpr int kUsageError = 2;
constexpr const char* kDefaultPlace = "127.0.0.1:3240";

const char* usage()
{
    return "usage: virtualcamera-usbip [--listen ADDRESS:PORT] [--attach] [--control SOCKET]\n"
           "                           [--script FILE] [--plug ID[,key=value...]]...\n"
           "\n"
           "Offers virtual conference cameras over USB/IP until SIGTERM: over TCP, by default on\n"
           "127.0.0.1:3240, or with --attach directly to this machine's kernel (as root, module\n"
           "vhci-hcd).\n"
           "Values are percent-encoded; a blank is %20, a comma %2c.\n";
}

struct Place
{
    std::string address;
    std::uint16_t port = 0;

    static Place parse(const std::string& text)
    {
        const std::size_t colon = text.rfind(':');
        if (colon == std::string::npos)
            throw std::invalid_argument("not ADDRESS:PORT: " + text);
        char* end = nullptr;
        const char* number = text.c_str() + colon + 1;
        const long port = std::strtol(number, &end, 10);
        if (end == number || *end != '\0' || port < 0 || port > USHRT_MAX)
            throw std::invalid_argument("not a port: " + text);
        return {text.substr(0, colon), static_cast<std::uint16_t>(port)};
    }
};

std::string defaultSocket()
{
    const char* runtime = std::getenv("XDG_RUNTIME_DIR");
    const std::string folder = runtime && *runtime ? runtime : "/tmp";
    return folder + "/virtualcamera-usbip-" + std::to_string(::getpid());
}

int run(const CommandLine& line)
{
    const FileDescriptor signals = blockSignals();
    const FileDescriptor quit(::eventfd(0, EFD_CLOEXEC));
    const bool attaches = line.options.count("--attach") != 0;
    UsbipBus bus(attaches ? std::optional<VhciPort>(VhciPort()) : std::nullopt);
    ControlCommands commands(bus, [&quit] { ::eventfd_write(quit.get(), 1); });
    const std::string socket = line.controlSocket.empty() ? defaultSocket() : line.controlSocket;
    const ControlServer server(commands, socket);
    std::cout << "export " << kSocketVariable << "='" << socket << "'\n";

    const auto listens = line.options.find("--listen");
    std::optional<UsbipServer> exporter;
    if (!attaches || listens != line.options.end()) {
        const Place place =
            Place::parse(listens != line.options.end() ? listens->second : kDefaultPlace);
        exporter.emplace(bus, place.address, place.port);
        std::cout << "# usbip --tcp-port " << exporter->port() << " list -r " << place.address
                  << '\n';
    }
    std::cout << std::flush;

    const auto execute = [&commands](const std::string& request) {
        return commands.execute(request);
    };
    commands.executeAll(line.plugs);
    const Script script = line.script.empty() ? Script() : Script::load(line.script);
    StopFlag stop;
    std::thread scripted([&] {
        const auto sleep = [&stop](long milliseconds) { return stop.sleep(milliseconds); };
        Script::run(script.before(), execute, sleep);
        Script::run(script.beside(), execute, sleep);
    });

    std::array<pollfd, 2> events{{{signals.get(), POLLIN, 0}, {quit.get(), POLLIN, 0}}};
    while (::poll(events.data(), events.size(), -1) < 0 && errno == EINTR) {
    }
    stop.raise();
    commands.stop();
    scripted.join();
    return 0;
}

} // namespace

int main(int argc, char** argv)
{
    try {
        const CommandLine line =
            CommandLine::parse(argc, argv, {{"--listen", true}, {"--attach", false}});
        if (!line.program.empty())
            throw std::invalid_argument("virtualcamera-usbip starts no program");
        if (line.wantsHelp) {
            std::cout << usage();
            return 0;
        }
        return run(line);
    } catch (const std::invalid_argument& error) {
        std::cerr << "virtualcamera-usbip: " << error.what() << '\n' << usage();
        return kUsageError;
    } catch (const std::exception& error) {
        std::cerr << "virtualcamera-usbip: " << error.what() << '\n';
        return 1;
    }
}
