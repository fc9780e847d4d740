"""Frames of the start animation (SVG text per frame)."""
import math

import wordmark

WIDTH, HEIGHT = 360, 680
BACKGROUND = 0x004DA6
FRAMES, DELAY = 70, 4                   # 2.8 s; delay in 1/100 s
RING_STOPS = (0xFFFFFF, 0xF2F6FD, 0xC3D5F2)


def between(a, b, t):
    return sum(int(round(((a >> k) & 255) + (((b >> k) & 255) - ((a >> k) & 255)) * t)) << k
               for k in (16, 8, 0))


# Palette entries that must be exact: flat colours and the light of the ring.
KEEP = (BACKGROUND, 0xFFFFFF, 0x60DD00) + tuple(
    between(RING_STOPS[n // 12], RING_STOPS[n // 12 + 1], n % 12 / 12) for n in range(24))
# Everything that moves lies in this box (x, y, width, height).
BOX = (56, 180, 248, 296)

CX, CY = 180.0, 284.0
DIAL, RING, LENS = 88.0, 60.0, 53.5
BLADES = 7


def ramp(t, start, end):
    return min(1.0, max(0.0, (t - start) / (end - start)))


def smooth(x):
    return x * x * x * (x * (6 * x - 15) + 10)


def ease_out(x):
    return 1 - (1 - x) ** 3


def back_out(x):
    return 1 + 2.7 * (x - 1) ** 3 + 1.7 * (x - 1) ** 2


def polar(radius, degrees):
    a = math.radians(degrees)
    return CX + radius * math.cos(a), CY + radius * math.sin(a)


def arc(radius, start, end):
    x0, y0 = polar(radius, start)
    x1, y1 = polar(radius, end)
    return "M%.3f %.3fA%g %g 0 %d 1 %.3f %.3f" % (
        x0, y0, radius, radius, 1 if end - start > 180 else 0, x1, y1)


def mix(a, b, t):
    return "#%06X" % between(a, b, t)


DEFS = """<defs>
<linearGradient id="ring" gradientUnits="userSpaceOnUse" x1="135" y1="230" x2="225" y2="338">
 <stop offset="0" stop-color="#FFFFFF"/><stop offset="0.5" stop-color="#F2F6FD"/><stop offset="1" stop-color="#C3D5F2"/></linearGradient>
<radialGradient id="glass" gradientUnits="userSpaceOnUse" cx="180" cy="284" r="54" fx="202" fy="310">
 <stop offset="0" stop-color="#2E7BF2"/><stop offset="0.4" stop-color="#0D3E94"/><stop offset="1" stop-color="#021638"/></radialGradient>
<linearGradient id="gloss" gradientUnits="userSpaceOnUse" x1="150" y1="252" x2="188" y2="290">
 <stop offset="0" stop-color="#FFFFFF" stop-opacity="0.62"/><stop offset="1" stop-color="#FFFFFF" stop-opacity="0"/></linearGradient>
<clipPath id="lens"><circle cx="180" cy="284" r="53.5"/></clipPath>
</defs>"""


def iris(opening, turn):
    """Blades between the lens rim and a regular polygon of inner radius `opening`."""
    if opening >= LENS:
        return ""
    step = 360.0 / BLADES
    corner = opening / math.cos(math.radians(step / 2))
    rows = []
    reach = LENS * 2.4
    for n in range(BLADES):
        normal = turn + n * step
        a = polar(corner, normal - step / 2)
        b = polar(corner, normal + step / 2)

        def beyond(point, angle):
            r = math.radians(angle + 90)
            return point[0] + reach * math.cos(r), point[1] + reach * math.sin(r)

        q0, q1 = beyond(a, normal - step), beyond(b, normal)
        far = polar(reach * 1.2, normal + step / 2 + 40)
        lit = 0.5 + 0.5 * math.cos(math.radians(n * step - 80 - 225))
        rows.append(
            '<path d="M%.3f %.3fL%.3f %.3fL%.3f %.3fL%.3f %.3fL%.3f %.3fZ" fill="%s" '
            'stroke="#06316F" stroke-width="1" stroke-linejoin="round"/>'
            % (*a, *b, *q1, *far, *q0, mix(0x0B3F8C, 0x5E97EE, lit)))
    return "".join(rows)


def frame(index):
    t = index * DELAY / 100.0
    out = ['<svg xmlns="http://www.w3.org/2000/svg" width="%d" height="%d" viewBox="%d %d %d %d">'
           % (BOX[2], BOX[3], *BOX), DEFS,
           '<rect x="%d" y="%d" width="%d" height="%d" fill="#004DA6"/>' % BOX]

    # Dial: faint track, then the bright part with the knob at its head.
    track = smooth(ramp(t, 0.08, 0.45))
    if track > 0:
        out.append('<path d="%s" fill="none" stroke="#FFFFFF" stroke-opacity="%.3f" '
                   'stroke-width="8" stroke-linecap="round"/>' % (arc(DIAL, 135, 405), 0.2 * track))
    sweep = smooth(ramp(t, 0.16, 1.30))
    head = 135 + 180 * sweep

    # Wave that leaves the lens once the iris stands open.
    wave = ramp(t, 1.28, 1.85)
    if 0 < wave < 1:
        out.append('<circle cx="%g" cy="%g" r="%.3f" fill="none" stroke="#8DB8FF" '
                   'stroke-opacity="%.3f" stroke-width="%.2f"/>'
                   % (CX, CY, RING + 8 + 32 * ease_out(wave), 0.5 * (1 - wave) ** 1.5, 5 - 4 * wave))

    if track > 0:
        if sweep > 0.002:
            out.append('<path d="%s" fill="none" stroke="#FFFFFF" stroke-width="8" '
                       'stroke-linecap="round"/>' % arc(DIAL, 135, head))
        size = back_out(ramp(t, 0.08, 0.36)) * (1 + 0.22 * math.sin(math.pi * ramp(t, 1.28, 1.60)))
        x, y = polar(DIAL, head)
        out.append('<circle cx="%.3f" cy="%.3f" r="%.3f" fill="#FFFFFF"/>' % (x, y, max(0, 15 * size)))
        out.append('<circle cx="%.3f" cy="%.3f" r="%.3f" fill="#60DD00"/>' % (x, y, max(0, 10.2 * size)))

    # Lens.
    show = ramp(t, 0.20, 0.62)
    if show > 0:
        grow = 0.80 + 0.20 * back_out(show)
        opening = LENS * 1.04 * smooth(ramp(t, 0.56, 1.36))
        turn = -150 + 115 * smooth(ramp(t, 0.30, 1.40))
        shine = smooth(ramp(t, 1.10, 1.60))
        out.append('<g transform="translate(%g %g) scale(%.4f) translate(%g %g)" opacity="%.3f">'
                   % (CX, CY, grow, -CX, -CY, smooth(ramp(show, 0, 0.6))))
        out.append('<circle cx="180" cy="284" r="56" fill="url(#glass)"/>')
        out.append('<circle cx="180" cy="284" r="32" fill="none" stroke="#8DB8FF" stroke-opacity="0.34" stroke-width="2.5"/>'
                   '<circle cx="180" cy="284" r="18" fill="#020C22" fill-opacity="0.72"/>')
        if shine > 0:
            out.append('<g opacity="%.3f"><path d="M140.5 284A39.5 39.5 0 0 1 180 244.5A47 47 0 0 0 140.5 284Z" fill="url(#gloss)"/>'
                       '<circle cx="164" cy="268" r="%.3f" fill="#FFFFFF"/></g>' % (shine, 6.5 * back_out(shine)))
        out.append('<g clip-path="url(#lens)">%s</g>' % iris(opening, turn))
        out.append('<circle cx="180" cy="284" r="60" fill="none" stroke="url(#ring)" stroke-width="14"/>')
        out.append('</g>')

    # Word mark, letter after letter.
    text = "MarvikTools"
    scale = 1.95
    width = wordmark.layout(text)[1] * scale

    def opacity(n):
        x = smooth(ramp(t, 1.36 + 0.05 * n, 1.36 + 0.05 * n + 0.44))
        return x, 4.5 * (1 - x)

    out.append(wordmark.svg(text, CX - width / 2, 454, scale, "#FFFFFF", 1.75, "#60DD00", opacity))
    out.append("</svg>")
    return "".join(out)
