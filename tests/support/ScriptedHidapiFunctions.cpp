#include "ScriptedHidapi.h"

#include <hidapi/hidapi.h>

// Every function of the library is defined here: a missing one would come from the real library,
// which cannot handle a scripted handle.

namespace {

int unsupported(const char* function, hid_device* device)
{
    ScriptedHidapi* script = ScriptedHidapi::current();
    return script ? script->unsupported(function, device) : -1;
}

} // namespace

extern "C" {

int hid_init(void)
{
    ScriptedHidapi* script = ScriptedHidapi::current();
    return script ? script->init() : 0;
}

int hid_exit(void)
{
    ScriptedHidapi* script = ScriptedHidapi::current();
    return script ? script->exit() : 0;
}

hid_device_info* hid_enumerate(unsigned short vendor_id, unsigned short product_id)
{
    ScriptedHidapi* script = ScriptedHidapi::current();
    return script ? script->enumerate(vendor_id, product_id) : nullptr;
}

void hid_free_enumeration(hid_device_info* devs)
{
    if (ScriptedHidapi* script = ScriptedHidapi::current())
        script->freeEnumeration(devs);
}

hid_device* hid_open(unsigned short vendor_id, unsigned short product_id, const wchar_t*)
{
    ScriptedHidapi* script = ScriptedHidapi::current();
    return script ? script->open(vendor_id, product_id) : nullptr;
}

hid_device* hid_open_path(const char* path)
{
    ScriptedHidapi* script = ScriptedHidapi::current();
    return script ? script->openPath(path) : nullptr;
}

void hid_close(hid_device* dev)
{
    if (ScriptedHidapi* script = ScriptedHidapi::current())
        script->close(dev);
}

int hid_write(hid_device* dev, const unsigned char* data, size_t length)
{
    ScriptedHidapi* script = ScriptedHidapi::current();
    return script ? script->write(dev, data, length) : -1;
}

int hid_read_timeout(hid_device* dev, unsigned char* data, size_t length, int milliseconds)
{
    ScriptedHidapi* script = ScriptedHidapi::current();
    return script ? script->read("hid_read_timeout", dev, data, length, milliseconds) : -1;
}

int hid_read(hid_device* dev, unsigned char* data, size_t length)
{
    ScriptedHidapi* script = ScriptedHidapi::current();
    return script ? script->read("hid_read", dev, data, length, std::nullopt) : -1;
}

int hid_set_nonblocking(hid_device* dev, int nonblock)
{
    ScriptedHidapi* script = ScriptedHidapi::current();
    return script ? script->setNonblocking(dev, nonblock) : -1;
}

const wchar_t* hid_error(hid_device* dev)
{
    ScriptedHidapi* script = ScriptedHidapi::current();
    return script ? script->error(dev) : nullptr;
}

int hid_send_feature_report(hid_device* dev, const unsigned char*, size_t)
{
    return unsupported("hid_send_feature_report", dev);
}

int hid_get_feature_report(hid_device* dev, unsigned char*, size_t)
{
    return unsupported("hid_get_feature_report", dev);
}

int hid_get_input_report(hid_device* dev, unsigned char*, size_t)
{
    return unsupported("hid_get_input_report", dev);
}

int hid_get_manufacturer_string(hid_device* dev, wchar_t* string, size_t maxlen)
{
    ScriptedHidapi* script = ScriptedHidapi::current();
    return script ? script->manufacturerString(dev, string, maxlen) : -1;
}

int hid_get_product_string(hid_device* dev, wchar_t* string, size_t maxlen)
{
    ScriptedHidapi* script = ScriptedHidapi::current();
    return script ? script->productString(dev, string, maxlen) : -1;
}

int hid_get_serial_number_string(hid_device* dev, wchar_t* string, size_t maxlen)
{
    ScriptedHidapi* script = ScriptedHidapi::current();
    return script ? script->serialNumberString(dev, string, maxlen) : -1;
}

int hid_get_indexed_string(hid_device* dev, int string_index, wchar_t* string, size_t maxlen)
{
    ScriptedHidapi* script = ScriptedHidapi::current();
    return script ? script->indexedString(dev, string_index, string, maxlen) : -1;
}

#if HID_API_VERSION >= HID_API_MAKE_VERSION(0, 13, 0)
hid_device_info* hid_get_device_info(hid_device* dev)
{
    unsupported("hid_get_device_info", dev);
    return nullptr;
}
#endif

const hid_api_version* hid_version(void)
{
    static const hid_api_version version = {HID_API_VERSION_MAJOR, HID_API_VERSION_MINOR,
                                            HID_API_VERSION_PATCH};
    return &version;
}

const char* hid_version_str(void)
{
    return HID_API_VERSION_STR;
}

} // extern "C"
