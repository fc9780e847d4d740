#pragma once

#include <mutex>
#include <QImage>
#include <QObject>

class UVCCamera;

/// Copies every frame of a preview on the streaming thread.
class FrameCollector : public QObject
{
public:
    explicit FrameCollector(const UVCCamera& camera);

    [[nodiscard]] int count() const;
    [[nodiscard]] QImage newest() const;

    /// Waits for frames that were made after this call; a null image when none arrives.
    [[nodiscard]] QImage next();

private:
    void take(const QImage& image);

    mutable std::mutex m_mutex;
    QImage m_newest;
    int m_count = 0;
};
