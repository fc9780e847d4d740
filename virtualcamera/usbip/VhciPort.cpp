#include "VhciPort.h"

#include <cerrno>
#include <chrono>
#include <fcntl.h>
#include <system_error>
#include <thread>
#include <unistd.h>

namespace virtualcamera {

namespace {

constexpr int kAttempts = 60;
constexpr std::chrono::milliseconds kPause{50};

} // namespace

void VhciPort::attach(const FileDescriptor& socket, const usbip::DeviceRecord& device) const
{
    const std::string path = m_folder + "/attach";
    // The camera in the first socket of the bus has device number 2, after the root hub.
    const std::uint32_t port = device.deviceNumber - 2;
    const std::string line = std::to_string(port) + ' ' + std::to_string(socket.get()) + ' ' +
                             std::to_string(device.busNumber << 16U | device.deviceNumber) + ' ' +
                             std::to_string(usbip::kHighSpeed);
    for (int attempt = 1;; ++attempt) {
        const FileDescriptor file(::open(path.c_str(), O_WRONLY | O_CLOEXEC));
        if (!file)
            throw std::system_error(errno, std::generic_category(), path + " (modprobe vhci-hcd)");
        if (::write(file.get(), line.data(), line.size()) == static_cast<ssize_t>(line.size()))
            return;
        const int error = errno;
        if (error != EBUSY || attempt == kAttempts)
            throw std::system_error(error, std::generic_category(), path);
        std::this_thread::sleep_for(kPause);
    }
}

} // namespace virtualcamera
