#include "V4l2ProcAmp.h"

namespace {

quint32 controlId(PictureProperty property)
{
    switch (property) {
    case PictureProperty::Brightness:
        return V4L2_CID_BRIGHTNESS;
    case PictureProperty::Contrast:
        return V4L2_CID_CONTRAST;
    case PictureProperty::Saturation:
        return V4L2_CID_SATURATION;
    case PictureProperty::Sharpness:
        return V4L2_CID_SHARPNESS;
    }
    return 0;
}

constexpr long kNotSettable = V4L2_CTRL_FLAG_DISABLED | V4L2_CTRL_FLAG_READ_ONLY;

} // namespace

bool V4l2ProcAmp::getRange(VideoProcAmpRecord& record)
{
    v4l2_queryctrl query{};
    query.id = controlId(record.property);
    if (!m_node.isOpen() || !m_node.control(VIDIOC_QUERYCTRL, &query) ||
        (query.flags & V4L2_CTRL_FLAG_DISABLED) != 0)
        return false;
    record.minimum = query.minimum;
    record.maximum = query.maximum;
    record.defaultValue = query.default_value;
    record.step = query.step;
    record.flags = static_cast<long>(query.flags);
    return true;
}

bool V4l2ProcAmp::get(VideoProcAmpRecord& record)
{
    v4l2_control control{};
    control.id = controlId(record.property);
    if (!m_node.isOpen() || !m_node.control(VIDIOC_G_CTRL, &control))
        return false;
    record.value = control.value;
    return true;
}

bool V4l2ProcAmp::set(const VideoProcAmpRecord& record, long value)
{
    if (!m_node.isOpen() || (record.flags & kNotSettable) != 0)
        return false;
    v4l2_control control{};
    control.id = controlId(record.property);
    control.value = static_cast<__s32>(value);
    return m_node.control(VIDIOC_S_CTRL, &control);
}
