"""Painters that the training never sees, for calibration and evaluation: drawn by other means, with other motifs and other parameters.

They share nothing with the painters of the training but the camera and the choice of colours, so a network that learned how those draw
instead of what they draw fails here.
"""

import math

import numpy as np
from PIL import Image, ImageChops, ImageDraw, ImageEnhance, ImageFilter

from canvas import any_color, between, camera, chance, hsv, pick, skin


class Sheet:
    """A picture drawn by hand, three times as large as needed in each direction so that edges come out smooth."""

    def __init__(self, r, color):
        self.r = r
        self.w, self.h = pick(r, [(160, 120), (150, 100), (120, 160), (128, 128), (170, 96)])
        self.image = Image.new("RGB", (self.w * 2, self.h * 2), to_int(color))
        self.draw = ImageDraw.Draw(self.image)

    def x(self, value):
        return value * self.w * 2

    def y(self, value):
        return value * self.h * 2

    def points(self, points):
        return [(self.x(a), self.y(b)) for a, b in points]

    def polygon(self, points, color):
        self.draw.polygon(self.points(points), fill=to_int(color))

    def box(self, x0, y0, x1, y1, color):
        if x1 > x0 and y1 > y0:
            self.draw.rectangle([self.x(x0), self.y(y0), self.x(x1), self.y(y1)], fill=to_int(color))

    def disc(self, x, y, radius, color, flat=1.0):
        a, b = self.x(radius), self.x(radius) * flat
        self.draw.ellipse([self.x(x) - a, self.y(y) - b, self.x(x) + a, self.y(y) + b], fill=to_int(color))

    def line(self, points, color, width):
        self.draw.line(self.points(points), fill=to_int(color), width=max(1, int(self.x(width))))

    def wash(self, y0, y1, top, bottom, x0=0.0, x1=1.0):
        """A vertical run of colour, in strokes."""
        rows = max(1, int(self.y(y1) - self.y(y0)))
        for i in range(rows):
            color = top + (bottom - top) * (i / rows)
            y = self.y(y0) + i
            self.draw.line([(self.x(x0), y), (self.x(x1), y)], fill=to_int(color))

    def dabs(self, box, count, size, color, vary=0.3, flat=0.5):
        """Many short strokes of the brush: grain, leaves, crowds, waves."""
        r = self.r
        x0, y0, x1, y1 = box
        for _ in range(count):
            self.disc(between(r, x0, x1), between(r, y0, y1), size * between(r, 0.4, 1.4), color * between(r, 1 - vary, 1 + vary), flat)

    def soften(self, radius):
        self.image = self.image.filter(ImageFilter.GaussianBlur(radius))
        self.draw = ImageDraw.Draw(self.image)

    def shine(self, spots, radius):
        """Light around the spots (x, y, colour, size)."""
        layer = Image.new("RGB", self.image.size)
        draw = ImageDraw.Draw(layer)
        for x, y, color, size in spots:
            q = self.x(size)
            draw.ellipse([self.x(x) - q, self.y(y) - q, self.x(x) + q, self.y(y) + q], fill=to_int(color))
        halo = layer.filter(ImageFilter.GaussianBlur(radius))
        self.image = ImageChops.add(ImageChops.add(self.image, layer), ImageEnhance.Brightness(halo).enhance(1.6))
        self.draw = ImageDraw.Draw(self.image)

    @property
    def a(self):
        return np.asarray(self.image.resize((self.w, self.h), Image.BOX), dtype=np.float32) / 255


def to_int(color):
    return tuple(int(v) for v in np.clip(np.broadcast_to(color, 3) * 255, 0, 255))


def someone(s, x, foot, size, dim=1.0):
    r = s.r
    aspect = s.w / s.h
    coat = any_color(r) * dim
    s.polygon(
        [
            (x - size * 0.13 / aspect, foot),
            (x - size * 0.1 / aspect, foot - size * 0.8),
            (x + size * 0.1 / aspect, foot - size * 0.8),
            (x + size * 0.13 / aspect, foot),
        ],
        coat,
    )
    s.box(x - size * 0.1 / aspect, foot - size * 0.45, x + size * 0.1 / aspect, foot, any_color(r) * dim)
    s.disc(x, foot - size * 0.9, size * 0.08 / aspect, skin(r) * dim, 1.2)


def group(s, most, foot, size, dim=1.0):
    for _ in range(int(s.r.integers(0, most + 1))):
        someone(s, between(s.r, 0.05, 0.95), between(s.r, *foot), between(s.r, *size), dim)


def air(s, to=1.0):
    r = s.r
    if chance(r, 0.7):
        s.wash(0, to, hsv(r, (200, 222), (0.4, 0.75), (0.6, 0.95)), hsv(r, (195, 215), (0.08, 0.35), (0.8, 1.0)))
        for _ in range(int(r.integers(0, 6))):
            x, y = between(r, 0, 1), between(r, 0, to * 0.8)
            for _ in range(7):
                s.disc(
                    x + between(r, -0.1, 0.1),
                    y + between(r, -0.02, 0.02),
                    between(r, 0.02, 0.06),
                    hsv(r, (200, 220), (0, 0.06), (0.88, 1)),
                    0.5,
                )
    else:
        s.wash(0, to, hsv(r, (200, 230), (0.02, 0.12), (0.6, 0.85)), hsv(r, (200, 230), (0.0, 0.08), (0.75, 0.95)))


