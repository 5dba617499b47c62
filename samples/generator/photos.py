"""photos.tif: two pictures in colour, of different sizes and resolutions, in one file."""

import math
import random

from PIL import Image, ImageChops, ImageDraw, ImageFilter

from .imagework import gradient, save_tiff

PREDICTOR, HORIZONTAL = 317, 2


def lake(size):
    """Hills at a lake after sunset."""
    width, height = size
    water = round(height * 0.62)
    picture = gradient((width, water), (38, 54, 98), (246, 178, 120))
    sun = Image.new("L", picture.size, 0)
    ImageDraw.Draw(sun).ellipse([width * 0.60, water * 0.62, width * 0.72, water * 0.62 + width * 0.12], fill=255)
    glow = sun.filter(ImageFilter.GaussianBlur(width * 0.08)).point(lambda level: min(255, level * 2))
    picture.paste((255, 214, 150), mask=glow)
    picture.paste((255, 240, 205), mask=sun.filter(ImageFilter.GaussianBlur(width * 0.002)))
    for number, colour in enumerate(((139, 110, 134), (96, 82, 116), (58, 58, 88), (30, 38, 58))):
        base = water * (0.70 + 0.085 * number)
        draw = ImageDraw.Draw(picture)
        line = [
            (
                x,
                base
                - water * 0.09 * math.sin(x / width * (5 + 2 * number) + number * 1.9)
                - water * 0.035 * math.sin(x / width * (17 + 5 * number) + number),
            )
            for x in range(0, width + 1, 2)
        ]
        draw.polygon(line + [(width, water), (0, water)], fill=colour)
    whole = Image.new("RGB", size)
    whole.paste(picture, (0, 0))
    mirror = picture.transpose(Image.Transpose.FLIP_TOP_BOTTOM).resize((width, height - water))
    mirror = Image.blend(mirror, Image.new("RGB", mirror.size, (22, 34, 62)), 0.34)
    # Each line of the mirror is shifted a little: ripples, wider towards the viewer.
    for y in range(height - water):
        depth = y / (height - water)
        shift = round((2 + 14 * depth) * math.sin(y / 2 * (1.7 - depth)))
        row = mirror.crop((0, y, width, y + 1))
        whole.paste(ImageChops.offset(row, shift, 0), (0, water + y))
    draw = ImageDraw.Draw(whole)
    for x, tall in ((0.05, 0.40), (0.10, 0.52), (0.145, 0.36), (0.93, 0.44), (0.975, 0.33)):
        foot = height * 0.93
        for tier in range(7):
            top = foot - height * tall * (1 - tier / 8.5)
            spread = width * 0.012 * (tier + 1.2) * tall * 2
            low = top + height * tall * 0.24
            draw.polygon([(x * width, top), (x * width - spread, low), (x * width + spread, low)], fill=(13, 19, 30))
    draw.polygon(
        [(0, height), (0, height * 0.9), (width * 0.25, height * 0.955), (width * 0.6, height)], fill=(13, 19, 30)
    )
    draw.polygon(
        [(width, height), (width, height * 0.9), (width * 0.8, height * 0.965), (width * 0.55, height)],
        fill=(13, 19, 30),
    )
    return whole


