#include "VideoControls.h"

#include <algorithm>
#include <cctype>
#include <cerrno>
#include <cstddef>
#include <string>

namespace virtualcamera {

namespace {

constexpr std::uint32_t kNextFlags = V4L2_CTRL_FLAG_NEXT_CTRL | V4L2_CTRL_FLAG_NEXT_COMPOUND;

template <typename Text>
void copyName(std::string_view name, Text& to)
{
    const std::size_t size = std::min(name.size(), sizeof to - 1);
    std::copy_n(name.begin(), size, to);
    to[0] = static_cast<std::remove_reference_t<decltype(to[0])>>(std::toupper(to[0]));
}

} // namespace

std::optional<SyscallResult> VideoControls::ioctl(std::uint32_t request,
                                                  const IoctlArgument& argument)
{
    switch (request) {
    case VIDIOC_QUERYCTRL: {
        auto* wanted = argument.as<v4l2_queryctrl>();
        return wanted ? query(*wanted) : -EFAULT;
    }
    case VIDIOC_QUERY_EXT_CTRL: {
        auto* wanted = argument.as<v4l2_query_ext_ctrl>();
        return wanted ? queryExtended(*wanted) : -EFAULT;
    }
    case VIDIOC_G_CTRL: {
        auto* control = argument.as<v4l2_control>();
        return control ? get(control->id, control->value) : -EFAULT;
    }
    case VIDIOC_S_CTRL: {
        auto* control = argument.as<v4l2_control>();
        return control ? set(control->id, control->value, false) : -EFAULT;
    }
    case VIDIOC_G_EXT_CTRLS:
    case VIDIOC_S_EXT_CTRLS:
    case VIDIOC_TRY_EXT_CTRLS:
        return extended(request, argument);
    case VIDIOC_QUERYMENU:
        return -EINVAL;
    default:
        return std::nullopt;
    }
}

const ControlInfo* VideoControls::find(std::uint32_t id) const
{
    if (!m_present)
        return nullptr;
    for (const ControlInfo& info : controlInfos())
        if (info.id == id)
            return &info;
    return nullptr;
}

const ControlInfo* VideoControls::findForQuery(std::uint32_t id) const
{
    const std::uint32_t plainId = id & ~kNextFlags;
    if ((id & kNextFlags) == 0)
        return find(plainId);
    if ((id & V4L2_CTRL_FLAG_NEXT_CTRL) == 0 || !m_present)
        return nullptr; // there are no compound controls
    for (const ControlInfo& info : controlInfos())
        if (info.id > plainId)
            return &info;
    return nullptr;
}

SyscallResult VideoControls::query(v4l2_queryctrl& query) const
{
    const ControlInfo* info = findForQuery(query.id);
    if (!info)
        return -EINVAL;
    const ControlRange& range = m_device.range(info->control);
    query = v4l2_queryctrl{};
    query.id = info->id;
    query.type = V4L2_CTRL_TYPE_INTEGER;
    copyName(info->name, query.name);
    query.minimum = range.minimum;
    query.maximum = range.maximum;
    query.step = range.step;
    query.default_value = range.defaultValue;
    return 0;
}

SyscallResult VideoControls::queryExtended(v4l2_query_ext_ctrl& query) const
{
    const ControlInfo* info = findForQuery(query.id);
    if (!info)
        return -EINVAL;
    const ControlRange& range = m_device.range(info->control);
    query = v4l2_query_ext_ctrl{};
    query.id = info->id;
    query.type = V4L2_CTRL_TYPE_INTEGER;
    copyName(info->name, query.name);
    query.minimum = range.minimum;
    query.maximum = range.maximum;
    query.step = static_cast<__u64>(range.step);
    query.default_value = range.defaultValue;
    query.elem_size = sizeof(std::int32_t);
    query.elems = 1;
    return 0;
}

SyscallResult VideoControls::get(std::uint32_t id, std::int32_t& value) const
{
    const ControlInfo* info = find(id);
    if (!info)
        return -EINVAL;
    value = m_device.current()[info->control];
    return 0;
}

SyscallResult VideoControls::set(std::uint32_t id, std::int32_t& value, bool tryOnly)
{
    const ControlInfo* info = find(id);
    if (!info)
        return -EINVAL;
    if (m_device.faults().isActive(FaultKind::ControlError))
        return -EIO;
    // The UVC driver moves a value into the range instead of refusing it.
    const ControlRange& range = m_device.range(info->control);
    value = std::clamp(value, range.minimum, range.maximum);
    value = range.minimum + (value - range.minimum) / range.step * range.step;
    if (!tryOnly)
        m_device.current()[info->control] = value;
    return 0;
}

SyscallResult VideoControls::extended(std::uint32_t request, const IoctlArgument& argument)
{
    auto* list = argument.as<v4l2_ext_controls>();
    if (!list)
        return -EFAULT;
    if (list->count == 0)
        return 0;
    if (list->count > V4L2_CID_MAX_CTRLS)
        return -EINVAL;
    auto* controls = static_cast<v4l2_ext_control*>(argument.nested(
        offsetof(v4l2_ext_controls, controls), list->count * sizeof(v4l2_ext_control)));
    if (!controls)
        return -EFAULT;
    for (std::uint32_t i = 0; i < list->count; ++i) {
        std::int32_t value = controls[i].value;
        const SyscallResult result =
            request == VIDIOC_G_EXT_CTRLS
                ? get(controls[i].id, value)
                : set(controls[i].id, value, request == VIDIOC_TRY_EXT_CTRLS);
        if (result < 0) {
            list->error_idx = i;
            return result;
        }
        controls[i].value = value;
    }
    return 0;
}

} // namespace virtualcamera
