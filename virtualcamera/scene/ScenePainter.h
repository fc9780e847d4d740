#pragma once

#include "FramePainter.h"
#include "MeetingRoom.h"
#include "PictureGrade.h"
#include "SceneView.h"
#include "YuyvImage.h"

#include <map>
#include <memory>
#include <vector>

namespace virtualcamera {

/// Paints the meeting room. What does not move is painted once per change of the camera's
/// registers; the moving parts, and finished JPEG frames, are kept for one period.
class ScenePainter : public FramePainter
{
public:
    std::size_t paint(const PictureState& state, std::uint32_t sequence, double seconds,
                      std::uint8_t* to, std::size_t capacity) override;

private:
    /// A moving part at one moment, in pixels of the strip.
    struct Patch
    {
        int x;
        int y;
        YuyvImage image;
    };

    static int phaseOf(double seconds);

    void update(const PictureState& state, double seconds);
    void repaint();
    YuyvImage paintArea(const QRect& area, double seconds) const;
    const std::vector<Patch>& patches(int phase);
    void compose(int phase, int window, const std::string& caption, std::uint8_t* to);
    void blit(const YuyvImage& image, int x, int y, std::uint8_t* to) const;
    void paintCaption(const std::string& caption, std::uint8_t* to) const;
    /// The window's current position; moves slowly when the framing changes to another person.
    int window(double seconds);
    const std::vector<std::uint8_t>& jpeg(int phase, int window);

    PictureState m_state;
    bool m_hasState = false;
    std::unique_ptr<MeetingRoom> m_room;
    SceneView m_view;
    PictureGrade m_grade;
    YuyvImage m_neutral;
    YuyvImage m_strip;
    std::map<int, std::vector<Patch>> m_patches;
    double m_framingSince = 0;

    std::map<int, std::vector<std::uint8_t>> m_jpegs;
    int m_jpegWindow = -1;
};

} // namespace virtualcamera