def beach(r):
    sand = hsv(r, (30, 45), (0.15, 0.42), (0.65, 0.95))
    s = Sheet(r, sand)
    blue = hsv(r, (178, 215), (0.35, 0.85), (0.4, 0.8))
    if chance(r, 0.25):
        # From a cliff: the shore runs across the picture, no sky.
        a, b = between(r, 0.2, 0.6), between(r, 0.3, 0.8)
        s.polygon([(0, 0), (1, 0), (1, a), (0.5, (a + b) / 2 + between(r, -0.08, 0.08)), (0, b)], blue)
        for i in range(4):
            s.line([(0, b - i * 0.05), (0.5, (a + b) / 2 - i * 0.05), (1, a - i * 0.05)], np.float32(0.95), 0.012 / (i + 1))
    else:
        horizon = between(r, 0.15, 0.5)
        air(s, horizon)
        shore = horizon + between(r, 0.06, 0.3)
        s.wash(horizon, shore, blue * 0.85, blue * 1.15)
        s.dabs((0, horizon, 1, shore), 120, 0.02, blue * 1.2, 0.2, 0.12)
        s.polygon(
            [(0, shore), (0.3, shore + 0.02), (0.7, shore - 0.02), (1, shore + 0.03), (1, shore + 0.07), (0, shore + 0.05)], sand * 0.8
        )
        s.line([(0, shore), (0.3, shore + 0.02), (0.7, shore - 0.02), (1, shore + 0.03)], np.float32(0.97), 0.015)
    s.dabs((0, 0.75, 1, 1), 200, 0.006, sand * 0.92, 0.12)
    for _ in range(int(r.integers(0, 5))):
        x, y = between(r, 0, 1), between(r, 0.7, 0.95)
        s.box(x, y, x + between(r, 0.05, 0.15), y + 0.04, any_color(r))
    group(s, 5, (0.65, 1.0), (0.08, 0.45))
    return s, False


def water(r):
    blue = hsv(r, (190, 222), (0.3, 0.8), (0.3, 0.7))
    s = Sheet(r, blue)
    horizon = between(r, 0.25, 0.65)
    air(s, horizon)
    s.wash(horizon, 1.0, blue * 1.1, blue * 0.8)
    s.dabs((0, horizon, 1, 1), 260, 0.025, blue * 1.25, 0.3, 0.1)
    if chance(r, 0.6):
        x, top = 0.0, horizon
        while x < 1:
            w = between(r, 0.05, 0.3)
            s.polygon([(x, top), (x + w / 2, top - between(r, 0.01, 0.1)), (x + w * 1.2, top)], hsv(r, (100, 220), (0.1, 0.4), (0.3, 0.6)))
            x += w
    for _ in range(int(r.integers(0, 4))):
        x, y, q = between(r, 0.1, 0.9), horizon + between(r, 0.02, 0.25), between(r, 0.02, 0.1)
        s.polygon([(x - q, y), (x + q, y), (x + q * 0.7, y + q * 0.5), (x - q * 0.7, y + q * 0.5)], any_color(r))
        s.box(x - q * 0.4, y - q * 0.6, x + q * 0.3, y, np.float32(0.93))
    return s, False


def pool(r):
    s = Sheet(r, hsv(r, (20, 45), (0.05, 0.3), (0.65, 0.95)))
    blue = hsv(r, (182, 200), (0.5, 0.85), (0.7, 0.95))
    top = between(r, 0.1, 0.45)
    s.wash(0, top * 0.9, hsv(r, (90, 130), (0.3, 0.7), (0.2, 0.5)), hsv(r, (90, 130), (0.3, 0.7), (0.25, 0.55)))
    s.dabs((0, 0, 1, top * 0.85), 120, 0.03, hsv(r, (90, 130), (0.3, 0.7), (0.25, 0.6)), 0.5)
    s.polygon([(between(r, -0.1, 0.2), top), (between(r, 0.8, 1.1), top), (1.2, 0.95), (-0.2, 0.95)], blue)
    for _ in range(60):
        x, y = between(r, 0.05, 0.95), between(r, top + 0.05, 0.9)
        s.line([(x, y), (x + 0.03, y + 0.01), (x + 0.06, y - 0.005)], blue * 1.25, 0.004)
    for _ in range(int(r.integers(0, 5))):
        x, y = between(r, 0, 1), between(r, 0.85, 1.0)
        s.polygon([(x, y), (x + 0.15, y), (x + 0.2, y - 0.08), (x + 0.05, y - 0.06)], any_color(r))
    group(s, 3, (top + 0.2, 1.0), (0.12, 0.4))
    return s, False


