"""What all painters share: a canvas of random size and shape, textures, figures, and what a camera does to a picture.

Every function takes the random generator; nothing else decides what is painted.
"""

import colorsys
import io
import math

import numpy as np
from PIL import Image, ImageDraw, ImageFilter

# Width and height of a canvas multiply to about this many pixels.
AREA = 112 * 112
ASPECTS = (4 / 3, 4 / 3, 3 / 2, 16 / 9, 3 / 4, 3 / 4, 2 / 3, 9 / 16, 1.0)


def between(r, low, high):
    return float(r.uniform(low, high))


def chance(r, probability):
    return bool(r.random() < probability)


def pick(r, options):
    return options[int(r.integers(len(options)))]


def hsv(r, hue, saturation, value):
    """A colour from ranges; hue in degrees, the others from 0 to 1."""
    return np.array(colorsys.hsv_to_rgb((between(r, *hue) % 360) / 360, between(r, *saturation), between(r, *value)), dtype=np.float32)


def any_color(r):
    return hsv(r, (0, 360), (0.0, 0.9), (0.1, 1.0))


def skin(r):
    return hsv(r, (12, 30), (0.2, 0.6), (0.35, 0.95))


class Canvas:
    def __init__(self, r, color=None):
        self.r = r
        aspect = pick(r, ASPECTS)
        self.w = int(math.sqrt(AREA * aspect))
        self.h = int(math.sqrt(AREA / aspect))
        self.a = np.empty((self.h, self.w, 3), dtype=np.float32)
        self.a[:] = any_color(r) if color is None else color

    # Masks are arrays of the canvas' size from 0 to 1.

    def noise(self, cells=4, octaves=4, rough=0.55, stretch=1.0):
        """Cloudy noise from 0 to 1; `stretch` above 1 makes it wider than high."""
        total = np.zeros((self.h, self.w), dtype=np.float32)
        weight, sum_of_weights = 1.0, 0.0
        for octave in range(octaves):
            nx = max(2, int(cells * 2**octave / stretch) + 1)
            ny = max(2, int(cells * 2**octave * self.h / self.w) + 1)
            if octave > 0 and (nx > self.w or ny > self.h):
                break
            nx, ny = min(nx, self.w), min(ny, self.h)
            grid = Image.fromarray(self.r.random((ny, nx), dtype=np.float32))
            total += weight * np.asarray(grid.resize((self.w, self.h), Image.BICUBIC))
            sum_of_weights += weight
            weight *= rough
        total /= sum_of_weights
        low, high = float(total.min()), float(total.max())
        return np.clip((total - low) / max(high - low, 1e-6), 0, 1)

    def mask(self, paint, soft=0.0):
        image = Image.new("L", (self.w, self.h), 0)
        paint(ImageDraw.Draw(image))
        if soft > 0:
            image = image.filter(ImageFilter.GaussianBlur(soft))
        return np.asarray(image, dtype=np.float32) / 255

    def polygon(self, points, soft=0.0):
        points = [(float(x), float(y)) for x, y in points]
        return self.mask(lambda draw: draw.polygon(points, fill=255), soft)

    def fill(self, mask, color):
        """`color`: one colour, or a picture of the canvas' size."""
        self.a += mask[..., None] * (color - self.a)

    def add(self, light):
        self.a += light

    def textured(self, color, amount, cells=8, octaves=4, stretch=1.0, other=None, rough=0.7):
        """A picture: the colour made lighter and darker by noise, or mixed with another one."""
        n = self.noise(cells, octaves, rough, stretch)[..., None]
        if other is not None:
            return color + n * (other - color)
        return color * (1 + amount * (n - 0.5) * 2)

    def gradient(self, top, bottom, begin=0.0, end=1.0):
        t = np.clip((np.linspace(0, 1, self.h, dtype=np.float32) - begin) / max(end - begin, 1e-3), 0, 1)[:, None, None]
        return np.broadcast_to(top + t * (bottom - top), self.a.shape).astype(np.float32)

    def shape(self, paint, color, soft=0.0):
        """Like a fill of a mask, but works only where something is."""
        image = Image.new("L", (self.w, self.h), 0)
        paint(ImageDraw.Draw(image))
        if soft > 0:
            image = image.filter(ImageFilter.GaussianBlur(soft))
        box = image.getbbox()
        if box is None:
            return
        mask = np.asarray(image.crop(box), dtype=np.float32)[..., None] / 255
        part = self.a[box[1] : box[3], box[0] : box[2]]
        color = np.asarray(color, dtype=np.float32)
        if color.ndim == 3:
            color = color[box[1] : box[3], box[0] : box[2]]
        part += mask * (color - part)

    def glow(self, x, y, radius, color, strength=1.0):
        """Adds light around a point."""
        reach = int(radius * 3) + 1
        x0, x1 = max(0, int(x) - reach), min(self.w, int(x) + reach + 1)
        y0, y1 = max(0, int(y) - reach), min(self.h, int(y) + reach + 1)
        if x0 >= x1 or y0 >= y1:
            return
        dx = np.arange(x0, x1, dtype=np.float32) - x
        dy = np.arange(y0, y1, dtype=np.float32) - y
        light = np.exp(-(dx[None, :] ** 2 + dy[:, None] ** 2) / (2 * radius * radius))
        self.a[y0:y1, x0:x1] += strength * light[..., None] * color

    def ridge(self, height, amplitude, rough=0.5, points=65):
        """A mountain line by displaced middles: y for each column, in pixels; `height` is its mean height above the lower edge."""
        line = np.zeros(2)
        line[:] = self.r.uniform(-0.5, 0.5, 2)
        scale = 1.0
        while len(line) < points:
            middle = (line[:-1] + line[1:]) / 2 + self.r.uniform(-1, 1, len(line) - 1) * scale * 0.5
            joined = np.empty(len(line) + len(middle))
            joined[0::2], joined[1::2] = line, middle
            line, scale = joined, scale * rough
        y = self.h * (1 - height - amplitude * line)
        return np.interp(np.arange(self.w), np.linspace(0, self.w - 1, len(y)), y)

    def below(self, line, soft=1.0):
        """The mask of all that lies below a line (y for each column, or one y)."""
        line = np.broadcast_to(np.asarray(line, dtype=np.float32), (self.w,))
        rows = np.arange(self.h, dtype=np.float32)[:, None]
        return np.clip((rows - line[None, :]) / max(soft, 0.3) + 0.5, 0, 1)

    def horizon(self, low, high, wave=0.0):
        """A horizon line: y for each column."""
        y = self.h * between(self.r, low, high)
        x = np.linspace(0, 1, self.w)
        return y + wave * self.h * np.sin(x * between(self.r, 1, 5) + between(self.r, 0, 6)) * between(self.r, 0, 1)


