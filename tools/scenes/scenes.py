"""The painters of the training pictures: one function for each scene, and many for the pictures that show none of them."""

import math

import numpy as np
from PIL import Image, ImageDraw

from canvas import (
    Canvas,
    any_color,
    between,
    building,
    camera,
    car,
    chance,
    clutter,
    conifer,
    crown,
    figure,
    hsv,
    people,
    pick,
    portrait,
    skin,
    sky,
    tree,
)


def sea(c, line, low=None):
    """Water below a line, with waves that grow towards the viewer."""
    r = c.r
    far, near = hsv(r, (185, 225), (0.25, 0.9), (0.25, 0.75)), hsv(r, (165, 215), (0.15, 0.8), (0.3, 0.85))
    if chance(r, 0.2):
        far, near = hsv(r, (190, 230), (0.02, 0.25), (0.35, 0.8)), hsv(r, (180, 230), (0.02, 0.25), (0.4, 0.8))
    start = float(np.min(line)) / c.h
    water = c.gradient(far, near, start, 1.0)
    water = water * (1 + between(r, 0.03, 0.25) * (c.noise(int(r.integers(14, 40)), 3, 0.7, between(r, 3, 9))[..., None] - 0.5) * 2)
    c.fill(c.below(line, 0.8), water)


def surf(c, line, width):
    """A line of foam."""
    r = c.r
    n = c.noise(10, 4, 0.7, 2)
    rows = np.arange(c.h, dtype=np.float32)[:, None]
    band = np.clip(1 - np.abs(rows - np.asarray(line)[None, :]) / width, 0, 1)
    c.fill(np.clip(band * 1.6 - n, 0, 1), hsv(r, (0, 360), (0, 0.05), (0.85, 1.0)))


def shore_from_above(r):
    """Sand and water without a horizon."""
    c = Canvas(r)
    sand = hsv(r, (22, 48), (0.12, 0.5), (0.55, 0.98))
    c.a[:] = c.textured(sand, between(r, 0.03, 0.2), int(r.integers(6, 40)), 4)
    t = between(r, 0, 2 * math.pi)
    x, y = np.linspace(-1, 1, c.w)[None, :], np.linspace(-1, 1, c.h)[:, None]
    away = x * math.cos(t) + y * math.sin(t) - between(r, -0.4, 0.5) + between(r, 0.02, 0.3) * (c.noise(4, 4) - 0.5)
    far = hsv(r, (170, 215), (0.25, 0.9), (0.25, 0.75))
    near = hsv(r, (165, 205), (0.1, 0.6), (0.5, 0.85))
    depth = np.clip(away * between(r, 0.7, 3), 0, 1)[..., None]
    c.fill(np.clip((away + 0.12) * 12, 0, 1) * 0.8, sand * between(r, 0.65, 0.9))
    c.fill(np.clip(away * 30, 0, 1), (near + depth * (far - near)) * (1 + between(r, 0.02, 0.15) * (c.noise(24, 3)[..., None] - 0.5)))
    foam = np.clip(1 - np.abs(away - between(r, 0.0, 0.05)) / between(r, 0.03, 0.12), 0, 1)
    for _ in range(int(r.integers(0, 3))):
        foam = np.maximum(foam, np.clip(1 - np.abs(away - between(r, 0.05, 0.5)) / between(r, 0.02, 0.08), 0, 1))
    c.fill(np.clip(foam * 1.7 - c.noise(14, 4, 0.8) * between(r, 0.3, 1), 0, 1), np.float32(between(r, 0.85, 1)))
    people(c, 2, (0.6, 1.1), (0.05, 0.3))
    return c, False


def beach(r):
    if chance(r, 0.15):
        return shore_from_above(r)
    c = Canvas(r)
    sand = hsv(r, (26, 48), (0.1, 0.5), (0.55, 0.98))
    wet = sand * between(r, 0.6, 0.9)
    c.a[:] = sky(c, pick(r, ["blue", "blue", "clouds", "pale", "grey", "evening"]))
    horizon = c.horizon(0.08, 0.55)
    if chance(r, 0.3):
        c.fill(
            c.below(c.ridge(1 - float(horizon[0]) / c.h * 1.0, 0.12), 1) * (1 - c.below(horizon, 1)),
            hsv(r, (90, 220), (0.1, 0.4), (0.3, 0.7)),
        )
    sea(c, horizon)
    slope = between(r, -0.35, 0.35) * c.h
    start = float(horizon[0]) + between(r, 0.03, 0.35) * c.h
    x = np.linspace(-0.5, 0.5, c.w)
    shore = start + slope * x + 0.02 * c.h * np.sin(x * between(r, 3, 14) + between(r, 0, 6))
    if chance(r, 0.2):
        shore = np.full(c.w, float(horizon[0]))  # wide sand up to the horizon, the water a thin strip above it
        c.fill(
            c.below(horizon - c.h * between(r, 0.02, 0.08), 0.8) * (1 - c.below(horizon, 0.8)), hsv(r, (180, 220), (0.2, 0.8), (0.3, 0.8))
        )
    shore = np.maximum(shore, horizon)
    beach_mask = c.below(shore, between(r, 1, 5))
    c.fill(beach_mask, c.textured(sand, between(r, 0.04, 0.3), int(r.integers(6, 40)), 4, between(r, 1, 4)))
    c.fill(beach_mask * (1 - c.below(shore + c.h * between(r, 0.02, 0.12), 6)), wet)
    surf(c, shore, c.h * between(r, 0.01, 0.07))
    for _ in range(int(r.integers(0, 4))):
        surf(c, horizon + (shore - horizon) * between(r, 0.3, 1.0), c.h * between(r, 0.005, 0.03))
    if chance(r, 0.35):
        for _ in range(int(r.integers(1, 9))):
            x, y, s = c.w * between(r, 0, 1), float(shore.max()) + c.h * between(r, 0.02, 0.3), c.w * between(r, 0.03, 0.2)
            c.shape(lambda d: d.line([(x, y), (x, y - s)], fill=255, width=1), hsv(r, (0, 60), (0, 0.3), (0.3, 0.9)))
            c.shape(lambda d: d.chord([x - s * 0.6, y - s * 1.3, x + s * 0.6, y - s * 0.6], 180, 360, fill=255), any_color(r))
    if chance(r, 0.2):
        for _ in range(int(r.integers(1, 4))):
            x, y, s = c.w * between(r, 0, 1), c.h * between(r, 0.5, 0.9), c.h * between(r, 0.3, 0.6)
            c.shape(
                lambda d: d.line([(x, y), (x + s * between(r, -0.2, 0.2), y - s)], fill=255, width=max(1, int(s * 0.05))),
                hsv(r, (20, 40), (0.2, 0.5), (0.2, 0.5)),
            )
            for _ in range(9):
                t = between(r, 0, 2 * math.pi)
                c.shape(
                    lambda d: d.line([(x, y - s), (x + math.cos(t) * s * 0.4, y - s + math.sin(t) * s * 0.25 + 4)], fill=255, width=3),
                    hsv(r, (80, 140), (0.3, 0.8), (0.15, 0.5)),
                )
    people(c, 5, (0.55, 1.2), (0.06, 0.7))
    if chance(r, 0.3):
        clutter(c, 3)
    return c, False


def water(r):
    c = Canvas(r)
    c.a[:] = sky(c, pick(r, ["blue", "clouds", "pale", "grey", "evening", "blue"]))
    horizon = c.horizon(0.15, 0.75)
    kind = int(r.integers(3))
    if kind > 0:
        land = hsv(r, (60, 230), (0.05, 0.5), (0.15, 0.65))
        line = c.ridge(1 - float(horizon[0]) / c.h - between(r, -0.01, 0.06), between(r, 0.02, 0.16))
        c.fill(c.below(line, 1), c.textured(land, 0.3, 14))
        if kind == 2:
            for _ in range(int(r.integers(2, 14))):
                x, w = c.w * between(r, 0, 1), c.w * between(r, 0.01, 0.06)
                c.shape(
                    lambda d: d.rectangle([x, float(horizon[0]) - c.h * between(r, 0.01, 0.08), x + w, float(horizon[0])], fill=255),
                    hsv(r, (0, 60), (0, 0.4), (0.4, 0.95)),
                )
    sea(c, horizon)
    for _ in range(int(r.integers(0, 5))):
        x, y = c.w * between(r, 0, 1), float(horizon[0]) + c.h * between(r, 0.0, 0.2)
        s = c.w * between(r, 0.02, 0.18)
        hull = any_color(r)
        c.fill(c.polygon([(x - s, y), (x + s, y), (x + s * 0.8, y + s * 0.3), (x - s * 0.8, y + s * 0.3)]), hull)
        if chance(r, 0.6):
            c.fill(c.polygon([(x, y), (x, y - s * between(r, 1, 2.2)), (x + s * 0.8, y)]), hsv(r, (0, 360), (0, 0.3), (0.7, 1)))
    if chance(r, 0.3):
        y = c.h * between(r, 0.75, 0.95)
        c.shape(lambda d: d.rectangle([0, y, c.w, y + c.h * between(r, 0.01, 0.04)], fill=255), hsv(r, (0, 60), (0, 0.3), (0.1, 0.95)))
    people(c, 2, (0.9, 1.3), (0.3, 0.9))
    return c, False


def pool(r):
    c = Canvas(r)
    deck = hsv(r, (10, 50), (0.02, 0.4), (0.5, 0.98))
    c.a[:] = c.textured(deck, 0.12, 20)
    top = between(r, 0.0, 0.5)
    if top > 0.15:
        c.fill(
            1 - c.below(c.h * top, 1), sky(c, "blue") if chance(r, 0.5) else c.textured(hsv(r, (70, 140), (0.2, 0.8), (0.15, 0.6)), 0.6, 16)
        )
        for _ in range(int(r.integers(0, 4))):
            if chance(r, 0.5):
                tree(c, c.w * between(r, 0, 1), c.h * top, c.h * between(r, 0.15, 0.5))
            else:
                x = c.w * between(r, 0, 1)
                building(c, x, x + c.w * between(r, 0.2, 0.6), c.h * (top - between(r, 0.1, 0.4)), c.h * top)
    blue = hsv(r, (176, 205), (0.45, 0.95), (0.6, 0.98))
    deep = hsv(r, (185, 215), (0.5, 0.95), (0.4, 0.9))
    y0, y1 = c.h * (top + between(r, 0.02, 0.25)), c.h * between(r, 0.75, 1.3)
    points = [
        (c.w * between(r, -0.2, 0.45), y0),
        (c.w * between(r, 0.55, 1.2), y0 + c.h * between(r, -0.03, 0.06)),
        (c.w * between(r, 0.8, 1.5), y1),
        (c.w * between(r, -0.6, 0.2), y1),
    ]
    basin = c.polygon(points)
    net = np.abs(c.noise(int(r.integers(10, 24)), 2, 0.5, 1.5) - 0.5)
    caustics = np.clip(1 - net * between(r, 8, 18), 0, 1)[..., None] * between(r, 0, 0.5)
    picture = c.gradient(deep, blue, top, 1.0)
    c.fill(c.polygon([(x + (3 if x > c.w / 2 else -3), y - 2) for x, y in points]), deck * 1.1)
    c.fill(basin, picture + caustics * (1 - picture))
    if chance(r, 0.3):
        for i in range(5):
            x = c.w * i / 4
            c.fill(
                basin * c.mask(lambda d: d.line([(c.w / 2 + (x - c.w / 2) * 0.4, y0), (x, c.h)], fill=255, width=2)),
                pick(r, [deep * 0.5, np.array([0.9, 0.1, 0.1])]),
            )
    people(c, 4, (0.6, 1.2), (0.1, 0.6))
    clutter(c, 2)
    return c, False


