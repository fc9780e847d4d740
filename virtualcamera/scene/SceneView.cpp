#include "SceneView.h"

#include "MeetingRoom.h"

#include <algorithm>
#include <cmath>

namespace virtualcamera {

namespace {

constexpr double kWidestView = 120;
constexpr double kNarrowestView = 40;

double zoomOf(const PictureState& state)
{
    const double view = std::clamp<double>(state.fieldOfView, kNarrowestView, kWidestView);
    const double lens = kWidestView / view;
    switch (state.framing) {
    case Framing::Speaker:
        return std::max(lens * 1.25, 1.9);
    case Framing::Stage:
        return std::max(lens, 1.35);
    case Framing::Off:
        break;
    }
    return lens;
}

} // namespace

SceneView::SceneView(const PictureState& state)
    : m_mirrored(state.mirrored)
    , m_pictureWidth(state.width)
{
    const double zoom = zoomOf(state);
    m_scale = zoom * state.width / MeetingRoom::kWidth;
    const double viewWidth = MeetingRoom::kWidth / zoom;
    const double viewHeight = MeetingRoom::kHeight / zoom;

    QPointF first(MeetingRoom::kWidth / 2, MeetingRoom::kHeight / 2 + 10);
    QPointF second = first;
    if (state.framing == Framing::Speaker) {
        first = MeetingRoom::leftPerson() + QPointF(0, 60);
        second = MeetingRoom::rightPerson() + QPointF(0, 60);
    } else if (state.framing == Framing::Stage) {
        first = second = MeetingRoom::stage();
    }
    if (m_mirrored) {
        first.setX(MeetingRoom::kWidth - first.x());
        second.setX(MeetingRoom::kWidth - second.x());
    }
    const auto leftEdge = [viewWidth](double x) {
        return std::clamp(x - viewWidth / 2, 0.0, MeetingRoom::kWidth - viewWidth);
    };
    m_firstTarget = first.x();
    m_secondTarget = second.x();
    m_left = std::min(leftEdge(first.x()), leftEdge(second.x()));
    const double panWidth = std::abs(leftEdge(first.x()) - leftEdge(second.x()));
    m_top = std::clamp(first.y() - viewHeight / 2, 0.0, MeetingRoom::kHeight - viewHeight);
    m_stripWidth = state.width + static_cast<int>(panWidth * m_scale) / 2 * 2;
}

QTransform SceneView::transform() const
{
    QTransform transform;
    transform.scale(m_scale, m_scale);
    transform.translate(-m_left, -m_top);
    if (m_mirrored) {
        transform.translate(MeetingRoom::kWidth, 0);
        transform.scale(-1, 1);
    }
    return transform;
}

int SceneView::windowAt(double worldX) const
{
    const double left = (worldX - m_left) * m_scale - m_pictureWidth / 2.0;
    const int even = static_cast<int>(std::lround(left / 2)) * 2;
    return std::clamp(even, 0, m_stripWidth - m_pictureWidth);
}

} // namespace virtualcamera