def snow(r):
    white = hsv(r, (200, 225), (0.0, 0.08), (0.88, 1.0))
    s = Sheet(r, white)
    horizon = between(r, 0.2, 0.55)
    air(s, horizon + 0.05)
    if chance(r, 0.6):
        x = -0.1
        while x < 1:
            w, h = between(r, 0.2, 0.5), between(r, 0.1, 0.4)
            s.polygon([(x, horizon + 0.1), (x + w / 2, horizon - h), (x + w, horizon + 0.1)], white * 0.95)
            s.polygon(
                [(x + w / 2, horizon - h), (x + w, horizon + 0.1), (x + w * 0.6, horizon + 0.1), (x + w * 0.55, horizon - h * 0.4)],
                hsv(r, (210, 230), (0.1, 0.3), (0.5, 0.8)),
            )
            for _ in range(5):
                a, b = x + w * between(r, 0.3, 0.7), horizon - h * between(r, 0.1, 0.6)
                s.polygon([(a, b), (a + 0.03, b + 0.02), (a + 0.01, b + 0.06)], np.float32(between(r, 0.2, 0.5)))
            x += w * 0.7
    s.polygon([(0, horizon + between(r, -0.05, 0.1)), (1, horizon + between(r, -0.05, 0.1)), (1, 1), (0, 1)], white)
    s.dabs((0, horizon + 0.15, 1, 1), 50, 0.08, white * 0.95, 0.04, 0.2)
    for _ in range(int(r.integers(0, 18))):
        x, y, q = between(r, 0, 1), between(r, horizon + 0.02, 0.9), between(r, 0.05, 0.3)
        s.polygon([(x, y - q), (x + q * 0.22, y), (x - q * 0.22, y)], hsv(r, (100, 170), (0.1, 0.4), (0.1, 0.3)))
    if chance(r, 0.4):
        for _ in range(3):
            x = between(r, 0.2, 0.8)
            s.line([(x, 1), (x + between(r, -0.2, 0.2), horizon + 0.1)], white * 0.85, 0.006)
    if chance(r, 0.25):
        s.box(between(r, 0, 0.5), horizon, between(r, 0.55, 0.9), horizon + 0.15, hsv(r, (15, 35), (0.3, 0.6), (0.25, 0.5)))
    group(s, 4, (0.6, 1.0), (0.08, 0.5))
    return s, False


def forest(r):
    green = hsv(r, (70, 130) if chance(r, 0.8) else (20, 50), (0.3, 0.8), (0.2, 0.5))
    s = Sheet(r, green * 0.6)
    s.dabs((0, 0, 1, 0.7), 350, 0.025, green, 0.6, 0.8)
    s.dabs((0, 0, 1, 0.4), 60, 0.015, hsv(r, (60, 100), (0.05, 0.3), (0.8, 1.0)), 0.1, 0.9)
    s.wash(0.75, 1.0, hsv(r, (25, 90), (0.2, 0.6), (0.2, 0.45)), hsv(r, (25, 90), (0.2, 0.6), (0.15, 0.5)))
    s.dabs((0, 0.72, 1, 1), 200, 0.02, hsv(r, (25, 100), (0.2, 0.7), (0.2, 0.5)), 0.5, 0.4)
    for _ in range(int(r.integers(5, 22))):
        x, w = between(r, 0, 1), between(r, 0.005, 0.05)
        s.line([(x, between(r, 0.72, 0.95)), (x + between(r, -0.04, 0.04), 0)], hsv(r, (15, 40), (0.1, 0.5), (0.08, 0.35)), w)
    s.dabs((0, 0, 1, 0.5), 140, 0.02, green * 1.3, 0.5, 0.7)
    group(s, 2, (0.85, 1.0), (0.15, 0.5))
    return s, False


def mountains(r):
    s = Sheet(r, np.float32(0.5))
    air(s, 0.6)
    base = between(r, 0.45, 0.7)
    for layer in range(int(r.integers(1, 4))):
        tone = hsv(r, (200, 235), (0.08, 0.3), (0.4, 0.75)) if layer == 0 else hsv(r, (60, 220), (0.1, 0.45), (0.25, 0.55))
        points, x = [(-0.1, 1.0)], -0.1
        while x < 1.2:
            points.append((x, base + 0.08 * layer - between(r, 0.03, 0.42 - 0.1 * layer)))
            x += between(r, 0.06, 0.22)
        points.append((1.2, 1.0))
        s.polygon(points, tone)
        for x, y in points[1:-1]:
            if chance(r, 0.5):
                s.polygon([(x, y), (x + 0.05, y + 0.12), (x + 0.01, y + 0.2)], tone * between(r, 0.75, 1.2))
            if layer == 0 and chance(r, 0.4):
                s.polygon([(x, y), (x + 0.025, y + 0.05), (x, y + 0.035), (x - 0.025, y + 0.05)], np.float32(0.95))
    green = hsv(r, (55, 120), (0.25, 0.7), (0.25, 0.6))
    edge = base + between(r, 0.05, 0.2)
    s.polygon([(0, edge), (0.5, edge + between(r, -0.06, 0.06)), (1, edge), (1, 1), (0, 1)], green)
    s.dabs((0, edge + 0.02, 1, 1), 250, 0.015, green, 0.35, 0.4)
    for _ in range(int(r.integers(0, 20))):
        x, y, q = between(r, 0, 1), between(r, edge, edge + 0.15), between(r, 0.03, 0.12)
        s.polygon([(x, y - q), (x + q * 0.25, y), (x - q * 0.25, y)], green * 0.4)
    group(s, 3, (0.8, 1.0), (0.12, 0.5))
    return s, False


