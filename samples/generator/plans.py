"""plans.pdf: architect's sheets of mixed sizes, on pages that are turned, shifted and scaled in every way.

Every sheet is drawn as its reader sees it; what a page's /Rotate, media box and user unit do is undone here.
"""

from reportlab.lib.pagesizes import A3, A4, landscape, letter, portrait
from reportlab.pdfgen.canvas import Canvas

from . import floor_sheets, upright_sheets
from .drafting import FACE, Sheet
from .pdfwork import describe, finish, patch, set_date, use_family

# number, title, scale, what is special about the page, size as shown, /Rotate, origin of the media box, user unit, drawing
SHEETS = [
    ("A-001", "Site plan", "1 : 250", "A3", landscape(A3), 0, (0, 0), 1, floor_sheets.site_plan),
    ("A-101", "Ground floor", "1 : 75", "A3, turned 90°", landscape(A3), 90, (0, 0), 1, floor_sheets.ground_floor),
    ("A-102", "Upper floor", "1 : 100", "A4", landscape(A4), 0, (0, 0), 1, floor_sheets.upper_floor),
    (
        "A-201",
        "South elevation",
        "1 : 100",
        "A4, turned 180°",
        landscape(A4),
        180,
        (0, 0),
        1,
        upright_sheets.south_elevation,
    ),
    ("A-301", "Section", "1 : 100", "Letter, turned 270°", portrait(letter), 270, (0, 0), 1, upright_sheets.section),
    ("A-401", "Stair", "1 : 40", "A4", portrait(A4), 0, (0, 0), 1, upright_sheets.stair_detail),
    (
        "A-402",
        "Window",
        "1 : 5",
        "A4, box from (144, −90)",
        portrait(A4),
        0,
        (144, -90),
        1,
        upright_sheets.window_detail,
    ),
    ("A-501", "Schedule", "none", "Letter", landscape(letter), 0, (0, 0), 1, upright_sheets.schedule),
    ("A-601", "Roof", "1 : 50", "A2, user unit 2", landscape(A4), 0, (0, 0), 2, floor_sheets.roof_plan),
]


def turn_upright(canvas, rotate, width, height):
    """Lets what is drawn read upright on a page that is shown turned; `width` and `height` are as shown."""
    if rotate == 90:
        canvas.transform(0, 1, -1, 0, height, 0)
    elif rotate == 180:
        canvas.transform(-1, 0, 0, -1, width, height)
    elif rotate == 270:
        canvas.transform(0, -1, 1, 0, 0, width)


def change_pages(objects, pages):
    changed = {}
    for key, (_, _, _, _, (width, height), rotate, (x, y), unit, _) in zip(pages, SHEETS):
        if rotate in (90, 270):
            width, height = height, width
        value = objects[key]["value"]
        value["/MediaBox"] = [round(side, 2) for side in (x, y, x + width, y + height)]
        value["/Rotate"] = rotate
        if unit != 1:
            value["/UserUnit"] = unit
        changed[key] = {"value": value}
    return changed


def make(work, name):
    use_family(FACE, "LiberationSansNarrow")
    set_date(1708336800)
    raw = work / ("raw-" + name)
    canvas = Canvas(str(raw), invariant=1, pageCompression=1)
    describe(canvas, "Reading room and record store, Mill Lane", "Harrow & Finch Architects", "Drawings for tender")
    for number, title, scale, note, (width, height), rotate, origin, _, draw in SHEETS:
        canvas.setPageSize((width, height))
        canvas.translate(*origin)
        turn_upright(canvas, rotate, width, height)
        sheet = Sheet(canvas, width, height)
        draw(sheet)
        sheet.frame(number, title, scale, note)
        canvas.bookmarkPage(number, fit="Fit")
        canvas.addOutlineEntry(f"{number} {title}", number, 0)
        canvas.showPage()
    canvas.save()
    patched = patch(raw, work / ("patched-" + name), change_pages)
    return finish(patched, work / name)
