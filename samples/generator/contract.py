"""contract.pdf: an agreement of six A4 pages, with bookmarks in two levels and metadata in both forms."""

import base64

from reportlab.lib.enums import TA_CENTER, TA_JUSTIFY
from reportlab.lib.pagesizes import A4
from reportlab.lib.styles import ParagraphStyle
from reportlab.lib.units import mm
from reportlab.platypus import (
    BaseDocTemplate,
    CondPageBreak,
    Frame,
    HRFlowable,
    KeepTogether,
    NextPageTemplate,
    PageBreak,
    PageTemplate,
    Paragraph,
    Spacer,
    Table,
    TableStyle,
)

from . import contract_text as wording
from .pdfwork import GREY, INK, RULE, catalog_of, describe, finish, new_key, patch, set_date, use_family

AUTHOR = "Tallis Wren, Office of the County Archivist"
SERIF = "Serif"
BROKEN_TITLE = wording.TITLE.replace(" and ", "<br/>and ")

XMP = """<?xpacket begin="\ufeff" id="W5M0MpCehiHzreSzNTczkc9d"?>
<x:xmpmeta xmlns:x="adobe:ns:meta/">
 <rdf:RDF xmlns:rdf="http://www.w3.org/1999/02/22-rdf-syntax-ns#">
  <rdf:Description rdf:about=""
    xmlns:dc="http://purl.org/dc/elements/1.1/"
    xmlns:xmp="http://ns.adobe.com/xap/1.0/"
    xmp:CreatorTool="make_samples.py"
    xmp:CreateDate="2024-04-12T09:30:00Z"
    xmp:ModifyDate="2024-04-12T09:30:00Z">
   <dc:title><rdf:Alt><rdf:li xml:lang="x-default">{title}</rdf:li></rdf:Alt></dc:title>
   <dc:creator><rdf:Seq><rdf:li>{author}</rdf:li></rdf:Seq></dc:creator>
  </rdf:Description>
 </rdf:RDF>
</x:xmpmeta>
<?xpacket end="w"?>"""


def styles():
    base = ParagraphStyle(
        "body",
        fontName=SERIF,
        fontSize=11.6,
        leading=17.2,
        alignment=TA_JUSTIFY,
        textColor=INK,
        spaceAfter=6,
        bulletFontName=SERIF,
        bulletFontSize=11.6,
    )
    return {
        "body": base,
        "clause": ParagraphStyle("clause", base, leftIndent=12 * mm, bulletIndent=0, spaceAfter=7.5),
        "title": ParagraphStyle(
            "title", base, fontName=SERIF + "-Bold", fontSize=22, leading=28, alignment=TA_CENTER, spaceAfter=9 * mm
        ),
        "centred": ParagraphStyle("centred", base, alignment=TA_CENTER, spaceAfter=3 * mm),
        "kicker": ParagraphStyle(
            "kicker", base, fontSize=9, alignment=TA_CENTER, textColor=GREY, spaceBefore=16 * mm, spaceAfter=5 * mm
        ),
        "heading": ParagraphStyle(
            "heading",
            base,
            fontName=SERIF + "-Bold",
            fontSize=13,
            leading=17,
            spaceBefore=13,
            spaceAfter=7,
            alignment=0,
            keepWithNext=1,
        ),
        "cell": ParagraphStyle("cell", base, fontSize=9.8, leading=12.5, alignment=0, spaceAfter=0),
    }


class Bookmarked(Paragraph):
    """A paragraph that is the target of a bookmark: `mark` is its key, label, level and whether it is closed."""

    def __init__(self, *arguments, mark=None, **options):
        super().__init__(*arguments, **options)
        self.mark = mark

    def draw(self):
        if self.mark is not None:
            key, label, level, closed = self.mark
            self.canv.bookmarkHorizontal(key, 0, self.height + 6)
            self.canv.addOutlineEntry(label, key, level, closed)
        super().draw()

    def split(self, width, height):
        # A paragraph broken by a page end keeps the bookmark at its first part.
        parts = super().split(width, height)
        if parts:
            parts[0].mark = self.mark
        return parts


