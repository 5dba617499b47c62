"""logo.png: a round seal with a quill and a fern, on a transparent ground."""

import math

from PIL import Image, ImageDraw

from .imagework import font, smooth

SIZE = 420
OVERSAMPLING = 4
BLUE = (24, 62, 92, 255)
GREEN = (61, 122, 88, 255)
CLEAR = (24, 62, 92, 0)


def lettering(size, text, face, radius, middle, colour, inward=False):
    """`text` set along a circle, its middle at the angle `middle` (degrees, clockwise from the top)."""
    layer = Image.new("RGBA", (size, size), CLEAR)
    centre = size / 2
    widths = [face.getlength(letter) for letter in text]
    circumference = 2 * math.pi * radius
    spread = 360 * sum(widths) / circumference
    side = -1 if inward else 1
    angle = middle - side * spread / 2
    high = round(face.size * 1.6)
    for letter, width in zip(text, widths):
        step = 360 * width / circumference
        angle += side * step / 2
        tile = Image.new("RGBA", (high, high), CLEAR)
        ImageDraw.Draw(tile).text((high / 2, high / 2), letter, font=face, fill=colour, anchor="mm")
        turned = -angle if not inward else 180 - angle
        tile = tile.rotate(turned, resample=Image.Resampling.BICUBIC)
        x = centre + radius * math.sin(math.radians(angle)) - high / 2
        y = centre - radius * math.cos(math.radians(angle)) - high / 2
        layer.alpha_composite(tile, (round(x), round(y)))
        angle += side * step / 2
    return layer


def leaf(draw, x, y, length, angle, colour):
    """A pointed leaf that grows from (x, y) in the direction `angle` (degrees, clockwise from the top)."""
    along = (math.sin(math.radians(angle)), -math.cos(math.radians(angle)))
    across = (-along[1], along[0])
    outline = [(0, 0), (0.25, 0.13), (0.55, 0.14), (1, 0), (0.55, -0.14), (0.25, -0.13), (0, 0)]
    points = smooth(
        [
            (x + length * (a * along[0] + b * across[0]), y + length * (a * along[1] + b * across[1]))
            for a, b in outline
        ]
    )
    draw.polygon(points, fill=colour)


def fern(draw, unit):
    """A frond that leans to the left, its leaflets shrinking towards the tip."""
    stem = smooth([(56, 78), (48, 66), (41, 54), (36, 42), (34, 30), (35, 21)])
    draw.line([(x * unit, y * unit) for x, y in stem], fill=GREEN, width=round(0.9 * unit), joint="curve")
    count = 11
    for number in range(count):
        place = stem[round((0.10 + 0.86 * number / count) * (len(stem) - 1))]
        after = stem[min(len(stem) - 1, round((0.10 + 0.86 * number / count) * (len(stem) - 1)) + 2)]
        heading = math.degrees(math.atan2(after[0] - place[0], place[1] - after[1]))
        length = (14.5 - 10.5 * number / count) * unit
        for side in (-1, 1):
            leaf(draw, place[0] * unit, place[1] * unit, length, heading + side * (62 - 14 * number / count), GREEN)


def quill(draw, unit):
    """A feather that leans to the right, cut to a nib below."""
    spine = smooth([(44, 80), (50, 68), (56, 54), (61, 40), (68, 22)])
    left = smooth([(51, 65), (46.5, 54), (50, 42), (56, 31), (68, 20)])
    right = smooth([(51.5, 65), (60, 57), (67, 46), (70.5, 33), (68, 20)])
    draw.polygon([(x * unit, y * unit) for x, y in left + right[::-1]], fill=BLUE)
    for notch in (((46.9, 49.6), (48.3, 46.4), (54.4, 56.2)), ((69.3, 39.2), (68.4, 42.2), (58.9, 48.3))):
        # Barbs part here and there.
        draw.polygon([(x * unit, y * unit) for x, y in notch], fill=CLEAR)
    draw.line([(x * unit, y * unit) for x, y in spine if y < 66], fill=CLEAR, width=round(0.8 * unit), joint="curve")
    shaft = ((50.4, 64.6), (52.0, 65.4), (46.2, 79.4), (43.4, 84.2), (44.0, 78.6))
    draw.polygon([(x * unit, y * unit) for x, y in shaft], fill=BLUE)


def make(work, name):
    size = SIZE * OVERSAMPLING
    unit = size / 100
    seal = Image.new("RGBA", (size, size), CLEAR)
    draw = ImageDraw.Draw(seal)
    for radius, width in ((48.5, 1.7), (46.0, 0.5), (33.4, 0.9)):
        edge = [(50 - radius) * unit, (50 - radius) * unit, (50 + radius) * unit, (50 + radius) * unit]
        draw.ellipse(edge, outline=BLUE, width=round(width * unit))
    middle = Image.new("RGBA", (size, size), CLEAR)
    pen = ImageDraw.Draw(middle)
    fern(pen, unit)
    feather = Image.new("RGBA", (size, size), CLEAR)
    quill(ImageDraw.Draw(feather), unit)
    middle.alpha_composite(feather)
    # The pictures were laid out to fill the sheet; within the ring they stand a little smaller.
    small = middle.resize((round(size * 0.86), round(size * 0.86)), Image.Resampling.LANCZOS)
    seal.alpha_composite(small, (round(size * 0.048), round(size * 0.05)))
    face = font("Serif-Bold", round(8.2 * unit))
    seal.alpha_composite(lettering(size, "SALTMERE COUNTY ARCHIVE", face, 39.7 * unit, 0, BLUE))
    seal.alpha_composite(lettering(size, "NUMBERED", face, 39.7 * unit, 180, BLUE, inward=True))
    draw = ImageDraw.Draw(seal)
    for angle in (128, 232):
        x = (50 + 39.7 * math.sin(math.radians(angle))) * unit
        y = (50 - 39.7 * math.cos(math.radians(angle))) * unit
        draw.ellipse([x - 1.3 * unit, y - 1.3 * unit, x + 1.3 * unit, y + 1.3 * unit], fill=GREEN)
    seal = seal.resize((SIZE, SIZE), Image.Resampling.BOX)
    target = work / name
    seal.save(target, optimize=True, dpi=(300, 300))
    return target
