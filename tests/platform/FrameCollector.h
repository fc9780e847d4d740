#pragma once

#include <mutex>
#include <QImage>
#include <QObject>

class UVCCamera;

/// Takes the frames of a preview as a program would that wants them all: on the streaming thread,
/// with a copy of its own.
class FrameCollector : public QObject
{
public:
    explicit FrameCollector(const UVCCamera& camera);

    [[nodiscard]] int count() const;
    [[nodiscard]] QImage newest() const;

    /// Waits for frames that were made after this call; a null image when none come.
    [[nodiscard]] QImage next();

private:
    void take(const QImage& image);

    mutable std::mutex m_mutex;
    QImage m_newest;
    int m_count = 0;
};
