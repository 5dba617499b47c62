"""report.pdf: an annual report of twelve pages with page labels, named destinations and an attached sheet."""

from reportlab.lib.colors import HexColor, white
from reportlab.lib.pagesizes import A4
from reportlab.lib.units import mm
from reportlab.platypus import BaseDocTemplate, Frame, NextPageTemplate, PageBreak, PageTemplate, Spacer

from . import report_data as data
from .charts import FACE
from .pdfwork import OCHRE, TEAL, catalog_of, describe, finish, new_key, patch, qpdf, set_date, use_family
from .report_pages import all_pages
from .report_style import Chapter

TITLE = "Annual Report 2023"
AUTHOR = "Saltmere County Archive"


class Report(BaseDocTemplate):
    """Notes while it is set where each chapter came to stand."""

    def __init__(self, *arguments, **options):
        super().__init__(*arguments, **options)
        self.places = {"cover": (1, A4[1])}

    def afterFlowable(self, flowable):
        if isinstance(flowable, Chapter):
            self.places[flowable.key] = (self.page, self.frame._y + flowable.height + 20)


def cover(canvas, document):
    """The first page, and the document's description."""
    describe(
        canvas, f"{AUTHOR}: {TITLE}", AUTHOR, "Holdings, readers and accounts of the year 2023", ("archive", "report")
    )
    canvas.showOutline()
    canvas.addPageLabel(0, style="ROMAN_LOWER")
    canvas.addPageLabel(4, style="ARABIC", start=1)
    canvas.bookmarkPage("cover", fit="Fit")
    canvas.addOutlineEntry(TITLE, "cover", 0)
    width, height = A4
    canvas.linearGradient(
        0, height, width, 0, (HexColor("#1b5d66"), HexColor("#0f3c47")), positions=(0, 1), extend=True
    )
    shades = ("#2b7f87", "#c98a2b", "#6b8e4e", "#a6473c", "#e9dfc7", "#3d8f95")
    # Spines of volumes on two shelves, each of its own height and colour.
    for shelf, base in enumerate((118 * mm, 58 * mm)):
        x, number = 24 * mm, shelf * 3
        while x < width - 30 * mm:
            wide = (6.2, 9.4, 7.3, 11.6, 5.4, 8.6)[number % 6] * mm
            tall = (44, 38, 47, 41, 35, 45, 39)[number % 7] * mm
            if x + wide > width - 24 * mm:
                break
            canvas.setFillColor(HexColor(shades[(number * 5 + shelf) % 6]))
            canvas.roundRect(x, base, wide - 1.4, tall, 1.6, stroke=0, fill=1)
            canvas.setFillColor(HexColor("#0f3c47"))
            canvas.rect(x, base + tall * 0.78, wide - 1.4, 1.5, stroke=0, fill=1)
            canvas.rect(x, base + tall * 0.2, wide - 1.4, 1.5, stroke=0, fill=1)
            canvas.setFillColor(white)
            canvas.rect(x + wide * 0.22, base + tall * 0.3, wide * 0.56 - 1.4, 7 * mm, stroke=0, fill=1)
            x += wide
            number += 1
        canvas.setFillColor(HexColor("#e9dfc7"))
        canvas.rect(20 * mm, base - 2.4 * mm, width - 40 * mm, 2.4 * mm, stroke=0, fill=1)
    canvas.setFillColor(white)
    canvas.setFont(FACE, 15)
    canvas.drawString(24 * mm, height - 48 * mm, AUTHOR)
    canvas.setFont(FACE + "-Bold", 44)
    canvas.drawString(24 * mm, height - 70 * mm, "Annual Report")
    canvas.setFillColor(OCHRE)
    canvas.drawString(24 * mm, height - 88 * mm, "2023")


def plain(canvas, document):
    """A coloured edge along the top of every other page."""
    width, height = A4
    canvas.setFillColor(TEAL)
    canvas.rect(0, height - 5 * mm, width, 5 * mm, stroke=0, fill=1)
    canvas.setFillColor(OCHRE)
    canvas.rect(0, height - 5 * mm, 25 * mm, 5 * mm, stroke=0, fill=1)


def story():
    flow = [NextPageTemplate("plain"), Spacer(1, 1)]
    for page in all_pages():
        flow += [PageBreak(), *page]
    return flow


def name_destinations(places):
    """A change that gives the document its named destinations, and lets bookmarks and links lead to them.

    `places` holds, for each name, the number of its page and the height on it.
    """

    def change(objects, pages):
        changed = {}
        names, name_of_page = [], {}
        for name in sorted(places):
            page, top = places[name]
            reference = pages[page - 1].removeprefix("obj:")
            names += ["u:" + name, [reference, "/XYZ", 0, round(top, 2), None]]
            name_of_page[reference] = "u:" + name
        tree = new_key(objects)
        changed[tree] = {"value": {"/Names": names, "/Limits": [names[0], names[-2]]}}
        catalog = catalog_of(objects)
        objects[catalog]["value"]["/Names"] = {"/Dests": {"/Kids": [tree.removeprefix("obj:")]}}
        changed[catalog] = objects[catalog]
        for key, entry in objects.items():
            value = entry.get("value")
            target = value.get("/Dest") if isinstance(value, dict) else None
            if isinstance(target, list) and target[0] in name_of_page:
                value["/Dest"] = name_of_page[target[0]]
                changed[key] = entry
        return changed

    return change


def make(work, name):
    use_family(FACE, "LiberationSans")
    set_date(1711616400)
    raw = work / ("raw-" + name)
    document = Report(str(raw), pagesize=A4, invariant=1, pageCompression=1)
    width, height = A4
    frame = Frame(25 * mm, 24 * mm, width - 50 * mm, height - 24 * mm - 22 * mm, 0, 0, 0, 0)
    document.addPageTemplates(
        [PageTemplate("cover", [frame], onPage=cover), PageTemplate("plain", [frame], onPage=plain)]
    )
    document.build(story())
    patched = patch(raw, work / ("patched-" + name), name_destinations(document.places))

    sheet = work / "figures-2023.csv"
    sheet.write_bytes(data.sheet().encode())
    attached = work / ("attached-" + name)
    date = "D:20240328090000Z"
    qpdf(
        patched,
        "--deterministic-id",
        "--add-attachment",
        sheet,
        "--key=figures-2023.csv",
        "--filename=figures-2023.csv",
        "--mimetype=text/csv",
        "--description=The figures behind the charts",
        f"--creationdate={date}",
        f"--moddate={date}",
        "--",
        attached,
    )
    return finish(attached, work / name, "--object-streams=generate")
