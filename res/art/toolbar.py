"""Toolbar and settings-tree images, designed on a 16-unit square and drawn at 16 or 24 px.

Straight-edged parts go through Grid.q, which puts their corners on whole pixels so that edges stay
sharp at both sizes; round parts are scaled freely.
"""
import math

from raster import BLACK, WHITE, Canvas, arc, ellipse, mix, rect, rgb, stroke, transform


class Grid:
    def __init__(self, size):
        self.size = size
        self.k = size / 16

    def s(self, shape):
        return transform(shape, scale=self.k)

    def q(self, shape):
        return [[(round(x * self.k), round(y * self.k)) for x, y in c] for c in shape]

    def pts(self, points):
        return [(x * self.k, y * self.k) for x, y in points]


def outlined(cv, shape, fill, line):
    """Fill with a one-pixel outline just outside the shape."""
    cv.outlined(shape, fill, line, 1.0)


def vgrad(top_colour, bottom_colour, y0, y1):
    return lambda x, y: mix(top_colour, bottom_colour, min(1.0, max(0.0, (y - y0) / max(1e-6, y1 - y0))))


def tile(draw):
    """A drawing function (canvas, grid) -> a function size -> canvas."""
    def make(size):
        cv = Canvas(size)
        draw(cv, Grid(size))
        return cv
    make.__name__ = draw.__name__
    return make


# --- colours -----------------------------------------------------------------------------------------
FOLDER_LINE = rgb('#8a5c00')
FOLDER_BACK = rgb('#e2a92c')
FOLDER_FRONT = rgb('#ffd966')
FOLDER_FRONT2 = rgb('#f4b93a')
GREEN = rgb('#3fae3a')
GREEN_LIGHT = rgb('#8fdc6a')
GREEN_DARK = rgb('#1c6a1a')
BLUE = rgb('#2f6fd6')
BLUE_LIGHT = rgb('#7fb4ff')
BLUE_DARK = rgb('#143d86')
GREY_DARK = rgb('#5a5a5a')
RED = rgb('#d03a2a')
RED_DARK = rgb('#7c1a10')


# --- shared pieces -----------------------------------------------------------------------------------

def folder(cv, g, open_):
    back = g.q([[(1, 3), (6, 3), (7, 4), (14, 4), (14, 13), (1, 13)]])
    outlined(cv, back, FOLDER_BACK, FOLDER_LINE)
    if open_:
        cv.fill(g.q(rect(3, 5, 12, 11)), WHITE)
        cv.fill(stroke(g.pts([(3, 5), (12, 5)]), 1, cap='butt'), rgb('#9a9a9a'))
        front = g.q([[(4, 7), (16, 7), (13, 13), (1, 13)]])
        front = [[(x - 0.5 if x > 8 * g.k else x, y) for x, y in front[0]]]
    else:
        front = g.q([[(1, 6), (14, 6), (14, 13), (1, 13)]])
    outlined(cv, front, vgrad(FOLDER_FRONT, FOLDER_FRONT2, 6 * g.k, 13 * g.k), FOLDER_LINE)


def arrowhead(tip, direction, length, half_width):
    """A triangle with its point at tip, pointing along direction (dx, dy)."""
    dx, dy = direction
    n = math.hypot(dx, dy)
    ux, uy = dx / n, dy / n
    bx, by = tip[0] - ux * length, tip[1] - uy * length
    return [[tip, (bx - uy * half_width, by + ux * half_width), (bx + uy * half_width, by - ux * half_width)]]


def curved_arrow(g, cx, cy, r, a0, a1, width, head):
    """An arc from angle a0 to a1 (degrees, clockwise on screen when a1 > a0) ending in an arrowhead."""
    k = g.k
    sign = 1 if a1 > a0 else -1
    # Stop the shaft where the head begins.
    back = math.degrees(head * 0.8 / r) * sign
    pts = arc(cx * k, cy * k, r * k, a0, a1 - back)
    a = math.radians(a1)
    end = ((cx + r * math.cos(a)) * k, (cy + r * math.sin(a)) * k)
    tangent = (-math.sin(a) * sign, math.cos(a) * sign)
    tip = (end[0] + tangent[0] * head * 0.5 * k, end[1] + tangent[1] * head * 0.5 * k)
    return stroke(pts, width * k, cap='butt') + arrowhead(tip, tangent, head * k, head * 0.75 * k)


