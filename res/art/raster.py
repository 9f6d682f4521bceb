"""A small anti-aliasing rasteriser for the program's icons and toolbar images.

Shapes are lists of closed contours (lists of (x, y) points in pixel units, y down). Coverage is exact
across each scan line and sampled on SUB lines per pixel row, which is plenty for 16-48 px images and
keeps this pure Python fast enough to run at every build.
"""
import math

SUB = 16  # sample lines per pixel row


# --- colours -----------------------------------------------------------------------------------------

def rgb(hexcode, alpha=255):
    """'#rrggbb' -> (r, g, b, a)."""
    h = hexcode.lstrip('#')
    return (int(h[0:2], 16), int(h[2:4], 16), int(h[4:6], 16), alpha)


def mix(c1, c2, t):
    """Colour between c1 (t = 0) and c2 (t = 1)."""
    return tuple(round(a + (b - a) * t) for a, b in zip(c1, c2))


BLACK = (0, 0, 0, 255)
WHITE = (255, 255, 255, 255)


# --- geometry ----------------------------------------------------------------------------------------

def area(pts):
    """Signed area; positive for clockwise contours on a y-down grid."""
    return 0.5 * sum(x1 * y2 - x2 * y1 for (x1, y1), (x2, y2) in zip(pts, pts[1:] + pts[:1]))


def oriented(pts):
    """The contour turned clockwise, so that unions under the non-zero rule simply add up."""
    return pts if area(pts) >= 0 else pts[::-1]


def reverse(shape):
    return [c[::-1] for c in shape]


def rect(x0, y0, x1, y1):
    return [[(x0, y0), (x1, y0), (x1, y1), (x0, y1)]]


def ellipse(cx, cy, rx, ry=None, steps=None):
    ry = rx if ry is None else ry
    steps = steps or max(24, int(4 * (rx + ry)))
    return [[(cx + rx * math.cos(2 * math.pi * i / steps), cy + ry * math.sin(2 * math.pi * i / steps))
             for i in range(steps)]]


def ring(cx, cy, r_out, r_in):
    return ellipse(cx, cy, r_out) + reverse(ellipse(cx, cy, r_in))


def rrect(x0, y0, x1, y1, r):
    """Rectangle with rounded corners of radius r."""
    r = min(r, (x1 - x0) / 2, (y1 - y0) / 2)
    pts = []
    for cx, cy, a0 in ((x1 - r, y0 + r, -90), (x1 - r, y1 - r, 0), (x0 + r, y1 - r, 90), (x0 + r, y0 + r, 180)):
        for i in range(7):
            a = math.radians(a0 + 15 * i)
            pts.append((cx + r * math.cos(a), cy + r * math.sin(a)))
    return [pts]


def arc(cx, cy, r, a0, a1, steps=None):
    """Points along a circle from angle a0 to a1 (degrees, clockwise on screen)."""
    steps = steps or max(6, int(abs(a1 - a0) / 8))
    return [(cx + r * math.cos(math.radians(a0 + (a1 - a0) * i / steps)),
             cy + r * math.sin(math.radians(a0 + (a1 - a0) * i / steps))) for i in range(steps + 1)]


def stroke(points, width, closed=False, cap='round'):
    """Outline of a polyline of the given width with round joins; cap is 'round', 'butt' or 'square'."""
    h = width / 2
    pts = list(points) + ([points[0]] if closed else [])
    shape = []
    for i, ((x1, y1), (x2, y2)) in enumerate(zip(pts, pts[1:])):
        dx, dy = x2 - x1, y2 - y1
        n = math.hypot(dx, dy)
        if n == 0:
            continue
        ux, uy = dx / n, dy / n
        if cap == 'square' and not closed:
            if i == 0:
                x1, y1 = x1 - ux * h, y1 - uy * h
            if i == len(pts) - 2:
                x2, y2 = x2 + ux * h, y2 + uy * h
        nx, ny = -uy * h, ux * h
        shape.append(oriented([(x1 + nx, y1 + ny), (x2 + nx, y2 + ny), (x2 - nx, y2 - ny), (x1 - nx, y1 - ny)]))
    joints = pts[1:-1] if not closed else pts[:-1]
    if cap == 'round' and not closed:
        joints = pts
    for x, y in joints:
        shape += ellipse(x, y, h, steps=max(12, int(6 * h)))
    return shape


def transform(shape, scale=1.0, dx=0.0, dy=0.0, rotate=0.0, about=(0.0, 0.0)):
    """Rotate (degrees, clockwise on screen) about a point, then scale and move."""
    ca, sa = math.cos(math.radians(rotate)), math.sin(math.radians(rotate))
    ax, ay = about
    out = []
    for c in shape:
        pts = []
        for x, y in c:
            x, y = x - ax, y - ay
            x, y = x * ca - y * sa + ax, x * sa + y * ca + ay
            pts.append((x * scale + dx, y * scale + dy))
        out.append(pts)
    return out


def warp(shape, fn, step=0.5):
    """Maps every point through fn after cutting edges into short pieces, so curved maps stay smooth."""
    out = []
    for c in shape:
        pts = []
        for (x1, y1), (x2, y2) in zip(c, c[1:] + c[:1]):
            n = max(1, int(math.hypot(x2 - x1, y2 - y1) / step))
            for i in range(n):
                pts.append(fn(x1 + (x2 - x1) * i / n, y1 + (y2 - y1) * i / n))
        out.append(pts)
    return out


# --- the canvas --------------------------------------------------------------------------------------

