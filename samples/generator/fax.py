"""letter-fax.tif: three pages that came by fax, black and white, with dots that are higher than wide."""

import random

from PIL import Image, ImageDraw

from .imagework import add_grain, font, save_tiff, set_text, signature, skewed

# Fax machines send white as nought.
PHOTOMETRIC, WHITE_IS_ZERO = 262, 0

WIDTH, HEIGHT = 1728, 2292
DPI = (204, 196)

LETTER = [
    "Dear Mrs Ashdown,",
    (
        "please find overleaf our price for binding the order books of the year, as we talked about it on Monday. It "
        "holds good until the end of the month."
    ),
    (
        "The leaves are to be numbered before they come to us, at the foot and in the middle, so that nothing is lost "
        "or turned about on the way. If you send them numbered twice we shall bind them twice."
    ),
    (
        "We collect on Thursdays. The van is blue and has no name on it; the driver is called Piet and has a slip with "
        "our stamp."
    ),
    "Yours faithfully,",
]

PRICES = [
    ("12", "volumes, half cloth, sewn on tapes", "38.50", "462.00"),
    ("3", "volumes, full cloth, large", "54.00", "162.00"),
    ("15", "titles in gold, two lines", "6.20", "93.00"),
    ("1", "box, made to measure", "27.00", "27.00"),
    ("", "collection and return", "", "35.00"),
]


def sheet():
    """A page with square dots, which is squeezed to the dots of a fax when it is done."""
    height = round(HEIGHT * DPI[0] / DPI[1])
    page = Image.new("L", (WIDTH, height), 255)
    return page, ImageDraw.Draw(page)


