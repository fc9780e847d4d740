#include "SampleGrabberCallback.h"

SampleGrabberCallback::SampleGrabberCallback(QObject* parent)
    : QObject(parent)
{
}

void SampleGrabberCallback::setFrameSize(const QSize& size)
{
    m_width = size.width();
    m_height = size.height();
}

QSize SampleGrabberCallback::frameSize() const
{
    return {m_width, m_height};
}

bool SampleGrabberCallback::bufferCallback(double sampleTime, const unsigned char* buffer,
                                           long length)
{
    Q_UNUSED(sampleTime)
    // 64 bits: the size of a large frame wraps around in 32, also in a long of Windows.
    constexpr qint64 bytesPerPixel = 4;
    const int width = m_width;
    const int height = m_height;
    if (!buffer || length < bytesPerPixel * width * height)
        return false;
    emit sigImage(QImage(buffer, width, height, QImage::Format_RGB32));
    return true;
}