def question_mark(cv, g, cx, cy, h, colour, halo=None):
    """A question mark whose curl is centred at (cx, cy), h units tall."""
    k = g.k
    r = h * 0.25
    w = max(1.3, h * 0.17 * k)
    curl = arc(cx, cy, r, 180, 405, steps=12) + [(cx, cy + r * 1.35), (cx, cy + r * 1.9)]
    pts = g.pts(curl)
    dot = (cx * k, (cy + r * 2.85) * k)
    if halo:
        cv.line(pts, w + 2, halo)
        cv.fill(ellipse(dot[0], dot[1], w * 0.62 + 1), halo)
    cv.line(pts, w, colour, cap='butt')
    cv.fill(ellipse(dot[0], dot[1], w * 0.62), colour)


# --- toolbar images ----------------------------------------------------------------------------------

@tile
def open_theme(cv, g):
    folder(cv, g, True)


@tile
def save_theme(cv, g):
    outlined(cv, g.q([[(2, 2), (13, 2), (14, 3), (14, 14), (2, 14)]]), vgrad(BLUE_LIGHT, BLUE, 2 * g.k, 14 * g.k),
             BLUE_DARK)
    cv.fill(g.q(rect(4, 2, 12, 6)), vgrad(rgb('#f2f2f2'), rgb('#b8b8b8'), 2 * g.k, 6 * g.k))
    cv.fill(g.q(rect(9, 3, 11, 5)), BLUE_DARK)
    cv.fill(g.q(rect(4, 8, 12, 14)), WHITE)
    for y in (10, 12):
        cv.fill(rect(5 * g.k, round(y * g.k), 11 * g.k, round(y * g.k) + 1), rgb('#a0a8c0'))


def straight_arrow(g, flip):
    pts = [(1, 8), (8, 1), (8, 5), (15, 5), (15, 11), (8, 11), (8, 15)]
    if flip:
        pts = [(16 - x, y) for x, y in pts]
    return [[(x * g.k, y * g.k) for x, y in pts]]


@tile
def back(cv, g):
    outlined(cv, transform(straight_arrow(g, False), scale=14 / 16, dx=g.k, dy=g.k),
             vgrad(GREEN_LIGHT, GREEN, 2 * g.k, 14 * g.k), GREEN_DARK)


@tile
def forward(cv, g):
    outlined(cv, transform(straight_arrow(g, True), scale=14 / 16, dx=g.k, dy=g.k),
             vgrad(GREEN_LIGHT, GREEN, 2 * g.k, 14 * g.k), GREEN_DARK)


@tile
def rebuild_cache(cv, g):
    top = curved_arrow(g, 8, 8, 5, 195, 330, 2.2, 4.2)
    bottom = curved_arrow(g, 8, 8, 5, 15, 150, 2.2, 4.2)
    outlined(cv, top, vgrad(BLUE_LIGHT, BLUE, 2 * g.k, 8 * g.k), BLUE_DARK)
    outlined(cv, bottom, vgrad(BLUE, BLUE_LIGHT, 8 * g.k, 14 * g.k), BLUE_DARK)