class Canvas:
    """Premultiplied RGBA pixels as floats in 0..1."""

    def __init__(self, width, height=None):
        self.w = width
        self.h = width if height is None else height
        self.px = [[0.0, 0.0, 0.0, 0.0] for _ in range(self.w * self.h)]

    def coverage(self, shape, evenodd=False):
        """{pixel index: covered fraction} for the shape."""
        edges = []
        for c in shape:
            for (x1, y1), (x2, y2) in zip(c, c[1:] + c[:1]):
                if y1 == y2:
                    continue
                d = 1 if y2 > y1 else -1
                if y1 > y2:
                    x1, y1, x2, y2 = x2, y2, x1, y1
                edges.append((y1, y2, x1, (x2 - x1) / (y2 - y1), d))
        cov = {}
        if not edges:
            return cov
        top = max(0, int(math.floor(min(e[0] for e in edges))))
        bottom = min(self.h, int(math.ceil(max(e[1] for e in edges))))
        w = self.w
        for py in range(top, bottom):
            row = [0.0] * (w + 1)
            live = [e for e in edges if e[0] < py + 1 and e[1] > py]
            touched = False
            for s in range(SUB):
                cy = py + (s + 0.5) / SUB
                xs = sorted((x1 + (cy - y1) * k, d) for (y1, y2, x1, k, d) in live if y1 <= cy < y2)
                wind, start = 0, 0.0
                for i, (x, d) in enumerate(xs):
                    was = (i % 2 == 1) if evenodd else wind != 0
                    wind += d
                    now = (i % 2 == 0) if evenodd else wind != 0
                    if now and not was:
                        start = x
                    elif was and not now:
                        a, b = max(0.0, start), min(float(w), x)
                        if b <= a:
                            continue
                        touched = True
                        ia, ib = int(a), int(b)
                        if ia == ib:
                            row[ia] += (b - a) / SUB
                        else:
                            row[ia] += (ia + 1 - a) / SUB
                            for i2 in range(ia + 1, ib):
                                row[i2] += 1.0 / SUB
                            row[ib] += (b - ib) / SUB
            if touched:
                base = py * w
                for x in range(w):
                    if row[x] > 0.001:
                        cov[base + x] = min(1.0, row[x])
        return cov

    def fill(self, shape, colour, evenodd=False, opacity=1.0):
        """Paints the shape; colour is (r, g, b, a) or a function (x, y) -> (r, g, b, a) of pixel centres."""
        for i, c in self.coverage(shape, evenodd).items():
            col = colour(i % self.w + 0.5, i // self.w + 0.5) if callable(colour) else colour
            sa = c * opacity * col[3] / 255
            p = self.px[i]
            p[0] = col[0] / 255 * sa + p[0] * (1 - sa)
            p[1] = col[1] / 255 * sa + p[1] * (1 - sa)
            p[2] = col[2] / 255 * sa + p[2] * (1 - sa)
            p[3] = sa + p[3] * (1 - sa)

    def erase(self, shape, evenodd=False):
        """Cuts the shape out of what is already drawn (a clear gap around an overlapping part)."""
        for i, c in self.coverage(shape, evenodd).items():
            self.px[i] = [v * (1 - c) for v in self.px[i]]

    def line(self, points, width, colour, closed=False, cap='round'):
        self.fill(stroke(points, width, closed, cap), colour)

    def outlined(self, shape, fill=WHITE, line=BLACK, width=1.0):
        """The shape in its fill colour with an outline of the given width drawn just outside it."""
        self.fill(shape, line)
        for c in shape:
            self.line(c, 2 * width, line, closed=True)
        self.fill(shape, fill)

    def paste(self, other, dx, dy):
        """Draws another canvas over this one at a whole-pixel offset."""
        for y in range(other.h):
            for x in range(other.w):
                tx, ty = x + dx, y + dy
                if 0 <= tx < self.w and 0 <= ty < self.h:
                    s = other.px[y * other.w + x]
                    p = self.px[ty * self.w + tx]
                    self.px[ty * self.w + tx] = [s[k] + p[k] * (1 - s[3]) for k in range(4)]

    def rgba(self):
        """Rows of straight (not premultiplied) 0-255 RGBA tuples. Faint fringes are dropped, so that
        the icon mask does not grow a halo of nearly invisible pixels."""
        rows = []
        for y in range(self.h):
            row = []
            for x in range(self.w):
                r, g, b, a = self.px[y * self.w + x]
                if a < 0.04:
                    row.append((0, 0, 0, 0))
                else:
                    row.append((min(255, round(r / a * 255)), min(255, round(g / a * 255)),
                                min(255, round(b / a * 255)), round(a * 255)))
            rows.append(row)
        return rows

    def over(self, background):
        """Rows of opaque RGB tuples: the image laid over a solid background colour."""
        rows = []
        for y in range(self.h):
            row = []
            for x in range(self.w):
                r, g, b, a = self.px[y * self.w + x]
                row.append(tuple(round(v * 255 + bg * (1 - a)) for v, bg in zip((r, g, b), background)))
            rows.append(row)
        return rows

    def masked(self, key=(255, 0, 255), behind=(212, 208, 200)):
        """Rows of RGB tuples for a bitmap with a mask colour: pixels at least half covered become opaque
        (their soft edge blended with a typical button face), the rest the mask colour."""
        rows = []
        for y in range(self.h):
            row = []
            for x in range(self.w):
                r, g, b, a = self.px[y * self.w + x]
                if a < 0.5:
                    row.append(key)
                else:
                    row.append(tuple(round(v * 255 + bg * (1 - a)) for v, bg in zip((r, g, b), behind)))
            rows.append(row)
        return rows
