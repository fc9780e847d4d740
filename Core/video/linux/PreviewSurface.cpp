#include "PreviewSurface.h"

#include "PreviewFrames.h"

#include <cmath>
#include <QPainter>
#include <QPaintEvent>

PreviewSurface::PreviewSurface(std::shared_ptr<PreviewFrames> frames, QWidget* target)
    : QWidget(target)
    , m_frames(std::move(frames))
{
    setObjectName(QStringLiteral("previewSurface"));
    setAttribute(Qt::WA_TransparentForMouseEvents);
    setGeometry(target->rect());
    connect(m_frames.get(), &PreviewFrames::frameReady, this, &PreviewSurface::takeFrame,
            Qt::QueuedConnection);
}

PreviewSurface::~PreviewSurface()
{
    m_frames->setWatched(false);
}

void PreviewSurface::takeFrame()
{
    m_frame = m_frames->newest();
    m_frame.setDevicePixelRatio(devicePixelRatioF());
    // repaint(), because update() would need another pass of the event loop for every frame.
    repaint();
}

bool PreviewSurface::event(QEvent* event)
{
    const bool handled = QWidget::event(event);
    // The picture is opaque, so the widgets below it need not be painted. A style sheet removes
    // this attribute from every widget that it is applied to.
    if (event->type() == QEvent::Polish || event->type() == QEvent::StyleChange)
        setAttribute(Qt::WA_OpaquePaintEvent);
    return handled;
}

void PreviewSurface::paintEvent(QPaintEvent* event)
{
    QPainter painter(this);
    // The frames are made for the size at the start of the preview, and are only scaled here when
    // the surface has got another size since.
    QSizeF size = QSizeF(m_frame.size()) / m_frame.devicePixelRatio();
    const QSizeF fitted = size.scaled(QSizeF(this->size()), Qt::KeepAspectRatio);
    const bool fits = std::abs(size.width() - fitted.width()) < 1 &&
                      std::abs(size.height() - fitted.height()) < 1;
    if (!fits)
        size = fitted;
    const QPointF origin((width() - size.width()) / 2, (height() - size.height()) / 2);
    if (m_frame.isNull() || size.width() < width() || size.height() < height())
        painter.fillRect(event->rect(), Qt::black);
    if (m_frame.isNull())
        return;
    painter.setRenderHint(QPainter::SmoothPixmapTransform, !fits);
    if (fits)
        painter.drawImage(origin, m_frame);
    else
        painter.drawImage(QRectF(origin, size), m_frame);
}

void PreviewSurface::showEvent(QShowEvent* event)
{
    m_frames->setWatched(true);
    QWidget::showEvent(event);
}

void PreviewSurface::hideEvent(QHideEvent* event)
{
    m_frames->setWatched(false);
    QWidget::hideEvent(event);
}
