#pragma once

#include "UmockdevTypes.h"

#include <cstddef>
#include <cstdint>
#include <optional>

namespace virtualcamera {

/// What a system call returns: a value of 0 or more, or a negative errno.
using SyscallResult = long;

/// The memory behind an ioctl's pointer argument, in the process that made the call.
class IoctlArgument
{
public:
    IoctlArgument(UMockdevIoctlData* data, std::uint32_t request)
        : m_data(data)
        , m_request(request)
    {
    }

    /// The argument's structure, with the size from the request code; null when the caller passed a
    /// bad pointer.
    void* memory() const { return resolve(m_data, 0, requestSize()); }
    std::size_t requestSize() const;
    template <typename Struct>
    Struct* as() const
    {
        return requestSize() < sizeof(Struct) ? nullptr : static_cast<Struct*>(memory());
    }
    /// An array to which a pointer inside the structure points.
    void* nested(std::size_t pointerOffset, std::size_t size) const;
    /// The argument itself, for requests that pass a number.
    std::size_t number() const;

private:
    static void* resolve(UMockdevIoctlData* data, std::size_t offset, std::size_t size);

    UMockdevIoctlData* m_data;
    std::uint32_t m_request;
};

/// One open() of a device node. Called with the bus locked.
class Session
{
public:
    Session() = default;
    virtual ~Session() = default;
    Session(const Session&) = delete;
    Session& operator=(const Session&) = delete;

    /// Called when the handle is open; a negative errno refuses it.
    virtual SyscallResult opened() = 0;
    virtual SyscallResult ioctl(std::uint32_t request, const IoctlArgument& argument) = 0;
    virtual SyscallResult write(const std::uint8_t* data, std::size_t size) = 0;
    /// No value when the caller has to read from the node's queue itself.
    virtual std::optional<SyscallResult> read() = 0;

    int number() const { return m_number; }
    void setNumber(int number) { m_number = number; }

private:
    int m_number = 0;
};

} // namespace virtualcamera