def snowy_wood(r):
    """Trunks and their shadows on snow, little sky, and often under-exposed as cameras do."""
    c = Canvas(r)
    dim = between(r, 0.6, 1.0)
    white, blue = hsv(r, (190, 240), (0.0, 0.1), (0.85, 1.0)) * dim, hsv(r, (205, 240), (0.05, 0.35), (0.5, 0.8)) * dim
    wood = hsv(r, (20, 120), (0.02, 0.3), (0.08, 0.35))
    c.a[:] = c.textured(wood, 0.6, 14)
    c.fill(np.clip((c.noise(14, 4, 0.8) - 0.45) * 4, 0, 1), white * between(r, 0.6, 1))
    line = c.ridge(between(r, 0.4, 0.75), 0.1, 0.4)
    c.fill(c.below(line, 3), blue + c.noise(int(r.integers(3, 9)), 4, 0.6, between(r, 1, 3))[..., None] * (white - blue))
    slant = between(r, -1, 1) * c.w
    for _ in range(int(r.integers(3, 18))):
        x, w, foot = c.w * between(r, 0, 1), max(1, int(c.w * between(r, 0.006, 0.07))), c.h * between(r, 0.4, 0.9)
        if chance(r, 0.6):
            c.fill(
                c.below(line, 3) * 0.6 * c.mask(lambda d: d.line([(x, foot), (x + slant, foot + c.h * 0.3)], fill=255, width=w), 0.6),
                blue * 0.9,
            )
        c.shape(
            lambda d: d.line([(x, foot), (x + between(r, -0.03, 0.03) * c.w, 0)], fill=255, width=w),
            c.textured(wood * between(r, 0.6, 1.6), 0.4, 14, 3, 0.4),
        )
    if chance(r, 0.4):
        for _ in range(int(r.integers(2, 12))):
            x = c.w * between(r, 0, 1)
            conifer(c, x, c.h * between(r, 0.4, 0.8), c.h * between(r, 0.1, 0.6), wood * 0.8)
    people(c, 2, (0.7, 1.1), (0.2, 0.6))
    return c, False


def snow(r):
    if chance(r, 0.22):
        return snowy_wood(r)
    c = Canvas(r)
    mood = pick(r, ["blue", "blue", "pale", "grey", "clouds"])
    c.a[:] = sky(c, mood)
    shade = hsv(r, (200, 240), (0.02, 0.3), (0.55, 0.9))
    white = hsv(r, (180, 240), (0.0, 0.07), (0.85, 1.0))
    horizon = between(r, 0.1, 0.6)
    if chance(r, 0.55):
        line = c.ridge(1 - horizon + between(r, 0, 0.1), between(r, 0.1, 0.4), between(r, 0.45, 0.6))
        n = c.noise(int(r.integers(5, 14)), 5, 0.75)
        rock = hsv(r, (200, 260), (0.02, 0.3), (0.2, 0.5))
        picture = white + np.clip((n - between(r, 0.3, 0.7)) * 6, 0, 1)[..., None] * (rock - white)
        c.fill(c.below(line, 1), picture)
    line = c.ridge(1 - horizon, between(r, 0.02, 0.25), 0.35)
    ground = shade + c.noise(int(r.integers(2, 8)), 4, 0.5, between(r, 1, 3))[..., None] ** between(r, 0.4, 1.3) * (white - shade)
    trees = hsv(r, (90, 170), (0.05, 0.5), (0.05, 0.3))
    if chance(r, 0.6):
        far = line - c.h * between(r, 0.0, 0.05)
        for _ in range(int(r.integers(3, 60))):
            x = int(c.w * between(r, 0, 0.999))
            conifer(c, x, float(far[x]) + c.h * between(r, 0, 0.06), c.h * between(r, 0.04, 0.2), trees * between(r, 0.7, 1.5))
    c.fill(c.below(line, 1.5), ground)
    for _ in range(int(r.integers(0, 9))):
        x, height = c.w * between(r, 0, 1), c.h * between(r, 0.15, 0.8)
        foot = max(float(line[int(min(x, c.w - 1))]) + 3, c.h * between(r, 0.4, 1.0))
        if chance(r, 0.5):
            conifer(c, x, foot, height, trees)
            if chance(r, 0.5):
                c.fill(
                    c.mask(
                        lambda d: d.ellipse([x - height * 0.12, foot - height * 0.7, x + height * 0.12, foot - height * 0.3], fill=255), 2
                    )
                    * (c.noise(16, 2) > 0.5),
                    white,
                )
        else:
            c.shape(
                lambda d: d.line(
                    [(x, foot), (x + between(r, -0.1, 0.1) * height, foot - height)],
                    fill=255,
                    width=max(1, int(height * between(r, 0.02, 0.12))),
                ),
                hsv(r, (10, 50), (0.05, 0.4), (0.1, 0.45)),
            )
    if chance(r, 0.4):
        for _ in range(int(r.integers(1, 6))):
            x0, x1 = c.w * between(r, 0, 1), c.w * between(r, 0, 1)
            c.shape(lambda d: d.line([(x0, c.h), (x1, c.h * horizon)], fill=140, width=int(r.integers(1, 4))), shade * 0.85, 1)
    people(c, 4, (0.55, 1.15), (0.08, 0.7))
    if chance(r, 0.3):
        flakes = (c.r.random((c.h, c.w)) > between(r, 0.97, 0.995)).astype(np.float32)
        c.fill(flakes, np.float32(1.0))
    return c, False


def forest(r):
    c = Canvas(r)
    autumn = chance(r, 0.25)
    hue = (15, 60) if autumn else (60, 140)
    back = hsv(r, hue, (0.15, 0.8), (0.15, 0.6))
    light = hsv(r, (50, 110), (0.05, 0.5), (0.6, 1.0))
    n = c.noise(int(r.integers(10, 30)), 4, 0.8)
    c.a[:] = back * (0.35 + 1.1 * n[..., None])
    gaps = np.clip((c.noise(int(r.integers(6, 16)), 4, 0.8) - between(r, 0.5, 0.85)) * 5, 0, 1)
    gaps *= np.clip(1.2 - np.linspace(0, 1, c.h)[:, None] * between(r, 1.0, 2.5), 0, 1)
    c.fill(gaps, light)
    floor = between(r, 0.5, 0.95)
    ground = c.textured(hsv(r, (20, 110), (0.15, 0.7), (0.1, 0.5)), 0.6, 20, 4, 2)
    c.fill(c.below(c.horizon(floor - 0.02, floor + 0.02, 0.05), 6), ground)
    if chance(r, 0.5):
        x, top = c.w * between(r, 0.2, 0.8), c.h * floor
        path = c.polygon([(x - 2, top), (x + 3, top), (c.w * between(r, 0.5, 1.1), c.h), (c.w * between(r, -0.1, 0.45), c.h)], 2)
        c.fill(path, c.textured(hsv(r, (20, 45), (0.1, 0.5), (0.3, 0.75)), 0.3, 20))
    order = sorted(r.random(int(r.integers(4, 40))))
    bark = hsv(r, (10, 50), (0.03, 0.5), (0.05, 0.4))
    for depth in order:
        x, width = c.w * between(r, -0.05, 1.05), max(1.0, c.w * (0.004 + 0.07 * depth**3))
        foot = c.h * (floor + (1.05 - floor) * depth)
        top = 0 if chance(r, 0.85) else c.h * between(r, 0, 0.5)
        lean = between(r, -0.06, 0.06) * c.w
        trunk = c.polygon([(x - width / 2, foot), (x + width / 2, foot), (x + lean + width * 0.35, top), (x + lean - width * 0.35, top)])
        tone = bark * between(r, 0.6, 1.4) + (1 - depth) * 0.4 * (back - bark)
        c.fill(trunk, c.textured(tone, 0.35, 14, 3, 0.3))
    for _ in range(int(r.integers(0, 14))):
        crown(c, c.w * between(r, 0, 1), c.h * between(r, -0.05, 0.6), c.h * between(r, 0.08, 0.3), hsv(r, hue, (0.3, 0.9), (0.15, 0.75)))
    for _ in range(int(r.integers(0, 8))):
        crown(c, c.w * between(r, 0, 1), c.h * between(r, 0.75, 1.05), c.h * between(r, 0.05, 0.2), hsv(r, hue, (0.3, 0.9), (0.1, 0.6)))
    people(c, 2, (0.75, 1.1), (0.1, 0.6))
    return c, False


def mountains(r):
    c = Canvas(r)
    c.a[:] = sky(c)
    base = between(r, 0.2, 0.55)
    layers = int(r.integers(1, 5))
    rock = hsv(r, (190, 250), (0.05, 0.35), (0.35, 0.75)) if chance(r, 0.6) else hsv(r, (15, 50), (0.05, 0.4), (0.3, 0.7))
    green = hsv(r, (50, 130), (0.2, 0.8), (0.2, 0.65))
    for i in range(layers):
        t = (i + 1) / layers
        line = c.ridge(1 - base - 0.02 - 0.3 * t, between(r, 0.15, 0.6) * (1.3 - 0.7 * t), between(r, 0.4, 0.62))
        tone = rock + t * between(r, 0.0, 0.7) * (green - rock)
        tone = tone + (1 - t) * between(r, 0, 0.6) * (c.a[int(c.h * base * 0.5)].mean(axis=0) - tone)
        picture = c.textured(tone, between(r, 0.2, 0.6), int(r.integers(5, 14)), 5, between(r, 0.5, 1.5))
        if i < layers - 1 and chance(r, 0.3):
            snowline = c.h * (base - between(r, 0, 0.1)) + 20 * (c.noise(6, 4) - 0.5)
            high = np.clip((snowline - np.arange(c.h, dtype=np.float32)[:, None]) / 4, 0, 1)
            picture = picture + (high * (c.noise(9, 4, 0.8) > 0.4))[..., None] * (0.95 - picture)
        c.fill(c.below(line, 1), picture)
    line = c.ridge(between(r, 0.1, 0.45), between(r, 0.03, 0.2), 0.4)
    ground = c.textured(pick(r, [green, green, hsv(r, (25, 60), (0.1, 0.6), (0.3, 0.7))]), between(r, 0.15, 0.5), 24, 5, 2)
    c.fill(c.below(line, 1), ground)
    if chance(r, 0.4):
        for _ in range(int(r.integers(2, 40))):
            x = int(c.w * between(r, 0, 0.999))
            conifer(c, x, float(line[x]) + c.h * between(r, 0, 0.15), c.h * between(r, 0.04, 0.2), green * between(r, 0.2, 0.6))
    if chance(r, 0.4):
        x = c.w * between(r, 0.2, 0.8)
        top = float(line[int(min(x, c.w - 1))])
        c.fill(
            c.polygon([(x - 1, top), (x + 2, top), (c.w * between(r, 0.4, 0.9), c.h), (c.w * between(r, 0, 0.4), c.h)], 1),
            c.textured(hsv(r, (20, 45), (0.1, 0.4), (0.5, 0.85)), 0.2),
        )
    people(c, 3, (0.7, 1.2), (0.1, 0.7))
    return c, False


