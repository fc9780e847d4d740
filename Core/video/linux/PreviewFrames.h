#pragma once

#include <atomic>
#include <mutex>
#include <QImage>
#include <QObject>

/// The newest frame of a preview, passed from the streaming thread to the GUI thread. A frame that
/// was not taken before the next one arrives is dropped.
class PreviewFrames : public QObject
{
    Q_OBJECT

public:
    /// From the streaming thread.
    void put(const QImage& frame);
    /// The newest frame, null when there is none.
    [[nodiscard]] QImage newest();
    void clear();

    /// Whether the picture is visible; otherwise no frames need be made. Any thread.
    void setWatched(bool watched) { m_watched = watched; }
    [[nodiscard]] bool isWatched() const { return m_watched; }

signals:
    /// A frame has come since newest() was last called. Emitted on the streaming thread, once until
    /// the frame is taken.
    void frameReady();

private:
    std::mutex m_mutex;
    QImage m_frame;
    bool m_announced = false;
    std::atomic<bool> m_watched{false};
};
