#include "StrokeFont.h"

#include <cctype>
#include <map>
#include <QPainterPath>

namespace virtualcamera {

namespace {

constexpr double kGridHeight = 6;
/// A glyph is 4 units wide; the rest is the gap to the next.
constexpr double kAdvance = 5.8;

/// Strokes of a glyph, separated by '|'; each point is a column 0..4 and a row 0..6.
const char* strokesOf(char character)
{
    static const std::map<char, const char*> glyphs{
        {'A', "06 20 46|14 34"},
        {'B', "06 00 30 41 42 33 03|33 44 45 36 06"},
        {'C', "41 30 10 01 05 16 36 45"},
        {'D', "06 00 20 42 44 26 06"},
        {'E', "40 00 06 46|03 33"},
        {'F', "40 00 06|03 33"},
        {'G', "41 30 10 01 05 16 36 45 43 23"},
        {'H', "00 06|40 46|03 43"},
        {'I', "10 30|20 26|16 36"},
        {'J', "40 45 36 16 05"},
        {'K', "00 06|40 03 46"},
        {'L', "00 06 46"},
        {'M', "06 00 23 40 46"},
        {'N', "06 00 46 40"},
        {'O', "10 30 41 45 36 16 05 01 10"},
        {'P', "06 00 30 41 42 33 03"},
        {'Q', "10 30 41 45 36 16 05 01 10|24 46"},
        {'R', "06 00 30 41 42 33 03|23 46"},
        {'S', "41 30 10 01 02 13 33 44 45 36 16 05"},
        {'T', "00 40|20 26"},
        {'U', "00 05 16 36 45 40"},
        {'V', "00 26 40"},
        {'W', "00 16 23 36 40"},
        {'X', "00 46|40 06"},
        {'Y', "00 23 40|23 26"},
        {'Z', "00 40 06 46"},
        {'0', "10 30 41 45 36 16 05 01 10"},
        {'1', "11 20 26|16 36"},
        {'2', "01 10 30 41 42 06 46"},
        {'3', "01 10 30 41 42 33 44 45 36 16 05|13 33"},
        {'4', "36 30 04 44"},
        {'5', "40 00 03 33 44 45 36 16 05"},
        {'6', "30 10 01 05 16 36 45 44 33 03"},
        {'7', "00 40 16"},
        {'8', "10 30 41 42 33 13 02 01 10|13 04 05 16 36 45 44 33"},
        {'9', "43 13 02 01 10 30 41 45 36 16"},
        {'-', "13 33"},
        {'.', "26 26"},
        {':', "21 21|25 25"},
        {'#', "11 15|31 35|02 42|04 44"},
        {'/', "40 06"},
    };
    const auto found =
        glyphs.find(static_cast<char>(std::toupper(static_cast<unsigned char>(character))));
    return found == glyphs.end() ? "" : found->second;
}

void addStrokes(QPainterPath& path, const char* strokes, QPointF origin, double unit)
{
    bool starts = true;
    for (const char* at = strokes; *at != '\0'; ++at) {
        if (*at == '|') {
            starts = true;
        } else if (*at != ' ') {
            const QPointF point = origin + unit * QPointF(at[0] - '0', at[1] - '0');
            if (starts)
                path.moveTo(point);
            // A stroke with a single point is a dot; it is drawn only when it has some length.
            path.lineTo(point + QPointF(starts ? unit * 0.01 : 0, 0));
            starts = false;
            ++at;
        }
    }
}

} // namespace

void StrokeFont::draw(QPainter& painter, QPointF topLeft, double height, const std::string& text)
{
    const double unit = height / kGridHeight;
    QPainterPath path;
    for (const char character : text) {
        // Only the first byte of a UTF-8 sequence moves to the next glyph.
        if ((static_cast<unsigned char>(character) & 0xC0U) == 0x80)
            continue;
        addStrokes(path, strokesOf(character), topLeft, unit);
        topLeft.rx() += kAdvance * unit;
    }
    painter.save();
    painter.setBrush(Qt::NoBrush);
    painter.setPen(
        QPen(painter.pen().color(), unit * 0.85, Qt::SolidLine, Qt::RoundCap, Qt::RoundJoin));
    painter.drawPath(path);
    painter.restore();
}

double StrokeFont::width(double height, const std::string& text)
{
    int places = 0;
    for (const char character : text)
        places += (static_cast<unsigned char>(character) & 0xC0U) == 0x80 ? 0 : 1;
    const double unit = height / kGridHeight;
    return places == 0 ? 0 : (places * kAdvance - (kAdvance - 4)) * unit;
}

} // namespace virtualcamera