def meadow(r):
    c = Canvas(r)
    c.a[:] = sky(c)
    green = hsv(r, (50, 125), (0.25, 0.85), (0.3, 0.8))
    base = between(r, 0.3, 0.7)
    for i in range(int(r.integers(1, 4))):
        line = c.ridge(1 - base + 0.1 - i * 0.12, between(r, 0.02, 0.15), 0.3)
        field = hsv(r, (40, 130), (0.2, 0.8), (0.3, 0.8)) if i else hsv(r, (80, 210), (0.1, 0.5), (0.25, 0.6))
        c.fill(c.below(line, 1), c.textured(field, between(r, 0.1, 0.4), 16, 4, between(r, 1, 5)))
        for _ in range(int(r.integers(0, 12))):
            x = int(c.w * between(r, 0, 0.999))
            tree(c, x, float(line[x]) + 2, c.h * between(r, 0.04, 0.25))
    line = c.ridge(between(r, 0.15, 0.5), 0.05, 0.3)
    c.fill(c.below(line, 2), c.textured(green, between(r, 0.2, 0.6), 26, 4, between(r, 0.5, 2)))
    if chance(r, 0.3):
        dots = (c.noise(40, 1) > 0.8) * c.below(line, 2)
        c.fill(dots, hsv(r, (0, 360), (0.3, 0.9), (0.7, 1)))
    people(c, 3, (0.7, 1.2), (0.1, 0.7))
    return c, False


def alley(r):
    """High old walls to both sides, a strip of sky, a bright or dark end."""
    c = Canvas(r)
    c.a[:] = sky(c, pick(r, ["blue", "pale", "grey", "pale"]))
    vx, vy = c.w * between(r, 0.25, 0.75), c.h * between(r, 0.45, 0.75)
    c.fill(c.below(vy, 1), c.textured(hsv(r, (0, 50), (0, 0.25), (0.25, 0.65)), 0.25, 24, 3, 2))
    dim = between(r, 0.5, 1.0)
    for side in (-1, 1):
        near = vx + side * c.w * between(r, 0.02, 0.12)
        height = between(r, 1.5, 5.0)
        while 0 < near < c.w:
            edge = vx + (near - vx) * between(r, 1.3, 2.6)
            d0, d1 = abs(near - vx), abs(edge - vx)
            h = height * between(r, 0.75, 1.3)
            wall = hsv(r, (8, 50), (0.05, 0.6), (0.3, 0.95)) * dim * (0.75 if side > 0 else 1.0)
            picture = c.textured(wall, between(r, 0.1, 0.4), int(r.integers(8, 24)), 5)
            c.fill(c.polygon([(near, vy - h * d0), (edge, vy - h * d1), (edge, vy + 0.5 * d1 + 2), (near, vy + 0.5 * d0 + 2)]), picture)
            for _ in range(int(r.integers(0, 10))):
                t, u, w, v = between(r, 0.05, 0.85), between(r, 0.0, 0.9), between(r, 0.05, 0.15), between(r, 0.06, 0.2)
                xa, xb = near + (edge - near) * t, near + (edge - near) * (t + w)
                da, db = abs(xa - vx), abs(xb - vx)
                tone = pick(r, [wall * 0.35, hsv(r, (80, 150), (0.2, 0.6), (0.15, 0.4)), hsv(r, (10, 40), (0.3, 0.7), (0.15, 0.4))])
                c.fill(
                    c.polygon([(xa, vy - h * da * u), (xb, vy - h * db * u), (xb, vy - h * db * (u + v)), (xa, vy - h * da * (u + v))]),
                    tone,
                )
            near = edge
    if chance(r, 0.6):
        w = c.w * between(r, 0.04, 0.16)
        building(c, vx - w, vx + w, vy - c.h * between(r, 0.1, 0.5), vy + 2, hsv(r, (10, 50), (0.05, 0.5), (0.4, 0.9)) * dim)
    for _ in range(int(r.integers(0, 3))):
        car(c, c.w * between(r, 0, 1), c.h * between(r, 0.75, 0.98), c.w * between(r, 0.15, 0.4))
    people(c, 5, (0.65, 1.05), (0.08, 0.5))
    return c, False


def square(r):
    """A church or a town hall behind an open place, trees and lamps before it."""
    c = Canvas(r)
    c.a[:] = sky(c, pick(r, ["blue", "pale", "grey", "clouds"]))
    foot = c.h * between(r, 0.5, 0.75)
    stone = hsv(r, (15, 50), (0.05, 0.45), (0.35, 0.85))
    x = -c.w * between(r, 0, 0.2)
    while x < c.w:
        w = c.w * between(r, 0.15, 0.5)
        top = foot - c.h * between(r, 0.2, 0.65)
        wall = stone * between(r, 0.8, 1.15)
        building(c, x, x + w, top, foot, wall)
        kind = int(r.integers(4))
        if kind == 0:
            c.fill(c.polygon([(x, top), (x + w / 2, top - c.h * between(r, 0.05, 0.2)), (x + w, top)]), wall)
        elif kind == 1:
            t = x + w * between(r, 0.2, 0.8)
            building(c, t - c.w * 0.05, t + c.w * 0.05, top - c.h * between(r, 0.1, 0.35), foot, wall * 0.95)
        elif kind == 2:
            c.fill(
                c.polygon([(x, top), (x + w * 0.1, top - c.h * 0.08), (x + w * 0.9, top - c.h * 0.08), (x + w, top)]),
                hsv(r, (0, 35), (0.3, 0.7), (0.25, 0.6)),
            )
        x += w * between(r, 0.95, 1.2)
    c.fill(c.below(foot, 1), c.textured(hsv(r, (0, 50), (0, 0.4), (0.3, 0.75)), 0.2, 24, 3, 3))
    for _ in range(int(r.integers(0, 5))):
        tree(c, c.w * between(r, 0, 1), foot + c.h * between(r, 0, 0.15), c.h * between(r, 0.2, 0.6))
    for _ in range(int(r.integers(0, 4))):
        car(c, c.w * between(r, 0, 1), foot + c.h * between(r, 0.02, 0.2), c.w * between(r, 0.1, 0.3))
    people(c, 8, (0.65, 1.05), (0.06, 0.4))
    return c, False


def street(r):
    kind = r.random()
    if kind < 0.25:
        return alley(r)
    if kind < 0.45:
        return square(r)
    c = Canvas(r)
    c.a[:] = sky(c, pick(r, ["blue", "pale", "grey", "clouds", "pale"]))
    vx, vy = c.w * between(r, 0.2, 0.8), c.h * between(r, 0.4, 0.68)
    paving = c.textured(hsv(r, (0, 60), (0, 0.25), (0.3, 0.75)), between(r, 0.05, 0.3), 24, 3, 2)
    c.fill(c.below(vy, 1), paving)
    if chance(r, 0.25):
        # A skyline or a row of houses across a square.
        x = -c.w * 0.1
        while x < c.w:
            w = c.w * between(r, 0.07, 0.4)
            building(c, x, x + w, c.h * between(r, 0.02, 0.45), vy + c.h * between(r, 0, 0.12))
            x += w
    else:
        for side in (-1, 1):
            if chance(r, 0.08):
                continue
            distance = between(r, 0.03, 0.1)
            walls = []
            edge = vx + side * c.w * distance
            while 0 < edge < c.w or not walls:
                nxt = vx + (edge - vx) * between(r, 1.25, 2.4)
                walls.append((edge, nxt))
                edge = nxt
            roof = between(r, 0.6, 2.2)
            for near0, near1 in walls:
                roof_here = roof * between(r, 0.8, 1.25)
                foot = between(r, 0.25, 0.4)
                wall = hsv(r, (0, 55), (0.02, 0.55), (0.3, 0.95))
                d0, d1 = abs(near0 - vx), abs(near1 - vx)

                def at(d, height):
                    return vy - height * d * 0.9 if height > 0 else vy + (-height) * d

                quad = [(near0, at(d0, roof_here)), (near1, at(d1, roof_here)), (near1, at(d1, -foot)), (near0, at(d0, -foot))]
                c.fill(c.polygon(quad), c.textured(wall, between(r, 0.05, 0.3), 16, 4))
                rows, columns = int(r.integers(2, 6)), int(r.integers(1, 5))
                glass = hsv(r, (180, 260), (0, 0.4), (0.05, 0.5)) if chance(r, 0.7) else wall * 0.5
                image = Image.new("L", (c.w, c.h), 0)
                draw = ImageDraw.Draw(image)
                for i in range(columns):
                    xa, xb = near0 + (near1 - near0) * (i + 0.25) / columns, near0 + (near1 - near0) * (i + 0.7) / columns
                    for j in range(rows):
                        ha, hb = roof_here * (j + 0.3) / rows, roof_here * (j + 0.78) / rows
                        draw.polygon(
                            [
                                (xa, at(abs(xa - vx), ha)),
                                (xb, at(abs(xb - vx), ha)),
                                (xb, at(abs(xb - vx), hb)),
                                (xa, at(abs(xa - vx), hb)),
                            ],
                            fill=255,
                        )
                c.fill(np.asarray(image, dtype=np.float32) / 255, glass)
                if chance(r, 0.3):
                    c.fill(
                        c.polygon(
                            [
                                (near0, at(d0, roof_here)),
                                (near1, at(d1, roof_here)),
                                (near1, at(d1, roof_here * 1.12)),
                                (near0, at(d0, roof_here * 1.12)),
                            ]
                        ),
                        hsv(r, (0, 40), (0.2, 0.7), (0.2, 0.6)),
                    )
        if chance(r, 0.5):
            w = c.w * between(r, 0.05, 0.2)
            building(c, vx - w, vx + w, vy - c.h * between(r, 0.1, 0.4), vy + 2)
    if chance(r, 0.5):
        road = c.polygon([(vx - 1, vy), (vx + 1, vy), (c.w * between(r, 0.6, 1.3), c.h), (c.w * between(r, -0.3, 0.4), c.h)])
        c.fill(road, c.textured(hsv(r, (0, 360), (0, 0.08), (0.2, 0.5)), 0.12, 20))
    for _ in range(int(r.integers(0, 6))):
        t = between(r, 0.05, 0.9)
        car(c, c.w * between(r, 0, 1), vy + (c.h - vy) * t + 3, c.w * (0.05 + 0.3 * t))
    for _ in range(int(r.integers(0, 4))):
        if chance(r, 0.4):
            tree(c, c.w * between(r, 0, 1), c.h * between(r, 0.6, 0.85), c.h * between(r, 0.15, 0.5))
        else:
            x = c.w * between(r, 0, 1)
            c.shape(
                lambda d: d.line([(x, c.h * between(r, 0.7, 1.0)), (x, c.h * between(r, 0.1, 0.5))], fill=255, width=2),
                hsv(r, (0, 360), (0, 0.2), (0.05, 0.3)),
            )
    people(c, 7, (0.6, 1.1), (0.06, 0.55))
    return c, False


