"""The seventeen standard pointer images (Windows 10 added the last two), drawn as icons: white shapes with a black outline.

Every drawing takes a Grid for the target size. Shapes are designed on a 32-unit square; lines that
must stay sharp (stems, shafts, crosshair) are placed on whole pixels by the Grid rather than scaled.
"""
from raster import (BLACK, WHITE, Canvas, arc, ellipse, rect, ring, rrect, stroke, transform, rgb, mix)

GREY = rgb('#808080')


class Grid:
    def __init__(self, size):
        self.size = size
        self.k = size / 32
        self.lw = 1.0 if size <= 32 else 1.5     # outline width in pixels
        self.c = size / 2 - 0.5                  # a pixel centre near the middle
        self.hw = size / 16 - 0.5                # half-width of a shaft that stays on whole pixels

    def s(self, shape):
        return transform(shape, scale=self.k)

    def p(self, v):
        """A design coordinate rounded to a pixel edge."""
        return round(v * self.k)


# --- reusable parts ----------------------------------------------------------------------------------

# The classic arrow: tip at the origin, left edge straight down, tail to the lower right.
ARROW = [(0, 0), (0, 21), (5, 16), (8.6, 24.2), (11.8, 22.8), (8.3, 15), (15, 15)]


def arrow_shape(g, dx, dy, scale=1.0):
    return g.s(transform([ARROW], scale=scale, dx=dx, dy=dy))


def question(cv, g, cx, cy, h):
    """A black question mark with a white rim; cx, cy is the middle of its curl, h its height."""
    r = h * 0.22
    w = max(1.4, h * 0.16 * g.k)
    curl = [(cx - r, cy)] + [(cx + r * c, cy + r * s) for c, s in
                             ((-0.87, -0.5), (-0.5, -0.87), (0, -1), (0.5, -0.87), (0.87, -0.5), (1, 0),
                              (0.8, 0.55), (0.3, 0.9))] + [(cx, cy + r * 1.25), (cx, cy + r * 1.9)]
    pts = [(x * g.k, y * g.k) for x, y in curl]
    dot = (cx * g.k, (cy + r * 2.95) * g.k)
    halo = w + 2 * g.lw
    cv.line(pts, halo, WHITE)
    cv.fill(ellipse(dot[0], dot[1], halo * 0.62), WHITE)
    cv.line(pts, w, BLACK)
    cv.fill(ellipse(dot[0], dot[1], w * 0.62), BLACK)


def hourglass_shape(x0, y0, x1, y1):
    """Frame plates and glass of an hourglass filling the given box (design units)."""
    w, h = x1 - x0, y1 - y0
    plate = h * 0.12
    gx0, gx1 = x0 + w * 0.13, x1 - w * 0.13
    neck = w * 0.07
    mx, my = (x0 + x1) / 2, (y0 + y1) / 2
    glass = [(gx0, y0 + plate), (gx1, y0 + plate), (gx1, y0 + h * 0.27), (mx + neck, my),
             (gx1, y1 - h * 0.27), (gx1, y1 - plate), (gx0, y1 - plate), (gx0, y1 - h * 0.27),
             (mx - neck, my), (gx0, y0 + h * 0.27)]
    plates = rect(x0, y0, x1, y0 + plate) + rect(x0, y1 - plate, x1, y1)
    sand = [[(mx - w * 0.22, y0 + h * 0.33), (mx + w * 0.22, y0 + h * 0.33), (mx, my - h * 0.02)],
            [(mx, my + h * 0.12), (mx + w * 0.3, y1 - plate), (mx - w * 0.3, y1 - plate)]]
    return plates, [glass], sand


def grown(shape, width):
    """The shape grown by width pixels all round."""
    out = list(shape)
    for c in shape:
        out += stroke(c, 2 * width, closed=True)
    return out


def hourglass(cv, g, box):
    plates, glass, sand = hourglass_shape(*box)
    cv.outlined(g.s(plates + glass), WHITE, BLACK, g.lw)
    cv.fill(g.s(plates), BLACK)
    cv.fill(g.s(sand), SAND)


