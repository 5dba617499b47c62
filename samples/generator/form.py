"""form.pdf: two A4 pages with form fields, links within and out of the document, and a note."""

from reportlab.lib.colors import HexColor, white
from reportlab.lib.pagesizes import A4
from reportlab.lib.units import mm
from reportlab.pdfgen.canvas import Canvas

from .pdfwork import GREY, INK, PALE, RULE, TEAL, catalog_of, describe, finish, patch, set_date, use_family

FACE = "Sans"
LEFT, RIGHT = 25 * mm, A4[0] - 25 * mm
FIELD_FILL = HexColor("#f4f8f8")

# label, field name, value, tooltip, left and right end as shares of the line
FIELDS = [
    [
        ("Family name", "family_name", "Quillam", "Family name as in your passport", 0, 0.49),
        ("Given names", "given_names", "", "All given names", 0.51, 1),
    ],
    [("Street and number", "street", "", "Street and number of your home", 0, 1)],
    [
        ("Postal code", "postal_code", "", "Postal code", 0, 0.23),
        ("Town", "town", "Nether Saltmere", "Town", 0.25, 0.66),
        ("Country", "country", "", "Country", 0.68, 1),
    ],
    [
        ("Telephone", "telephone", "", "With the area code", 0, 0.32),
        ("Mail address", "mail", "", "We write to this address only", 0.34, 1),
    ],
]

CHECKS = [
    ("rules_read", True, "I have read the rules of the reading room (overleaf) and will keep them."),
    ("pencil", True, "I shall write with pencil only, and leave coat and bag in the locker."),
    ("copies", False, "I wish to take photographs of my own, without flash and without tripod."),
    ("newsletter", False, "Please send me the calendar of lectures and exhibitions."),
]

RULES = [
    (
        "Opening hours",
        "The reading room is open from Tuesday to Friday, 9:30 to 17:00. Items are fetched at the full "
        "hour, for the last time at 15:00. On the first Thursday of the month it stays open until 20:00.",
    ),
    (
        "At the table",
        "Papers lie flat on the table or on a cradle; they are never leaned upon, written upon or traced. "
        "Leaves of a bundle stay in the order in which you found them. Gloves are worn for photographs only.",
    ),
    (
        "Ordering",
        "You may have three items at a time and ten on a day. An item that somebody else is reading is kept "
        "for you for a week. Maps over A1 are read at the large table by the north window.",
    ),
    (
        "Copies",
        "Our workshop makes copies of whatever the law and the state of the item allow. Orders are given on the "
        "yellow slip; the leaf numbers stamped at the foot of the pages tell us what you want.",
    ),
    (
        "Quoting",
        "In print, please give our name and the shelf mark, and send us a copy of what you wrote. It is "
        "catalogued, and found by the next person with your question.",
    ),
]


def head(canvas, title, subtitle):
    width, height = A4
    canvas.setFillColor(TEAL)
    canvas.rect(0, height - 34 * mm, width, 34 * mm, stroke=0, fill=1)
    canvas.setFillColor(white)
    canvas.setFont(FACE + "-Bold", 21)
    canvas.drawString(LEFT, height - 19 * mm, title)
    canvas.setFont(FACE, 10)
    canvas.drawString(LEFT, height - 26.5 * mm, subtitle)
    canvas.setFillColor(INK)


def section(canvas, y, number, title):
    canvas.setFillColor(TEAL)
    canvas.circle(LEFT + 8, y + 4, 9, stroke=0, fill=1)
    canvas.setFillColor(white)
    canvas.setFont(FACE + "-Bold", 10.5)
    canvas.drawCentredString(LEFT + 8, y + 0.4, str(number))
    canvas.setFillColor(INK)
    canvas.setFont(FACE + "-Bold", 12.5)
    canvas.drawString(LEFT + 24, y, title)
    canvas.setStrokeColor(RULE)
    canvas.setLineWidth(0.6)
    canvas.line(LEFT, y - 11, RIGHT, y - 11)


def text_field(canvas, label, name, value, tooltip, x, y, width, height=18, flags=""):
    canvas.setFont(FACE, 8)
    canvas.setFillColor(GREY)
    canvas.drawString(x, y + height + 4, label)
    canvas.acroForm.textfield(
        name=name,
        value=value,
        tooltip=tooltip,
        x=x,
        y=y,
        width=width,
        height=height,
        fontName="Helvetica",
        fontSize=10.5,
        borderWidth=0.8,
        borderColor=RULE,
        fillColor=FIELD_FILL,
        textColor=INK,
        maxlen=200,
        fieldFlags=flags,
        forceBorder=True,
    )


def link(canvas, x, y, text, address=None, target=None):
    """Underlined text that leads to an address, or to a bookmark of this document."""
    canvas.setFont(FACE, 9.5)
    canvas.setFillColor(TEAL)
    canvas.drawString(x, y, text)
    width = canvas.stringWidth(text, FACE, 9.5)
    canvas.setStrokeColor(TEAL)
    canvas.setLineWidth(0.5)
    canvas.line(x, y - 1.6, x + width, y - 1.6)
    area = (x, y - 3, x + width, y + 9)
    if address:
        canvas.linkURL(address, area, relative=0, thickness=0)
    else:
        canvas.linkRect("", target, area, relative=0, thickness=0)
    return x + width