def bookmarked_heading(text, style, key, closed=False):
    return Bookmarked(text, style, mark=(key, text, 0, closed))


def prepare(canvas, document):
    describe(canvas, wording.TITLE, AUTHOR, "Reference SCA/2024/017", ("storage", "digitisation", "records"))
    canvas.showOutline()


def running_head(canvas, document):
    width, height = A4
    canvas.saveState()
    canvas.setFont(SERIF + "-Italic", 9)
    canvas.setFillColor(GREY)
    canvas.drawCentredString(width / 2, height - 21 * mm, wording.TITLE)
    canvas.setStrokeColor(RULE)
    canvas.setLineWidth(0.5)
    canvas.line(28 * mm, height - 24 * mm, width - 28 * mm, height - 24 * mm)
    canvas.restoreState()


def opening(style):
    """The title, the parties and the recitals."""
    story = [
        Paragraph("R E F E R E N C E &nbsp;&nbsp; S C A / 2 0 2 4 / 0 1 7", style["kicker"]),
        Bookmarked(BROKEN_TITLE, style["title"], mark=("title", wording.TITLE, 0, False)),
        HRFlowable(width="34%", thickness=0.8, color=INK, spaceAfter=9 * mm),
        Paragraph("made on 12 April 2024 between", style["centred"]),
    ]
    for number, party in enumerate(wording.PARTIES, 1):
        story.append(Paragraph(party, style["clause"], bulletText=f"({number})"))
        if number == 1:
            story.append(Paragraph("and", style["centred"]))
    story.append(Spacer(1, 5 * mm))
    story.append(bookmarked_heading("Whereas", style["heading"], "whereas"))
    for letter, recital in zip("ABC", wording.RECITALS):
        story.append(Paragraph(recital, style["clause"], bulletText=f"({letter})"))
    story.append(Spacer(1, 3 * mm))
    story.append(Paragraph("The parties therefore agree as follows.", style["body"]))
    return story


def articles(style):
    story = []
    for number, (title, closed, clauses) in enumerate(wording.ARTICLES, 1):
        story.append(CondPageBreak(34 * mm))
        label = f"Article {number}. {title}"
        story.append(bookmarked_heading(label, style["heading"], f"article-{number}", closed))
        for clause, (heading, texts) in enumerate(clauses, 1):
            name = f"{number}.{clause}"
            first = f"<i>{heading}.</i> {texts[0]}"
            mark = (f"clause-{name}", f"{name} {heading}", 1, False)
            story.append(Bookmarked(first, style["clause"], bulletText=name, mark=mark))
            story.extend(Paragraph(text, style["clause"]) for text in texts[1:])
    return story


def ruled_table(rows, widths, right_columns):
    table = Table(rows, colWidths=widths, repeatRows=1)
    commands = [
        ("FONT", (0, 0), (-1, 0), SERIF + "-Bold", 9.8),
        ("FONT", (0, 1), (-1, -1), SERIF, 9.8),
        ("TEXTCOLOR", (0, 0), (-1, -1), INK),
        ("LINEABOVE", (0, 0), (-1, 0), 1, INK),
        ("LINEBELOW", (0, 0), (-1, 0), 0.6, INK),
        ("LINEBELOW", (0, 1), (-1, -2), 0.3, RULE),
        ("LINEBELOW", (0, -1), (-1, -1), 1, INK),
        ("LEFTPADDING", (0, 0), (0, -1), 0),
        ("TOPPADDING", (0, 0), (-1, -1), 3.2),
        ("BOTTOMPADDING", (0, 0), (-1, -1), 4.2),
    ]
    commands += [("ALIGN", (column, 0), (column, -1), "RIGHT") for column in right_columns]
    table.setStyle(TableStyle(commands))
    return table


