#include "MetadataInterface.h"

#include "CameraIdentity.h"

#include <algorithm>
#include <cerrno>
#include <cstring>
#include <linux/videodev2.h>

namespace virtualcamera {

namespace {

constexpr std::uint32_t kBufferSize = 10240;

template <typename Array>
void copyText(const std::string& text, Array& to)
{
    std::memcpy(to, text.data(), std::min(text.size(), sizeof to - 1));
}

} // namespace

class MetadataInterface::MetadataSession : public Session
{
public:
    explicit MetadataSession(const MetadataInterface& interface)
        : m_interface(interface)
        , m_connection(interface.m_connection)
    {
    }

    SyscallResult opened() override { return 0; }
    SyscallResult write(const std::uint8_t*, std::size_t) override { return -EINVAL; }
    std::optional<SyscallResult> read() override { return isGone() ? -ENODEV : -EINVAL; }
    SyscallResult ioctl(std::uint32_t request, const IoctlArgument& argument) override;

private:
    bool isGone() const { return m_connection != m_interface.m_connection; }

    const MetadataInterface& m_interface;
    unsigned m_connection;
};

SyscallResult MetadataInterface::MetadataSession::ioctl(std::uint32_t request,
                                                        const IoctlArgument& argument)
{
    if (isGone())
        return -ENODEV;
    switch (request) {
    case VIDIOC_QUERYCAP: {
        auto* capability = argument.as<v4l2_capability>();
        if (!capability)
            return -EFAULT;
        *capability = v4l2_capability{};
        copyText("uvcvideo", capability->driver);
        copyText(m_interface.m_identity.card, capability->card);
        copyText(m_interface.m_identity.videoBusInfo(), capability->bus_info);
        capability->device_caps =
            V4L2_CAP_META_CAPTURE | V4L2_CAP_STREAMING | V4L2_CAP_EXT_PIX_FORMAT;
        capability->capabilities =
            capability->device_caps | V4L2_CAP_VIDEO_CAPTURE | V4L2_CAP_DEVICE_CAPS;
        return 0;
    }
    case VIDIOC_ENUM_FMT: {
        auto* description = argument.as<v4l2_fmtdesc>();
        if (!description)
            return -EFAULT;
        if (description->type != V4L2_BUF_TYPE_META_CAPTURE || description->index != 0)
            return -EINVAL;
        description->pixelformat = V4L2_META_FMT_UVC;
        copyText("UVC Payload Header Metadata", description->description);
        return 0;
    }
    case VIDIOC_G_FMT:
    case VIDIOC_TRY_FMT: {
        auto* format = argument.as<v4l2_format>();
        if (!format)
            return -EFAULT;
        if (format->type != V4L2_BUF_TYPE_META_CAPTURE)
            return -EINVAL;
        format->fmt.meta = {V4L2_META_FMT_UVC, kBufferSize};
        return 0;
    }
    default:
        return -ENOTTY;
    }
}

std::unique_ptr<Session> MetadataInterface::open(std::shared_ptr<Fifo>)
{
    return std::make_unique<MetadataSession>(*this);
}

} // namespace virtualcamera