SAND = rgb('#3a3a3a')


def double_arrow(g, length, head, head_len):
    """A vertical double-headed arrow centred on the origin, in pixels: its shaft stays on whole pixels
    when the arrow is moved to a pixel centre."""
    H, T, w = head * g.k, head_len * g.k, g.hw
    # The heads' flat backs sit on pixel edges too: half a pixel off the centre line's pixel centre.
    L = round((length - head_len) * g.k) + 0.5 + T
    return [[(0, -L), (H, -L + T), (w, -L + T), (w, L - T), (H, L - T), (0, L), (-H, L - T), (-w, L - T),
             (-w, -L + T), (-H, -L + T)]]


# --- the fifteen images ------------------------------------------------------------------------------

def normal_select(cv, g):
    cv.outlined(arrow_shape(g, 8, 3), WHITE, BLACK, g.lw)


def help_select(cv, g):
    cv.outlined(arrow_shape(g, 4, 3), WHITE, BLACK, g.lw)
    question(cv, g, 23, 13, 17)


def working(cv, g):
    cv.outlined(arrow_shape(g, 2, 1), WHITE, BLACK, g.lw)
    box = (18, 16, 30, 30)
    plates, glass, _ = hourglass_shape(*box)
    cv.erase(grown(g.s(plates + glass), g.lw + 1))  # the hourglass stands in front of the arrow
    hourglass(cv, g, box)


def busy(cv, g):
    hourglass(cv, g, (8, 2, 24, 30))


def precision(cv, g):
    c, n = g.c, g.size
    w = 0.5 if n <= 32 else 1.0
    gap, reach = round(n * 0.1), round(n * 0.4)
    bars = (rect(c - w, c - reach, c + w, c - gap) + rect(c - w, c + gap + 1, c + w, c + reach + 1)
            + rect(c - reach, c - w, c - gap, c + w) + rect(c + gap + 1, c - w, c + reach + 1, c + w))
    cv.outlined(bars, BLACK, WHITE, g.lw)


def text_select(cv, g):
    c, n = g.c, g.size
    w = 0.5 if n <= 32 else 1.0
    top, bottom = round(n * 0.16), round(n * 0.84)
    serif, sh = max(2, round(n * 0.1)), max(1, round(n / 32))
    shape = (rect(c - w, top, c + w, bottom)
             + rect(c - w - serif, top - sh, c - w, top) + rect(c + w, top - sh, c + w + serif, top)
             + rect(c - w - serif, bottom, c - w, bottom + sh) + rect(c + w, bottom, c + w + serif, bottom + sh))
    cv.outlined(shape, BLACK, WHITE, g.lw)


def handwriting(cv, g):
    # A pen lying along the diagonal, nib at the lower left; drawn upright, then turned.
    body = rrect(-3.2, -21, 3.2, -6, 1.2)
    nib = [[(-3.2, -6), (3.2, -6), (0, 2.5)]]
    grip = rect(-3.2, -9.5, 3.2, -6)
    turn = dict(rotate=42, dx=9, dy=26)
    parts = transform(body + nib, **turn)
    cv.outlined(g.s(parts), WHITE, BLACK, g.lw)
    cv.fill(g.s(transform(grip, **turn)), mix(GREY, WHITE, 0.3))
    cv.fill(g.s(transform([[(-1.2, -1.2), (1.2, -1.2), (0, 2.5)]], **turn)), BLACK)
    cv.line([(x * g.k, y * g.k) for x, y in ((4, 29), (7, 27.2), (10, 28.4), (13, 27))],
            max(1.0, g.k * 1.3), BLACK)


