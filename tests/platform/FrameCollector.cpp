#include "FrameCollector.h"

#include "UVCCamera.h"

#include <QtTest>

namespace {

/// At most this many frames are queued between the camera and the collector.
constexpr int kFramesUnderWay = 6;
constexpr int kTimeoutMs = 15000;

} // namespace

FrameCollector::FrameCollector(const UVCCamera& camera)
{
    connect(&camera, &UVCCamera::sigImage, this, &FrameCollector::take, Qt::DirectConnection);
}

void FrameCollector::take(const QImage& image)
{
    const std::lock_guard<std::mutex> lock(m_mutex);
    m_newest = image.copy();
    ++m_count;
}

int FrameCollector::count() const
{
    const std::lock_guard<std::mutex> lock(m_mutex);
    return m_count;
}

QImage FrameCollector::newest() const
{
    const std::lock_guard<std::mutex> lock(m_mutex);
    return m_newest;
}

QImage FrameCollector::next()
{
    const int wanted = count() + kFramesUnderWay;
    return QTest::qWaitFor([this, wanted] { return count() >= wanted; }, kTimeoutMs) ? newest()
                                                                                     : QImage();
}
