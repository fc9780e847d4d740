#pragma once

#include "client/VirtualCameraClient.h"
#include "core/Frame.h"

#include <hidapi/hidapi.h>

#include <memory>
#include <string>

namespace virtualcamera {

/// A camera that is on the bus for the duration of a test.
class TestCamera
{
public:
    explicit TestCamera(std::string id = "selftest",
                        const VirtualCameraClient::Options& options = {});
    ~TestCamera();
    TestCamera(const TestCamera&) = delete;
    TestCamera& operator=(const TestCamera&) = delete;

    const std::string& id() const { return m_id; }
    std::string hidNode() { return client.nodes(m_id).hid; }
    std::string videoNode() { return client.nodes(m_id).video; }

    VirtualCameraClient client;

private:
    std::string m_id;
};

struct HidCloser
{
    void operator()(hid_device* device) const { hid_close(device); }
};
using HidHandle = std::unique_ptr<hid_device, HidCloser>;

HidHandle openHid(const std::string& node);
Bytes readRequest(std::uint16_t command);
Bytes writeRequest(std::uint16_t command, std::uint8_t value);
/// Reads one report; empty when none came in time. `result` receives the result of
/// hid_read_timeout().
Bytes readReport(const HidHandle& handle, int timeoutMs, int* result = nullptr);

std::size_t openDescriptors();

} // namespace virtualcamera