def meadow(r):
    green = hsv(r, (60, 115), (0.35, 0.8), (0.4, 0.75))
    s = Sheet(r, green)
    horizon = between(r, 0.3, 0.6)
    air(s, horizon)
    s.dabs((0, horizon - 0.04, 1, horizon + 0.02), 50, 0.035, hsv(r, (80, 130), (0.3, 0.6), (0.2, 0.45)), 0.4, 0.8)
    y, step = horizon + 0.02, 0.05
    while y < 1:
        s.wash(y, min(1, y + step), hsv(r, (55, 115), (0.3, 0.75), (0.35, 0.75)), green)
        y += step
        step *= 1.7
    s.dabs((0, horizon + 0.1, 1, 1), 350, 0.01, green, 0.4, 1.5)
    group(s, 3, (0.7, 1.0), (0.1, 0.5))
    return s, False


def street(r):
    s = Sheet(r, hsv(r, (20, 50), (0.0, 0.2), (0.4, 0.7)))
    ground = between(r, 0.6, 0.85)
    air(s, ground)
    x = -0.05
    while x < 1:
        w, top = between(r, 0.1, 0.35), between(r, -0.1, 0.35)
        wall = hsv(r, (10, 50), (0.03, 0.45), (0.45, 0.95))
        s.box(x, top, x + w, ground, wall)
        if chance(r, 0.5):
            s.polygon([(x, top), (x + w / 2, top - 0.1), (x + w, top)], hsv(r, (0, 30), (0.3, 0.6), (0.3, 0.6)))
        step = between(r, 0.035, 0.07)
        b = top + 0.04
        while b < ground - 0.08:
            a = x + 0.02
            while a < x + w - 0.03:
                s.box(a, b, a + step * 0.5, b + 0.06, hsv(r, (200, 240), (0.0, 0.3), (0.1, 0.45)))
                a += step
            b += 0.1
        s.box(x + 0.01, ground - 0.09, x + w - 0.01, ground, hsv(r, (0, 360), (0.1, 0.7), (0.1, 0.6)))
        x += w
    s.wash(ground, 1.0, hsv(r, (0, 50), (0, 0.12), (0.3, 0.6)), hsv(r, (0, 50), (0, 0.12), (0.35, 0.7)))
    for _ in range(int(r.integers(0, 4))):
        x, q, y = between(r, 0, 1), between(r, 0.06, 0.18), between(r, ground + 0.02, 0.95)
        s.box(x, y - q * 0.5, x + q * 1.6, y, any_color(r))
        s.polygon([(x + q * 0.3, y - q * 0.5), (x + q * 0.5, y - q), (x + q * 1.1, y - q), (x + q * 1.3, y - q * 0.5)], np.float32(0.2))
    group(s, 6, (ground + 0.03, 1.0), (0.12, 0.4))
    return s, False


def night_city(r):
    s = Sheet(r, hsv(r, (220, 260), (0.4, 0.8), (0.04, 0.2)))
    base = between(r, 0.55, 0.85)
    spots = []
    x = -0.05
    while x < 1:
        w, top = between(r, 0.05, 0.2), between(r, 0.1, base - 0.1)
        s.box(x, top, x + w, base, hsv(r, (210, 270), (0.1, 0.5), (0.03, 0.15)))
        for _ in range(int(r.integers(4, 40))):
            a, b = x + between(r, 0.01, 0.95) * w, between(r, top + 0.02, base)
            s.box(a, b, a + 0.012, b + 0.02, hsv(r, (30, 55), (0.2, 0.6), (0.7, 1.0)))
        x += w * 1.05
    for _ in range(int(r.integers(5, 20))):
        spots.append((between(r, 0, 1), base + between(r, -0.03, 0.1), hsv(r, (20, 50), (0.2, 0.7), (0.8, 1)), between(r, 0.004, 0.012)))
    s.wash(base, 1.0, np.float32(0.08), np.float32(0.04))
    for x, y, color, size in spots:
        s.line([(x, y), (x, y + between(r, 0.05, 0.2))], color * 0.4, size)
    s.shine(spots, 6)
    return s, True


def fireworks(r):
    s = Sheet(r, hsv(r, (210, 280), (0.2, 0.8), (0.0, 0.1)))
    spots = []
    for _ in range(int(r.integers(1, 6))):
        x, y, size, color = between(r, 0.15, 0.85), between(r, 0.12, 0.6), between(r, 0.08, 0.35), hsv(r, (0, 360), (0.2, 0.95), (0.8, 1.0))
        for i in range(int(r.integers(16, 60))):
            t, q = between(r, 0, 6.283), size * between(r, 0.5, 1)
            px, py = x + math.cos(t) * q, y + math.sin(t) * q * s.w / s.h
            s.line([(x + (px - x) * 0.3, y + (py - y) * 0.3), (px, py + 0.01)], color * between(r, 0.4, 1), 0.005)
            spots.append((px, py + 0.01, color * 0.9, 0.005))
        spots.append((x, y, color, 0.015))
    s.shine(spots, 5)
    if chance(r, 0.5):
        s.polygon([(0, 0.9), (0.2, 0.87), (0.25, 0.8), (0.3, 0.88), (0.7, 0.92), (1, 0.86), (1, 1), (0, 1)], np.float32(0.02))
    return s, True


