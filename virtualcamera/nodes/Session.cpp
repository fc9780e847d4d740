#include "Session.h"

#include <cstring>
#include <linux/ioctl.h>
#include <umockdev.h>

namespace virtualcamera {

namespace {

UMockdevIoctlData* resolveData(UMockdevIoctlData* data, std::size_t offset, std::size_t size)
{
    if (size == 0)
        return nullptr;
    UMockdevIoctlData* resolved = umockdev_ioctl_data_resolve(data, offset, size, nullptr);
    // The parent keeps the data until the call is answered, so the caller's reference is released.
    if (resolved)
        g_object_unref(resolved);
    return resolved;
}

} // namespace

std::size_t IoctlArgument::requestSize() const
{
    return _IOC_SIZE(m_request);
}

void* IoctlArgument::nested(std::size_t pointerOffset, std::size_t size) const
{
    UMockdevIoctlData* structure = resolveData(m_data, 0, requestSize());
    return structure ? resolve(structure, pointerOffset, size) : nullptr;
}

std::size_t IoctlArgument::number() const
{
    std::size_t value = 0;
    std::memcpy(&value, m_data->data, sizeof value);
    return value;
}

void* IoctlArgument::resolve(UMockdevIoctlData* data, std::size_t offset, std::size_t size)
{
    const UMockdevIoctlData* resolved = resolveData(data, offset, size);
    return resolved ? resolved->data : nullptr;
}

} // namespace virtualcamera