def lighthouse(size):
    """A lighthouse on its rock by night, with its beam."""
    width, height = size
    picture = gradient(size, (10, 16, 40), (64, 92, 132))
    chance = random.Random(41)
    draw = ImageDraw.Draw(picture)
    for _ in range(150):
        x, y, bright = chance.uniform(0, width), chance.uniform(0, height * 0.62), chance.randint(110, 255)
        radius = 1.0 if bright < 200 else 1.7
        draw.ellipse([x - radius, y - radius, x + radius, y + radius], fill=(bright, bright, min(255, bright + 15)))
    lamp = (width * 0.44, height * 0.245)
    beam = Image.new("L", size, 0)
    pen = ImageDraw.Draw(beam)
    pen.polygon([lamp, (width * 1.2, height * 0.02), (width * 1.2, height * 0.24)], fill=120)
    pen.polygon([lamp, (-width * 0.2, height * 0.30), (-width * 0.2, height * 0.38)], fill=70)
    picture.paste((255, 236, 180), mask=beam.filter(ImageFilter.GaussianBlur(width * 0.012)))
    draw = ImageDraw.Draw(picture)
    draw.rectangle([0, height * 0.74, width, height], fill=(22, 42, 66))
    for number in range(46):
        y = height * (0.745 + 0.25 * (number / 46) ** 1.5)
        x, wide = chance.uniform(-0.1, 1) * width, chance.uniform(0.05, 0.3) * width
        draw.line([x, y, x + wide, y], fill=(44, 70, 98), width=2 + number // 10)
    rock = [
        (0.10, 0.80),
        (0.18, 0.745),
        (0.27, 0.735),
        (0.33, 0.70),
        (0.56, 0.69),
        (0.63, 0.725),
        (0.74, 0.75),
        (0.84, 0.81),
    ]
    draw.polygon([(x * width, y * height) for x, y in rock], fill=(14, 20, 30))
    middle, low, high = width * 0.44, height * 0.70, height * 0.285
    foot, head = width * 0.085, width * 0.055
    bands = 5
    for band in range(bands):
        y1, y2 = low + (high - low) * band / bands, low + (high - low) * (band + 1) / bands
        r1, r2 = foot + (head - foot) * band / bands, foot + (head - foot) * (band + 1) / bands
        light, dark = ((206, 204, 198), (128, 132, 140)) if band % 2 else ((170, 58, 48), (98, 34, 36))
        draw.polygon([(middle - r1, y1), (middle + r1, y1), (middle + r2, y2), (middle - r2, y2)], fill=light)
        draw.polygon(
            [(middle - r1, y1), (middle - r1 * 0.2, y1), (middle - r2 * 0.2, y2), (middle - r2, y2)], fill=dark
        )
    draw.rectangle([middle - head * 1.35, high - height * 0.012, middle + head * 1.35, high], fill=(24, 28, 36))
    draw.rectangle(
        [middle - head * 0.7, high - height * 0.065, middle + head * 0.7, high - height * 0.012], fill=(255, 232, 160)
    )
    for x in (-0.7, -0.23, 0.23, 0.7):
        draw.line(
            [middle + head * x, high - height * 0.065, middle + head * x, high - height * 0.012],
            fill=(24, 28, 36),
            width=3,
        )
    draw.pieslice(
        [middle - head * 0.9, high - height * 0.105, middle + head * 0.9, high - height * 0.025],
        180,
        360,
        fill=(98, 34, 36),
    )
    draw.rectangle([middle - width * 0.011, low - height * 0.06, middle + width * 0.028, low], fill=(14, 20, 30))
    draw.rectangle(
        [middle + width * 0.006, low - height * 0.21, middle + width * 0.025, low - height * 0.19],
        fill=(255, 220, 140),
    )
    glow = Image.new("L", size, 0)
    pen = ImageDraw.Draw(glow)
    pen.ellipse(
        [lamp[0] - width * 0.07, lamp[1] - width * 0.07, lamp[0] + width * 0.07, lamp[1] + width * 0.07], fill=170
    )
    picture.paste((255, 240, 196), mask=glow.filter(ImageFilter.GaussianBlur(width * 0.04)))
    return picture


def make(work, name):
    pages = []
    for draw, size, dpi in ((lake, (540, 360), 150), (lighthouse, (360, 500), 220)):
        # Drawn at twice the size, so that slanting edges come out smooth.
        picture = draw((2 * size[0], 2 * size[1])).resize(size, Image.Resampling.BOX)
        options = {"compression": "tiff_lzw", "dpi": (dpi, dpi), "tiffinfo": {PREDICTOR: HORIZONTAL}}
        pages.append((picture, options))
    return save_tiff(work / name, pages)