def stage(r):
    hue = between(r, 180, 360)
    s = Sheet(r, hsv(r, (hue, hue + 30), (0.4, 1), (0.02, 0.2)))
    layer = Image.new("RGB", s.image.size)
    draw = ImageDraw.Draw(layer)
    spots = []
    for _ in range(int(r.integers(3, 9))):
        x, t = between(r, 0, 1), between(r, -0.5, 0.5)
        color = hsv(r, (hue - 60, hue + 60), (0.3, 1), (0.3, 0.8))
        draw.polygon(s.points([(x, 0.03), (x + t - 0.08, 0.9), (x + t + 0.08, 0.9)]), fill=to_int(color * between(r, 0.3, 0.9)))
        spots.append((x, 0.04, np.float32(0.6) + 0.4 * color, between(r, 0.008, 0.02)))
    s.image = ImageChops.add(s.image, layer.filter(ImageFilter.GaussianBlur(between(r, 2, 8))))
    s.draw = ImageDraw.Draw(s.image)
    s.box(0, 0.68, 1, 0.75, hsv(r, (hue, hue + 40), (0.3, 1), (0.05, 0.3)))
    group(s, 5, (0.68, 0.74), (0.2, 0.4), 0.4)
    for _ in range(40):
        x, y = between(r, 0, 1), between(r, 0.82, 0.95)
        s.disc(x, y, between(r, 0.02, 0.04), np.float32(0.03), 1.2)
        if chance(r, 0.2):
            s.line([(x, y), (x + between(r, -0.04, 0.04), y - 0.15)], np.float32(0.03), 0.015)
    s.box(0, 0.93, 1, 1, np.float32(0.02))
    s.shine(spots, 8)
    return s, True


def candles(r):
    s = Sheet(r, hsv(r, (10, 40), (0.4, 0.8), (0.02, 0.12)))
    x, y, w, h = between(r, 0.4, 0.6), between(r, 0.6, 0.8), between(r, 0.18, 0.35), between(r, 0.1, 0.22)
    icing = hsv(r, (0, 60), (0.1, 0.4), (0.5, 0.85)) * np.float32([1.0, 0.8, 0.55])
    if chance(r, 0.4):
        s.disc(x + between(r, -0.3, 0.3), between(r, 0.2, 0.4), between(r, 0.08, 0.15), skin(r) * np.float32([0.6, 0.4, 0.25]), 1.3)
    s.box(x - w, y, x + w, y + h, icing * 0.6)
    s.disc(x, y, w, icing, 0.3)
    spots = []
    for _ in range(int(r.integers(4, 16))):
        a, b = x + between(r, -0.85, 0.85) * w, y + between(r, -0.04, 0.04)
        s.box(a - 0.005, b - 0.1, a + 0.005, b, hsv(r, (0, 360), (0.2, 0.6), (0.5, 0.9)))
        spots.append((a, b - 0.12, np.float32([1.0, 0.85, 0.45]), between(r, 0.007, 0.014)))
    s.shine(spots, between(r, 5, 12))
    return s, True


def christmas_tree(r):
    dark = chance(r, 0.55)
    s = Sheet(r, hsv(r, (15, 50), (0.1, 0.5), (0.03, 0.15) if dark else (0.5, 0.9)))
    x, top, q = between(r, 0.35, 0.65), between(r, -0.05, 0.2), between(r, 0.25, 0.42)
    green = hsv(r, (105, 150), (0.3, 0.7), (0.08, 0.2) if dark else (0.15, 0.35))
    for i in range(5):
        t = 0.2 + 0.2 * i
        s.polygon([(x, top + 0.12 * i), (x - q * t, top + 0.2 + 0.15 * i), (x + q * t, top + 0.2 + 0.15 * i)], green * between(r, 0.8, 1.1))
    for _ in range(250):
        t = math.sqrt(between(r, 0, 1))
        a, b = x + between(r, -1, 1) * q * t, top + 0.8 * t
        s.line([(a, b), (a + between(r, -0.03, 0.03), b + 0.03)], green * between(r, 0.5, 1.7), 0.004)
    spots = []
    for _ in range(int(r.integers(15, 60))):
        t = math.sqrt(between(r, 0.02, 1))
        color = hsv(r, (30, 50), (0.2, 0.6), (0.8, 1)) if chance(r, 0.7) else hsv(r, (0, 360), (0.7, 1), (0.7, 1))
        spots.append((x + between(r, -0.9, 0.9) * q * t, top + 0.78 * t, color, between(r, 0.004, 0.01)))
    for _ in range(int(r.integers(6, 25))):
        t = math.sqrt(between(r, 0.05, 1))
        s.disc(
            x + between(r, -0.85, 0.85) * q * t,
            top + 0.78 * t,
            between(r, 0.01, 0.022),
            hsv(r, pick(r, [(350, 368), (42, 52), (215, 235)]), (0.5, 0.95), (0.4, 0.95)) * (0.6 if dark else 1),
        )
    s.shine(spots, 4)
    for _ in range(int(r.integers(0, 4))):
        a = between(r, 0.1, 0.8)
        s.box(a, 0.88, a + between(r, 0.08, 0.2), 1, any_color(r) * (0.4 if dark else 0.9))
    return s, dark