# Things that stand in many pictures.


def sky(c, mood=None):
    r = c.r
    mood = mood or pick(r, ["blue", "blue", "blue", "pale", "grey", "clouds", "clouds", "evening"])
    if mood in ("blue", "clouds"):
        top, bottom = hsv(r, (198, 228), (0.35, 0.9), (0.45, 1.0)), hsv(r, (190, 220), (0.05, 0.45), (0.75, 1.0))
    elif mood == "pale":
        top, bottom = hsv(r, (190, 230), (0.05, 0.3), (0.8, 1.0)), hsv(r, (30, 230), (0.0, 0.1), (0.85, 1.0))
    elif mood == "grey":
        top, bottom = hsv(r, (190, 240), (0.0, 0.15), (0.45, 0.9)), hsv(r, (190, 240), (0.0, 0.12), (0.6, 1.0))
    elif mood == "evening":
        top, bottom = hsv(r, (200, 280), (0.2, 0.7), (0.2, 0.7)), hsv(r, (5, 50), (0.3, 0.9), (0.6, 1.0))
    else:
        top, bottom = hsv(r, (210, 260), (0.2, 0.9), (0.0, 0.15)), hsv(r, (0, 360), (0.1, 0.7), (0.0, 0.25))
    picture = c.gradient(top, bottom, 0, between(r, 0.3, 1.0))
    if mood == "clouds" or (mood != "night" and chance(r, 0.3)):
        n = c.noise(int(r.integers(2, 5)), 5, 0.6, between(r, 1, 3))
        cut = between(r, 0.35, 0.65)
        n = np.clip((n - cut) / between(r, 0.1, 0.4), 0, 1)
        white = hsv(r, (20, 230), (0, 0.1), (0.8, 1.0)) if mood != "evening" else hsv(r, (0, 40), (0.1, 0.6), (0.5, 1.0))
        picture = picture + (n * between(r, 0.5, 1.0))[..., None] * (white - picture)
    return picture


