#pragma once

#include <hidapi/hidapi.h>
#include <memory>

struct HidCloser
{
    void operator()(hid_device* device) const { hid_close(device); }
};

/// An open HID interface; closed when it goes out of scope.
using HidHandle = std::unique_ptr<hid_device, HidCloser>;

struct HidEnumerationDeleter
{
    void operator()(hid_device_info* list) const { hid_free_enumeration(list); }
};

/// An inventory of HID interfaces; freed when it goes out of scope.
using HidEnumeration = std::unique_ptr<hid_device_info, HidEnumerationDeleter>;

/// The functions of hidapi that touch the library's own state: its last global error text and, on
/// Windows, the system libraries that it loads. hidapi does not guard that state, and a firmware
/// transfer opens its camera on a worker thread while the GUI thread may be rebuilding the list; so
/// these four take one lock. Functions on an open device need no lock. Callable on any thread.
namespace HidApi {

/// @return the result of hid_init(): 0 on success
int init();
void exit();
/// @return null when @p path cannot be opened
[[nodiscard]] HidHandle open(const char* path);
/// All HID interfaces of the system.
[[nodiscard]] HidEnumeration enumerate();

} // namespace HidApi

/// Pairs every HidApi::init() with a HidApi::exit(). Declared before a HidHandle, it outlives it:
/// hid_exit() is called only after the device was closed.
class HidLibrary
{
public:
    /// The result of hid_init() is not checked: when it fails, the device cannot be opened.
    HidLibrary() { HidApi::init(); }
    ~HidLibrary() { HidApi::exit(); }
    HidLibrary(const HidLibrary&) = delete;
    HidLibrary& operator=(const HidLibrary&) = delete;
};
