"""scan.pdf: three pages that came off a scanner: grey JPEG pictures, a little askew, without a text layer."""

import random

from PIL import Image, ImageChops, ImageDraw, ImageFilter
from reportlab.lib.pagesizes import A4
from reportlab.lib.utils import ImageReader
from reportlab.pdfgen.canvas import Canvas

from .imagework import add_grain, font, set_text, signature, skewed, vignette
from .pdfwork import describe, finish, set_date

DPI = 120
PAGE = (round(8.27 * DPI), round(11.69 * DPI))

# The letter is drawn at this many times the size of the scan, so that its edges come out soft.
OVERSAMPLING = 2

FIRST = [
    "Dear Mr Quillam,",
    (
        "thank you for your letter of the 9th. I have now been through the three crates that came down from the loft "
        "of the old harbour office, and I am glad to say that they are in a far better state than either of us feared."
    ),
    (
        "The first holds the tide books from 1871 to 1902, complete but for the winter of 1884, in the hand of at "
        "least four clerks. The bindings are sound; two have lost their spines. The second is full of loose vouchers, "
        "tied in bundles by quarter, with the string still on them. The third I shall describe in the list overleaf, "
        "as it is a mixture."
    ),
    (
        "There is no sign of worm. Some of the vouchers have been wet at one time, and a few are stuck together. I "
        "have left those as they are: pulling at them would do more harm in a minute than the water did in a century."
    ),
    (
        "I should propose that we number the leaves before anything is moved again. It need not be beautiful, as long "
        "as every leaf has its number and no two have the same."
    ),
]

SECOND = [
    (
        "You asked what the numbering would cost. Our volunteer can do about four hundred leaves in a morning with "
        "the stamp and the soft black ink; so that the whole comes to eleven mornings, or a little more if the "
        "vouchers turn out to be written on both sides."
    ),
    (
        "Would you let me know by the end of the month whether you agree? The room is ours until Whitsun only; after "
        "that the sailing club will have it back."
    ),
    "With kind regards,",
]

LIST = [
    ("III/1", "Register of pilots, with certificates", "1866–1911", "212"),
    ("III/2", "Plans of the fish quay, on linen", "1878", "14"),
    ("III/3", "Letters from the dredging company", "1880–1893", "347"),
    ("III/4", "Wages of the lamplighters", "1869–1904", "96"),
    ("III/5", "Photographs of the storm, mounted", "1883", "22"),
    ("III/6", "Minute book, committee on moorings", "1891–1899", "188"),
    ("III/7", "Bills of health, foreign vessels", "1874–1886", "530"),
    ("III/8", "Sketches of buoys and beacons", "undated", "41"),
    ("III/9", "Diary of the harbour master", "1888", "182"),
    ("III/10", "Unsorted", "", "ca. 300"),
]

INKS = {"type": 38, "head": 60, "pen": 70}


def sheet():
    width, height = (OVERSAMPLING * side for side in PAGE)
    page = Image.new("L", (width, height), 238)
    return page, ImageDraw.Draw(page), width / 210


def letterhead(draw, unit):
    big, small = font("Serif-Bold", round(7.4 * unit)), font("Serif-Italic", round(3.7 * unit))
    draw.text((105 * unit, 20 * unit), "BRENNING HARBOUR TRUST", font=big, fill=INKS["head"], anchor="mt")
    line = "Keeper of the Muniments  ·  The Old Bonded Store  ·  Brenning"
    draw.text((105 * unit, 30 * unit), line, font=small, fill=INKS["head"], anchor="mt")
    draw.line([28 * unit, 37 * unit, 182 * unit, 37 * unit], fill=INKS["head"], width=round(0.5 * unit))
    draw.line([28 * unit, 38 * unit, 182 * unit, 38 * unit], fill=INKS["head"], width=round(0.2 * unit))


def typed(draw, unit, top, paragraphs):
    """Typewritten paragraphs from `top` (in millimetres); gives back where they end."""
    face = font("Mono-Regular", round(4.05 * unit))
    y = top * unit
    for paragraph in paragraphs:
        y = set_text(draw, (30 * unit, y), paragraph, face, INKS["type"], 152 * unit, 6.2 * unit) + 4 * unit
    return y / unit


def letter_page():
    page, draw, unit = sheet()
    letterhead(draw, unit)
    face = font("Mono-Regular", round(4.05 * unit))
    for line, text in enumerate(("Mr Barnaby Quillam", "3 Ropewalk Cottages", "Nether Saltmere")):
        draw.text((30 * unit, (50 + 6.2 * line) * unit), text, font=face, fill=INKS["type"])
    draw.text((182 * unit, 76 * unit), "21st March 1974", font=face, fill=INKS["type"], anchor="ra")
    typed(draw, unit, 88, FIRST)
    return page


