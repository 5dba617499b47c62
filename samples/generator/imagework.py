"""What the picture samples share: type, paper, grain, wear. Everything random comes from a seeded generator."""

import pathlib
import random

from PIL import Image, ImageChops, ImageDraw, ImageFilter, ImageFont, TiffImagePlugin

FONT_FOLDER = pathlib.Path("/usr/share/fonts/truetype/liberation")


def font(face, size):
    """A Liberation face by its file name ("Serif-Bold"). The basic layout engine is the one always built in."""
    path = FONT_FOLDER / f"Liberation{face}.ttf"
    return ImageFont.truetype(str(path), size, layout_engine=ImageFont.Layout.BASIC)


def wrapped(text, face, width):
    """The lines of `text` when it is set in `face` on lines of `width` pixels."""
    lines = []
    for paragraph in text.split("\n"):
        line = ""
        for word in paragraph.split():
            longer = f"{line} {word}".strip()
            if line and face.getlength(longer) > width:
                lines.append(line)
                line = word
            else:
                line = longer
        lines.append(line)
    return lines


def set_text(draw, at, text, face, fill, width, leading):
    """Sets wrapped text with its top left corner at `at`; gives back the y below the last line."""
    x, y = at
    for line in wrapped(text, face, width):
        draw.text((x, y), line, font=face, fill=fill)
        y += leading
    return y


def grain(size, seed, strength, blur):
    """A grey picture around 128 with soft noise of about `strength` levels."""
    width, height = size
    noise = Image.frombytes("L", size, random.Random(seed).randbytes(width * height))
    noise = noise.filter(ImageFilter.GaussianBlur(blur))
    # Blurring evens the noise out; stretch it back to the strength that was asked for.
    low, high = noise.getextrema()
    scale = 2 * strength / max(1, high - low)
    return noise.point([round(128 + (level - (low + high) / 2) * scale) for level in range(256)])


def add_grain(image, seed, strength, blur=0.7):
    """`image` (grey or RGB) with noise laid over it."""
    noise = grain(image.size, seed, strength, blur)
    if image.mode == "RGB":
        noise = Image.merge("RGB", (noise, noise, noise))
    return ImageChops.add(image, noise, 1, -128)


def gradient(size, top, bottom):
    """An RGB picture that runs from the colour `top` to the colour `bottom`."""
    width, height = size
    column = Image.new("RGB", (1, height))
    for y in range(height):
        share = y / max(1, height - 1)
        column.putpixel((0, y), tuple(round(a + (b - a) * share) for a, b in zip(top, bottom)))
    return column.resize(size)


def vignette(image, darkest):
    """Darkens a grey page towards its edges, down to `darkest` of 255 in the corners."""
    width, height = image.size
    light = Image.new("L", (width // 8, height // 8), darkest)
    ImageDraw.Draw(light).rectangle(
        [light.width * 0.05, light.height * 0.035, light.width * 0.95, light.height * 0.965], fill=255
    )
    light = light.filter(ImageFilter.GaussianBlur(light.width * 0.03)).resize(image.size, Image.Resampling.BICUBIC)
    return ImageChops.multiply(image, light)


def skewed(image, degrees, fill):
    return image.rotate(degrees, resample=Image.Resampling.BICUBIC, fillcolor=fill)


def pen_stroke(draw, points, width, fill):
    """A round-ended line through `points`, smoothed, as a pen would leave it."""
    path = smooth(points)
    draw.line(path, fill=fill, width=width, joint="curve")
    for x, y in (path[0], path[-1]):
        draw.ellipse([x - width / 2, y - width / 2, x + width / 2, y + width / 2], fill=fill)


def smooth(points, steps=12):
    """A Catmull-Rom curve through `points`."""
    ends = [points[0], *points, points[-1]]
    path = []
    for (x0, y0), (x1, y1), (x2, y2), (x3, y3) in zip(ends, ends[1:], ends[2:], ends[3:]):
        for step in range(steps):
            t = step / steps
            path.append(
                tuple(
                    0.5
                    * (
                        2 * b
                        + (c - a) * t
                        + (2 * a - 5 * b + 4 * c - d) * t * t
                        + (3 * b - a - 3 * c + d) * t * t * t
                    )
                    for a, b, c, d in ((x0, x1, x2, x3), (y0, y1, y2, y3))
                )
            )
    path.append(points[-1])
    return path


def signature(draw, at, scale, fill, width):
    """A flourish that could be anybody's name."""
    x, y = at
    shape = [
        (0, 20),
        (12, -14),
        (22, -20),
        (18, 6),
        (8, 24),
        (24, 14),
        (34, 4),
        (38, 16),
        (46, 6),
        (52, 16),
        (60, 2),
        (64, 15),
        (74, 8),
        (82, -24),
        (84, 14),
        (94, 4),
        (100, 15),
        (112, 6),
        (124, 13),
        (140, 4),
        (168, 10),
    ]
    pen_stroke(draw, [(x + a * scale, y + b * scale) for a, b in shape], width, fill)
    pen_stroke(draw, [(x + a * scale, y + b * scale) for a, b in ((20, 30), (80, 25), (150, 27))], width, fill)


def save_tiff(target, pages):
    """Writes a TIFF of (picture, options of its own) pages."""
    with open(target, "w+b") as file:
        with TiffImagePlugin.AppendingTiffWriter(file) as writer:
            for picture, options in pages:
                picture.save(writer, format="TIFF", **options)
                writer.newFrame()
    return target