def cover():
    page, draw = sheet()
    draw.text((150, 210), "FAX", font=font("Sans-Bold", 260), fill=0)
    draw.text((1580, 300), "Gander & Holm", font=font("Serif-Bold", 72), fill=0, anchor="ra")
    draw.text((1580, 392), "Bookbinders since 1921", font=font("Serif-Italic", 46), fill=0, anchor="ra")
    draw.rectangle([150, 520, 1580, 534], fill=0)
    rows = [
        ("To", "Mrs Ashdown, Borough Registry"),
        ("From", "Theo Holm"),
        ("Date", "12 March 2003"),
        ("Subject", "Order books 2002, binding"),
        ("Pages", "3, this one included"),
    ]
    for number, (label, value) in enumerate(rows):
        y = 620 + number * 120
        draw.text((150, y), label, font=font("Sans-Bold", 48), fill=0)
        draw.text((480, y), value, font=font("Sans-Regular", 48), fill=0)
        draw.line([150, y + 82, 1580, y + 82], fill=0, width=3)
    for number, label in enumerate(("urgent", "please reply", "for your files")):
        x = 150 + number * 480
        draw.rectangle([x, 1330, x + 52, 1382], outline=0, width=5)
        draw.text((x + 76, 1332), label, font=font("Sans-Regular", 44), fill=0)
    draw.line([(638, 1352), (656, 1376), (700, 1312)], fill=0, width=10, joint="curve")
    note = "If a page is missing or cannot be read, please call us."
    draw.text((150, 1500), note, font=font("Sans-Italic", 42), fill=0)
    # A rule of dots, as a matrix printer would make a grey.
    for y in range(1640, 2260, 10):
        for x in range(150 + (y // 10 % 2) * 5, 1580, 10):
            radius = 3.6 * (y - 1640) / 620
            if radius > 0.5:
                draw.ellipse([x - radius, y - radius, x + radius, y + radius], fill=0)
    return page


def letter():
    page, draw = sheet()
    draw.text((150, 200), "Gander & Holm", font=font("Serif-Bold", 64), fill=0)
    draw.text((150, 280), "Bookbinders  ·  7 Paste Lane  ·  Lower Brenning", font=font("Serif-Italic", 40), fill=0)
    draw.line([150, 346, 1580, 346], fill=0, width=4)
    face = font("Serif-Regular", 47)
    y = 470
    for paragraph in LETTER:
        y = set_text(draw, (150, y), paragraph, face, 0, 1400, 68) + 38
    signature(draw, (170, y + 80), 4.2, 0, 8)
    draw.text((150, y + 250), "Theo Holm", font=face, fill=0)
    return page


def prices():
    page, draw = sheet()
    draw.text((150, 200), "Price no. 2003/58", font=font("Sans-Bold", 60), fill=0)
    bold, face = font("Sans-Bold", 42), font("Sans-Regular", 42)
    columns = ((170, "la"), (320, "la"), (1270, "ra"), (1560, "ra"))
    rows = [("No.", "Work", "Each", "Crowns"), *PRICES]
    total = sum(float(row[3]) for row in PRICES)
    rows.append(("", "Together", "", f"{total:.2f}"))
    for number, row in enumerate(rows):
        y = 360 + number * 92
        strong = number in (0, len(rows) - 1)
        for (x, anchor), value in zip(columns, row):
            draw.text((x, y), value, font=bold if strong else face, fill=0, anchor=anchor)
        draw.line([150, y + 66, 1580, y + 66], fill=0, width=6 if strong else 2)
    draw.line([150, 334, 1580, 334], fill=0, width=6)
    for x in (150, 290, 1100, 1310, 1580):
        draw.line([x, 334, x, 360 + 92 * len(rows) - 26], fill=0, width=3)
    top = 1180
    draw.text((150, top), "Half cloth, as offered", font=bold, fill=0)
    # A volume, drawn with the pen.
    draw.polygon([(260, top + 220), (760, top + 120), (760, top + 760), (260, top + 860)], outline=0, width=6)
    draw.polygon([(260, top + 220), (200, top + 196), (200, top + 830), (260, top + 860)], outline=0, width=6)
    draw.line([(200, top + 196), (700, top + 98), (760, top + 120)], fill=0, width=6, joint="curve")
    draw.line([(380, top + 196), (380, top + 836)], fill=0, width=4)
    for step in range(16):
        x = 268 + step * 7
        draw.line([(x, top + 219 - (x - 260) * 0.2), (x, top + 858 - (x - 260) * 0.2)], fill=0, width=2)
    draw.rectangle([470, top + 290, 690, top + 410], outline=0, width=4)
    draw.text((580, top + 332), "ORDERS", font=font("Serif-Bold", 40), fill=0, anchor="mm")
    draw.text((580, top + 376), "2002", font=font("Serif-Regular", 36), fill=0, anchor="mm")
    labels = (
        (860, 250, "cloth at the spine, black", 330, 330),
        (860, 420, "title in gold", 690, 370),
        (860, 590, "boards, marbled paper", 620, 640),
        (860, 760, "leaves numbered at the foot", 300, 840),
    )
    for x, y, text, to_x, to_y in labels:
        draw.text((x, top + y), text, font=face, fill=0, anchor="lm")
        draw.line([x - 16, top + y, to_x, top + to_y], fill=0, width=3)
    return page


def faxed(page, number, count):
    """What arrives of a page: the sender's line, ragged edges, specks, and dots higher than they are wide."""
    chance = random.Random(200 + number)
    draw = ImageDraw.Draw(page)
    line = (
        f"12-MAR-2003  14:{22 + number:02d}   GANDER & HOLM                               P.{number:02d}/{count:02d}"
    )
    draw.text((60, 34), line, font=font("Mono-Bold", 36), fill=0)
    page = skewed(page, (0.25, -0.2, 0.3)[number - 1], 255)
    page = page.resize((WIDTH, HEIGHT), Image.Resampling.LANCZOS)
    page = add_grain(page, 300 + number, 80, 0.6).point(lambda level: 255 if level > 120 else 0)
    draw = ImageDraw.Draw(page)
    for _ in range(60):
        x, y = chance.randrange(WIDTH), chance.randrange(HEIGHT)
        draw.rectangle([x, y, x + chance.randrange(3), y + chance.randrange(3)], fill=0)
    return page.convert("1", dither=Image.Dither.NONE)


def make(work, name):
    drawn = [cover(), letter(), prices()]
    options = {"compression": "group4", "dpi": DPI, "tiffinfo": {PHOTOMETRIC: WHITE_IS_ZERO}}
    return save_tiff(work / name, [(faxed(page, n, len(drawn)), options) for n, page in enumerate(drawn, 1)])
