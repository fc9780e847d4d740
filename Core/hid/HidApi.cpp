#include "HidApi.h"

#include <mutex>

namespace {

std::mutex& libraryMutex()
{
    static std::mutex mutex;
    return mutex;
}

} // namespace

int HidApi::init()
{
    const std::lock_guard<std::mutex> lock(libraryMutex());
    return hid_init();
}

void HidApi::exit()
{
    const std::lock_guard<std::mutex> lock(libraryMutex());
    hid_exit();
}

HidHandle HidApi::open(const char* path)
{
    const std::lock_guard<std::mutex> lock(libraryMutex());
    return HidHandle(hid_open_path(path));
}

HidEnumeration HidApi::enumerate()
{
    const std::lock_guard<std::mutex> lock(libraryMutex());
    return HidEnumeration(hid_enumerate(0, 0));
}
