#pragma once

#include <atomic>
#include <QImage>
#include <QObject>
#include <QSize>

/// Receives every frame of a running preview and emits it as an image.
///
/// Owned by the camera object, never by the graph.
class SampleGrabberCallback : public QObject
{
    Q_OBJECT

public:
    explicit SampleGrabberCallback(QObject* parent = nullptr);

    /// Size of the frames to come; set before the graph runs.
    void setFrameSize(const QSize& size);
    [[nodiscard]] QSize frameSize() const;

    /// Takes one frame of the set size, 32-bit RGB without padding, on the streaming thread. The
    /// buffer stays with the caller.
    /// @return false for a null buffer or one too short for the frame size
    bool bufferCallback(double sampleTime, const unsigned char* buffer, long length);
    /// For a stream that has ended with an error; on the streaming thread.
    void captureFailed() { emit sigCaptureFailed(); }

signals:
    /// Emitted on the streaming thread. @p image refers to the frame's buffer, which is reused
    /// after the signal: connect queued only through a receiver that copies first.
    void sigImage(QImage image);
    /// Emitted on the streaming thread.
    void sigCaptureFailed();

private:
    std::atomic<int> m_width{0};
    std::atomic<int> m_height{0};
};