def night_city(r):
    c = Canvas(r)
    top, bottom = hsv(r, (205, 275), (0.2, 0.9), (0.0, 0.35)), hsv(r, (0, 280), (0.2, 0.8), (0.02, 0.5))
    c.a[:] = c.gradient(top, bottom, 0, 0.7)
    base = c.h * between(r, 0.5, 0.9)
    for depth in range(int(r.integers(1, 4))):
        x = -c.w * between(r, 0, 0.1)
        while x < c.w:
            w = c.w * between(r, 0.04, 0.25)
            building(
                c,
                x,
                x + w,
                base - c.h * between(r, 0.05, 0.65 - 0.1 * depth),
                base + c.h * 0.05 * depth,
                hsv(r, (0, 280), (0.05, 0.5), (0.02, 0.25)),
                between(r, 0.15, 0.7),
            )
            x += w * between(r, 0.9, 1.4)
    ground = c.textured(hsv(r, (0, 280), (0, 0.4), (0.02, 0.2)), 0.4, 20, 3, 4)
    c.fill(c.below(base, 2), ground)
    if chance(r, 0.5):
        mirror = c.a[: int(base)][::-1]
        rows = min(len(mirror), c.h - int(base))
        n = c.noise(20, 3, 0.7, 8)[-rows:, :, None] if rows else 0
        c.a[int(base) : int(base) + rows] += between(r, 0.3, 0.9) * mirror[:rows] * n
    for _ in range(int(r.integers(3, 40))):
        y = base + abs(r.normal(0, 0.12)) * c.h * (1 if chance(r, 0.7) else -1)
        c.glow(
            c.w * between(r, 0, 1),
            y,
            between(r, 0.7, 4),
            hsv(r, pick(r, [(20, 60), (20, 60), (0, 20), (100, 240)]), (0.1, 0.8), (0.8, 1.0)),
            between(r, 0.5, 1.6),
        )
    people(c, 3, (0.8, 1.2), (0.1, 0.6), dark=True)
    return c, True


def fireworks(r):
    c = Canvas(r)
    c.a[:] = c.gradient(hsv(r, (200, 280), (0.1, 0.9), (0.0, 0.12)), hsv(r, (0, 360), (0.1, 0.7), (0.0, 0.2)))
    for _ in range(int(r.integers(1, 7))):
        x, y = c.w * between(r, 0.1, 0.9), c.h * between(r, 0.08, 0.65)
        size = min(c.w, c.h) * between(r, 0.08, 0.5)
        color = hsv(r, (0, 360), (0.1, 0.95), (0.8, 1.0))
        second = hsv(r, (0, 360), (0.0, 0.9), (0.8, 1.0)) if chance(r, 0.4) else color
        rays = int(r.integers(14, 90))
        trails = chance(r, 0.75)
        fall = between(r, 0, 0.3)
        image = Image.new("L", (c.w, c.h), 0)
        draw = ImageDraw.Draw(image)
        for _ in range(rays):
            t, reach = between(r, 0, 2 * math.pi), size * between(r, 0.4, 1.0)
            start = between(r, 0.0, 0.6)
            points = []
            for s in np.linspace(start, 1, 5):
                points.append((x + math.cos(t) * reach * s, y + math.sin(t) * reach * s + fall * reach * s * s))
            if trails:
                draw.line(points, fill=int(r.integers(90, 256)), width=1 if chance(r, 0.75) else 2)
            c.glow(*points[-1], between(r, 0.5, 1.5), second, between(r, 0.4, 1.4))
        mask = np.asarray(image, dtype=np.float32) / 255
        c.add(mask[..., None] * color * between(r, 0.6, 1.4))
        if chance(r, 0.6):
            c.glow(x, y, size * between(r, 0.15, 0.5), color, between(r, 0.1, 0.7))
        if chance(r, 0.4):
            c.shape(lambda d: d.line([(x + between(r, -9, 9), c.h), (x, y)], fill=160, width=1), color * 0.8)
    if chance(r, 0.4):
        smoke = c.noise(3, 4)[..., None] ** 2
        c.add(smoke * hsv(r, (0, 360), (0, 0.6), (0.05, 0.3)))
    if chance(r, 0.6):
        c.fill(c.below(c.ridge(between(r, 0.02, 0.2), 0.08, 0.6), 1), hsv(r, (0, 360), (0, 0.5), (0.0, 0.08)))
    if chance(r, 0.3):
        base = c.h * between(r, 0.8, 0.95)
        for _ in range(int(r.integers(3, 25))):
            c.glow(
                c.w * between(r, 0, 1),
                base + between(r, -0.04, 0.04) * c.h,
                between(r, 0.6, 1.5),
                hsv(r, (20, 60), (0.2, 0.8), (0.7, 1)),
                between(r, 0.4, 1),
            )
    people(c, 6, (0.95, 1.2), (0.1, 0.4), dark=True)
    return c, True


def stage(r):
    c = Canvas(r)
    hue = between(r, 0, 360)
    c.a[:] = c.gradient(hsv(r, (hue, hue + 40), (0.3, 1), (0.0, 0.25)), hsv(r, (hue - 30, hue + 60), (0.3, 1), (0.02, 0.4)))
    back = c.h * between(r, 0.45, 0.75)
    for _ in range(int(r.integers(2, 11))):
        x, y = c.w * between(r, -0.05, 1.05), c.h * between(r, -0.05, 0.3)
        color = hsv(r, (hue - 60, hue + 60) if chance(r, 0.7) else (0, 360), (0.3, 1.0), (0.6, 1.0))
        t = between(r, 0.15, 0.85) * math.pi
        length, spread = c.h * between(r, 0.5, 1.3), between(r, 0.04, 0.2)
        cone = c.polygon(
            [
                (x, y),
                (x + math.cos(t - spread) * length, y + math.sin(t - spread) * length),
                (x + math.cos(t + spread) * length, y + math.sin(t + spread) * length),
            ],
            between(r, 0.5, 4),
        )
        fade = np.clip(1.1 - np.abs(np.arange(c.h, dtype=np.float32)[:, None] - y) / length, 0, 1)
        c.add((cone * fade)[..., None] * color * between(r, 0.2, 0.8))
        c.glow(x, y, between(r, 1.5, 6), 0.4 + 0.6 * color, between(r, 0.8, 2))
    if chance(r, 0.5):
        for i in range(int(r.integers(4, 16))):
            c.glow(
                c.w * (i + 0.5) / 12,
                c.h * between(r, 0.03, 0.08),
                between(r, 0.8, 2.5),
                hsv(r, (0, 360), (0, 0.9), (0.8, 1)),
                between(r, 0.6, 1.5),
            )
    if chance(r, 0.3):
        x, w = c.w * between(r, 0.2, 0.6), c.w * between(r, 0.1, 0.3)
        c.shape(
            lambda d: d.rectangle([x, back - c.h * 0.3, x + w, back - c.h * 0.08], fill=255),
            c.textured(hsv(r, (0, 360), (0.2, 1), (0.4, 1)), 0.6, 6),
        )
    c.fill(c.below(back, 3) * 0.8, hsv(r, (hue, hue + 60), (0.1, 0.8), (0.0, 0.2)))
    for _ in range(int(r.integers(1, 6))):
        figure(c, c.w * between(r, 0.1, 0.9), back + c.h * 0.04, c.h * between(r, 0.12, 0.45), dark=chance(r, 0.6))
    if chance(r, 0.75):
        y = c.h * between(r, 0.75, 0.98)
        tone = any_color(r) * 0.06
        for _ in range(int(r.integers(8, 40))):
            x, q = c.w * between(r, 0, 1), c.w * between(r, 0.015, 0.06)
            dy = between(r, -0.05, 0.1) * c.h
            c.shape(lambda d: d.ellipse([x - q, y + dy - q * 1.2, x + q, y + dy + q * 1.2], fill=255), tone)
            if chance(r, 0.35):
                c.shape(
                    lambda d: d.line(
                        [(x, y + dy), (x + between(r, -8, 8), y + dy - c.h * between(r, 0.05, 0.2))], fill=255, width=max(1, int(q * 0.6))
                    ),
                    tone,
                )
        c.fill(c.below(y + c.h * 0.06, 3), tone)
    return c, True


def flame(c, x, y, s):
    r = c.r
    c.glow(x, y, s * between(r, 1.5, 4), hsv(r, (20, 38), (0.6, 0.95), (0.8, 1.0)), between(r, 0.15, 0.6))
    c.shape(
        lambda d: d.ellipse([x - s * 0.35, y - s, x + s * 0.35, y + s * 0.5], fill=255), hsv(r, (38, 55), (0.05, 0.5), (0.95, 1.0)), 0.5
    )


def candles(r):
    c = Canvas(r)
    c.a[:] = c.textured(hsv(r, (5, 45), (0.3, 0.9), (0.01, 0.16)), 0.5, 4)
    if chance(r, 0.35):
        for _ in range(int(r.integers(1, 4))):
            portrait(c, between(r, 0.2, 0.5))
        warm = hsv(r, (18, 35), (0.5, 0.8), (0.3, 0.6))
        c.a *= warm
    x, y = c.w * between(r, 0.3, 0.7), c.h * between(r, 0.55, 0.85)
    rx, ry = c.w * between(r, 0.14, 0.42), c.h * between(r, 0.05, 0.16)
    height = c.h * between(r, 0.06, 0.28)
    icing = hsv(r, (0, 360), (0.0, 0.5), (0.35, 0.9)) * hsv(r, (22, 40), (0.2, 0.5), (0.7, 0.9))
    if chance(r, 0.85):
        c.shape(
            lambda d: (
                d.rectangle([x - rx, y, x + rx, y + height], fill=255),
                d.ellipse([x - rx, y + height - ry, x + rx, y + height + ry], fill=255),
            ),
            c.textured(icing * 0.65, 0.25, 10),
        )
        c.shape(lambda d: d.ellipse([x - rx, y - ry, x + rx, y + ry], fill=255), c.textured(icing, 0.2, 12))
        for _ in range(int(r.integers(0, 14))):
            t, q = between(r, 0, 2 * math.pi), rx * between(r, 0.03, 0.1)
            c.shape(
                lambda d: d.ellipse(
                    [
                        x + math.cos(t) * rx * 0.8 - q,
                        y + math.sin(t) * ry * 0.8 - q,
                        x + math.cos(t) * rx * 0.8 + q,
                        y + math.sin(t) * ry * 0.8 + q,
                    ],
                    fill=255,
                ),
                any_color(r) * 0.8,
            )
    for _ in range(int(r.integers(3, 22))):
        t, reach = between(r, 0, 2 * math.pi), math.sqrt(between(r, 0, 1))
        cx, cy = x + math.cos(t) * reach * rx * 0.85, y + math.sin(t) * reach * ry * 0.85
        length, s = c.h * between(r, 0.05, 0.16), c.h * between(r, 0.008, 0.028)
        c.shape(lambda d: d.line([(cx, cy), (cx, cy - length)], fill=255, width=max(1, int(s))), hsv(r, (0, 360), (0.1, 0.7), (0.4, 0.9)))
        flame(c, cx, cy - length - s, s)
    c.glow(x, y - c.h * 0.1, c.h * between(r, 0.15, 0.4), hsv(r, (20, 38), (0.6, 0.9), (0.5, 0.9)), between(r, 0.1, 0.45))
    return c, True