def figure(c, x, foot, height, dark=False):
    """A standing, walking or sitting person."""
    r = c.r
    clothes = [any_color(r) * 0.15, any_color(r) * 0.15] if dark else [any_color(r), any_color(r)]
    head = skin(r) * (0.2 if dark else 1.0)
    s = height
    lean = between(r, -0.06, 0.06) * s
    width = between(r, 0.13, 0.2) * s
    legs = 0.45 if chance(r, 0.8) else 0.15
    spread = between(r, 0.02, 0.12) * s
    top = foot - s * (legs + 0.5)
    for side in (-1, 1):
        c.shape(
            lambda d, side=side: d.line(
                [(x + side * width * 0.25, foot - legs * s), (x + side * spread, foot)], fill=255, width=max(1, int(s * 0.09))
            ),
            clothes[1],
        )
        if chance(r, 0.8):
            arm = (x + side * (width * 0.5 + between(r, 0.0, 0.2) * s), foot - s * between(r, 0.3, 0.95))
            c.shape(
                lambda d, side=side, arm=arm: d.line(
                    [(x + lean + side * width * 0.45, top + 0.18 * s), arm], fill=255, width=max(1, int(s * 0.06))
                ),
                clothes[0] if chance(r, 0.5) else head,
            )
    c.shape(
        lambda d: d.rounded_rectangle(
            [x + lean - width / 2, top + 0.12 * s, x + lean + width / 2, foot - legs * s], max(1, int(width / 4)), fill=255
        ),
        clothes[0],
    )
    radius = 0.075 * s
    c.shape(lambda d: d.ellipse([x + lean - radius, top - radius * 0.6, x + lean + radius, top + radius * 1.8], fill=255), head)
    hair = hsv(r, (15, 45), (0.1, 0.7), (0.03, 0.6))
    c.shape(lambda d: d.chord([x + lean - radius, top - radius * 0.8, x + lean + radius, top + radius * 1.4], 180, 360, fill=255), hair)


def people(c, most, foot=(0.6, 1.1), height=(0.15, 0.7), dark=False):
    r = c.r
    for _ in range(int(r.integers(0, most + 1))):
        figure(c, between(r, 0, c.w), c.h * between(r, *foot), c.h * between(r, *height), dark)


def portrait(c, scale=None):
    """Head and shoulders in front of whatever is painted."""
    r = c.r
    s = (scale or between(r, 0.25, 0.8)) * min(c.w, c.h)
    x, y = c.w * between(r, 0.2, 0.8), c.h * between(r, 0.3, 0.7)
    tone, hair = skin(r), hsv(r, (15, 45), (0.1, 0.7), (0.03, 0.7))
    c.shape(lambda d: d.ellipse([x - s * 0.36, y - s * 0.55, x + s * 0.36, y + s * between(r, 0.1, 0.7)], fill=255), hair, 1)
    c.shape(lambda d: d.rounded_rectangle([x - s * 0.75, y + s * 0.55, x + s * 0.75, y + s * 3], int(s * 0.3), fill=255), any_color(r), 1)
    c.shape(lambda d: d.rectangle([x - s * 0.14, y + s * 0.2, x + s * 0.14, y + s * 0.65], fill=255), tone * 0.85, 1)
    c.shape(lambda d: d.ellipse([x - s * 0.3, y - s * 0.42, x + s * 0.3, y + s * 0.42], fill=255), c.textured(tone, 0.12, 3, 3), 1)
    for side in (-1, 1):
        c.shape(
            lambda d, side=side: d.ellipse(
                [x + side * s * 0.13 - s * 0.05, y - s * 0.09, x + side * s * 0.13 + s * 0.05, y - s * 0.02], fill=255
            ),
            tone * 0.25,
        )
    c.shape(
        lambda d: d.ellipse([x - s * 0.1, y + s * 0.17, x + s * 0.1, y + s * 0.23], fill=255), hsv(r, (340, 370), (0.3, 0.7), (0.4, 0.8))
    )


