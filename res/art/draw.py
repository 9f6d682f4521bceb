"""Draws Vexillor's own icons into the build folder: draw.py OUTPUT_DIR."""
import os
import sys

sys.path.insert(0, os.path.dirname(__file__))
from icofile import ico_bytes  # noqa: E402

CLEAR = (0, 0, 0, 0)


def canvas(size):
    return [[CLEAR] * size for _ in range(size)]


def fill_poly(img, pts, colour):
    """Even-odd scanline fill of a polygon given in pixel coordinates."""
    size = len(img)
    for y in range(size):
        cy = y + 0.5
        xs = []
        for (x1, y1), (x2, y2) in zip(pts, pts[1:] + pts[:1]):
            if (y1 <= cy < y2) or (y2 <= cy < y1):
                xs.append(x1 + (cy - y1) * (x2 - x1) / (y2 - y1))
        xs.sort()
        for a, b in zip(xs[::2], xs[1::2]):
            for x in range(max(0, int(round(a))), min(size, int(round(b)))):
                img[y][x] = colour


def program_icon(size):
    s = size / 32
    img = canvas(size)
    fill_poly(img, [(5 * s, 3 * s), (8 * s, 3 * s), (8 * s, 30 * s), (5 * s, 30 * s)], (90, 60, 30, 255))
    fill_poly(img, [(8 * s, 4 * s), (28 * s, 6 * s), (24 * s, 11 * s), (28 * s, 17 * s), (8 * s, 17 * s)],
              (200, 30, 40, 255))
    return img


def arrow(size):
    s = size / 32
    img = canvas(size)
    outline = [(2, 2), (2, 24), (8, 18), (12, 27), (15, 26), (11, 17), (19, 17)]
    fill_poly(img, [(x * s, y * s) for x, y in outline], (0, 0, 0, 255))
    inner = [(3.5, 5.5), (3.5, 21), (8.3, 16.2), (12.6, 25.2), (13.6, 24.8), (9.4, 15.8), (15.8, 15.8)]
    fill_poly(img, [(x * s, y * s) for x, y in inner], (255, 255, 255, 255))
    return img


def main(out):
    os.makedirs(out, exist_ok=True)
    with open(os.path.join(out, 'program.ico'), 'wb') as f:
        f.write(ico_bytes([(32, program_icon(32)), (16, program_icon(16))]))
    for n in range(1, 16):
        with open(os.path.join(out, 'pointer%02d.ico' % n), 'wb') as f:
            f.write(ico_bytes([(32, arrow(32))]))


if __name__ == '__main__':
    main(sys.argv[1])
