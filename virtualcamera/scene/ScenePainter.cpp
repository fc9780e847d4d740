#include "ScenePainter.h"

#include "JpegEncoder.h"
#include "StrokeFont.h"

#include <algorithm>
#include <cmath>
#include <cstdio>
#include <cstring>
#include <linux/videodev2.h>

namespace virtualcamera {

namespace {

/// How many moments of the period are painted.
constexpr int kPhases = 40;
/// How long the framing shows one person, and how long it takes to move to the other one.
constexpr double kStay = 8.0;
constexpr double kTurn = 2.5;

double smoothStep(double x)
{
    x = std::clamp(x, 0.0, 1.0);
    return x * x * (3 - 2 * x);
}

std::string captionOf(const std::string& name, const char* kind, unsigned number)
{
    char text[32];
    std::snprintf(text, sizeof text, "  %s %06u", kind, number);
    return name + text;
}

/// Whether two states show the same things at the same places.
bool sameShapes(PictureState a, const PictureState& b)
{
    a.brightness = b.brightness;
    a.contrast = b.contrast;
    a.saturation = b.saturation;
    return a == b;
}

} // namespace

int ScenePainter::phaseOf(double seconds)
{
    const double part = std::fmod(seconds, MeetingRoom::kPeriod) / MeetingRoom::kPeriod;
    return std::clamp(static_cast<int>(part * kPhases), 0, kPhases - 1);
}

std::size_t ScenePainter::paint(const PictureState& state, std::uint32_t sequence, double seconds,
                                std::uint8_t* to, std::size_t capacity)
{
    if (!m_hasState || state != m_state)
        update(state, seconds);
    const int phase = phaseOf(seconds);
    const int left = window(seconds);
    const std::size_t rawSize =
        static_cast<std::size_t>(state.width) * static_cast<std::size_t>(state.height) * 2;
    if (state.fourcc != V4L2_PIX_FMT_MJPEG) {
        if (rawSize > capacity)
            return 0;
        compose(phase, left, captionOf(state.cameraName, "#", sequence), to);
        return rawSize;
    }
    const std::vector<std::uint8_t>& frame = jpeg(phase, left);
    if (frame.size() > capacity)
        return 0;
    std::memcpy(to, frame.data(), frame.size());
    return frame.size();
}

void ScenePainter::update(const PictureState& state, double seconds)
{
    const bool sameStrip = m_hasState && sameShapes(m_state, state);
    if (!m_hasState || state.framing != m_state.framing)
        m_framingSince = seconds;
    if (!m_room || state.cameraName != m_state.cameraName)
        m_room = std::make_unique<MeetingRoom>(state.cameraName);
    m_state = state;
    m_hasState = true;
    m_grade = PictureGrade(state);
    if (!sameStrip)
        repaint();
    m_strip = m_neutral.graded(m_grade);
    m_patches.clear();
    m_jpegs.clear();
}

void ScenePainter::repaint()
{
    m_view = SceneView(m_state);
    m_neutral = paintArea(QRect(0, 0, m_view.stripWidth(), m_state.height), 0);
}

YuyvImage ScenePainter::paintArea(const QRect& area, double seconds) const
{
    QImage image(area.size(), QImage::Format_RGB32);
    QPainter painter(&image);
    painter.translate(-area.topLeft());
    painter.setTransform(m_view.transform(), true);
    m_room->paint(painter, seconds);
    painter.end();
    YuyvImage result = YuyvImage::fromImage(image);
    result.sharpen(m_state.sharpness);
    return result;
}

const std::vector<ScenePainter::Patch>& ScenePainter::patches(int phase)
{
    const auto known = m_patches.find(phase);
    if (known != m_patches.end())
        return known->second;
    std::vector<Patch>& list = m_patches[phase];
    const double seconds = MeetingRoom::kPeriod * phase / kPhases;
    const QRect strip(0, 0, m_view.stripWidth(), m_state.height);
    for (const QRectF& part : MeetingRoom::movingParts()) {
        QRect area = m_view.transform().mapRect(part).toAlignedRect().intersected(strip);
        // Two neighbouring pixels share their colour.
        area.setLeft(area.left() / 2 * 2);
        area.setWidth(area.width() / 2 * 2);
        if (!area.isEmpty())
            list.push_back({area.x(), area.y(), paintArea(area, seconds).graded(m_grade)});
    }
    return list;
}

void ScenePainter::compose(int phase, int window, const std::string& caption, std::uint8_t* to)
{
    const std::size_t rowBytes = static_cast<std::size_t>(m_state.width) * 2;
    for (int y = 0; y < m_state.height; ++y)
        std::memcpy(to + rowBytes * static_cast<std::size_t>(y),
                    m_strip.row(y) + std::ptrdiff_t{window} * 2, rowBytes);
    for (const Patch& patch : patches(phase))
        blit(patch.image, patch.x - window, patch.y, to);
    paintCaption(caption, to);
}

void ScenePainter::blit(const YuyvImage& image, int x, int y, std::uint8_t* to) const
{
    const int first = std::max(0, -x);
    const int end = std::min(image.width(), m_state.width - x);
    if (first >= end)
        return;
    for (int row = 0; row < image.height() && y + row < m_state.height; ++row) {
        const auto offset =
            static_cast<std::size_t>(y + row) * static_cast<std::size_t>(m_state.width) +
            static_cast<std::size_t>(x + first);
        std::memcpy(to + offset * 2, image.row(row) + std::ptrdiff_t{first} * 2,
                    static_cast<std::size_t>(end - first) * 2);
    }
}

void ScenePainter::paintCaption(const std::string& caption, std::uint8_t* to) const
{
    const double unit = m_state.width / MeetingRoom::kWidth;
    const double height = 20 * unit;
    const int width = static_cast<int>(StrokeFont::width(height, caption) + 44 * unit) / 2 * 2;
    QImage image(std::min(width, m_state.width / 2 * 2), static_cast<int>(46 * unit),
                 QImage::Format_RGB32);
    image.fill(QColor(0x18222B));
    QPainter painter(&image);
    painter.setRenderHint(QPainter::Antialiasing);
    painter.setPen(QColor(0xFFFFFF));
    StrokeFont::draw(painter, QPointF(22 * unit, 13 * unit), height, caption);
    painter.end();
    blit(YuyvImage::fromImage(image), static_cast<int>(32 * unit) / 2 * 2,
         m_state.height - image.height() - static_cast<int>(28 * unit), to);
}

int ScenePainter::window(double seconds)
{
    if (!m_view.canPan())
        return 0;
    const double time = std::fmod(seconds - m_framingSince, 2 * (kStay + kTurn));
    const double half = kStay + kTurn;
    const double turned = time < half ? smoothStep((time - kStay) / kTurn)
                                      : 1 - smoothStep((time - half - kStay) / kTurn);
    const double target =
        m_view.firstTarget() + turned * (m_view.secondTarget() - m_view.firstTarget());
    return m_view.windowAt(target);
}

const std::vector<std::uint8_t>& ScenePainter::jpeg(int phase, int window)
{
    if (window != m_jpegWindow)
        m_jpegs.clear();
    m_jpegWindow = window;
    std::vector<std::uint8_t>& frame = m_jpegs[phase];
    if (frame.empty()) {
        std::vector<std::uint8_t> raw(static_cast<std::size_t>(m_state.width) *
                                      static_cast<std::size_t>(m_state.height) * 2);
        // The frame is repeated in every period, so it can only show its number within the period.
        compose(phase, window, captionOf(m_state.cameraName, "MJPEG", static_cast<unsigned>(phase)),
                raw.data());
        m_patches.clear(); // the finished frame is kept instead
        frame = encodeJpeg(raw.data(), m_state.width, m_state.height);
    }
    return frame;
}

} // namespace virtualcamera