def list_page():
    page, draw, unit = sheet()
    face = font("Mono-Regular", round(3.75 * unit))
    bold = font("Mono-Bold", round(4.05 * unit))
    draw.text((30 * unit, 30 * unit), "CRATE III: LIST OF CONTENTS", font=bold, fill=INKS["type"])
    draw.line([30 * unit, 36.4 * unit, 98 * unit, 36.4 * unit], fill=INKS["type"], width=round(0.45 * unit))
    columns = (30, 50, 139, 183)
    edges = (27, 47, 137, 164, 186)
    top, step = 46, 10.5
    rows = [("No.", "Description", "Years", "Leaves")] + LIST
    for number, row in enumerate(rows):
        y = (top + step * number) * unit
        for column, text in enumerate(row):
            anchor = "ra" if column == 3 else "la"
            draw.text(
                (columns[column] * unit, y),
                text,
                font=bold if number == 0 else face,
                fill=INKS["type"],
                anchor=anchor,
            )
    bottom = top + step * len(rows) - 3
    for number in range(len(rows) + 1):
        y = (top - 3 + step * number) * unit
        draw.line([edges[0] * unit, y, edges[-1] * unit, y], fill=95, width=round(0.25 * unit))
    for x in edges:
        draw.line([x * unit, (top - 3) * unit, x * unit, bottom * unit], fill=95, width=round(0.25 * unit))
    for row in (2, 6):
        # Somebody ticked two of the entries with a soft pencil.
        y = top + step * row + 1
        draw.line(
            [(19 * unit, y * unit), (21 * unit, (y + 3) * unit), (25 * unit, (y - 4) * unit)],
            fill=INKS["pen"],
            width=round(0.7 * unit),
            joint="curve",
        )
    typed(
        draw,
        unit,
        bottom + 12,
        ["Leaves counted by hand, covers not included. III/2 is too large for the shelf and lies on the plan chest."],
    )
    return page


def last_page():
    page, draw, unit = sheet()
    end = typed(draw, unit, 32, SECOND)
    signature(draw, (32 * unit, (end + 15) * unit), 0.42 * unit, INKS["pen"], round(0.75 * unit))
    face = font("Mono-Regular", round(4.05 * unit))
    draw.text((30 * unit, (end + 32) * unit), "Edmund Larkspur", font=face, fill=INKS["type"])
    draw.text((30 * unit, (end + 38.2) * unit), "Keeper of the Muniments", font=face, fill=INKS["type"])
    box = [118 * unit, (end + 8) * unit, 180 * unit, (end + 36) * unit]
    stamp = Image.new("L", page.size, 255)
    pen = ImageDraw.Draw(stamp)
    pen.rounded_rectangle(box, radius=3 * unit, outline=120, width=round(0.9 * unit))
    for offset, text, size in ((14, "RECEIVED", 6.6), (22, "25 MAR 1974", 5.2), (29, "B. Q.", 4.6)):
        pen.text(
            (149 * unit, (end + offset) * unit),
            text,
            font=font("Sans-Bold", round(size * unit)),
            fill=120,
            anchor="mm",
        )
    stamp = stamp.rotate(7, center=(149 * unit, (end + 22) * unit), resample=Image.Resampling.BICUBIC, fillcolor=255)
    page.paste(stamp, mask=stamp.point(lambda level: 255 - level))
    return page


def worn(page, seed, degrees):
    """What a scanner makes of a page: fold, punched holes, specks, skew, uneven light, grain."""
    chance = random.Random(seed)
    width, height = page.size
    unit = width / 210
    folds = Image.new("L", page.size, 255)
    draw = ImageDraw.Draw(folds)
    for third in (1, 2):
        y = height * third / 3 + chance.uniform(-2, 2) * unit
        draw.line([0, y, width, y + chance.uniform(-1, 1) * unit], fill=226, width=round(0.7 * unit))
    page = ImageChops.multiply(page, folds.filter(ImageFilter.GaussianBlur(0.35 * unit)))
    draw = ImageDraw.Draw(page)
    for y in (108.5, 188.5):
        draw.ellipse([8 * unit, y * unit, 14 * unit, (y + 6) * unit], fill=66, outline=190, width=round(0.3 * unit))
    for _ in range(70):
        x, y, r = chance.uniform(0, width), chance.uniform(0, height), chance.uniform(0.06, 0.26) * unit
        draw.ellipse([x - r, y - r, x + r, y + r], fill=chance.randint(90, 190))
    page = skewed(page, degrees, 70).resize(PAGE, Image.Resampling.LANCZOS)
    page = page.filter(ImageFilter.GaussianBlur(0.45))
    return add_grain(vignette(page, 192), seed, 9, 0.9)


def make(work, name):
    set_date(1717416000)
    raw = work / ("raw-" + name)
    canvas = Canvas(str(raw), pagesize=A4, invariant=1)
    describe(
        canvas, "Scanned letter", "Flatbed 2, Saltmere County Archive", "Brenning Harbour Trust, crates I to III"
    )
    pages = [(letter_page(), 11, 0.7), (list_page(), 12, -0.9), (last_page(), 13, 0.4)]
    for number, (page, seed, degrees) in enumerate(pages, 1):
        picture = work / f"scan-{number}.jpg"
        worn(page, seed, degrees).save(picture, quality=40, optimize=True, dpi=(DPI, DPI))
        # Through a reader, the picture is named after its content and not after its path.
        canvas.drawImage(ImageReader(str(picture)), 0, 0, *A4)
        canvas.showPage()
    canvas.save()
    return finish(raw, work / name)
