#pragma once

#include "FramePainter.h"

#include <QRectF>
#include <QTransform>

namespace virtualcamera {

/// Which part of the room is in the picture. While the framing follows the people the picture is
/// a window that slides over a wider strip of the room, so that a pan copies pixels and paints
/// nothing.
class SceneView
{
public:
    SceneView() = default;
    explicit SceneView(const PictureState& state);

    /// In pixels; as high as the picture.
    int stripWidth() const { return m_stripWidth; }
    /// World units to pixels of the strip.
    QTransform transform() const;
    /// The left edge of the window that shows a place in the world, in pixels of the strip. Even,
    /// because two pixels share their colour.
    int windowAt(double worldX) const;
    bool canPan() const { return m_stripWidth > m_pictureWidth; }
    /// What the framing shows, in world units: the first place, and the place it changes to.
    double firstTarget() const { return m_firstTarget; }
    double secondTarget() const { return m_secondTarget; }

private:
    double m_scale = 1;
    double m_left = 0;
    double m_top = 0;
    bool m_mirrored = false;
    int m_pictureWidth = 0;
    int m_stripWidth = 0;
    double m_firstTarget = 0;
    double m_secondTarget = 0;
};

} // namespace virtualcamera