def christmas_tree(r):
    c = Canvas(r)
    dark = chance(r, 0.6)
    room = hsv(r, (10, 55), (0.1, 0.6), (0.02, 0.25) if dark else (0.4, 0.9))
    c.a[:] = c.textured(room, 0.25, 4)
    if not dark and chance(r, 0.5):
        c.fill(c.below(c.h * between(r, 0.7, 0.9), 1), c.textured(hsv(r, (10, 40), (0.2, 0.7), (0.2, 0.7)), 0.3, 8, 3, 4))
    if chance(r, 0.3):
        x = c.w * between(r, 0, 0.8)
        c.shape(lambda d: d.rectangle([x, c.h * 0.1, x + c.w * 0.2, c.h * 0.5], fill=255), hsv(r, (200, 250), (0.1, 0.6), (0.05, 0.6)))
    x, foot = c.w * between(r, 0.25, 0.75), c.h * between(r, 0.85, 1.2)
    height = c.h * between(r, 0.75, 1.3)
    width = height * between(r, 0.24, 0.38)
    green = hsv(r, (90, 165), (0.25, 0.8), (0.06, 0.22) if dark else (0.12, 0.4))
    steps = int(r.integers(5, 12))
    left, right = [], []
    for i in range(steps):
        t0, t1 = i / steps, (i + 1) / steps
        left += [(x - width * t0 * 0.75, foot - height * (1 - t0)), (x - width * t1 * between(r, 0.9, 1.1), foot - height * (1 - t1))]
        right += [(x + width * t0 * 0.75, foot - height * (1 - t0)), (x + width * t1 * between(r, 0.9, 1.1), foot - height * (1 - t1))]
    body = c.polygon(left + right[::-1], 1.0)
    c.fill(body * (0.7 + 0.3 * (c.noise(30, 2) > 0.4)), c.textured(green, 0.7, 24, 3))

    def spot():
        t = math.sqrt(between(r, 0.01, 1))
        return x + between(r, -1, 1) * width * t * 0.85, foot - height * (1 - t)

    ball = hsv(r, (0, 360), (0.5, 1.0), (0.3, 0.9))
    for _ in range(int(r.integers(5, 40))):
        bx, by = spot()
        q = height * between(r, 0.008, 0.026)
        color = ball if chance(r, 0.6) else hsv(r, pick(r, [(350, 370), (40, 55), (200, 240)]), (0.3, 0.95), (0.4, 1.0))
        c.shape(lambda d: d.ellipse([bx - q, by - q, bx + q, by + q], fill=255), color * (0.5 if dark else 1.0))
        c.glow(bx - q * 0.3, by - q * 0.3, q * 0.3, np.float32([1, 1, 1]), 0.5)
    warm = chance(r, 0.75)
    for _ in range(int(r.integers(12, 110))):
        bx, by = spot()
        color = hsv(r, (25, 50), (0.2, 0.8), (0.8, 1.0)) if warm else hsv(r, (0, 360), (0.5, 1.0), (0.8, 1.0))
        c.glow(bx, by, between(r, 0.5, 1.6) * (1.3 if dark else 1), color, between(r, 0.5, 1.5))
        if dark and chance(r, 0.4):
            c.glow(bx, by, between(r, 3, 7), color, between(r, 0.05, 0.2))
    if chance(r, 0.6):
        c.glow(x, foot - height, height * 0.02, hsv(r, (40, 55), (0.1, 0.6), (0.9, 1)), 1.5)
    for _ in range(int(r.integers(0, 6))):
        bx, by, s = x + between(r, -1.3, 1.3) * width, min(foot, c.h) - c.h * between(r, 0, 0.08), c.h * between(r, 0.04, 0.14)
        c.shape(lambda d: d.rectangle([bx - s, by - s, bx + s, by + s * 0.6], fill=255), any_color(r) * (0.35 if dark else 0.9))
    people(c, 2, (1.0, 1.3), (0.4, 0.9), dark=dark)
    return c, dark


def pitch(r):
    c = Canvas(r)
    green = hsv(r, (75, 135), (0.4, 0.9), (0.3, 0.75))
    horizon = c.h * between(r, 0.05, 0.45)
    c.a[:] = sky(c)
    crowd = chance(r, 0.6)
    top = horizon * between(r, 0.1, 0.9)
    if crowd:
        seats = c.noise(50, 1)[..., None]
        c.fill(c.below(top, 1), any_color(r) * 0.6 + 0.6 * (seats - 0.5) * np.stack([c.noise(60, 1) for _ in range(3)], axis=-1))
    else:
        c.fill(c.below(top, 2), c.textured(hsv(r, (70, 140), (0.2, 0.7), (0.1, 0.45)), 0.7, 18))
    if chance(r, 0.6):
        x = 0.0
        y, s = horizon - c.h * between(r, 0.02, 0.06), c.h * between(r, 0.03, 0.07)
        while x < c.w:
            w = c.w * between(r, 0.08, 0.3)
            c.shape(lambda d: d.rectangle([x, y, x + w, y + s], fill=255), any_color(r))
            x += w
    grass = np.broadcast_to(green, c.a.shape) * (1 + between(r, 0.02, 0.12) * (c.noise(30, 3, 0.8, 2)[..., None] - 0.5) * 2)
    vx = c.w * between(r, -0.5, 1.5)
    rows = np.arange(c.h, dtype=np.float32)[:, None] - horizon
    columns = np.arange(c.w, dtype=np.float32)[None, :] - vx
    if chance(r, 0.6):
        if chance(r, 0.5):
            stripes = np.sin(columns / np.maximum(rows + 8, 4) * between(r, 3, 12) * 3)
        else:
            stripes = np.sin(np.sqrt(np.maximum(rows, 0)) * between(r, 1.0, 3.0))
        grass = grass * (1 + between(r, 0.03, 0.14) * np.sign(stripes)[..., None])
    ground = c.below(horizon, 1)
    c.fill(ground, grass)
    white = np.float32([0.92, 0.95, 0.9])

    def line(a, b, width):
        c.fill(ground * c.mask(lambda d: d.line([a, b], fill=255, width=width), 0.4) * 0.9, white)

    for _ in range(int(r.integers(1, 5))):
        y = horizon + (c.h - horizon) * between(r, 0.1, 0.95)
        line((0, y), (c.w, y + c.h * between(r, -0.1, 0.1)), int(r.integers(1, 4)))
    for _ in range(int(r.integers(0, 4))):
        line((c.w * between(r, 0, 1), horizon), (c.w * between(r, -0.3, 1.3), c.h), int(r.integers(1, 4)))
    if chance(r, 0.4):
        x, y, s = c.w * between(r, 0.2, 0.8), c.h * between(r, 0.5, 0.9), c.w * between(r, 0.1, 0.35)
        c.fill(ground * c.mask(lambda d: d.ellipse([x - s, y - s * 0.3, x + s, y + s * 0.3], outline=255, width=2)), white)
    if chance(r, 0.35):
        x, y, s = c.w * between(r, 0.1, 0.9), horizon + (c.h - horizon) * between(r, 0.05, 0.4), c.h * between(r, 0.1, 0.4)
        c.shape(lambda d: d.line([(x, y), (x, y - s), (x + s * 2, y - s), (x + s * 2, y)], fill=255, width=max(1, int(s * 0.05))), white)
    teams = [any_color(r), any_color(r)]
    for _ in range(int(r.integers(2, 16))):
        t = between(r, 0.05, 1.0)
        x, foot, s = c.w * between(r, 0, 1), horizon + (c.h - horizon) * t, c.h * (0.06 + between(r, 0.1, 0.35) * t)
        figure(c, x, foot, s)
        team = pick(r, teams)
        c.shape(lambda d: d.rounded_rectangle([x - s * 0.09, foot - s * 0.83, x + s * 0.09, foot - s * 0.45], 2, fill=255), team)
    return c, False


# Pictures that show none of the scenes.


def indoors(r):
    c = Canvas(r)
    c.a[:] = c.textured(hsv(r, (0, 360) if chance(r, 0.2) else (15, 60), (0.0, 0.5), (0.3, 0.98)), between(r, 0.02, 0.15), 3)
    floor = c.h * between(r, 0.5, 0.95)
    c.fill(c.below(floor, 1), c.textured(hsv(r, (5, 50), (0.05, 0.7), (0.15, 0.8)), 0.25, 8, 3, 5))
    for _ in range(int(r.integers(0, 5))):
        x, y, w, h = c.w * between(r, -0.1, 0.9), c.h * between(r, 0.0, 0.5), c.w * between(r, 0.08, 0.4), c.h * between(r, 0.08, 0.4)
        c.shape(lambda d: d.rectangle([x, y, x + w, y + h], fill=255), hsv(r, (0, 60), (0, 0.6), (0.1, 1.0)))
        inner = pick(r, [sky(c), c.textured(any_color(r), 0.5, 6), c.textured(hsv(r, (60, 140), (0.2, 0.7), (0.2, 0.7)), 0.5, 10)])
        c.shape(lambda d: d.rectangle([x + w * 0.08, y + h * 0.08, x + w * 0.92, y + h * 0.92], fill=255), inner)
    for _ in range(int(r.integers(1, 9))):
        x, y, w, h = (
            c.w * between(r, -0.1, 1),
            floor + c.h * between(r, -0.35, 0.1),
            c.w * between(r, 0.08, 0.5),
            c.h * between(r, 0.08, 0.45),
        )
        color = hsv(r, (0, 360) if chance(r, 0.3) else (5, 50), (0, 0.7), (0.05, 0.9))
        c.shape(lambda d: d.rounded_rectangle([x, y, x + w, y + h], int(r.integers(0, 8)), fill=255), c.textured(color, 0.2, 6))
    if chance(r, 0.3):
        c.glow(
            c.w * between(r, 0, 1),
            c.h * between(r, 0, 0.4),
            between(r, 5, 18),
            hsv(r, (30, 55), (0.1, 0.5), (0.9, 1)),
            between(r, 0.5, 1.5),
        )
    if chance(r, 0.3):
        # Shelves.
        for i in range(int(r.integers(2, 7))):
            for _ in range(30):
                x, y, h = c.w * between(r, 0, 1), c.h * (i + 1) / 7, c.h * between(r, 0.06, 0.13)
                c.shape(lambda d: d.rectangle([x, y - h, x + between(r, 2, 7), y], fill=255), any_color(r))
    people(c, 4, (0.8, 1.3), (0.3, 0.9))
    if chance(r, 0.3):
        c.a *= hsv(r, (20, 45), (0.0, 0.5), (0.2, 1.0))
    return c, chance(r, 0.2)


