"""The smaller pictures: a receipt, a diagram, an animation and an old scan."""

import math
import random

from PIL import Image, ImageChops, ImageDraw, ImageFilter

from .imagework import add_grain, font, gradient, signature, skewed, vignette

RECEIPT = [
    ("2 Archival boxes, large", 17.80),
    ("1 Soft brush, goat", 9.40),
    ("5 Pencils, 2B", 4.50),
    ("1 Ink for stamps, black", 6.20),
    ("3 Felts, A3", 13.50),
    ("1 Tape, linen, 10 m", 3.95),
]


def make_receipt(work, name):
    scale = 2
    width, height = 600 * scale, 900 * scale
    chance = random.Random(7)
    table = gradient((width, height), (126, 92, 62), (92, 64, 42))
    draw = ImageDraw.Draw(table)
    for plank in range(4):
        x = plank * width // 4
        shade = chance.randint(-8, 8)
        for line in range(70):
            at = x + chance.uniform(0, width / 4)
            tone = (104 + shade + chance.randint(-16, 12), 75 + shade + chance.randint(-12, 9), 50 + shade)
            sway = chance.uniform(-12, 12)
            draw.line([(at, 0), (at + sway, height / 2), (at, height)], fill=tone, width=chance.randint(1, 4))
        draw.line([x, 0, x, height], fill=(52, 36, 24), width=6)
    table = table.filter(ImageFilter.GaussianBlur(2))

    paper_width, paper_height = 370 * scale, 690 * scale
    paper = gradient((paper_width, paper_height), (246, 245, 240), (228, 227, 222))
    draw = ImageDraw.Draw(paper)
    ink = (52, 50, 62)
    mono, bold, big = (
        font(face, round(size * scale)) for face, size in (("Mono-Regular", 16), ("Mono-Bold", 17), ("Mono-Bold", 25))
    )
    middle, left, right = paper_width / 2, 26 * scale, paper_width - 26 * scale
    draw.text((middle, 40 * scale), "PASTE & PAPER", font=big, fill=ink, anchor="mm")
    draw.text((middle, 68 * scale), "2 Tannery Row, Brenning", font=mono, fill=ink, anchor="mm")
    draw.text((middle, 90 * scale), "14.03.2024   10:42   till 2", font=mono, fill=ink, anchor="mm")
    y = 128 * scale
    draw.text((left, y), "-" * 33, font=mono, fill=ink)
    y += 26 * scale
    for text, price in RECEIPT:
        draw.text((left, y), text, font=mono, fill=ink)
        draw.text((right, y), f"{price:.2f}", font=mono, fill=ink, anchor="ra")
        y += 28 * scale
    draw.text((left, y), "-" * 33, font=mono, fill=ink)
    y += 28 * scale
    total = sum(price for _, price in RECEIPT)
    draw.text((left, y), "TOTAL   crowns", font=bold, fill=ink)
    draw.text((right, y), f"{total:.2f}", font=bold, fill=ink, anchor="ra")
    y += 30 * scale
    for text, value in (("Cash", 60.0), ("Change", 60.0 - total)):
        draw.text((left, y), text, font=mono, fill=ink)
        draw.text((right, y), f"{value:.2f}", font=mono, fill=ink, anchor="ra")
        y += 26 * scale
    y += 20 * scale
    x = 60 * scale
    while x < paper_width - 60 * scale:
        bar = chance.choice((1, 1, 2, 3)) * 2 * scale
        draw.rectangle([x, y, x + bar - 1, y + 62 * scale], fill=ink)
        x += bar + chance.choice((1, 2, 2, 3)) * 2 * scale
    draw.text((middle, y + 82 * scale), "0042 1874 2 140324", font=mono, fill=ink, anchor="mm")
    draw.text((middle, y + 122 * scale), "Thank you. Keep it dry.", font=bold, fill=ink, anchor="mm")
    # Torn edges below and above: small teeth.
    mask = Image.new("L", paper.size, 255)
    pen = ImageDraw.Draw(mask)
    for tooth in range(0, paper_width, 12):
        pen.polygon([(tooth, 0), (tooth + 12, 0), (tooth + 6, 9)], fill=0)
        pen.polygon([(tooth, paper_height), (tooth + 12, paper_height), (tooth + 6, paper_height - 9)], fill=0)
    crease = gradient((1, paper_height), (255, 255, 255), (255, 255, 255)).convert("L")
    for at, shade in ((0.335, 214), (0.34, 250), (0.68, 220), (0.685, 250)):
        ImageDraw.Draw(crease).line([0, at * paper_height, 0, at * paper_height + 8], fill=shade)
    crease = crease.filter(ImageFilter.GaussianBlur(3)).resize(paper.size)
    paper = ImageChops.multiply(paper, Image.merge("RGB", (crease,) * 3))

    corner = (118 * scale, 96 * scale)
    sheet, cut = Image.new("RGB", table.size), Image.new("L", table.size, 0)
    sheet.paste(paper, corner)
    cut.paste(mask, corner)
    sheet = sheet.rotate(-4.2, resample=Image.Resampling.BICUBIC)
    cut = cut.rotate(-4.2, resample=Image.Resampling.BICUBIC)
    shadow = (
        ImageChops.offset(cut, 14, 20).filter(ImageFilter.GaussianBlur(14)).point(lambda level: round(level * 0.6))
    )
    table.paste((18, 12, 8), mask=shadow)
    table.paste(sheet, mask=cut)
    picture = table.resize((width // scale, height // scale), Image.Resampling.LANCZOS)
    light = vignette(Image.new("L", picture.size, 255), 150)
    picture = ImageChops.multiply(picture, Image.merge("RGB", (light,) * 3))
    picture = add_grain(picture, 77, 6, 0.7)
    target = work / name
    picture.save(target, quality=78, optimize=True, dpi=(144, 144))
    return target


def make_diagram(work, name):
    scale = 3
    size = (840, 420)
    picture = Image.new("RGBA", (size[0] * scale, size[1] * scale), (255, 255, 255, 0))
    teal, ochre, moss, brick, ink = (
        (31, 111, 120, 255),
        (201, 138, 43, 255),
        (107, 142, 78, 255),
        (166, 71, 60, 255),
        (29, 42, 53, 255),
    )
    boxes = [
        (30, 150, "Scan", "one box a day", teal),
        (235, 150, "Check", "one image in fifty", ochre),
        (440, 150, "Number", "every page", moss),
        (645, 150, "Shelve", "twice, far apart", teal),
        (235, 300, "Redo", "with a note", brick),
    ]
    wide, high = 165, 84
    shadow = Image.new("RGBA", picture.size, (29, 42, 53, 0))
    pen = ImageDraw.Draw(shadow)
    for x, y, *_ in boxes:
        area = [(x + 3) * scale, (y + 6) * scale, (x + wide + 3) * scale, (y + high + 6) * scale]
        pen.rounded_rectangle(area, radius=12 * scale, fill=(29, 42, 53, 95))
    picture.alpha_composite(shadow.filter(ImageFilter.GaussianBlur(5 * scale)))
    draw = ImageDraw.Draw(picture)

    def arrow(points, colour):
        scaled = [(x * scale, y * scale) for x, y in points]
        draw.line(scaled, fill=colour, width=3 * scale, joint="curve")
        (ax, ay), (bx, by) = scaled[-2], scaled[-1]
        angle = math.atan2(by - ay, bx - ax)
        tip = (bx + 5 * scale * math.cos(angle), by + 5 * scale * math.sin(angle))
        wings = [
            (bx - 9 * scale * math.cos(angle + turn), by - 9 * scale * math.sin(angle + turn)) for turn in (0.6, -0.6)
        ]
        draw.polygon([tip, *wings], fill=colour)

    for x in (195, 400, 605):
        arrow([(x + 3, 192), (x + 31, 192)], ink)
    arrow([(317, 238), (317, 291)], brick)
    arrow([(232, 342), (112, 342), (112, 243)], brick)
    # The same translucent band behind the title on whatever ground the diagram is laid.
    draw.rounded_rectangle(
        [30 * scale, 36 * scale, 810 * scale, 102 * scale], radius=14 * scale, fill=(31, 111, 120, 46)
    )
    draw.text(
        (52 * scale, 69 * scale), "The way of a page", font=font("Sans-Bold", 30 * scale), fill=ink, anchor="lm"
    )
    draw.text(
        (788 * scale, 69 * scale), "workshop, 2024", font=font("Sans-Regular", 17 * scale), fill=ink, anchor="rm"
    )
    for x, y, title, text, colour in boxes:
        draw.rounded_rectangle(
            [x * scale, y * scale, (x + wide) * scale, (y + high) * scale], radius=12 * scale, fill=colour
        )
        centre = (x + wide / 2) * scale
        draw.text((centre, (y + 34) * scale), title, font=font("Sans-Bold", 24 * scale), fill="white", anchor="mm")
        draw.text((centre, (y + 61) * scale), text, font=font("Sans-Regular", 14 * scale), fill="white", anchor="mm")
    target = work / name
    picture.resize(size, Image.Resampling.BOX).save(target, optimize=True, dpi=(150, 150))
    return target


def stamp_frame(lift, printed):
    """A hand stamp above a sheet, lifted by `lift`; `printed` says whether its number is on the sheet already."""
    scale = 3
    picture = gradient((300 * scale, 220 * scale), (214, 228, 230), (176, 200, 204))
    draw = ImageDraw.Draw(picture)

    def box(x1, y1, x2, y2, fill, radius=0):
        draw.rounded_rectangle([v * scale for v in (x1, y1, x2, y2)], radius=radius * scale, fill=fill)

    draw.polygon(
        [(v * scale, w * scale) for v, w in ((40, 205), (75, 135), (225, 135), (260, 205))], fill=(150, 172, 176)
    )
    draw.polygon(
        [(v * scale, w * scale) for v, w in ((40, 201), (75, 131), (225, 131), (260, 201))], fill=(252, 250, 244)
    )
    for line in range(3):
        y = 141 + line * 8
        inset = (201 - y) / 70 * 35
        draw.line(
            [(40 + inset + 18) * scale, y * scale, (260 - inset - 18) * scale, y * scale],
            fill=(196, 200, 204),
            width=2 * scale,
        )
    if printed:
        draw.text(
            (150 * scale, 180 * scale), "0042", font=font("Mono-Bold", 26 * scale), fill=(166, 71, 60), anchor="mm"
        )
    top = 84 - lift
    box(112, top + 84, 188, top + 98, (42, 48, 56), 3)
    box(118, top + 52, 182, top + 86, (31, 111, 120), 6)
    box(139, top + 6, 161, top + 54, (120, 78, 48), 6)
    draw.ellipse([v * scale for v in (128, top - 18, 172, top + 22)], fill=(146, 98, 62))
    draw.ellipse([v * scale for v in (136, top - 12, 154, top + 4)], fill=(184, 136, 96))
    box(124, top + 60, 176, top + 64, (62, 140, 148))
    return picture.resize((300, 220), Image.Resampling.LANCZOS)


def make_animation(work, name):
    frames = [stamp_frame(46, False), stamp_frame(0, False), stamp_frame(46, True)]
    strip = Image.new("RGB", (900, 220))
    for number, frame in enumerate(frames):
        strip.paste(frame, (300 * number, 0))
    # One palette for all frames, so that nothing flickers.
    palette = strip.quantize(colors=192, method=Image.Quantize.MEDIANCUT, dither=Image.Dither.NONE)
    frames = [frame.quantize(palette=palette, dither=Image.Dither.NONE) for frame in frames]
    target = work / name
    frames[0].save(target, save_all=True, append_images=frames[1:], duration=[500, 250, 900], loop=0, disposal=1)
    return target


def make_old_scan(work, name):
    """A card of a library's catalogue, 125 by 75 millimetres, as an old scanner saw it: 256 greys."""
    scale = 3
    size = (541, 325)
    card = Image.new("L", (size[0] * scale, size[1] * scale), 214)
    draw = ImageDraw.Draw(card)
    unit = scale * size[0] / 125
    for line in range(8):
        y = (17 + 6.4 * line) * unit
        draw.line([0, y, card.width, y], fill=184, width=scale)
    for x in (14, 17):
        draw.line([x * unit, 0, x * unit, card.height], fill=176, width=scale)
    face, bold = font("Mono-Regular", round(3.9 * unit)), font("Mono-Bold", round(3.9 * unit))
    rows = [
        (19, 12.2, "LARKSPUR, Edmund, 1902-1981.", bold),
        (25, 18.6, "The tides at Brenning : a keeper's", face),
        (25, 25.0, "diary. - Saltmere : Gander & Holm,", face),
        (25, 31.4, "1958. - 212 p. : ill. ; 21 cm.", face),
        (25, 44.2, "1. Harbours.  2. Tides.  3. Diaries.", face),
        (19, 57.0, "Ku 14/387", bold),
    ]
    for x, y, text, letters in rows:
        draw.text((x * unit, y * unit), text, font=letters, fill=62)
    draw.text((3 * unit, 12.2 * unit), "Ku", font=bold, fill=62)
    draw.text((3 * unit, 18.6 * unit), "14", font=bold, fill=62)
    draw.ellipse([60 * unit, 66 * unit, 66 * unit, 72 * unit], fill=40)
    signature(draw, (88 * unit, 60 * unit), 0.14 * unit, 110, 5)
    stain = Image.new("L", card.size, 255)
    pen = ImageDraw.Draw(stain)
    pen.ellipse([92 * unit, 2 * unit, 118 * unit, 28 * unit], outline=196, width=round(1.6 * unit))
    pen.rectangle([0, 0, card.width, 2 * unit], fill=205)
    card = ImageChops.multiply(card, stain.filter(ImageFilter.GaussianBlur(unit)))
    card = skewed(card, -0.8, 96).resize(size, Image.Resampling.LANCZOS)
    card = add_grain(vignette(card, 205), 19, 15, 0.6)
    target = work / name
    card.save(target, dpi=(110, 110))
    return target
