#include "DeviceFileTree.h"

#include <filesystem>
#include <fstream>
#include <stdexcept>
#include <umockdev.h>

namespace virtualcamera {

namespace {

/// The flat, null-terminated list of names and values that umockdev takes; points into `pairs`.
std::vector<char*> flatten(const std::vector<std::pair<std::string, std::string>>& pairs)
{
    std::vector<char*> list;
    list.reserve(pairs.size() * 2 + 1);
    for (const auto& [name, value] : pairs) {
        list.push_back(const_cast<char*>(name.c_str()));
        list.push_back(const_cast<char*>(value.c_str()));
    }
    list.push_back(nullptr);
    return list;
}

void writeFile(const std::filesystem::path& path, const std::string& content)
{
    std::ofstream file(path, std::ios::binary | std::ios::trunc);
    file << content;
    if (!file.flush())
        throw std::runtime_error("cannot write " + path.string());
}

} // namespace

std::string SysfsDevice::property(const std::string& name) const
{
    for (const auto& [key, value] : properties)
        if (key == name)
            return value;
    return {};
}

DeviceFileTree::DeviceFileTree()
    : m_testbed(umockdev_testbed_new())
{
    gchar* root = umockdev_testbed_get_root_dir(m_testbed);
    m_root = root;
    g_free(root);
    std::filesystem::create_directories(m_root + "/dev");
}

DeviceFileTree::~DeviceFileTree()
{
    g_object_unref(m_testbed);
}

void DeviceFileTree::addDevice(const SysfsDevice& device)
{
    // libudev treats a directory as a device as soon as it has a "uevent" file, which umockdev
    // writes before the attributes; so the attributes are written here first.
    const std::filesystem::path directory = m_root + "/sys" + device.devpath();
    std::filesystem::create_directories(directory);
    if (device.linksToParent)
        std::filesystem::create_symlink("../..", directory / "device");
    for (const auto& [name, value] : device.attributes)
        writeFile(directory / name, value);
    for (const auto& [name, value] : device.binaryAttributes)
        writeFile(directory / name, std::string(value.begin(), value.end()));

    std::vector<std::pair<std::string, std::string>> numbers;
    if (!device.number.empty())
        numbers.emplace_back("dev", device.number);
    std::vector<char*> attributes = flatten(numbers);
    std::vector<char*> properties = flatten(device.properties);
    gchar* created =
        umockdev_testbed_add_devicev(m_testbed, device.subsystem.c_str(), device.path.c_str(),
                                     nullptr, attributes.data(), properties.data());
    if (!created)
        throw std::runtime_error("cannot create the device " + device.path);
    g_free(created);
}

void DeviceFileTree::removeDevice(const SysfsDevice& device)
{
    // Clients enumerate by these links, so they are removed first: a client must not find a device
    // that is half removed.
    const std::string name = std::filesystem::path(device.path).filename();
    const bool isBus = device.subsystem == "usb" || device.subsystem == "hid";
    const std::string link = isBus ? "/sys/bus/" + device.subsystem + "/devices/" + name
                                   : "/sys/class/" + device.subsystem + "/" + name;
    std::error_code ignored;
    std::filesystem::remove(m_root + link, ignored);
    umockdev_testbed_remove_device(m_testbed, ("/sys" + device.devpath()).c_str());
}

void DeviceFileTree::attach(const std::string& devnode, UMockdevIoctlBase* handler)
{
    GError* error = nullptr;
    if (!umockdev_testbed_attach_ioctl(m_testbed, devnode.c_str(), handler, &error)) {
        const std::string message = error ? error->message : "unknown error";
        g_clear_error(&error);
        throw std::runtime_error("cannot serve " + devnode + ": " + message);
    }
}

} // namespace virtualcamera
