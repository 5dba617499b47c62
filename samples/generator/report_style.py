"""The dress of the sample report: styles, chapter headings, tables, coloured boxes."""

from reportlab.lib.colors import HexColor, white
from reportlab.lib.styles import ParagraphStyle
from reportlab.lib.units import mm
from reportlab.platypus import Paragraph, Table, TableStyle

from .charts import FACE
from .pdfwork import BRICK, GREY, INK, MOSS, OCHRE, PALE, TEAL

BODY = ParagraphStyle("body", fontName=FACE, fontSize=10, leading=15, textColor=INK, spaceAfter=8)
LEAD = ParagraphStyle("lead", BODY, fontSize=12.5, leading=18.5, textColor=TEAL, spaceAfter=12)
HEADING = ParagraphStyle("heading", BODY, fontName=FACE + "-Bold", fontSize=24, leading=29, spaceAfter=5)
CAPTION = ParagraphStyle(
    "caption", BODY, fontName=FACE + "-Bold", fontSize=9, leading=12, spaceBefore=10, spaceAfter=6
)
SMALL = ParagraphStyle("small", BODY, fontSize=8.5, leading=12, textColor=GREY)
CELL = ParagraphStyle("cell", BODY, fontSize=9.5, leading=12, spaceAfter=0)


class Chapter(Paragraph):
    """A chapter's heading: target of its named destination and of its bookmark."""

    def __init__(self, key, title, level=0):
        super().__init__(title, HEADING)
        self.key, self.title, self.level = key, title, level

    def draw(self):
        self.canv.bookmarkHorizontal(self.key, 0, self.height + 20)
        self.canv.addOutlineEntry(self.title, self.key, self.level)
        super().draw()


def figures(rows, widths, total=True, first_number=1):
    """A table with a coloured head; columns from `first_number` on hold numbers."""
    table = Table(rows, colWidths=[width * mm for width in widths])
    commands = [
        ("FONT", (0, 0), (-1, 0), FACE + "-Bold", 9),
        ("FONT", (0, 1), (-1, -1), FACE, 9.3),
        ("TEXTCOLOR", (0, 0), (-1, 0), white),
        ("TEXTCOLOR", (0, 1), (-1, -1), INK),
        ("BACKGROUND", (0, 0), (-1, 0), TEAL),
        ("ROWBACKGROUNDS", (0, 1), (-1, -1), [white, PALE]),
        ("ALIGN", (first_number, 0), (-1, -1), "RIGHT"),
        ("TOPPADDING", (0, 0), (-1, -1), 4.2),
        ("BOTTOMPADDING", (0, 0), (-1, -1), 5.2),
        ("LINEBELOW", (0, -1), (-1, -1), 0.8, INK),
    ]
    if total:
        commands += [
            ("FONT", (0, -1), (-1, -1), FACE + "-Bold", 9.3),
            ("LINEABOVE", (0, -1), (-1, -1), 0.8, INK),
            ("BACKGROUND", (0, -1), (-1, -1), white),
        ]
    table.setStyle(TableStyle(commands))
    return table


def box(text, colour, shade):
    """A coloured box with a bar at its left."""
    table = Table([[Paragraph(text, ParagraphStyle("boxed", BODY, spaceAfter=0))]], colWidths=[160 * mm])
    table.setStyle(
        TableStyle(
            [
                ("BACKGROUND", (0, 0), (-1, -1), shade),
                ("LINEBEFORE", (0, 0), (0, -1), 4, colour),
                ("LEFTPADDING", (0, 0), (-1, -1), 14),
                ("TOPPADDING", (0, 0), (-1, -1), 10),
                ("BOTTOMPADDING", (0, 0), (-1, -1), 11),
            ]
        )
    )
    return table


def amber(text):
    return box(text, OCHRE, HexColor("#fbf3e3"))


def green(text):
    return box(text, MOSS, HexColor("#eef4e8"))


def red(text):
    return box(text, BRICK, HexColor("#f8ebe8"))
