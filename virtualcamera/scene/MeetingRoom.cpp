#include "MeetingRoom.h"

#include "StrokeFont.h"

#include <cmath>
#include <QLinearGradient>
#include <QPainterPath>
#include <QRadialGradient>

namespace virtualcamera {

namespace {

constexpr double kPi = 3.14159265358979323846;

struct PersonStyle
{
    QColor skin;
    QColor hair;
    QColor shirt;
    bool hasLongHair;
};

const PersonStyle kLeftStyle{QColor(0xE8B48E), QColor(0x4A2C1D), QColor(0xC9485B), true};
const PersonStyle kRightStyle{QColor(0xB98056), QColor(0x1E1A1A), QColor(0x2F6F8F), false};

/// A wave of `turns` per period, from -1 to 1.
double wave(double seconds, double turns, double phase = 0)
{
    return std::sin(2 * kPi * (turns * seconds / MeetingRoom::kPeriod + phase));
}

QLinearGradient verticalGradient(const QRectF& area, const QColor& top, const QColor& bottom)
{
    QLinearGradient gradient(area.topLeft(), area.bottomLeft());
    gradient.setColorAt(0, top);
    gradient.setColorAt(1, bottom);
    return gradient;
}

void paintShadow(QPainter& painter, const QRectF& ellipse, int strength)
{
    QRadialGradient gradient(0, 0, 1);
    gradient.setColorAt(0, QColor(20, 30, 40, strength));
    gradient.setColorAt(1, QColor(20, 30, 40, 0));
    painter.save();
    painter.translate(ellipse.center());
    painter.scale(ellipse.width() / 2, ellipse.height() / 2);
    painter.setBrush(gradient);
    painter.drawEllipse(QPointF(0, 0), 1, 1);
    painter.restore();
}

void paintWall(QPainter& painter)
{
    const QRectF wall(0, 0, MeetingRoom::kWidth, 800);
    painter.setBrush(verticalGradient(wall, QColor(0xEAF0F3), QColor(0xB5C9D3)));
    painter.drawRect(wall);
    // Light from the lamp on the wall behind it.
    QRadialGradient light(QPointF(970, 230), 620);
    light.setColorAt(0, QColor(255, 236, 196, 170));
    light.setColorAt(1, QColor(255, 236, 196, 0));
    painter.setBrush(light);
    painter.drawRect(wall);
    const QRectF panel(0, 690, MeetingRoom::kWidth, 110);
    painter.setBrush(verticalGradient(panel, QColor(0x8FA9B5), QColor(0x7B96A3)));
    painter.drawRect(panel);
    painter.setBrush(QColor(0xF7F9FA));
    painter.drawRect(QRectF(0, 682, MeetingRoom::kWidth, 10));
    const QRectF floor(0, 800, MeetingRoom::kWidth, 280);
    painter.setBrush(verticalGradient(floor, QColor(0x8C6F58), QColor(0x5F4838)));
    painter.drawRect(floor);
}

void paintWindow(QPainter& painter)
{
    const QRectF frame(70, 120, 430, 440);
    painter.setBrush(QColor(0xFFFFFF));
    painter.drawRoundedRect(frame.adjusted(-16, -16, 16, 16), 10, 10);
    painter.save();
    painter.setClipRect(frame, Qt::IntersectClip);
    painter.setBrush(verticalGradient(frame, QColor(0x5DB4E8), QColor(0xFFE3B8)));
    painter.drawRect(frame);
    painter.setBrush(QColor(0xFFF6D5));
    painter.drawEllipse(QPointF(390, 230), 44, 44);
    QPainterPath farHills(QPointF(70, 450));
    farHills.cubicTo(180, 350, 260, 420, 340, 400);
    farHills.cubicTo(410, 380, 450, 420, 500, 400);
    farHills.lineTo(500, 560);
    farHills.lineTo(70, 560);
    painter.setBrush(QColor(0x7FB7A3));
    painter.drawPath(farHills);
    QPainterPath nearHills(QPointF(70, 500));
    nearHills.cubicTo(160, 450, 300, 540, 500, 460);
    nearHills.lineTo(500, 560);
    nearHills.lineTo(70, 560);
    painter.setBrush(QColor(0x4C8C72));
    painter.drawPath(nearHills);
    painter.restore();
    painter.setBrush(QColor(0xFFFFFF));
    painter.drawRect(QRectF(278, 120, 14, 440));
    painter.drawRect(QRectF(70, 330, 430, 12));
    painter.drawRoundedRect(QRectF(44, 570, 482, 22), 6, 6);
}

void paintScreen(QPainter& painter, const std::string& cameraName)
{
    const QRectF screen(1430, 150, 420, 260);
    painter.setBrush(QColor(0x1C2329));
    painter.drawRoundedRect(screen.adjusted(-14, -14, 14, 14), 14, 14);
    painter.setBrush(verticalGradient(screen, QColor(0x24405E), QColor(0x152536)));
    painter.drawRect(screen);
    painter.setPen(QColor(0xE9F3FA));
    const double height = std::min(26.0, 26.0 * 360 / StrokeFont::width(26, cameraName + "."));
    StrokeFont::draw(painter, QPointF(1460, 180), height, cameraName);
    painter.setPen(Qt::NoPen);
    const double values[] = {50, 82, 66, 110, 96, 138};
    const QColor colors[] = {QColor(0x3FC1C9), QColor(0x6FD08C), QColor(0xF6C667),
                             QColor(0xF38181), QColor(0x9B89E0), QColor(0x58A6FF)};
    for (int i = 0; i < 6; ++i) {
        painter.setBrush(colors[i]);
        painter.drawRoundedRect(QRectF(1466 + i * 58, 388 - values[i], 38, values[i]), 5, 5);
    }
}

void paintClock(QPainter& painter, double seconds)
{
    const QPointF center(610, 170);
    painter.setBrush(QColor(0x6B4A34));
    painter.drawRoundedRect(QRectF(550, 110, 120, 270), 18, 18);
    painter.setBrush(QColor(0x3A281D));
    painter.drawRoundedRect(QRectF(566, 242, 88, 122), 10, 10);
    painter.setBrush(QColor(0xFBF7EC));
    painter.drawEllipse(center, 52, 52);
    painter.save();
    painter.translate(center);
    for (int hour = 0; hour < 12; ++hour) {
        painter.setBrush(QColor(0x40342B));
        painter.drawRect(QRectF(-2, -48, 4, hour % 3 == 0 ? 12 : 6));
        painter.rotate(30);
    }
    const auto paintHand = [&painter](double degrees, double length, double width) {
        painter.save();
        painter.rotate(degrees);
        painter.drawRoundedRect(QRectF(-width / 2, -length, width, length + 6), 2, 2);
        painter.restore();
    };
    paintHand(305, 26, 6);
    paintHand(60, 38, 4);
    painter.restore();
    painter.save();
    painter.translate(610, 232);
    painter.rotate(14 * wave(seconds, 2));
    painter.setBrush(QColor(0xD9B65B));
    painter.drawRect(QRectF(-2, 12, 4, 84));
    painter.drawEllipse(QPointF(0, 100), 17, 17);
    painter.restore();
}

void paintLamp(QPainter& painter, double seconds)
{
    painter.save();
    painter.translate(970, 0);
    painter.rotate(4 * wave(seconds, 1));
    painter.setBrush(QColor(0x2D343A));
    painter.drawRect(QRectF(-2, -20, 4, 170));
    QRadialGradient glow(QPointF(0, 216), 90);
    glow.setColorAt(0, QColor(255, 240, 190, 235));
    glow.setColorAt(1, QColor(255, 240, 190, 0));
    painter.setBrush(glow);
    painter.drawEllipse(QPointF(0, 216), 90, 60);
    QPainterPath shade(QPointF(-26, 148));
    shade.lineTo(26, 148);
    shade.cubicTo(60, 165, 84, 190, 90, 214);
    shade.lineTo(-90, 214);
    shade.cubicTo(-84, 190, -60, 165, -26, 148);
    painter.setBrush(
        verticalGradient(QRectF(-90, 148, 180, 66), QColor(0xF2A65A), QColor(0xD9772F)));
    painter.drawPath(shade);
    painter.restore();
}

void paintPlant(QPainter& painter)
{
    painter.setBrush(QColor(0x3E8E5A));
    for (int i = -3; i <= 3; ++i) {
        painter.save();
        painter.translate(1800, 640);
        painter.rotate(i * 17);
        painter.setBrush(i % 2 == 0 ? QColor(0x3E8E5A) : QColor(0x55A86F));
        painter.drawEllipse(QRectF(-22, -190 + std::abs(i) * 14, 44, 190));
        painter.restore();
    }
    QPainterPath pot(QPointF(1740, 620));
    pot.lineTo(1860, 620);
    pot.lineTo(1842, 760);
    pot.lineTo(1758, 760);
    painter.setBrush(
        verticalGradient(QRectF(1740, 620, 120, 140), QColor(0xE0E4E7), QColor(0xAAB4BA)));
    painter.drawPath(pot);
}

void paintTorso(QPainter& painter, QPointF face, const PersonStyle& style)
{
    const double x = face.x();
    const double y = face.y();
    if (style.hasLongHair) {
        painter.setBrush(style.hair);
        painter.drawRoundedRect(QRectF(x - 92, y - 60, 184, 210), 70, 70);
    }
    painter.setBrush(style.skin.darker(112));
    painter.drawRoundedRect(QRectF(x - 30, y + 60, 60, 90), 24, 24);
    QPainterPath shirt(QPointF(x - 185, y + 400));
    shirt.cubicTo(x - 190, y + 190, x - 150, y + 148, x - 42, y + 128);
    shirt.quadTo(x, y + 165, x + 42, y + 128);
    shirt.cubicTo(x + 150, y + 148, x + 190, y + 190, x + 185, y + 400);
    painter.setBrush(verticalGradient(QRectF(x - 190, y + 120, 380, 280), style.shirt.lighter(112),
                                      style.shirt.darker(125)));
    painter.drawPath(shirt);
}

void paintEyes(QPainter& painter, bool closed)
{
    for (const double side : {-1.0, 1.0}) {
        painter.setBrush(closed ? QColor(0, 0, 0, 70) : QColor(0xFFFFFF));
        painter.drawEllipse(QPointF(side * 30, -6), 13, closed ? 2.5 : 9);
        if (closed)
            continue;
        painter.setBrush(QColor(0x3B2A20));
        painter.drawEllipse(QPointF(side * 30, -5), 6.5, 7.5);
    }
}

/// A smile that opens downwards; `open` goes from 0 to 1.
void paintMouth(QPainter& painter, double open)
{
    QPainterPath lips(QPointF(-30, 52));
    lips.quadTo(0, 68, 30, 52);
    lips.quadTo(0, 84 + 22 * open, -30, 52);
    painter.setBrush(QColor(0x9C3D43));
    painter.drawPath(lips);
    if (open < 0.25)
        return;
    QPainterPath teeth(QPointF(-20, 58));
    teeth.quadTo(0, 68, 20, 58);
    teeth.quadTo(0, 76, -20, 58);
    painter.setBrush(QColor(0xFBF6F0));
    painter.drawPath(teeth);
}

void paintHead(QPainter& painter, QPointF face, const PersonStyle& style, double seconds,
               double phase, bool talks)
{
    painter.save();
    painter.translate(face);
    painter.translate(0, 120);
    painter.rotate(3.5 * wave(seconds, 1, phase));
    painter.translate(0, -120 + 3 * wave(seconds, 2, phase));

    painter.setBrush(style.skin.darker(106));
    painter.drawEllipse(QPointF(-80, 8), 16, 22);
    painter.drawEllipse(QPointF(80, 8), 16, 22);
    QRadialGradient skin(QPointF(-20, -30), 150);
    skin.setColorAt(0, style.skin.lighter(108));
    skin.setColorAt(1, style.skin.darker(110));
    painter.setBrush(skin);
    painter.drawRoundedRect(QRectF(-80, -100, 160, 208), 78, 88);
    // The hair is the part of a cap above the forehead.
    QPainterPath hair(QPointF(-86, 4));
    hair.cubicTo(-100, -150, 100, -150, 86, 4);
    hair.cubicTo(76, -50, 50, -72, style.hasLongHair ? -30 : 30, -74);
    hair.cubicTo(-50, -72, -76, -50, -86, 4);
    painter.setBrush(style.hair);
    painter.drawPath(hair);
    const double blink = std::fmod(seconds + phase * MeetingRoom::kPeriod, MeetingRoom::kPeriod);
    paintEyes(painter, blink > 3.7);
    painter.setBrush(style.hair);
    painter.drawRoundedRect(QRectF(-46, -30, 32, 6), 3, 3);
    painter.drawRoundedRect(QRectF(14, -30, 32, 6), 3, 3);
    painter.setBrush(style.skin.darker(120));
    painter.drawRoundedRect(QRectF(-8, 8, 16, 26), 8, 8);
    paintMouth(painter, talks ? std::abs(wave(seconds, 5)) : 0);
    painter.restore();
}

void paintTable(QPainter& painter)
{
    paintShadow(painter, QRectF(180, 940, 1560, 170), 120);
    QPainterPath top(QPointF(330, 760));
    top.lineTo(1590, 760);
    top.lineTo(1830, 960);
    top.lineTo(90, 960);
    painter.setBrush(
        verticalGradient(QRectF(0, 760, 1920, 200), QColor(0xD9A066), QColor(0xB87A42)));
    painter.drawPath(top);
    painter.setBrush(QColor(0x8F5A2B));
    painter.drawRect(QRectF(90, 960, 1740, 34));
    painter.setBrush(QColor(255, 255, 255, 36));
    painter.drawEllipse(QPointF(970, 850), 420, 60);
}

void paintLaptop(QPainter& painter, QPointF at)
{
    paintShadow(painter, QRectF(at.x() - 150, at.y() + 6, 300, 60), 110);
    painter.setBrush(QColor(0xC6CED4));
    painter.drawRoundedRect(QRectF(at.x() - 118, at.y() - 130, 236, 150), 12, 12);
    painter.setBrush(QColor(0xE9EDF0));
    painter.drawEllipse(QPointF(at.x(), at.y() - 56), 15, 15);
    painter.setBrush(QColor(0xA7B1B8));
    painter.drawRoundedRect(QRectF(at.x() - 136, at.y() + 16, 272, 14), 7, 7);
}

void paintMug(QPainter& painter, QPointF at, const QColor& color)
{
    paintShadow(painter, QRectF(at.x() - 50, at.y() + 38, 100, 30), 110);
    painter.setBrush(color.darker(120));
    painter.drawEllipse(QPointF(at.x() + 32, at.y() + 14), 20, 20);
    painter.setBrush(QColor(0xC58A53));
    painter.drawEllipse(QPointF(at.x() + 32, at.y() + 14), 11, 11);
    painter.setBrush(verticalGradient(QRectF(at.x() - 34, at.y() - 26, 68, 80), color.lighter(110),
                                      color.darker(115)));
    painter.drawRoundedRect(QRectF(at.x() - 34, at.y() - 26, 68, 80), 10, 10);
    painter.setBrush(QColor(0x4B2E20));
    painter.drawEllipse(QPointF(at.x(), at.y() - 24), 32, 8);
}

} // namespace

void MeetingRoom::paint(QPainter& painter, double seconds) const
{
    painter.setRenderHint(QPainter::Antialiasing);
    painter.setPen(Qt::NoPen);
    paintWall(painter);
    paintWindow(painter);
    paintScreen(painter, m_cameraName);
    paintClock(painter, seconds);
    paintPlant(painter);
    paintLamp(painter, seconds);
    paintTorso(painter, leftPerson(), kLeftStyle);
    paintHead(painter, leftPerson(), kLeftStyle, seconds, 0.0, true);
    paintTorso(painter, rightPerson(), kRightStyle);
    paintHead(painter, rightPerson(), kRightStyle, seconds, 0.4, false);
    paintTable(painter);
    paintLaptop(painter, QPointF(690, 850));
    paintLaptop(painter, QPointF(1250, 850));
    paintMug(painter, QPointF(950, 820), QColor(0x3FA7A0));
    paintMug(painter, QPointF(1480, 850), QColor(0xE4C04E));
}

std::vector<QRectF> MeetingRoom::movingParts()
{
    const auto head = [](QPointF face) { return QRectF(face.x() - 122, face.y() - 140, 244, 270); };
    return {head(leftPerson()), head(rightPerson()), QRectF(566, 236, 88, 130),
            QRectF(838, 0, 264, 290)};
}

} // namespace virtualcamera
