"""The program icon: a waving banner on a pole with a gold finial, the banner carrying a gold chevron."""
import math

from raster import Canvas, ellipse, rect, rgb, mix, stroke, transform, warp

POLE_DARK = rgb('#4a2c12')
POLE_LIGHT = rgb('#a8733c')
GOLD = rgb('#f3c530')
GOLD_DARK = rgb('#9a6c00')
CLOTH = rgb('#c8202f')
CLOTH_LIGHT = rgb('#f0505a')
CLOTH_DARK = rgb('#7c0c18')


def program_icon(size):
    k = size / 32
    cv = Canvas(size)
    x0, x1, top, depth = 9.5, 30.5, 4.5, 15.5

    def wave(u):
        return 1.6 * math.sin(u * 2 * math.pi * 0.9 + 0.4)

    def to_flag(x, y):
        """(x, y) in the flat cloth's own units (0..1) -> icon units on the waving cloth."""
        return (x0 + (x1 - x0) * x, top + wave(x) + depth * y)

    cloth = warp([[(0, 0), (1, 0), (1, 1), (0, 1)]], to_flag, step=0.02)

    def shade(px, py):
        # Light where the cloth turns towards the viewer, dark in its folds.
        u = (px / k - x0) / (x1 - x0)
        t = math.cos(u * 2 * math.pi * 0.9 + 0.4)
        return mix(CLOTH, CLOTH_LIGHT, t * 0.8) if t > 0 else mix(CLOTH, CLOTH_DARK, -t * 0.8)

    # The pole, with a gold ball on top.
    pw = max(2.0, 2.6 * k)
    px0 = round(7.2 * k)
    cv.fill(rect(px0 - pw / 2 - 0.5, 4 * k, px0 + pw / 2 + 0.5, 31 * k), POLE_DARK)
    cv.fill(rect(px0 - pw / 2 + 0.5, 4 * k, px0 + pw / 2 - 0.5, 30.5 * k - 0.5),
            lambda x, y: mix(POLE_LIGHT, POLE_DARK, abs(x - px0) / pw))
    r = max(1.6, 2.6 * k)
    cv.fill(ellipse(px0, 3 * k + 0.5, r + 0.7), GOLD_DARK)
    shine = rgb('#fff3b0')
    cv.fill(ellipse(px0 - 0.3 * k, 3 * k + 0.2, r),
            lambda x, y: mix(shine, GOLD, min(1, math.hypot(x - px0 + r * 0.4, y - 3 * k + r * 0.2) / r)))

    # The cloth with a dark edge so that it stands out on white and on grey alike.
    edge = max(1.0, 0.9 * k)
    cv.fill(transform(cloth, scale=k), CLOTH_DARK)
    for c in transform(cloth, scale=k):
        cv.fill(stroke(c, 2 * edge, closed=True), CLOTH_DARK)
    cv.fill(transform(cloth, scale=k), shade)

    # A gold chevron across the cloth.
    vee = [(0.12, 0.16), (0.5, 0.86), (0.88, 0.16)]
    band = stroke(vee, 0.19, cap='butt')
    shaped = [[to_flag(x, y * 0.995) for x, y in c] for c in warp(band, lambda x, y: (x, y), step=0.03)]
    cv.fill(transform(shaped, scale=k), GOLD)

    # Lashings where the cloth meets the pole.
    for u in (0.12, 0.5, 0.88):
        y = (top + wave(0) + depth * u) * k
        cv.fill(rect(px0 + pw / 2 - 0.5, y - 0.5 * max(1, k), x0 * k + 0.5, y + 0.5 * max(1, k)), POLE_DARK)
    return cv