def unavailable(cv, g):
    c = g.c
    # Small sizes need a relatively heavier ring and bar to survive their outline.
    ro, ri, bh = (6.8, 4.3, 1.0) if g.size <= 16 else (12 * g.k, 8.2 * g.k, 1.9 * g.k)
    bar = transform(rect(-ri - 0.5, -bh, ri + 0.5, bh), rotate=45, dx=c, dy=c)
    if g.size <= 16:  # too small for a hollow ring: solid, with a white rim
        cv.outlined(ring(c, c, ro - 0.3, ri + 0.3) + bar, BLACK, WHITE, g.lw)
    else:
        cv.outlined(ring(c, c, ro, ri) + bar, WHITE, BLACK, g.lw)


def resize(angle):
    def draw(cv, g):
        shape = double_arrow(g, 12.5, 6, 6.5)
        cv.outlined(transform(shape, rotate=angle, dx=g.c, dy=g.c), WHITE, BLACK, g.lw)
    return draw


def move(cv, g):
    # At 16 px the heads need a little more room to stay arrow-shaped around the crossing.
    arms = double_arrow(g, 14, 5.2, 5.2) if g.size <= 16 else double_arrow(g, 13, 4.6, 5.2)
    shape = transform(arms, dx=g.c, dy=g.c) + transform(arms, rotate=90, dx=g.c, dy=g.c)
    cv.outlined(shape, WHITE, BLACK, g.lw)


def alternate(cv, g):
    c, k = g.c, g.k
    base, end = round(13 * k), round(29 * k)
    head = [(c, 3 * k), (c + 8 * k, base), (c + g.hw, base), (c + g.hw, end), (c - g.hw, end),
            (c - g.hw, base), (c - 8 * k, base)]
    cv.outlined([head], WHITE, BLACK, g.lw)


def hand(cv, g):
    parts = (rrect(10.5, 2, 14.5, 19, 2)                  # pointing finger
             + rrect(14.2, 10, 18, 19.5, 1.9)            # the folded fingers
             + rrect(17.6, 11, 21.4, 20, 1.9)
             + rrect(21, 12.5, 24.8, 21, 1.9)
             + rrect(9.5, 15, 24.8, 25.5, 3.5)            # palm
             + rect(12, 24, 22.5, 29.5)                   # wrist
             + stroke([(5.8, 15), (10.5, 20.5)], 4.2))     # thumb
    cv.outlined(g.s(parts), WHITE, BLACK, g.lw)
    lw = max(1.0, g.k)
    for x, y0, y1 in ((14.6, 12, 18.5), (17.9, 13.5, 18.5), (21.2, 15, 19)):
        cv.line([(x * g.k, y0 * g.k), (x * g.k, y1 * g.k)], lw, BLACK, cap='butt')
    cv.line([(12 * g.k, 25 * g.k), (22.5 * g.k, 25 * g.k)], lw, BLACK, cap='butt')


def location(cv, g):
    """The arrow with a map pin: a round head on a point, hollowed in the middle."""
    cv.outlined(arrow_shape(g, 2, 1), WHITE, BLACK, g.lw)
    cx, cy, r = 23, 17.5, 6
    head = [arc(cx, cy, r, 150, 390) + [(cx, 31)]]
    cv.erase(grown(g.s(head), g.lw + 1))  # the pin stands in front of the arrow
    cv.outlined(g.s(head), BLACK, WHITE, g.lw)
    cv.fill(g.s(ellipse(cx, cy, 2.3)), WHITE)


def person(cv, g):
    """The arrow with a person: a round head over rounded shoulders."""
    cv.outlined(arrow_shape(g, 2, 1), WHITE, BLACK, g.lw)
    figure = ellipse(23.5, 17, 3.6) + [arc(23.5, 31, 7.5, 180, 360)]
    cv.erase(grown(g.s(figure), g.lw + 1))
    cv.outlined(g.s(figure), BLACK, WHITE, g.lw)


POINTERS = [normal_select, help_select, working, busy, precision, text_select, handwriting, unavailable,
            resize(0), resize(90), resize(-45), resize(45), move, alternate, hand, location, person]


def pointer(n, size):
    """Pointer n (1 to 17) as a canvas of the given size."""
    cv = Canvas(size)
    POINTERS[n - 1](cv, Grid(size))
    return cv