def portraits(r):
    c = backdrop(r)
    for _ in range(int(r.integers(1, 5))):
        portrait(c)
    return c, False


def backdrop(r):
    """Something behind something: a wall, a garden, the sky, a room, darkness."""
    c = Canvas(r)
    kind = int(r.integers(8))
    if kind == 0:
        c.a[:] = c.textured(any_color(r), between(r, 0, 0.3), 3)
    elif kind == 1:
        c.a[:] = c.textured(hsv(r, (50, 140), (0.2, 0.9), (0.1, 0.7)), between(r, 0.3, 0.8), int(r.integers(4, 20)))
    elif kind == 2:
        c.a[:] = sky(c)
    elif kind == 3:
        c = indoors(r)[0]
    elif kind == 4:
        c.a[:] = c.textured(hsv(r, (0, 360), (0, 0.6), (0, 0.15)), 0.5, 4)
    elif kind == 5:
        c.a[:] = sky(c)
        c.fill(c.below(c.horizon(0.3, 0.8, 0.05), 2), c.textured(hsv(r, (30, 130), (0.1, 0.8), (0.2, 0.8)), 0.4, 16))
    elif kind == 6:
        x, tone = 0.0, any_color(r)
        step = c.w * between(r, 0.03, 0.2)
        c.a[:] = c.textured(tone, 0.15, 10)
        while x < c.w:
            c.shape(lambda d: d.line([(x, 0), (x, c.h)], fill=255, width=1), tone * 0.7)
            x += step
    else:
        c.a[:] = c.textured(any_color(r), 0, 4, 3, other=any_color(r))
    return c


def objects(r):
    """A few large things on a table, on the ground, in a hand."""
    c = backdrop(r)
    if chance(r, 0.6):
        c.fill(
            c.below(c.horizon(0.2, 0.8), 2),
            c.textured(hsv(r, (10, 50), (0.0, 0.7), (0.1, 0.95)), between(r, 0.05, 0.4), 10, 4, between(r, 1, 6)),
        )
    for _ in range(int(r.integers(1, 8))):
        clutter(c, 3, bottom=False)
        x, y, a, b = c.w * between(r, 0.1, 0.9), c.h * between(r, 0.1, 0.9), c.w * between(r, 0.05, 0.4), c.h * between(r, 0.05, 0.4)
        color = any_color(r)
        c.shape(
            lambda d: pick(r, [d.ellipse, d.rectangle])([x - a, y - b, x + a, y + b], fill=255),
            c.textured(color, 0.3, int(r.integers(3, 20))),
            between(r, 0, 2),
        )
        c.glow(x - a * 0.4, y - b * 0.4, min(a, b) * 0.3, np.float32([1, 1, 1]), between(r, 0, 0.5))
    return c, chance(r, 0.1)


def document(r):
    c = Canvas(r, hsv(r, (0, 360), (0, 0.1), (0.75, 1.0)))
    if chance(r, 0.4):
        c.a[:] = c.textured(any_color(r), 0.2)
        c.fill(
            c.polygon(
                [
                    (c.w * between(r, 0, 0.2), c.h * between(r, 0, 0.2)),
                    (c.w * between(r, 0.8, 1), c.h * between(r, 0, 0.2)),
                    (c.w * between(r, 0.8, 1), c.h * between(r, 0.8, 1)),
                    (c.w * between(r, 0, 0.2), c.h * between(r, 0.8, 1)),
                ]
            ),
            np.float32(between(r, 0.8, 1)),
        )
    ink = np.float32(between(r, 0, 0.4))
    y, step = c.h * 0.1, c.h * between(r, 0.02, 0.07)
    image = Image.new("L", (c.w, c.h), 0)
    draw = ImageDraw.Draw(image)
    while y < c.h * 0.92:
        x = c.w * between(r, 0.1, 0.16)
        end = c.w * between(r, 0.4, 0.9)
        while x < end and chance(r, 0.98):
            w = c.w * between(r, 0.01, 0.08)
            draw.rectangle([x, y, x + w, y + step * 0.5], fill=int(r.integers(90, 256)))
            x += w + c.w * 0.015
        y += step * (1 if chance(r, 0.9) else 2)
    c.fill(np.asarray(image, dtype=np.float32) / 255, ink)
    if chance(r, 0.4):
        x, y0 = c.w * between(r, 0.1, 0.6), c.h * between(r, 0.1, 0.6)
        c.shape(lambda d: d.rectangle([x, y0, x + c.w * 0.3, y0 + c.h * 0.25], fill=255), c.textured(any_color(r), 0.5, 5))
    return c, False


def food(r):
    c = Canvas(r)
    c.a[:] = c.textured(hsv(r, (0, 360) if chance(r, 0.3) else (10, 45), (0, 0.7), (0.1, 0.95)), 0.25, 8, 4, between(r, 1, 6))
    for _ in range(int(r.integers(1, 4))):
        x, y, s = c.w * between(r, 0.2, 0.8), c.h * between(r, 0.3, 0.8), min(c.w, c.h) * between(r, 0.2, 0.5)
        flat = between(r, 0.5, 1.0)
        c.shape(lambda d: d.ellipse([x - s, y - s * flat, x + s, y + s * flat], fill=255), hsv(r, (0, 360), (0, 0.2), (0.6, 1.0)))
        c.shape(
            lambda d: d.ellipse([x - s * 0.75, y - s * flat * 0.75, x + s * 0.75, y + s * flat * 0.75], fill=255),
            hsv(r, (0, 360), (0, 0.2), (0.6, 1.0)) * 0.95,
        )
        for _ in range(int(r.integers(3, 30))):
            t, reach, q = between(r, 0, 6.3), between(r, 0, 0.6) * s, s * between(r, 0.05, 0.3)
            bx, by = x + math.cos(t) * reach, y + math.sin(t) * reach * flat
            c.shape(
                lambda d: d.ellipse([bx - q, by - q * flat, bx + q, by + q * flat], fill=255),
                c.textured(hsv(r, pick(r, [(0, 50), (20, 45), (70, 120)]), (0.2, 0.9), (0.2, 0.95)), 0.4, 16),
            )
    clutter(c, 4, bottom=False)
    return c, False


def flowers(r):
    c = Canvas(r)
    leaf = hsv(r, (60, 140), (0.2, 0.9), (0.05, 0.7))
    c.a[:] = c.textured(leaf, between(r, 0.2, 0.9), int(r.integers(2, 12)), int(r.integers(1, 4)))
    for _ in range(int(r.integers(0, 14))):
        x, y, s, t = c.w * between(r, 0, 1), c.h * between(r, 0, 1), c.h * between(r, 0.1, 0.8), between(r, 0, 6.3)
        dx, dy = math.cos(t) * s, math.sin(t) * s
        w = between(r, 0.05, 0.2)
        c.fill(
            c.polygon([(x - dx, y - dy), (x - dy * w, y + dx * w), (x + dx, y + dy), (x + dy * w, y - dx * w)], between(r, 0.3, 2)),
            leaf * between(r, 0.4, 1.6),
        )
    petal = hsv(r, (250, 430), (0.05, 1.0), (0.5, 1.0))
    for _ in range(pick(r, [0, 1, 1, 2, 5, 20])):
        x, y, s = c.w * between(r, 0, 1), c.h * between(r, 0, 1), min(c.w, c.h) * between(r, 0.05, 0.55)
        count = int(r.integers(4, 16))
        for i in range(count):
            t = i / count * 6.283 + between(r, -0.1, 0.1)
            px, py, q = x + math.cos(t) * s * 0.5, y + math.sin(t) * s * 0.5, s * between(r, 0.25, 0.45)
            c.shape(lambda d: d.ellipse([px - q, py - q, px + q, py + q], fill=255), petal * between(r, 0.75, 1.1), 0.6)
        q = s * between(r, 0.1, 0.3)
        c.shape(lambda d: d.ellipse([x - q, y - q, x + q, y + q], fill=255), hsv(r, (20, 70), (0.3, 0.9), (0.2, 0.95)), 0.6)
    return c, False


def animal(r):
    c = backdrop(r)
    x, y, s = c.w * between(r, 0.3, 0.7), c.h * between(r, 0.4, 0.7), min(c.w, c.h) * between(r, 0.2, 0.5)
    fur = hsv(r, (10, 50), (0.0, 0.7), (0.05, 0.95)) if chance(r, 0.8) else any_color(r)
    coat = c.textured(fur, between(r, 0.1, 0.6), int(r.integers(8, 30)), 3)
    side = pick(r, [-1, 1])
    c.shape(lambda d: d.ellipse([x - s, y - s * 0.45, x + s, y + s * 0.5], fill=255), coat, 1)
    hx, hy, q = x + side * s * 0.95, y - s * between(r, 0.2, 0.6), s * between(r, 0.3, 0.5)
    c.shape(lambda d: d.ellipse([hx - q, hy - q * 0.85, hx + q, hy + q * 0.85], fill=255), coat, 1)
    for e in (-1, 1):
        c.fill(
            c.polygon(
                [(hx + e * q * 0.8, hy - q * 0.3), (hx + e * q * 0.2, hy - q * 0.8), (hx + e * q * 0.7, hy - q * between(r, 1.1, 1.8))], 0.6
            ),
            fur * 0.8,
        )
        c.shape(
            lambda d: d.ellipse([hx + e * q * 0.35 - q * 0.1, hy - q * 0.15, hx + e * q * 0.35 + q * 0.1, hy + q * 0.05], fill=255),
            np.float32([0.05, 0.04, 0.03]),
        )
    for i in range(4):
        lx = x - s * 0.7 + i * s * 0.45
        c.shape(lambda d: d.line([(lx, y), (lx + between(r, -4, 4), y + s * 0.95)], fill=255, width=max(1, int(s * 0.15))), fur * 0.85)
    return c, False


def vehicle(r):
    c = Canvas(r)
    c.a[:] = pick(
        r, [sky, sky, lambda k: k.textured(hsv(r, (60, 140), (0.1, 0.7), (0.1, 0.6)), 0.6, 14), lambda k: k.textured(any_color(r), 0.1)]
    )(c)
    base = c.h * between(r, 0.5, 0.85)
    c.fill(c.below(base, 2), c.textured(hsv(r, (0, 100), (0, 0.4), (0.2, 0.7)), 0.25, 20))
    for _ in range(int(r.integers(1, 3))):
        car(
            c,
            c.w * between(r, 0.2, 0.8),
            base + c.h * between(r, 0.02, 0.25),
            c.w * between(r, 0.4, 1.3),
            any_color(r) if chance(r, 0.5) else np.float32(between(r, 0.1, 0.8)),
        )
    return c, False


