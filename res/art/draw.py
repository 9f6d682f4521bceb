"""Draws Vexillor's own icons and bitmaps.

    draw.py OUTPUT_DIR                  program.ico, pointer01..15.ico, toolbar16/24.bmp, tree16.bmp
    draw.py OUTPUT_DIR --sheet FILE.png also a contact sheet of everything, enlarged and at real size,
                                        on white and on button-face grey, for judging the drawings
"""
import os
import sys

sys.dont_write_bytecode = True  # runs from the source tree at every build; leave it clean
sys.path.insert(0, os.path.dirname(os.path.abspath(__file__)))
from icofile import bmp_bytes, ico_bytes, png_bytes  # noqa: E402
from pointers import pointer  # noqa: E402
from program import program_icon  # noqa: E402
from toolbar import TOOLBAR, TREE  # noqa: E402

ICON_SIZES = (32, 16, 48)
# The pointer pictures are only ever shown at 32 and 16 pixels (the lists, the picker); without a 48-pixel
# image each weighs a third as much, which keeps the program well under 1 MiB.
POINTER_SIZES = (32, 16)
MAGENTA = (255, 0, 255)


def icons():
    """[program, pointer 1, ..., pointer 17], each {size: canvas}."""
    out = [{n: program_icon(n) for n in ICON_SIZES}]
    for p in range(1, 18):
        out.append({n: pointer(p, n) for n in POINTER_SIZES})
    return out


def strip(drawings, size):
    """The images side by side as one 24-bit bitmap on the mask colour."""
    tiles = [d(size).masked(MAGENTA) for d in drawings]
    return [sum((t[y] for t in tiles), []) for y in range(size)]


def write(path, data):
    with open(path, 'wb') as f:
        f.write(data)


def main(out, sheet=None):
    os.makedirs(out, exist_ok=True)
    all_icons = icons()
    names = ['program.ico'] + ['pointer%02d.ico' % n for n in range(1, 18)]
    for name, images in zip(names, all_icons):
        write(os.path.join(out, name), ico_bytes([(n, images[n].rgba()) for n in images]))
    strips = {'toolbar16.bmp': (TOOLBAR, 16), 'toolbar24.bmp': (TOOLBAR, 24), 'tree16.bmp': (TREE, 16)}
    rows = {}
    for name, (drawings, size) in strips.items():
        rows[name] = strip(drawings, size)
        write(os.path.join(out, name), bmp_bytes(size * len(drawings), size, rows[name]))
    if sheet:
        write(sheet, contact_sheet(all_icons, rows))


# --- contact sheet -----------------------------------------------------------------------------------

BACKGROUNDS = [(255, 255, 255), (192, 192, 192)]  # a white list and the classic button face


class Sheet:
    def __init__(self, width, height):
        self.w, self.h = width, height
        self.px = [[(255, 255, 255)] * width for _ in range(height)]

    def box(self, x, y, w, h, colour):
        for yy in range(max(0, y), min(self.h, y + h)):
            for xx in range(max(0, x), min(self.w, x + w)):
                self.px[yy][xx] = colour

    def blit(self, x, y, rows, zoom=1):
        for yy, row in enumerate(rows):
            for xx, c in enumerate(row):
                for dy in range(zoom):
                    line = self.px[y + yy * zoom + dy]
                    for dx in range(zoom):
                        line[x + xx * zoom + dx] = c


def unmask(rows, background):
    return [[background if c == MAGENTA else c for c in row] for row in rows]


def contact_sheet(all_icons, strips):
    """Each band is drawn on each background: icons at 48, 32 and 16 px real size plus 32 and 16 px
    enlarged four times; the bitmap strips at real size and enlarged four times."""
    pad = 6
    icon_cell = 32 * 4 + 16 * 4 + 48 + 32 + 16 + 5 * pad
    width = max(4 * icon_cell, 12 * 24 * 3 + 12 * 16 * 4 // 2) + pad
    icon_band = 4 * (32 * 4 + pad)
    strip_band = 16 * 4 + 24 * 3 + 16 * 4 + 16 + 24 + 16 + 8 * pad
    band = icon_band + strip_band + 2 * pad
    sheet = Sheet(width, band * len(BACKGROUNDS))
    for b, bg in enumerate(BACKGROUNDS):
        top = b * band
        sheet.box(0, top, width, band, bg)
        for i, images in enumerate(all_icons):
            x = pad + (i % 4) * icon_cell
            y = top + pad + (i // 4) * (32 * 4 + pad)
            sheet.blit(x, y, images[32].over(bg), 4)
            x += 32 * 4 + pad
            sheet.blit(x, y, images[16].over(bg), 4)
            x += 16 * 4 + pad
            if 48 in images:
                sheet.blit(x, y, images[48].over(bg))
            sheet.blit(x + 48 + pad, y, images[32].over(bg))
            sheet.blit(x + 48 + 32 + 2 * pad, y, images[16].over(bg))
        y = top + icon_band + pad
        for name, zoom in (('toolbar16.bmp', 4), ('toolbar24.bmp', 3), ('tree16.bmp', 4)):
            rows = unmask(strips[name], bg)
            sheet.blit(pad, y, rows, zoom if name != 'toolbar16.bmp' else 4)
            y += len(rows) * zoom + pad
        x = pad
        for name in ('toolbar16.bmp', 'toolbar24.bmp', 'tree16.bmp'):
            rows = unmask(strips[name], bg)
            sheet.blit(x, y, rows)
            y += len(rows) + pad
    return png_bytes(sheet.w, sheet.h, sheet.px)


if __name__ == '__main__':
    args = sys.argv[1:]
    sheet_path = None
    if '--sheet' in args:
        i = args.index('--sheet')
        sheet_path = args[i + 1]
        del args[i:i + 2]
    main(args[0], sheet_path)
