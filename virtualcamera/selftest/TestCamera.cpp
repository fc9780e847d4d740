#include "TestCamera.h"

#include "core/Commands.h"

#include <dirent.h>

namespace virtualcamera {

TestCamera::TestCamera(std::string id, const VirtualCameraClient::Options& options)
    : m_id(std::move(id))
{
    client.plug(m_id, options);
}

TestCamera::~TestCamera()
{
    try {
        client.clear(m_id);
        if (client.stats(m_id).onBus)
            client.unplug(m_id);
    } catch (const std::exception&) {
        // virtualcamera has ended, and the camera with it.
    }
}

HidHandle openHid(const std::string& node)
{
    return HidHandle(hid_open_path(node.c_str()));
}

Bytes readRequest(std::uint16_t command)
{
    Request request;
    request.command = command;
    request.dataStatus = static_cast<std::uint8_t>(DataStatus::Final);
    return buildRequest(request);
}

Bytes writeRequest(std::uint16_t command, std::uint8_t value)
{
    Request request;
    request.command = command;
    request.dataStatus = static_cast<std::uint8_t>(DataStatus::Payload);
    request.dataLength = 1;
    request.payload = {value};
    return buildRequest(request);
}

Bytes readReport(const HidHandle& handle, int timeoutMs, int* result)
{
    Bytes report(kReportSize);
    const int size = hid_read_timeout(handle.get(), report.data(), report.size(), timeoutMs);
    if (result)
        *result = size;
    report.resize(size > 0 ? static_cast<std::size_t>(size) : 0);
    return report;
}

std::size_t openDescriptors()
{
    std::size_t count = 0;
    DIR* directory = ::opendir("/proc/self/fd");
    while (directory && ::readdir(directory))
        ++count;
    if (directory)
        ::closedir(directory);
    return count;
}

} // namespace virtualcamera