@tile
def restore_icons(cv, g):
    # A little picture icon ...
    outlined(cv, g.q(rect(1, 1, 11, 11)), WHITE, GREY_DARK)
    cv.fill(g.q(rect(2, 2, 10, 10)), vgrad(rgb('#8cc8ff'), rgb('#d8efff'), 2 * g.k, 7 * g.k))
    cv.fill(g.s(ellipse(7.5, 4.5, 1.4)), rgb('#ffcc00'))
    cv.fill(g.q([[(2, 10), (2, 8), (5, 5), (8, 8), (10, 7), (10, 10)]]), rgb('#3c9a3c'))
    # ... and an arrow turning back.
    shape = curved_arrow(g, 10.5, 10, 3.6, -60, 160, 2.0, 4.6)
    cv.erase(grown(shape, 2))  # a clear gap between arrow and picture
    outlined(cv, shape, vgrad(GREEN_LIGHT, GREEN, 7 * g.k, 15 * g.k), GREEN_DARK)


def grown(shape, width):
    """The shape grown by width pixels all round."""
    out = list(shape)
    for c in shape:
        out += stroke(c, 2 * width, closed=True)
    return out


@tile
def home_page(cv, g):
    outlined(cv, g.q(rect(3, 7, 13, 14)), vgrad(rgb('#fff6dc'), rgb('#e8d3a0'), 7 * g.k, 14 * g.k),
             rgb('#7a5a2a'))
    cv.fill(g.q(rect(7, 9, 9, 14)), rgb('#8a4a1a'))
    cv.fill(g.q(rect(10, 9, 12, 11)), rgb('#6fa8e8'))
    outlined(cv, g.q(rect(11, 2, 12, 5)), RED, RED_DARK)
    roof = [[(8 * g.k, 1.2 * g.k), (15.3 * g.k, 8 * g.k), (13.8 * g.k, 8.5 * g.k), (8 * g.k, 3.3 * g.k),
             (2.2 * g.k, 8.5 * g.k), (0.7 * g.k, 8 * g.k)]]
    outlined(cv, roof, RED, RED_DARK)


@tile
def email_author(cv, g):
    outlined(cv, g.q(rect(1, 3, 15, 13)), vgrad(WHITE, rgb('#e4e8f0'), 3 * g.k, 13 * g.k), rgb('#505a70'))
    k = g.k
    cv.line([(1 * k, 3.3 * k), (8 * k, 9 * k), (15 * k, 3.3 * k)], 1.0, rgb('#505a70'), cap='butt')
    cv.line([(1 * k, 12.5 * k), (6 * k, 7.8 * k)], 1.0, rgb('#a0a8b8'), cap='butt')
    cv.line([(15 * k, 12.5 * k), (10 * k, 7.8 * k)], 1.0, rgb('#a0a8b8'), cap='butt')


@tile
def whats_this(cv, g):
    arrow = [(0, 0), (0, 21), (5, 16), (8.6, 24.2), (11.8, 22.8), (8.3, 15), (15, 15)]
    shape = transform([arrow], scale=0.5 * g.k, dx=1.5 * g.k, dy=1 * g.k)
    outlined(cv, shape, WHITE, BLACK)
    question_mark(cv, g, 12, 5, 9.5, BLUE_DARK, halo=WHITE)


@tile
def contents(cv, g):
    k = g.k
    outlined(cv, g.q([[(4, 13), (14, 13), (14, 15), (4, 15)]]), WHITE, GREY_DARK)
    outlined(cv, g.q(rect(2, 1, 13, 13)), vgrad(rgb('#4f86e0'), rgb('#1f4fa8'), 1 * k, 13 * k), BLUE_DARK)
    cv.fill(g.q(rect(2, 13, 4, 15)), vgrad(rgb('#4f86e0'), rgb('#1f4fa8'), 1 * k, 13 * k))
    cv.fill(g.q(rect(3, 1, 4, 13)), rgb('#173c80'))
    question_mark(cv, g, 8.5, 5, 9, rgb('#ffd84a'))