def pitch(r):
    green = hsv(r, (85, 125), (0.5, 0.8), (0.4, 0.7))
    s = Sheet(r, green)
    top = between(r, 0.1, 0.35)
    air(s, top)
    s.box(0, top * 0.4, 1, top, hsv(r, (0, 360), (0, 0.3), (0.3, 0.6)))
    s.dabs((0, top * 0.4, 1, top), 350, 0.008, np.float32([0.6, 0.5, 0.5]), 0.8, 1)
    for i in range(0, 12, 2):
        s.polygon(
            [(0.5 + (i - 6) * 0.06, top), (0.5 + (i - 5) * 0.06, top), (0.5 + (i - 5) * 0.25, 1), (0.5 + (i - 6) * 0.25, 1)], green * 0.9
        )
    for _ in range(int(r.integers(1, 4))):
        y = between(r, top + 0.05, 0.95)
        s.line([(0, y), (1, y + between(r, -0.08, 0.08))], np.float32(0.92), 0.008)
    if chance(r, 0.5):
        x = between(r, 0.2, 0.7)
        s.line([(x, top + 0.08), (x, top - 0.1), (x + 0.25, top - 0.1), (x + 0.25, top + 0.08)], np.float32(0.95), 0.008)
    for _ in range(int(r.integers(2, 12))):
        someone(s, between(r, 0, 1), between(r, top + 0.1, 1.0), between(r, 0.12, 0.35))
    return s, False


def kitchen(r):
    s = Sheet(r, hsv(r, (20, 60), (0.02, 0.25), (0.6, 0.95)))
    for i in range(int(r.integers(3, 7))):
        x = i * 0.2
        s.box(x, 0, x + 0.19, between(r, 0.25, 0.4), hsv(r, (15, 45), (0.1, 0.6), (0.3, 0.95)))
        s.box(x, 0.65, x + 0.19, 1, hsv(r, (15, 45), (0.1, 0.6), (0.3, 0.95)))
    s.box(0, 0.6, 1, 0.66, any_color(r) * 0.6)
    for _ in range(int(r.integers(2, 10))):
        x = between(r, 0, 1)
        s.box(x, between(r, 0.4, 0.55), x + between(r, 0.02, 0.1), 0.6, any_color(r))
    group(s, 3, (0.9, 1.1), (0.4, 0.8))
    return s, False


def desk(r):
    s = Sheet(r, hsv(r, (15, 45), (0.1, 0.6), (0.2, 0.9)))
    for _ in range(int(r.integers(3, 12))):
        x, y, w, h = between(r, 0, 0.9), between(r, 0, 0.9), between(r, 0.05, 0.4), between(r, 0.03, 0.4)
        s.polygon(
            [(x, y), (x + w, y + between(r, -0.05, 0.05)), (x + w + 0.03, y + h), (x + 0.02, y + h)], hsv(r, (0, 360), (0, 0.5), (0.1, 1.0))
        )
    return s, False


def wall(r):
    tone = hsv(r, (5, 40), (0.1, 0.6), (0.3, 0.8))
    s = Sheet(r, tone * 1.2)
    b = between(r, 0.03, 0.1)
    for j in range(int(1 / b) + 1):
        for i in range(-1, int(0.5 / b) + 1):
            x = (i * 2 + (j % 2)) * b
            s.box(x, j * b, x + 2 * b - 0.008, j * b + b - 0.01, tone * between(r, 0.8, 1.1))
    group(s, 2, (0.9, 1.2), (0.5, 0.9))
    return s, False


def face(r):
    s = Sheet(r, any_color(r))
    if chance(r, 0.5):
        s.dabs((0, 0, 1, 1), 80, 0.1, any_color(r), 0.4, 1)
        s.soften(between(r, 2, 8))
    for _ in range(int(r.integers(1, 3))):
        x, y, q, tone = between(r, 0.3, 0.7), between(r, 0.35, 0.6), between(r, 0.1, 0.28), skin(r)
        s.disc(x, y - q * 0.2, q * 1.15, hsv(r, (15, 45), (0.1, 0.7), (0.05, 0.6)), 1.3)
        s.polygon([(x - q * 2, 1.2), (x - q * 1.5, y + q * 1.6), (x + q * 1.5, y + q * 1.6), (x + q * 2, 1.2)], any_color(r))
        s.disc(x, y, q, tone, 1.3)
        for side in (-1, 1):
            s.disc(x + side * q * 0.4, y - q * 0.1, q * 0.12, tone * 0.2, 0.6)
        s.line(
            [(x - q * 0.3, y + q * 0.6), (x, y + q * 0.68), (x + q * 0.3, y + q * 0.6)], hsv(r, (345, 365), (0.4, 0.7), (0.4, 0.7)), 0.012
        )
    return s, False


