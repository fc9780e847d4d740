"""Monoline lettering for the two word marks, as stroke paths (no fonts).

Units: x-height 10, cap height 14, baseline y = 0, y grows downwards.
"""

# glyph: (advance width without side bearings, path, left bearing, right bearing)
GLYPHS = {
    "M": (13.0, "M0 0V-14L6.5 -4.6L13 -14V0", 1.5, 1.5),
    "S": (9.4, "M9 -11C8.1 -13 6.6 -14 4.7 -14C2.2 -14 0.3 -12.6 0.3 -10.5"
               "C0.3 -8.2 2.3 -7.5 4.8 -6.9C7.4 -6.3 9.4 -5.6 9.4 -3.4"
               "C9.4 -1.3 7.4 0 4.8 0C2.5 0 0.8 -1 0 -3", 1.1, 1.1),
    "T": (10.6, "M0 -14H10.6M5.3 -14V0", 0.6, -0.6),
    "a": (9.6, "M9.6 -5A4.8 5 0 1 1 0 -5A4.8 5 0 1 1 9.6 -5ZM9.6 -10V0", 1.0, 1.5),
    "i": (0.0, "M0 -10V0", 1.5, 1.5),
    "k": (7.2, "M0 -14.6V0M6.7 -10L0 -4M2.5 -6.2L7.2 0", 1.5, 0.9),
    "l": (0.0, "M0 -14.6V0", 1.5, 1.5),
    "n": (8.6, "M0 -10V0M0 -5.7A4.3 4.3 0 0 1 8.6 -5.7V0", 1.5, 1.5),
    "o": (10.0, "M10 -5A5 5 0 1 1 0 -5A5 5 0 1 1 10 -5Z", 1.0, 1.0),
    "r": (4.6, "M0 -10V0M0 -5.6A4.4 4.4 0 0 1 4.6 -10", 1.5, 0.7),
    "s": (6.9, "M6.5 -8.1C5.9 -9.4 4.8 -10 3.5 -10C1.7 -10 0.4 -9.1 0.4 -7.6"
               "C0.4 -5.9 1.8 -5.5 3.5 -5.1C5.3 -4.7 6.9 -4.2 6.9 -2.5"
               "C6.9 -0.9 5.4 0 3.6 0C1.9 0 0.6 -0.7 0 -2.1", 1.0, 1.0),
    "t": (5.8, "M2.4 -13.2V-3.2A3.2 3.2 0 0 0 5.6 0H5.8M0 -10H5.6", 0.7, 0.8),
    "v": (8.8, "M0 -10L4.4 0L8.8 -10", 0.8, 0.8),
}
DOT_Y = -13.9


def layout(text, tracking=0.9):
    """Return ([(x, glyph name, path)], total width)."""
    out, x = [], 0.0
    for n, ch in enumerate(text):
        width, path, left, right = GLYPHS[ch]
        if n:
            x += left + tracking
        out.append((x, ch, path))
        x += width
        if n < len(text) - 1:
            x += right
    return out, x


def svg(text, x, y, scale, colour, weight=1.9, dot=None, opacity=None, tracking=0.9):
    """The word as a <g>; opacity(n) and dy come from the callback per letter."""
    parts, _ = layout(text, tracking)
    rows = []
    for n, (gx, ch, path) in enumerate(parts):
        alpha, dy = opacity(n) if opacity else (1.0, 0.0)
        if alpha <= 0:
            continue
        more = "" if alpha >= 1 else ' opacity="%.3f"' % alpha
        rows.append('<g transform="translate(%.3f %.3f)"%s><path d="%s"/>%s</g>' % (
            gx, dy, more, path,
            '<circle cx="0" cy="%g" r="%.3f" stroke="none" fill="%s"/>'
            % (DOT_Y, weight * 0.9, dot or colour) if ch == "i" else ""))
    return ('<g transform="translate(%.3f %.3f) scale(%.4f)" fill="none" stroke="%s" '
            'stroke-width="%.3f" stroke-linecap="round" stroke-linejoin="round">%s</g>'
            % (x, y, scale, colour, weight, "".join(rows)))