def crown(c, x, y, radius, color):
    """Leaves: a ragged, speckled blob."""
    r = c.r
    image = Image.new("L", (c.w, c.h), 0)
    draw = ImageDraw.Draw(image)
    for _ in range(int(r.integers(8, 22))):
        dx, dy = r.normal(0, 0.5, 2) * radius
        q = radius * between(r, 0.2, 0.55)
        draw.ellipse([x + dx - q, y + dy - q, x + dx + q, y + dy + q], fill=255)
    mask = np.asarray(image, dtype=np.float32) / 255
    leaves = c.textured(color, between(r, 0.4, 0.9), int(r.integers(10, 30)), 3)
    c.fill(mask * (0.6 + 0.4 * (c.noise(24, 2) > 0.35)), leaves)


def tree(c, x, foot, height, color=None):
    r = c.r
    color = hsv(r, (55, 130), (0.25, 0.9), (0.12, 0.6)) if color is None else color
    c.shape(
        lambda d: d.line(
            [(x, foot), (x + between(r, -0.05, 0.05) * height, foot - height * 0.6)], fill=255, width=max(1, int(height * 0.07))
        ),
        hsv(r, (15, 40), (0.1, 0.6), (0.1, 0.4)),
    )
    crown(c, x, foot - height * 0.68, height * between(r, 0.25, 0.4), color)


def conifer(c, x, foot, height, color):
    r = c.r
    layers = int(r.integers(3, 8))
    points_left, points_right = [], []
    width = height * between(r, 0.15, 0.32)
    for i in range(layers):
        t0, t1 = i / layers, (i + 1) / layers
        points_left += [(x - width * t0 * 0.6, foot - height * (1 - t0)), (x - width * t1, foot - height * (1 - t1))]
        points_right += [(x + width * t0 * 0.6, foot - height * (1 - t0)), (x + width * t1, foot - height * (1 - t1))]
    c.fill(c.polygon(points_left + points_right[::-1]), color)


def building(c, x0, x1, top, foot, wall=None, lit=None):
    """A front with rows of windows; `lit`: the share of windows with light, for the night."""
    r = c.r
    wall = hsv(r, (0, 60), (0.02, 0.5), (0.3, 0.95)) if wall is None else wall
    c.shape(lambda d: d.rectangle([x0, top, x1, foot], fill=255), c.textured(wall, between(r, 0.05, 0.25), 12, 3))
    columns, rows = int(r.integers(2, 8)), int(r.integers(2, 10))
    dx, dy = (x1 - x0) / columns, (foot - top) / rows
    fx, fy = between(r, 0.3, 0.75), between(r, 0.35, 0.75)
    glass = hsv(r, (180, 260), (0.0, 0.5), (0.05, 0.55))
    image = Image.new("L", (c.w, c.h), 0)
    lights = Image.new("L", (c.w, c.h), 0)
    draw, draw_lights = ImageDraw.Draw(image), ImageDraw.Draw(lights)
    for i in range(columns):
        for j in range(rows):
            box = [x0 + (i + 0.5 - fx / 2) * dx, top + (j + 0.5 - fy / 2) * dy, x0 + (i + 0.5 + fx / 2) * dx, top + (j + 0.5 + fy / 2) * dy]
            if box[2] - box[0] < 1 or box[3] - box[1] < 1:
                continue
            (draw_lights if lit is not None and r.random() < lit else draw).rectangle(box, fill=255)
    c.fill(np.asarray(image, dtype=np.float32) / 255, glass if lit is None else wall * 0.6)
    if lit is not None:
        c.fill(np.asarray(lights, dtype=np.float32) / 255, hsv(r, (25, 60), (0.1, 0.7), (0.6, 1.0)))


def car(c, x, foot, length, color=None):
    r = c.r
    color = any_color(r) * 0.9 if color is None else color
    h = length * between(r, 0.28, 0.4)
    c.shape(
        lambda d: d.rounded_rectangle([x - length / 2, foot - h * 0.75, x + length / 2, foot - h * 0.15], max(1, int(h * 0.2)), fill=255),
        color,
    )
    c.fill(
        c.polygon(
            [
                (x - length * 0.3, foot - h * 0.7),
                (x - length * 0.2, foot - h * 1.2),
                (x + length * 0.15, foot - h * 1.2),
                (x + length * 0.3, foot - h * 0.7),
            ]
        ),
        hsv(r, (180, 240), (0, 0.4), (0.05, 0.5)),
    )
    for side in (-1, 1):
        c.shape(
            lambda d, side=side: d.ellipse(
                [x + side * length * 0.3 - h * 0.24, foot - h * 0.4, x + side * length * 0.3 + h * 0.24, foot], fill=255
            ),
            hsv(r, (0, 360), (0, 0.1), (0.02, 0.2)),
        )