def page(r):
    s = Sheet(r, np.float32(between(r, 0.8, 1.0)))
    y = 0.08
    while y < 0.95:
        x = 0.08
        while x < between(r, 0.6, 0.92):
            w = between(r, 0.01, 0.07)
            s.box(x, y, x + w, y + 0.018, np.float32(between(r, 0.0, 0.4)))
            x += w + 0.012
        y += between(r, 0.03, 0.06)
    if chance(r, 0.3):
        s.box(0.5, 0.3, 0.9, 0.6, any_color(r))
    return s, False


def blossom(r):
    s = Sheet(r, hsv(r, (70, 130), (0.3, 0.8), (0.1, 0.6)))
    s.dabs((0, 0, 1, 1), int(r.integers(10, 200)), between(r, 0.02, 0.12), hsv(r, (70, 130), (0.3, 0.8), (0.15, 0.65)), 0.5, 0.6)
    if chance(r, 0.7):
        s.soften(between(r, 1, 8))
    color = hsv(r, (270, 420), (0.2, 1.0), (0.6, 1.0))
    for _ in range(int(r.integers(0, 4))):
        x, y, q = between(r, 0.2, 0.8), between(r, 0.2, 0.8), between(r, 0.05, 0.25)
        for i in range(9):
            s.disc(x + math.cos(i * 0.7) * q * 0.7, y + math.sin(i * 0.7) * q * 0.7 * s.w / s.h, q * 0.4, color * between(r, 0.8, 1.05))
        s.disc(x, y, q * 0.3, hsv(r, (30, 60), (0.5, 0.9), (0.3, 0.9)))
    return s, False


def pet(r):
    s = Sheet(r, any_color(r))
    if chance(r, 0.5):
        s.wash(0, 0.5, any_color(r), any_color(r))
        s.wash(0.5, 1, hsv(r, (15, 120), (0.1, 0.6), (0.2, 0.8)), hsv(r, (15, 120), (0.1, 0.6), (0.2, 0.8)))
    fur = hsv(r, (15, 45), (0.05, 0.6), (0.1, 0.95))
    x, y, q = between(r, 0.35, 0.65), between(r, 0.45, 0.65), between(r, 0.15, 0.3)
    s.disc(x, y + q, q * 1.3, fur * 0.9, 1.2)
    for side in (-1, 1):
        s.polygon([(x + side * q * 0.9, y - q * 0.2), (x + side * q * 0.2, y - q * 0.8), (x + side * q * 0.8, y - q * 1.5)], fur * 0.8)
    s.disc(x, y, q, fur)
    s.dabs((x - q, y - q, x + q, y + 2 * q), 150, 0.01, fur, 0.4, 2)
    for side in (-1, 1):
        s.disc(x + side * q * 0.4, y - q * 0.1, q * 0.13, np.float32([0.1, 0.1, 0.05]))
    s.disc(x, y + q * 0.3, q * 0.12, np.float32([0.2, 0.1, 0.1]))
    return s, False


def room(r):
    s = Sheet(r, hsv(r, (20, 60), (0.02, 0.4), (0.3, 0.95)))
    s.polygon([(0, 0.75), (1, 0.7), (1, 1), (0, 1)], hsv(r, (15, 40), (0.2, 0.7), (0.2, 0.7)))
    x = between(r, 0, 0.7)
    s.box(x, 0.1, x + 0.25, 0.5, hsv(r, (195, 220), (0.0, 0.4), (0.7, 1.0)))
    s.box(between(r, -0.1, 0.3), 0.55, between(r, 0.4, 0.9), 0.9, any_color(r) * 0.8)
    if chance(r, 0.4):
        s.shine([(between(r, 0.1, 0.9), between(r, 0.05, 0.4), hsv(r, (30, 50), (0.1, 0.5), (0.8, 1)), 0.03)], 16)
    group(s, 4, (0.85, 1.1), (0.35, 0.8))
    return s, chance(r, 0.2)


def lamps(r):
    """Blurred lights in the dark, a street lamp, a camp fire."""
    s = Sheet(r, hsv(r, (0, 360), (0.1, 0.7), (0.0, 0.12)))
    kind = int(r.integers(3))
    if kind == 0:
        for _ in range(int(r.integers(3, 25))):
            s.disc(between(r, 0, 1), between(r, 0, 1), between(r, 0.02, 0.08), hsv(r, (0, 360), (0.2, 0.9), (0.3, 0.9)))
        s.soften(between(r, 1, 4))
    elif kind == 1:
        x = between(r, 0.3, 0.7)
        s.line([(x, 1), (x, 0.3)], np.float32(0.1), 0.015)
        s.shine([(x + d, 0.28, np.float32([1, 0.8, 0.4]), 0.03) for d in (-0.1, 0, 0.1)][: int(r.integers(1, 4))], 14)
    else:
        x = between(r, 0.3, 0.7)
        s.shine(
            [
                (x + between(r, -0.08, 0.08), 0.75 - between(r, 0, 0.2), hsv(r, (10, 45), (0.6, 1), (0.6, 1)), between(r, 0.01, 0.04))
                for _ in range(25)
            ],
            10,
        )
        group(s, 4, (0.9, 1.0), (0.4, 0.7), 0.2)
    return s, True