def schedules(style):
    boxes = sum(row[2] for row in wording.RECORDS)
    metres = sum(row[3] for row in wording.RECORDS)
    records = [("Series", "Years", "Boxes", "Metres")]
    records += [(name, years, f"{count:,}", f"{length:.1f}") for name, years, count, length in wording.RECORDS]
    records.append(("Together", "", f"{boxes:,}", f"{metres:.1f}"))
    record_table = ruled_table(records, [82 * mm, 30 * mm, 20 * mm, 22 * mm], (2, 3))
    record_table.setStyle(
        TableStyle([("FONT", (0, -1), (-1, -1), SERIF + "-Bold", 9.8), ("LINEABOVE", (0, -1), (-1, -1), 0.6, INK)])
    )
    fees = [("Service", "Unit", "Crowns")] + wording.FEES
    stages = [("Stage", "Work", "From", "To")] + wording.STAGES
    fee_table = ruled_table(fees, [92 * mm, 38 * mm, 24 * mm], (2,))
    return [
        PageBreak(),
        bookmarked_heading("Schedule 1. The records", style["heading"], "schedule-1"),
        Paragraph("Series marked with an asterisk are digitised. A metre is a metre of shelf.", style["body"]),
        record_table,
        Spacer(1, 7 * mm),
        bookmarked_heading("Schedule 2. Fees", style["heading"], "schedule-2"),
        Paragraph("Fees are in crowns, without taxes.", style["body"]),
        fee_table,
        PageBreak(),
        bookmarked_heading("Schedule 3. Calendar", style["heading"], "schedule-3"),
        Paragraph("A stage that ends early lets the next one begin.", style["body"]),
        ruled_table(stages, [14 * mm, 82 * mm, 29 * mm, 29 * mm], ()),
        Spacer(1, 7 * mm),
    ]


def signatures(style):
    line = "_" * 36
    rows = [
        ("For the Archive", "", "For the Contractor"),
        ("", "", ""),
        (line, "", line),
        ("Dr Ottilie Farraday, County Archivist", "", "Ansel Pellworth, managing director"),
        ("Saltmere, 12 April 2024", "", "Saltmere, 12 April 2024"),
    ]
    table = Table(rows, colWidths=[70 * mm, 14 * mm, 70 * mm], rowHeights=[16, 30, 13, 15, 15])
    table.setStyle(
        TableStyle(
            [
                ("FONT", (0, 0), (-1, -1), SERIF, 10),
                ("FONT", (0, 0), (-1, 0), SERIF + "-Bold", 10.4),
                ("TEXTCOLOR", (0, 0), (-1, -1), INK),
                ("LEFTPADDING", (0, 0), (-1, -1), 0),
            ]
        )
    )
    heading = bookmarked_heading("Signatures", style["heading"], "signatures")
    return [KeepTogether([heading, Paragraph(wording.SIGNING, style["body"]), Spacer(1, 4 * mm), table])]


def add_xmp(objects, pages):
    catalog = catalog_of(objects)
    metadata = new_key(objects)
    packet = XMP.format(title=wording.TITLE, author=AUTHOR).encode()
    value = objects[catalog]["value"]
    value["/Metadata"] = metadata.removeprefix("obj:")
    value["/Lang"] = "u:en-GB"
    return {
        catalog: {"value": value},
        metadata: {
            "stream": {"data": base64.b64encode(packet).decode(), "dict": {"/Type": "/Metadata", "/Subtype": "/XML"}}
        },
    }


def make(work, name):
    use_family(SERIF, "LiberationSerif")
    set_date(1712914200)
    raw = work / ("raw-" + name)
    document = BaseDocTemplate(str(raw), pagesize=A4, invariant=1, pageCompression=1)
    width, height = A4
    side, foot = 28 * mm, 30 * mm
    frame = {"leftPadding": 0, "rightPadding": 0, "topPadding": 0, "bottomPadding": 0}
    first = Frame(side, foot, width - 2 * side, height - foot - 28 * mm, id="first", **frame)
    later = Frame(side, foot, width - 2 * side, height - foot - 31 * mm, id="later", **frame)
    document.addPageTemplates(
        [PageTemplate("first", [first], onPage=prepare), PageTemplate("later", [later], onPage=running_head)]
    )
    style = styles()
    story = [NextPageTemplate("later")] + opening(style) + articles(style) + schedules(style) + signatures(style)

    document.build(story)
    patched = patch(raw, work / ("patched-" + name), add_xmp)
    return finish(patched, work / name)
