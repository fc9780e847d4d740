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
    /// Why it is not open, as an errno; 0 when it is.
    [[nodiscard]] int openError() const { return m_openError; }
    /// Makes one control call; repeats it when a signal interrupts it.
    /// @return false with errno set when the device refuses or is not open
    bool control(unsigned long request, void* argument) const;
    /// The node's own capabilities; a camera has further nodes, for example for metadata.
    [[nodiscard]] std::optional<v4l2_capability> capability() const;
    /// Why the node cannot stream now, as an errno; EBUSY while another handle has the stream.
    [[nodiscard]] int streamError() const;

private:
    FileDescriptor m_fd;
    int m_openError;
};