def clutter(c, most, bottom=True):
    """Bags, bottles, railings, arms: things in the way of the picture."""
    r = c.r
    for _ in range(int(r.integers(0, most + 1))):
        color = any_color(r)
        x, y = c.w * between(r, 0, 1), c.h * (between(r, 0.65, 1.05) if bottom else between(r, 0, 1))
        a, b = c.w * between(r, 0.02, 0.2), c.h * between(r, 0.02, 0.2)
        kind = int(r.integers(4))
        if kind == 0:
            c.shape(lambda d: d.ellipse([x - a, y - b, x + a, y + b], fill=255), c.textured(color, 0.3))
        elif kind == 1:
            c.shape(lambda d: d.rounded_rectangle([x - a, y - b, x + a, y + b], 4, fill=255), c.textured(color, 0.3))
        elif kind == 2:
            c.fill(c.polygon([(x + between(r, -a, a), y + between(r, -b, b)) for _ in range(int(r.integers(3, 7)))]), color)
        else:
            end = (c.w * between(r, 0, 1), c.h * between(r, 0, 1))
            c.shape(lambda d: d.line([(x, y), end], fill=255, width=int(r.integers(1, 5))), color)


def camera(c, night=False):
    """The finished picture as a camera and a disk give it: tilted, cropped, tinted, blurred, noisy, compressed. An upright RGB image."""
    r = c.r
    image = Image.fromarray((np.clip(c.a, 0, 1) * 255).astype(np.uint8))
    if chance(r, 0.5):
        image = image.transpose(Image.FLIP_LEFT_RIGHT)
    w, h = image.size
    angle = between(r, -1, 1) ** 3 * 14
    zoom = between(r, 0.72, 0.97) - abs(angle) * 0.012
    image = image.rotate(angle, Image.BILINEAR)
    cw, ch = w * zoom, h * zoom
    left, top = between(r, 0.25, 0.75) * (w - cw), between(r, 0.25, 0.75) * (h - ch)
    image = image.crop((int(left), int(top), int(left + cw), int(top + ch)))
    if chance(r, 0.45):
        image = image.filter(ImageFilter.GaussianBlur(between(r, 0.3, 1.2)))
    a = np.asarray(image, dtype=np.float32) / 255
    h, w = a.shape[:2]
    if chance(r, 0.25):
        haze = hsv(r, (0, 360), (0, 0.25), (0.5, 1.0)) if not night else hsv(r, (0, 360), (0, 0.6), (0.0, 0.4))
        a = a + between(r, 0, 0.35) * (haze - a)
    a = np.clip(a, 0, 1)
    gray = a.mean(axis=2, keepdims=True)
    saturation = between(r, 0.5, 1.3) if chance(r, 0.96) else between(r, 0.0, 0.4)
    a = gray + saturation * (a - gray)
    a = a * r.uniform(0.87, 1.13, 3).astype(np.float32)
    a = 0.5 + between(r, 0.75, 1.25) * (a - 0.5) if not night else a
    a = np.clip(a * between(r, 0.8, 1.3), 0, 1) ** between(r, 0.7, 1.25)
    if chance(r, 0.4):
        x, y = np.linspace(-1, 1, w, dtype=np.float32)[None, :], np.linspace(-1, 1, h, dtype=np.float32)[:, None]
        a = a * (1 - between(r, 0.1, 0.5) * (x * x + y * y) / 2)[..., None]
    if chance(r, 0.6):
        sigma = between(r, 0.0, 0.2) ** 2
        a = a + r.standard_normal((h, w, 1), dtype=np.float32) * sigma + r.standard_normal((h, w, 3), dtype=np.float32) * (sigma * 0.5)
    image = Image.fromarray((np.clip(a, 0, 1) * 255).astype(np.uint8))
    if chance(r, 0.05):
        ImageDraw.Draw(image).text((w * between(r, 0.05, 0.7), h * 0.88), "12 31 07", fill=(255, 140, 20))
    if chance(r, 0.6):
        data = io.BytesIO()
        image.save(data, "JPEG", quality=int(r.integers(25, 96)))
        image = Image.open(data).convert("RGB")
    return image
