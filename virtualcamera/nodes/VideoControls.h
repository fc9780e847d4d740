#pragma once

#include "core/Device.h"
#include "Session.h"

#include <linux/videodev2.h>

namespace virtualcamera {

/// The control ioctls of the capture node.
class VideoControls
{
public:
    explicit VideoControls(Device& device)
        : m_device(device)
    {
    }

    /// A camera without an amplifier has no picture controls at all.
    void setPresent(bool present) { m_present = present; }
    bool isPresent() const { return m_present; }

    /// No value when the request is not about controls.
    std::optional<SyscallResult> ioctl(std::uint32_t request, const IoctlArgument& argument);

private:
    const ControlInfo* find(std::uint32_t id) const;
    const ControlInfo* findForQuery(std::uint32_t id) const;
    SyscallResult query(v4l2_queryctrl& query) const;
    SyscallResult queryExtended(v4l2_query_ext_ctrl& query) const;
    SyscallResult get(std::uint32_t id, std::int32_t& value) const;
    SyscallResult set(std::uint32_t id, std::int32_t& value, bool tryOnly);
    SyscallResult extended(std::uint32_t request, const IoctlArgument& argument);

    Device& m_device;
    bool m_present = true;
};

} // namespace virtualcamera