def texture(r):
    c = Canvas(r)
    kind = int(r.integers(6))
    color = any_color(r)
    if kind == 0:
        c.a[:] = c.textured(
            color, between(r, 0.05, 0.8), int(r.integers(2, 60)), int(r.integers(1, 6)), between(r, 0.2, 5), rough=between(r, 0.3, 1.0)
        )
    elif kind == 1:
        c.a[:] = c.textured(color, 0, int(r.integers(2, 40)), int(r.integers(1, 5)), between(r, 0.3, 4), other=any_color(r))
    elif kind == 2:
        t = between(r, 0, 3.14)
        x, y = np.arange(c.w)[None, :], np.arange(c.h)[:, None]
        wave = np.sin((x * math.cos(t) + y * math.sin(t)) * between(r, 0.05, 1.5) + 4 * c.noise(3, 2))
        c.a[:] = color + (0.5 + 0.5 * wave)[..., None] * (any_color(r) - color)
    elif kind == 3:
        step = c.w * between(r, 0.04, 0.3)
        c.a[:] = c.textured(color, 0.2, 16)
        tone = any_color(r)
        for j in range(int(c.h / step * 2) + 2):
            y = j * step / 2
            c.shape(lambda d: d.line([(0, y), (c.w, y)], fill=255, width=2), tone)
            for i in range(int(c.w / step) + 2):
                x = i * step + (j % 2) * step / 2
                c.shape(lambda d: d.line([(x, y), (x, y + step / 2)], fill=255, width=2), tone)
    elif kind == 4:
        c.a[:] = c.gradient(color, any_color(r))
        for _ in range(int(r.integers(0, 12))):
            c.fill(
                c.polygon(
                    [(c.w * between(r, -0.2, 1.2), c.h * between(r, -0.2, 1.2)) for _ in range(int(r.integers(3, 6)))], between(r, 0, 8)
                )
                * between(r, 0.3, 1),
                any_color(r),
            )
    else:
        c.a[:] = r.random(c.a.shape, dtype=np.float32) if chance(r, 0.5) else r.random((c.h, c.w, 1), dtype=np.float32)
        c.a[:] = color + between(r, 0.1, 1) * (c.a - 0.5)
    return c, False


def plain(r):
    c = Canvas(r)
    color = any_color(r) if chance(r, 0.7) else np.float32(between(r, 0, 1))
    c.a[:] = c.gradient(np.broadcast_to(color, 3), np.clip(color + r.normal(0, 0.15, 3), 0, 1))
    return c, False


def heaven(r):
    """Only sky, with or without something in it."""
    c = Canvas(r)
    c.a[:] = sky(c)
    if chance(r, 0.4):
        c.glow(c.w * between(r, 0, 1), c.h * between(r, 0, 1), between(r, 3, 25), hsv(r, (30, 60), (0, 0.5), (0.9, 1)), between(r, 0.5, 2))
    if chance(r, 0.4):
        tone = any_color(r) * 0.5
        for _ in range(int(r.integers(1, 9))):
            a, b = (c.w * between(r, 0, 1), c.h * between(r, 0, 1)), (c.w * between(r, 0, 1), c.h * between(r, 0, 1))
            c.shape(lambda d: d.line([a, b], fill=255, width=int(r.integers(1, 6))), tone)
    if chance(r, 0.3):
        clutter(c, 3)
    return c, False


def sunset(r):
    """Dark land under a coloured sky."""
    c = Canvas(r)
    c.a[:] = sky(c, "evening")
    c.glow(
        c.w * between(r, 0.1, 0.9),
        c.h * between(r, 0.2, 0.7),
        between(r, 2, 20),
        hsv(r, (20, 50), (0.2, 0.8), (0.9, 1)),
        between(r, 0.4, 1.8),
    )
    c.fill(
        c.below(c.ridge(between(r, 0.15, 0.5), between(r, 0.02, 0.2), 0.5), 1), c.textured(hsv(r, (0, 360), (0, 0.6), (0.0, 0.2)), 0.5, 10)
    )
    for _ in range(int(r.integers(0, 4))):
        tree(c, c.w * between(r, 0, 1), c.h * between(r, 0.6, 0.9), c.h * between(r, 0.1, 0.5), hsv(r, (0, 360), (0, 0.5), (0.0, 0.12)))
    return c, False


def darkness(r):
    """Night pictures that show little: lamps, windows, a flash, a lit face."""
    c = Canvas(r)
    c.a[:] = c.textured(hsv(r, (0, 360), (0.0, 0.8), (0.0, 0.18)), 0.6, int(r.integers(2, 8)))
    for _ in range(pick(r, [0, 1, 1, 2, 3, 6])):
        s, strength = between(r, 2, 14), between(r, 0.4, 2)
        c.glow(
            c.w * between(r, 0, 1),
            c.h * between(r, 0, 1),
            s,
            hsv(r, (20, 60) if chance(r, 0.7) else (0, 360), (0, 0.8), (0.7, 1)),
            strength,
        )
    kind = int(r.integers(5))
    if kind == 0:
        portrait(c)
    elif kind == 1:
        people(c, 4, (0.8, 1.2), (0.3, 0.9), dark=chance(r, 0.4))
    elif kind == 2:
        x, y, w, h = c.w * between(r, 0, 0.7), c.h * between(r, 0, 0.6), c.w * between(r, 0.1, 0.4), c.h * between(r, 0.1, 0.5)
        c.shape(lambda d: d.rectangle([x, y, x + w, y + h], fill=255), c.textured(any_color(r), 0.4, 6))
    elif kind == 3:
        c.shape(lambda d: d.line([(c.w * 0.5, c.h), (c.w * between(r, 0.4, 0.6), c.h * 0.2)], fill=255, width=3), any_color(r) * 0.3)
    return c, True


def garden(r):
    """A lawn, hedges, a terrace: home, not a hike and not a match."""
    c = Canvas(r)
    c.a[:] = sky(c)
    line = c.horizon(0.35, 0.65, 0.02)
    if chance(r, 0.6):
        x = c.w * between(r, -0.2, 0.6)
        building(c, x, x + c.w * between(r, 0.3, 0.9), c.h * between(r, 0.0, 0.3), float(line.max()) + 3)
    c.fill(c.below(line, 2), c.textured(hsv(r, (60, 130), (0.2, 0.85), (0.25, 0.75)), between(r, 0.1, 0.5), 30, 3))
    for _ in range(int(r.integers(1, 9))):
        crown(
            c,
            c.w * between(r, 0, 1),
            float(line[0]) + c.h * between(r, -0.2, 0.05),
            c.h * between(r, 0.08, 0.35),
            hsv(r, (60, 150), (0.2, 0.9), (0.1, 0.6)),
        )
    if chance(r, 0.5):
        c.fill(c.below(c.h * between(r, 0.6, 0.95), 1), c.textured(hsv(r, (0, 50), (0, 0.4), (0.3, 0.85)), 0.25, 16))
    if chance(r, 0.4):
        tree(c, c.w * between(r, 0, 1), c.h * between(r, 0.6, 1), c.h * between(r, 0.4, 1.2))
    people(c, 5, (0.75, 1.3), (0.25, 0.9))
    clutter(c, 5)
    return c, False


def ground(r):
    """Looking down: sand, gravel, leaves, a floor, with something on it."""
    c = Canvas(r)
    c.a[:] = c.textured(hsv(r, (10, 60), (0.0, 0.6), (0.15, 0.9)), between(r, 0.05, 0.7), int(r.integers(4, 50)), 4)
    for _ in range(int(r.integers(0, 5))):
        clutter(c, 2, bottom=False)
    if chance(r, 0.3):
        c.fill(c.polygon([(c.w * between(r, 0, 1), c.h * between(r, 0, 1)) for _ in range(5)], 1), c.textured(any_color(r), 0.3))
    return c, False


def front(r):
    """One wall from near: a door, a gate, a monument."""
    c = Canvas(r)
    c.a[:] = c.textured(hsv(r, (0, 60), (0.0, 0.6), (0.2, 0.9)), between(r, 0.1, 0.5), 14, 4)
    w, top = c.w * between(r, 0.1, 0.35), c.h * between(r, 0.1, 0.5)
    x = c.w * between(r, 0.3, 0.7)
    tone = any_color(r) * between(r, 0.2, 0.8)
    c.shape(
        lambda d: (d.rectangle([x - w, top, x + w, c.h], fill=255), d.ellipse([x - w, top - w, x + w, top + w], fill=255)),
        c.textured(tone, 0.3, 10),
    )
    for _ in range(int(r.integers(0, 9))):
        a, b = c.w * between(r, 0, 1), c.h * between(r, 0, 1)
        c.shape(lambda d: d.rectangle([a, b, a + c.w * between(r, 0.02, 0.2), b + c.h * between(r, 0.02, 0.2)], fill=255), any_color(r))
    if chance(r, 0.4):
        crown(c, c.w * between(r, 0, 1), c.h * between(r, 0, 1), c.h * between(r, 0.1, 0.3), hsv(r, (60, 140), (0.2, 0.8), (0.1, 0.6)))
    people(c, 3, (0.8, 1.2), (0.2, 0.8))
    return c, False


def underwater(r):
    c = Canvas(r)
    c.a[:] = c.gradient(hsv(r, (170, 215), (0.4, 1), (0.4, 0.95)), hsv(r, (175, 230), (0.5, 1), (0.1, 0.7)))
    c.a *= 1 + between(r, 0, 0.2) * (c.noise(4, 3)[..., None] - 0.5)
    for _ in range(int(r.integers(1, 7))):
        x, y, s = c.w * between(r, 0.1, 0.9), c.h * between(r, 0.1, 0.9), c.h * between(r, 0.03, 0.3)
        color = c.textured(any_color(r), 0.5, 20)
        c.shape(lambda d: d.ellipse([x - s, y - s * 0.5, x + s, y + s * 0.5], fill=255), color, 0.5)
        c.fill(c.polygon([(x - s * 0.8, y), (x - s * 1.4, y - s * 0.5), (x - s * 1.4, y + s * 0.5)]), color)
    if chance(r, 0.5):
        c.fill(c.below(c.ridge(between(r, 0.05, 0.3), 0.15, 0.6), 3), c.textured(hsv(r, (0, 200), (0.1, 0.6), (0.1, 0.6)), 0.6, 16))
    return c, False


