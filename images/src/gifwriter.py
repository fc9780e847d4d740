"""GIF89a encoder and PNG reader, python standard library only, deterministic."""
import struct
import zlib
from collections import Counter


def read_png(data):
    """8 bit RGB/RGBA/grey PNG -> (width, height, RGBA bytes)."""
    if data[:8] != b"\x89PNG\r\n\x1a\n":
        raise ValueError("not a PNG")
    pos, idat, head = 8, [], None
    while pos < len(data):
        size, kind = struct.unpack(">I4s", data[pos:pos + 8])
        body = data[pos + 8:pos + 8 + size]
        if kind == b"IHDR":
            head = struct.unpack(">IIBBBBB", body)
        elif kind == b"IDAT":
            idat.append(body)
        pos += 12 + size
    width, height, depth, colour, _, _, interlace = head
    channels = {0: 1, 2: 3, 4: 2, 6: 4}.get(colour)
    if depth != 8 or interlace or channels is None:
        raise ValueError("unsupported PNG layout")
    raw = zlib.decompress(b"".join(idat))
    stride = width * channels
    prior, rows, pos = bytearray(stride), [], 0
    for _ in range(height):
        kind, line = raw[pos], bytearray(raw[pos + 1:pos + 1 + stride])
        pos += 1 + stride
        if kind == 1:
            for i in range(channels, stride):
                line[i] = (line[i] + line[i - channels]) & 255
        elif kind == 2:
            line = bytearray((a + b) & 255 for a, b in zip(line, prior))
        elif kind == 3:
            for i in range(stride):
                left = line[i - channels] if i >= channels else 0
                line[i] = (line[i] + ((left + prior[i]) >> 1)) & 255
        elif kind == 4:
            for i in range(stride):
                a = line[i - channels] if i >= channels else 0
                c = prior[i - channels] if i >= channels else 0
                b = prior[i]
                p = a + b - c
                pa, pb, pc = abs(p - a), abs(p - b), abs(p - c)
                best = a if pa <= pb and pa <= pc else (b if pb <= pc else c)
                line[i] = (line[i] + best) & 255
        rows.append(bytes(line))
        prior = line
    flat = b"".join(rows)
    if channels == 4:
        return width, height, flat
    out = bytearray(b"\xff" * (width * height * 4))
    if channels == 3:
        for k in range(3):
            out[k::4] = flat[k::3]
    else:
        for k in range(3):
            out[k::4] = flat[0::channels]
        if channels == 2:
            out[3::4] = flat[1::2]
    return width, height, bytes(out)


def median_cut(counts, size, keep=()):
    """Palette of at most `size` RGB triples for {rgb int: weight}; `keep` verbatim."""
    def spread(box):
        best = (-1, 0)
        for k, gain in ((16, 1.0), (8, 1.3), (0, 0.8)):
            values = [(c >> k) & 255 for c, _ in box]
            best = max(best, ((max(values) - min(values)) * gain, k))
        return best

    keep = list(dict.fromkeys(keep))
    # The square root keeps large flat areas from taking the whole palette.
    box = sorted((c, n ** 0.5) for c, n in counts.items() if c not in keep)
    boxes = [(spread(box), box)] if box else []
    while boxes and len(boxes) < size - len(keep):
        index = max(range(len(boxes)),
                    key=lambda i: boxes[i][0][0] * sum(w for _, w in boxes[i][1]) ** 0.4
                    if len(boxes[i][1]) > 1 else -1)
        (_, shift), box = boxes[index]
        if len(box) < 2:
            break
        box = sorted(box, key=lambda e: ((e[0] >> shift) & 255, e[0]))
        half, run, cut = sum(w for _, w in box) / 2, 0.0, 1
        for cut in range(1, len(box)):
            run += box[cut - 1][1]
            if run >= half:
                break
        boxes[index:index + 1] = [(spread(b), b) for b in (box[:cut], box[cut:])]
    palette = list(keep)
    for _, box in boxes:
        total = sum(w for _, w in box)
        value = 0
        for k in (16, 8, 0):
            value |= int(sum(((c >> k) & 255) * w for c, w in box) / total + 0.5) << k
        if value not in palette:
            palette.append(value)
    return palette


