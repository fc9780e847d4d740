#pragma once

#include "FileDescriptor.h"

#include <linux/videodev2.h>
#include <optional>
#include <QByteArray>
#include <QString>

/// A V4L2 device node, opened for control only. It never streams, so it also works while another
/// program streams from the camera.
class V4l2Node
{
public:
    explicit V4l2Node(const QString& node);

    [[nodiscard]] bool isOpen() const { return static_cast<bool>(m_fd); }
    /// Makes one control call; repeats it when a signal interrupts it.
    /// @return false with errno set when the device refuses
    bool control(unsigned long request, void* argument) const;
    /// The node's own capabilities; a camera has further nodes, for example for metadata.
    [[nodiscard]] std::optional<v4l2_capability> capability() const;

private:
    FileDescriptor m_fd;
};
