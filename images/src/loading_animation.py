"""Frames of the loading spinner (SVG text per frame).

GIF knows no partial transparency: the edge is blended with a dark matte, so
the picture suits a dark translucent overlay.
"""
import math

WIDTH, HEIGHT = 80, 80
FRAMES, DELAY = 25, 4                   # 1 s; delay in 1/100 s
MATTE = (0x2A, 0x2C, 0x30)
THRESHOLD = 48                          # alpha below this is transparent
KEEP = (0xFFFFFF,)
RADIUS, WEIGHT, LENGTH, STEPS = 26.0, 6.0, 280.0, 70


def mix(a, b, t):
    return tuple(int(round(x + (y - x) * t)) for x, y in zip(a, b))


def point(degrees):
    a = math.radians(degrees)
    return 40 + RADIUS * math.cos(a), 40 + RADIUS * math.sin(a)


def frame(index):
    head = 360.0 * index / FRAMES - 90
    track, blue, white = (0x4A, 0x4E, 0x55), (0x34, 0x76, 0xFF), (255, 255, 255)
    out = ['<svg xmlns="http://www.w3.org/2000/svg" width="80" height="80" viewBox="0 0 80 80">'
           '<circle cx="40" cy="40" r="%g" fill="none" stroke="#%02X%02X%02X" stroke-width="%g"/>'
           % (RADIUS, *track, WEIGHT)]
    for n in range(STEPS):
        u = n / (STEPS - 1)
        colour = mix(track, blue, u / 0.6) if u < 0.6 else mix(blue, white, (u - 0.6) / 0.4)
        x0, y0 = point(head - LENGTH * (1 - u))
        x1, y1 = point(head - LENGTH * (1 - u) + LENGTH / STEPS * 1.6)
        out.append('<path d="M%.3f %.3fA%g %g 0 0 1 %.3f %.3f" fill="none" stroke="#%02X%02X%02X" '
                   'stroke-width="%g" stroke-linecap="%s"/>'
                   % (x0, y0, RADIUS, RADIUS, x1, y1, *colour, WEIGHT,
                      "round" if n == STEPS - 1 else "butt"))
    out.append("</svg>")
    return "".join(out)