def nearest(colour, palette):
    r, g, b = colour >> 16, (colour >> 8) & 255, colour & 255
    return min(range(len(palette)), key=lambda i: (
        3 * (r - (palette[i] >> 16)) ** 2 + 4 * (g - ((palette[i] >> 8) & 255)) ** 2
        + 2 * (b - (palette[i] & 255)) ** 2, i))


def _lzw(pixels, bits):
    clear, stop = 1 << bits, (1 << bits) + 1
    out, acc, used = bytearray(), 0, 0
    width, following = bits + 1, stop + 1
    table = {}
    acc, used = clear, width
    prefix = pixels[0]
    for value in pixels[1:]:
        key = (prefix << 8) | value
        code = table.get(key)
        if code is not None:
            prefix = code
            continue
        acc |= prefix << used
        used += width
        while used >= 8:
            out.append(acc & 255)
            acc >>= 8
            used -= 8
        if following < 4096:
            table[key] = following
            if following == 1 << width:
                width += 1
            following += 1
        else:
            acc |= clear << used
            used += width
            table = {}
            width, following = bits + 1, stop + 1
        prefix = value
    acc |= prefix << used
    used += width
    # The decoder has just added one more entry and may have grown its codes.
    if following == 1 << width and width < 12:
        width += 1
    acc |= stop << used
    used += width
    while used > 0:
        out.append(acc & 255)
        acc >>= 8
        used -= 8
    return bytes(out)


def _blocks(data):
    out = bytearray()
    for pos in range(0, len(data), 255):
        part = data[pos:pos + 255]
        out.append(len(part))
        out += part
    out.append(0)
    return bytes(out)


def write_gif(width, height, frames, palette, clear, delays, loop, cumulative):
    """frames: palette index bytes. `clear` is the transparent index.

    loop None plays once; 0 for ever. With `cumulative` only the changed pixels
    of a frame are stored, otherwise every frame replaces the one before it.
    """
    bits = max(2, (max(clear + 1, len(palette)) - 1).bit_length())
    table = b"".join(struct.pack(">I", c)[1:] for c in palette)
    table = table.ljust(3 << bits, b"\0")
    out = bytearray(b"GIF89a" + struct.pack("<HHBBB", width, height, 0x80 | 0x70 | (bits - 1),
                                            0 if cumulative else clear, 0))
    out += table
    if loop is not None:
        out += b"\x21\xff\x0bNETSCAPE2.0\x03\x01" + struct.pack("<H", loop) + b"\0"
    before = None
    for frame, delay in zip(frames, delays):
        x0, y0, x1, y1, part = 0, 0, width, height, frame
        if cumulative and before is not None:
            rows = [y for y in range(height)
                    if frame[y * width:(y + 1) * width] != before[y * width:(y + 1) * width]]
            if rows:
                y0, y1 = rows[0], rows[-1] + 1
                x0, x1 = width, 0
                for y in rows:
                    a, b = frame[y * width:(y + 1) * width], before[y * width:(y + 1) * width]
                    left = next(i for i in range(width) if a[i] != b[i])
                    right = next(i for i in range(width - 1, -1, -1) if a[i] != b[i])
                    x0, x1 = min(x0, left), max(x1, right + 1)
                part = b"".join(
                    bytes(clear if p == q else p for p, q in zip(
                        frame[y * width + x0:y * width + x1],
                        before[y * width + x0:y * width + x1]))
                    for y in range(y0, y1))
            else:
                x0, y0, x1, y1, part = 0, 0, 1, 1, bytes([clear])
        transparent = 1 if (before is not None or not cumulative) else 0
        dispose = 1 if cumulative else 2
        out += b"\x21\xf9\x04" + struct.pack("<BHBB", dispose << 2 | transparent, delay, clear, 0)
        out += b"\x2c" + struct.pack("<HHHHB", x0, y0, x1 - x0, y1 - y0, 0)
        out += bytes([bits]) + _blocks(_lzw(part, bits))
        before = frame
    out += b"\x3b"
    return bytes(out)


def to_rgb(rgba):
    """RGBA bytes -> list of 0xRRGGBB ints (alpha ignored)."""
    words = memoryview(rgba).cast("I")
    cache = {}
    for value in set(words):
        r, g, b = struct.pack("=I", value)[:3]
        cache[value] = r << 16 | g << 8 | b
    return list(map(cache.__getitem__, words))


def histogram(frames):
    total = Counter()
    for frame in frames:
        total.update(frame)
    return total