def car_park(r):
    s = Sheet(r, hsv(r, (0, 60), (0, 0.15), (0.35, 0.65)))
    air(s, between(r, 0.1, 0.4))
    for _ in range(int(r.integers(1, 6))):
        x, y, q = between(r, -0.1, 0.8), between(r, 0.5, 0.95), between(r, 0.15, 0.5)
        tone = pick(r, [any_color(r), np.float32(between(r, 0.1, 0.9))])
        s.box(x, y - q * 0.45, x + q * 1.4, y, tone)
        s.polygon(
            [(x + q * 0.2, y - q * 0.45), (x + q * 0.45, y - q * 0.85), (x + q, y - q * 0.85), (x + q * 1.2, y - q * 0.45)], tone * 0.5
        )
        for a in (0.3, 1.1):
            s.disc(x + q * a, y, q * 0.14, np.float32(0.07))
    return s, False


def lawn(r):
    green = hsv(r, (70, 120), (0.3, 0.7), (0.3, 0.65))
    s = Sheet(r, green)
    s.box(0, 0, 1, between(r, 0.2, 0.5), hsv(r, (20, 120), (0.1, 0.5), (0.2, 0.8)))
    s.dabs((0, 0.1, 1, 0.5), 120, 0.05, hsv(r, (80, 140), (0.3, 0.7), (0.15, 0.5)), 0.5, 0.8)
    s.dabs((0, 0.5, 1, 1), 250, 0.01, green, 0.3, 1.3)
    for _ in range(int(r.integers(0, 4))):
        x, y = between(r, 0.1, 0.8), between(r, 0.6, 0.9)
        s.box(x, y, x + 0.2, y + 0.03, any_color(r))
        s.line([(x + 0.02, y), (x + 0.02, y + 0.12)], np.float32(0.3), 0.01)
    group(s, 5, (0.7, 1.1), (0.3, 0.7))
    return s, False


def grain(r):
    s = Sheet(r, any_color(r))
    s.dabs((0, 0, 1, 1), int(r.integers(50, 600)), between(r, 0.005, 0.05), any_color(r), between(r, 0.1, 0.8), between(r, 0.1, 2))
    if chance(r, 0.4):
        s.soften(between(r, 0.5, 10))
    return s, False


def blank(r):
    s = Sheet(r, np.float32(between(r, 0, 1)))
    if chance(r, 0.6):
        s.wash(0, 1, any_color(r), any_color(r))
    return s, False


def clouds(r):
    s = Sheet(r, np.float32(0.5))
    air(s)
    if chance(r, 0.4):
        s.line([(0, between(r, 0, 1)), (1, between(r, 0, 1))], np.float32(0.2), 0.01)
    return s, False


def dusk(r):
    s = Sheet(r, np.float32(0.1))
    s.wash(0, 0.75, hsv(r, (210, 280), (0.2, 0.6), (0.2, 0.6)), hsv(r, (10, 45), (0.4, 0.9), (0.7, 1.0)))
    s.shine([(between(r, 0.2, 0.8), between(r, 0.5, 0.7), np.float32([1, 0.8, 0.5]), between(r, 0.01, 0.05))], 14)
    s.polygon(
        [(0, between(r, 0.6, 0.8)), (0.3, 0.7), (0.6, between(r, 0.65, 0.8)), (1, 0.72), (1, 1), (0, 1)],
        hsv(r, (0, 360), (0.1, 0.4), (0.02, 0.15)),
    )
    return s, False


def meal(r):
    s = Sheet(r, hsv(r, (10, 45), (0.05, 0.6), (0.2, 0.95)))
    for _ in range(int(r.integers(1, 4))):
        x, y, q = between(r, 0.2, 0.8), between(r, 0.3, 0.8), between(r, 0.12, 0.35)
        s.disc(x, y, q, np.float32(0.93), 0.8)
        for _ in range(20):
            s.disc(
                x + between(r, -0.6, 0.6) * q,
                y + between(r, -0.4, 0.4) * q,
                q * between(r, 0.08, 0.25),
                hsv(r, pick(r, [(0, 45), (70, 110)]), (0.4, 0.9), (0.3, 0.9)),
            )
    return s, False


SCENES = {
    "sandy beach": beach,
    "open water": water,
    "swimming pool": pool,
    "snow": snow,
    "forest": forest,
    "mountains": mountains,
    "meadow": meadow,
    "city street": street,
    "city at night": night_city,
    "fireworks": fireworks,
    "stage lights": stage,
    "candles in the dark": candles,
    "christmas tree": christmas_tree,
    "sports pitch": pitch,
}

OTHERS = [
    kitchen,
    desk,
    wall,
    face,
    face,
    page,
    blossom,
    pet,
    room,
    room,
    lamps,
    lamps,
    car_park,
    lawn,
    lawn,
    grain,
    blank,
    clouds,
    dusk,
    meal,
]

LABELS = ["something else"] + list(SCENES)


def draw(r, label):
    """A picture of a label, and whether it is night there."""
    return (SCENES[label] if label in SCENES else pick(r, OTHERS))(r)


def paint(r, label):
    """One finished picture of a label."""
    return camera(*draw(r, label))
