#pragma once

#include <hidapi/hidapi.h>
#include <memory>

struct HidCloser
{
    void operator()(hid_device* device) const { hid_close(device); }
};

/// An open HID interface; closed when it goes out of scope.
using HidHandle = std::unique_ptr<hid_device, HidCloser>;

/// Pairs every hid_init() with a hid_exit(). Declared before a HidHandle, it outlives it: the
/// library is left only after the device was closed.
class HidLibrary
{
public:
    /// A library that does not start shows when the device cannot be opened.
    HidLibrary() { hid_init(); }
    ~HidLibrary() { hid_exit(); }
    HidLibrary(const HidLibrary&) = delete;
    HidLibrary& operator=(const HidLibrary&) = delete;
};