@tile
def about(cv, g):
    k = g.k
    c = 8 * k
    cv.fill(ellipse(c, c, 7.5 * k), BLUE_DARK)
    cv.fill(ellipse(c, c, 7.5 * k - 1),
            lambda x, y: mix(BLUE_LIGHT, BLUE, min(1.0, math.hypot(x - c + 2 * k, y - c + 3 * k) / (8 * k))))
    cv.fill(ellipse(c, 4.5 * k, 1.2 * k), WHITE)
    cv.fill(g.q(rect(7, 7, 9, 12)), WHITE)
    cv.fill(g.q(rect(6, 7, 7, 8)), WHITE)
    cv.fill(g.q(rect(6, 11, 10, 12)), WHITE)


@tile
def exit_program(cv, g):
    k = g.k
    outlined(cv, g.q(rect(2, 1, 10, 15)), rgb('#3a3a3a'), rgb('#2a2a2a'))
    outlined(cv, g.q([[(2, 1), (7, 3), (7, 16), (2, 15)]]), vgrad(rgb('#c88a4a'), rgb('#8a5220'), 1 * k, 15 * k),
             rgb('#5a3010'))
    cv.fill(g.s(ellipse(6, 8.5, 0.7)), rgb('#ffe070'))
    shaft = [[(8 * k, 7 * k), (12 * k, 7 * k), (12 * k, 4.5 * k), (15.5 * k, 8.5 * k), (12 * k, 12.5 * k),
              (12 * k, 10 * k), (8 * k, 10 * k)]]
    outlined(cv, shaft, vgrad(GREEN_LIGHT, GREEN, 4 * k, 12 * k), GREEN_DARK)


TOOLBAR = [open_theme, save_theme, back, forward, rebuild_cache, restore_icons, home_page, email_author,
           whats_this, contents, about, exit_program]


# --- settings tree images ----------------------------------------------------------------------------

@tile
def group_closed(cv, g):
    folder(cv, g, False)


@tile
def group_open(cv, g):
    folder(cv, g, True)


DIGITS = {  # a 3 x 5 pixel face, sharp at 16 px where a scaled font would smear
    '1': ('.#.', '##.', '.#.', '.#.', '###'),
    '2': ('##.', '..#', '.#.', '#..', '###'),
    '3': ('##.', '..#', '.#.', '..#', '##.'),
}


def number_field(cv, g, muted):
    """An entry field holding "123"."""
    tone = (lambda c: mix(c, rgb('#c8c8c8'), 0.7)) if muted else (lambda c: c)
    k = g.k
    outlined(cv, g.q(rect(2, 5, 14, 12)), tone(WHITE) if not muted else rgb('#f0f0f0'), tone(rgb('#4a5a6c')))
    ink = tone(rgb('#1a3a8a'))
    for i, ch in enumerate('123'):
        for row, bits in enumerate(DIGITS[ch]):
            for col, bit in enumerate(bits):
                if bit == '#':
                    x, y = (3 + 4 * i + col) * k, (6 + row) * k
                    cv.fill(rect(round(x), round(y), round(x + k), round(y + k)), ink)


@tile
def numeric(cv, g):
    number_field(cv, g, False)


@tile
def numeric_overridden(cv, g):
    number_field(cv, g, True)


def check_box(cv, g, border, face):
    outlined(cv, g.q(rect(3, 3, 13, 13)), face, border)


@tile
def switch_off(cv, g):
    check_box(cv, g, rgb('#4a5a6c'), WHITE)


@tile
def switch_on(cv, g):
    check_box(cv, g, rgb('#4a5a6c'), WHITE)
    cv.line(g.pts([(4.6, 7.8), (7, 10.3), (11.5, 5.3)]), 1.9 * g.k, rgb('#1a7a1a'))


@tile
def unavailable(cv, g):
    check_box(cv, g, rgb('#9a9a9a'), rgb('#dedede'))
    grey = rgb('#8a8a8a')
    cv.line(g.pts([(5, 5), (11, 11)]), 1.4 * g.k, grey, cap='butt')
    cv.line(g.pts([(11, 5), (5, 11)]), 1.4 * g.k, grey, cap='butt')


TREE = [group_closed, group_open, numeric, numeric_overridden, switch_off, switch_on, unavailable]
