#include "PreviewFrames.h"

void PreviewFrames::put(const QImage& frame)
{
    bool announce = false;
    {
        const std::lock_guard<std::mutex> lock(m_mutex);
        m_frame = frame;
        announce = !m_announced;
        m_announced = true;
    }
    if (announce)
        emit frameReady();
}

QImage PreviewFrames::newest()
{
    const std::lock_guard<std::mutex> lock(m_mutex);
    m_announced = false;
    return m_frame;
}

void PreviewFrames::clear()
{
    const std::lock_guard<std::mutex> lock(m_mutex);
    m_frame = QImage();
    m_announced = false;
}