def application(canvas):
    width, height = A4
    canvas.bookmarkPage("application", fit="FitH", top=height)
    canvas.addOutlineEntry("Application", "application", 0)
    head(canvas, "Application for a reader’s ticket", "Saltmere County Archive  ·  Reading room, Mill Lane")
    y = height - 50 * mm
    section(canvas, y, 1, "About you")
    span = RIGHT - LEFT
    y -= 49
    for row in FIELDS:
        for label, name, value, tooltip, start, end in row:
            text_field(canvas, label, name, value, tooltip, LEFT + span * start, y, span * (end - start))
        y -= 40
    y -= 12
    section(canvas, y, 2, "About your work")
    y -= 80
    text_field(
        canvas,
        "What are you looking for, and what for?",
        "subject",
        "The harbour of Brenning and its keepers, 1860 to 1914",
        "A few lines will do",
        LEFT,
        y,
        span,
        48,
        "multiline",
    )
    y -= 34
    canvas.setFillColor(INK)
    canvas.setFont(FACE, 9.5)
    canvas.drawString(LEFT, y + 5, "I need the ticket for")
    canvas.acroForm.choice(
        name="duration",
        value="a few weeks",
        options=["one day", "a few weeks", "a year"],
        x=LEFT + 100,
        y=y,
        width=130,
        height=18,
        fontName="Helvetica",
        fontSize=10.5,
        borderWidth=0.8,
        borderColor=RULE,
        fillColor=FIELD_FILL,
        textColor=INK,
        forceBorder=True,
        fieldFlags="combo",
        tooltip="How long the ticket is needed",
    )
    y -= 44
    section(canvas, y, 3, "Please confirm")
    y -= 32
    for name, checked, text in CHECKS:
        canvas.acroForm.checkbox(
            name=name,
            checked=checked,
            tooltip=text,
            x=LEFT,
            y=y,
            size=13,
            buttonStyle="check",
            borderColor=RULE,
            fillColor=FIELD_FILL,
            textColor=TEAL,
            borderWidth=0.8,
            forceBorder=True,
        )
        canvas.setFillColor(INK)
        canvas.setFont(FACE, 9.5)
        canvas.drawString(LEFT + 20, y + 3, text)
        y -= 21
    y -= 26
    text_field(canvas, "Date", "date", "", "Day, month, year", LEFT, y - 10, span * 0.3)
    canvas.setStrokeColor(INK)
    canvas.setLineWidth(0.7)
    canvas.line(LEFT + span * 0.4, y - 10, RIGHT, y - 10)
    canvas.setFont(FACE, 8)
    canvas.setFillColor(GREY)
    canvas.drawString(LEFT + span * 0.4, y - 20, "Signature")
    y -= 56
    end = link(canvas, LEFT, y, "Rules of the reading room, overleaf", target="rules")
    end = link(canvas, end + 18, y, "Catalogue", address="https://catalogue.example.org/")
    link(canvas, end + 18, y, "desk@archive.example.org", address="mailto:desk@archive.example.org")
    canvas.textAnnotation(
        "Mr Quillam asked to have the ticket ready on Thursday. Please check the date of birth on his passport. (O. F.)",
        (RIGHT - 20, height - 48 * mm, RIGHT, height - 48 * mm + 20),
        name=None,
        Color=(0.98, 0.80, 0.30),
        Name="/Comment",
        Open="false",
    )


def rules(canvas):
    width, height = A4
    canvas.bookmarkPage("rules", fit="FitH", top=height)
    canvas.addOutlineEntry("Rules of the reading room", "rules", 0)
    head(canvas, "Rules of the reading room", "In force since 1 January 2024")
    y = height - 52 * mm
    for number, (title, text) in enumerate(RULES, 1):
        key = f"rule-{number}"
        canvas.bookmarkHorizontal(key, 0, y + 24)
        canvas.addOutlineEntry(title, key, 1)
        section(canvas, y, number, title)
        y -= 31
        canvas.setFillColor(INK)
        canvas.setFont(FACE, 10.5)
        line = ""
        for word in text.split() + [None]:
            longer = f"{line} {word}".strip() if word else None
            if longer and canvas.stringWidth(longer, FACE, 10.5) <= RIGHT - LEFT:
                line = longer
                continue
            canvas.drawString(LEFT, y, line)
            y -= 15.5
            line = word
        y -= 22
    canvas.setFillColor(PALE)
    canvas.roundRect(LEFT, y - 38, RIGHT - LEFT, 48, 6, stroke=0, fill=1)
    canvas.setFillColor(INK)
    canvas.setFont(FACE + "-Bold", 10.5)
    canvas.drawString(LEFT + 14, y - 9, "Questions?")
    end = link(canvas, LEFT + 14, y - 26, "desk@archive.example.org", address="mailto:desk@archive.example.org")
    end = link(canvas, end + 18, y - 26, "All rules and fees", address="https://archive.example.org/rules?lang=en")
    link(canvas, end + 18, y - 26, "Back to the application", target="application")


def leave_appearances(objects, pages):
    """The fields carry the appearances they are to be shown with; readers need not make them anew."""
    catalog = objects[catalog_of(objects)]["value"]
    form = "obj:" + catalog["/AcroForm"]
    value = objects[form]["value"]
    value.pop("/NeedAppearances", None)
    return {form: {"value": value}}


def make(work, name):
    use_family(FACE, "LiberationSans")
    set_date(1709542800)
    raw = work / ("raw-" + name)
    canvas = Canvas(str(raw), pagesize=A4, invariant=1, pageCompression=1)
    describe(canvas, "Application for a reader’s ticket", "Saltmere County Archive", "Form RR-2")
    application(canvas)
    canvas.showPage()
    rules(canvas)
    canvas.showPage()
    canvas.save()
    patched = patch(raw, work / ("patched-" + name), leave_appearances)
    return finish(patched, work / name)