def screen(r):
    """A drawing, a poster, a page of a web site."""
    c = Canvas(r, any_color(r))
    for _ in range(int(r.integers(3, 16))):
        x, y, w, h = c.w * between(r, -0.1, 1), c.h * between(r, -0.1, 1), c.w * between(r, 0.05, 0.6), c.h * between(r, 0.02, 0.5)
        c.shape(lambda d: pick(r, [d.rectangle, d.rectangle, d.ellipse])([x, y, x + w, y + h], fill=255), any_color(r))
    return c, False


def leaves(r):
    """Green from near: blades, leaves with veins, moss, a hedge."""
    c = Canvas(r)
    hue = (55, 140) if chance(r, 0.8) else (10, 60)
    color = hsv(r, hue, (0.3, 1.0), (0.2, 0.8))
    c.a[:] = c.textured(color * between(r, 0.2, 0.9), between(r, 0.2, 0.9), int(r.integers(3, 20)), int(r.integers(1, 5)))
    kind = int(r.integers(4))
    if kind == 0:
        lean = between(r, -0.6, 0.6)
        for _ in range(int(r.integers(30, 120))):
            x, y, s = c.w * between(r, -0.1, 1.1), c.h * between(r, 0.3, 1.3), c.h * between(r, 0.2, 0.9)
            d = s * (lean + between(r, -0.3, 0.3))
            w = between(r, 0.6, 4)
            tone = color * between(r, 0.4, 1.5)
            c.shape(lambda k: k.polygon([(x - w, y), (x + w, y), (x + d, y - s)], fill=255), tone)
    elif kind == 1:
        t = between(r, 0, 3.14)
        x, y = np.linspace(-1, 1, c.w)[None, :], np.linspace(-1, 1, c.h)[:, None]
        u, v = x * math.cos(t) + y * math.sin(t), np.abs(-x * math.sin(t) + y * math.cos(t) - between(r, -0.4, 0.4))
        veins = np.abs(np.sin((u + v * between(r, -1.5, 1.5)) * between(r, 4, 25)))
        c.a[:] = color * (between(r, 0.7, 1.0) + between(r, 0.1, 0.5) * veins[..., None]) * (1 - 0.2 * v[..., None])
        c.fill(np.clip(1 - v * between(r, 12, 50), 0, 1), color * between(r, 0.6, 1.7))
        c.a *= 1 + between(r, 0, 0.3) * (c.noise(5, 3)[..., None] - 0.5)
    elif kind == 2:
        for _ in range(int(r.integers(4, 60))):
            x, y, s, t = c.w * between(r, 0, 1), c.h * between(r, 0, 1), min(c.w, c.h) * between(r, 0.05, 0.45), between(r, 0, 6.3)
            dx, dy, w = math.cos(t) * s, math.sin(t) * s, between(r, 0.15, 0.5)
            points = [(x - dx, y - dy), (x - dy * w, y + dx * w), (x + dx, y + dy), (x + dy * w, y - dx * w)]
            tone = color * between(r, 0.4, 1.6)
            c.shape(lambda k: k.polygon(points, fill=255), tone, between(r, 0, 1))
            c.shape(lambda k: k.line([points[0], points[2]], fill=200, width=1), tone * between(r, 0.7, 1.4))
    else:
        for _ in range(int(r.integers(5, 25))):
            crown(c, c.w * between(r, 0, 1), c.h * between(r, 0, 1), c.h * between(r, 0.05, 0.25), color * between(r, 0.5, 1.5))
    if chance(r, 0.3):
        x, y, s = c.w * between(r, 0.2, 0.8), c.h * between(r, 0.2, 0.8), c.h * between(r, 0.04, 0.2)
        c.shape(lambda d: d.ellipse([x - s, y - s * 0.6, x + s, y + s * 0.6], fill=255), c.textured(any_color(r), 0.5, 20), 0.5)
    return c, False


def blossoms(r):
    """Many small flowers or lights of day: bright specks on something darker."""
    c = Canvas(r)
    c.a[:] = c.textured(hsv(r, (60, 150), (0.1, 0.8), (0.03, 0.45)), between(r, 0.3, 0.9), int(r.integers(5, 20)))
    petal = hsv(r, (270, 430), (0.0, 0.9), (0.6, 1.0))
    for _ in range(int(r.integers(1, 6))):
        x, y, s = c.w * between(r, 0.1, 0.9), c.h * between(r, 0.1, 0.9), min(c.w, c.h) * between(r, 0.1, 0.4)
        stretch = between(r, 0.5, 2)
        for _ in range(int(r.integers(10, 90))):
            px, py, q = x + r.normal(0, 0.5) * s, y + r.normal(0, 0.5) * s * stretch, between(r, 0.8, 4)
            c.shape(lambda d: d.ellipse([px - q, py - q, px + q, py + q], fill=255), petal * between(r, 0.6, 1.1))
    return c, False


def branches(r):
    """A plant, a mast or a wire against the sky or a wall."""
    c = Canvas(r)
    c.a[:] = sky(c) if chance(r, 0.6) else c.textured(any_color(r), 0.3, 5)
    wood = hsv(r, (10, 60), (0.05, 0.5), (0.03, 0.4))
    for _ in range(int(r.integers(1, 9))):
        x, y, t, s = c.w * between(r, 0, 1), c.h * between(r, 0.3, 1.2), between(r, -2.6, -0.5), c.h * between(r, 0.2, 0.8)
        c.shape(lambda d: d.line([(x, y), (x + math.cos(t) * s, y + math.sin(t) * s)], fill=255, width=int(r.integers(1, 5))), wood)
    for _ in range(int(r.integers(0, 10))):
        crown(c, c.w * between(r, 0, 1), c.h * between(r, 0, 1), c.h * between(r, 0.06, 0.25), hsv(r, (30, 140), (0.2, 0.9), (0.1, 0.6)))
    return c, False


def flash(r):
    """Things and people that a flash tears out of a dark room."""
    c = Canvas(r)
    c.a[:] = c.textured(hsv(r, (0, 60), (0.1, 0.8), (0.02, 0.3)), 0.6, int(r.integers(3, 10)))
    if chance(r, 0.4):
        c.fill(
            c.below(c.h * between(r, 0.3, 0.8), 3),
            c.textured(hsv(r, (0, 50), (0.2, 0.8), (0.05, 0.5)), 0.7, int(r.integers(6, 30)), 4, other=any_color(r) * 0.6),
        )
    for _ in range(int(r.integers(1, 12))):
        x, y, a, b = c.w * between(r, 0, 1), c.h * between(r, 0.1, 1), c.w * between(r, 0.02, 0.25), c.h * between(r, 0.02, 0.25)
        color = c.textured(any_color(r), 0.4, int(r.integers(4, 24)))
        oval = chance(r, 0.5)
        c.shape(lambda d: (d.ellipse if oval else d.rectangle)([x - a, y - b, x + a, y + b], fill=255), color, between(r, 0, 1))
    if chance(r, 0.5):
        for _ in range(int(r.integers(1, 4))):
            portrait(c, between(r, 0.15, 0.6))
    people(c, 4, (0.8, 1.3), (0.4, 0.9))
    if chance(r, 0.3):
        c.glow(c.w * between(r, 0, 1), c.h * between(r, 0, 1), between(r, 2, 6), np.float32([1, 1, 1]), between(r, 0.5, 1.5))
    return c, chance(r, 0.5)


def pale(r):
    """Light things on light ground: paper, porcelain, cloth, fur, fog."""
    c = Canvas(r, hsv(r, (0, 360), (0, 0.12), (0.6, 1.0)))
    c.a[:] = c.textured(hsv(r, (0, 360), (0, 0.12), (0.6, 1.0)), between(r, 0.02, 0.2), int(r.integers(2, 30)))
    if chance(r, 0.6):
        c.fill(c.below(c.horizon(0.1, 0.8, 0.1), between(r, 1, 12)), c.textured(hsv(r, (0, 360), (0, 0.2), (0.5, 1.0)), 0.1, 8))
    for _ in range(int(r.integers(0, 8))):
        x, y, a, b = c.w * between(r, 0, 1), c.h * between(r, 0, 1), c.w * between(r, 0.03, 0.4), c.h * between(r, 0.03, 0.4)
        tone = hsv(r, (0, 360), (0, 0.25), (0.5, 1.0)) if chance(r, 0.7) else hsv(r, (0, 360), (0, 0.6), (0.05, 0.5))
        oval = chance(r, 0.6)
        c.shape(
            lambda d: (d.ellipse if oval else d.rectangle)([x - a, y - b, x + a, y + b], fill=255),
            c.textured(tone, 0.15, 10),
            between(r, 0, 3),
        )
    return c, False


def drive(r):
    """A house and its drive: lawn, hedge, a car or guests before it. Home rather than a town."""
    c = Canvas(r)
    c.a[:] = sky(c)
    foot = c.h * between(r, 0.45, 0.75)
    for _ in range(int(r.integers(1, 8))):
        crown(
            c,
            c.w * between(r, 0, 1),
            foot - c.h * between(r, 0, 0.3),
            c.h * between(r, 0.1, 0.3),
            hsv(r, (60, 150), (0.2, 0.8), (0.08, 0.5)),
        )
    if chance(r, 0.7):
        x, w, top = c.w * between(r, -0.3, 0.7), c.w * between(r, 0.3, 0.8), foot - c.h * between(r, 0.15, 0.4)
        building(c, x, x + w, top, foot, hsv(r, (0, 50), (0.0, 0.6), (0.35, 0.95)))
        c.fill(
            c.polygon([(x - w * 0.05, top), (x + w * 0.2, top - c.h * 0.18), (x + w * 0.8, top - c.h * 0.18), (x + w * 1.05, top)]),
            hsv(r, (0, 40), (0.1, 0.7), (0.15, 0.5)),
        )
    c.fill(
        c.below(foot, 2), c.textured(hsv(r, *pick(r, [((70, 125), (0.3, 0.8), (0.25, 0.6)), ((0, 50), (0, 0.2), (0.35, 0.7))])), 0.3, 26, 4)
    )
    for _ in range(int(r.integers(0, 3))):
        car(c, c.w * between(r, 0.1, 0.9), foot + c.h * between(r, 0.05, 0.3), c.w * between(r, 0.3, 1.0))
    people(c, 5, (0.8, 1.2), (0.3, 0.9))
    return c, False


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
    indoors,
    indoors,
    portraits,
    portraits,
    objects,
    objects,
    document,
    food,
    flowers,
    flowers,
    flowers,
    animal,
    animal,
    vehicle,
    vehicle,
    texture,
    texture,
    plain,
    heaven,
    sunset,
    darkness,
    darkness,
    garden,
    garden,
    ground,
    ground,
    front,
    front,
    underwater,
    screen,
    leaves,
    leaves,
    leaves,
    blossoms,
    blossoms,
    branches,
    branches,
    flash,
    flash,
    flash,
    pale,
    pale,
    drive,
    drive,
]

LABELS = ["something else"] + list(SCENES)


def draw(r, label):
    """A canvas of a label, and whether it is night there."""
    return (SCENES[label] if label in SCENES else pick(r, OTHERS))(r)


def paint(r, label):
    """One finished picture of a label."""
    return camera(*draw(r, label))
