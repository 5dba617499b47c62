"""What stands on the pages of the sample report, chapter by chapter."""

from reportlab.lib.colors import white
from reportlab.lib.styles import ParagraphStyle
from reportlab.lib.units import mm
from reportlab.platypus import Paragraph, Spacer, Table, TableStyle

from . import report_data as data
from .charts import FACE, SERIES, Levels, Lines, Ring, StackedBars, Tiles
from .pdfwork import BRICK, GREY, MOSS, OCHRE, PALE, RULE, TEAL
from .report_style import BODY, CAPTION, CELL, LEAD, SMALL, Chapter, amber, box, figures, green, red

# destination, title, first line of what the chapter says, label of its page
CHAPTERS = [
    ("accessions", "Accessions", "318 metres of shelf, the most in seven years", 1),
    ("reading-room", "Reading room", "A visit every twenty minutes in August", 2),
    ("digitisation", "Digitisation", "149,721 images and what became of them", 3),
    ("conservation", "Conservation", "Eight thousand leaves, one wet cellar", 4),
    ("stores", "Stores", "Mill Lane opens, Customs Quay breathes", 5),
    ("finance", "Finance", "A small surplus, spent on the roof", 6),
    ("staff", "Staff", "Twenty-five people and a dog", 7),
    ("outlook", "Outlook", "What we mean to do in 2024", 8),
]


def glance():
    visits = sum(data.VISITS_2023)
    images = sum(row[2] for row in data.DIGITISED)
    metres = sum(values[-1] for values in data.ACCESSIONS.values())
    leaves = data.CONSERVATION[0][1]
    return [
        Chapter("glance", "The year at a glance"),
        Paragraph("Four figures, and what stands behind them.", LEAD),
        Tiles(
            [(f"{metres}", "metres of shelf\ntaken in", TEAL), (f"{visits:,}", "visits to the\nreading room", OCHRE)]
        ),
        Spacer(1, 12),
        Tiles(
            [
                (f"{images:,}", "images made of\nour holdings", MOSS),
                (f"{leaves:,}", "leaves cleaned\nand flattened", BRICK),
            ]
        ),
        Spacer(1, 20),
        Paragraph(
            "For the first time since the flood the Archive took in more than it could shelve at Customs Quay. The new "
            "stores at Mill Lane came just in time: by December a thousand metres had been moved there, box by box, "
            "each with a slip on which its number was stamped twice.",
            BODY,
        ),
        Paragraph(
            "Readers noticed little of the move, and that was the plan. The reading room was closed for four days only. "
            "Requests rose by a sixth over the year, most of them for series that have lately been digitised: what can "
            "be seen from afar, it seems, is wanted at close quarters all the more.",
            BODY,
        ),
        Spacer(1, 6),
        green(
            "<b>Thank you.</b> 41 Friends of the Archive gave 2,870 hours of their time: they numbered leaves, made "
            "boxes, read proofs, and brought cake on Thursdays."
        ),
    ]


def contents():
    rows = []
    for key, title, line, label in CHAPTERS:
        rows.append(
            [
                Paragraph(f'<a href="#{key}"><b>{title}</b></a>', ParagraphStyle("entry", CELL, fontSize=11.5)),
                Paragraph(line, ParagraphStyle("line", CELL, textColor=GREY)),
                Paragraph(
                    f"<b>{label}</b>", ParagraphStyle("number", CELL, alignment=2, textColor=TEAL, fontSize=11.5)
                ),
            ]
        )
    table = Table(rows, colWidths=[48 * mm, 96 * mm, 16 * mm], rowHeights=[34] * len(rows))
    table.setStyle(
        TableStyle(
            [
                ("LINEBELOW", (0, 0), (-1, -1), 0.5, RULE),
                ("LEFTPADDING", (0, 0), (0, -1), 0),
                ("RIGHTPADDING", (-1, 0), (-1, -1), 0),
                ("VALIGN", (0, 0), (-1, -1), "MIDDLE"),
            ]
        )
    )
    return [
        Chapter("contents", "Contents"),
        Spacer(1, 8),
        table,
        Spacer(1, 26),
        Paragraph(
            "The pages before the first chapter bear small roman numbers. The figures behind the charts are "
            "attached to this document as a sheet, <i>figures-2023.csv</i>.",
            SMALL,
        ),
    ]


def foreword():
    texts = [
        "An archive is a promise made to people who have not been born. It is kept in small coin: a box put back where "
        "it belongs, a number written so that it can still be read, a draught noticed before the damp comes in.",
        "This report is about that coin. You will find in it how many metres came and how many leaves were mended, what "
        "it cost, and where we fell short. The cellar at Customs Quay flooded again in November, and it was luck as "
        "much as skill that nothing was lost but a carpet.",
        "You will also find what cannot be counted between the lines: the patience of the people at the desk, the hands "
        "of the conservators, and the good temper of all who carried boxes up the stairs at Mill Lane while the lift "
        "was being waited for.",
        "To them, to the County that pays for it, and to the readers for whom it is done, my thanks.",
    ]
    return [
        Chapter("foreword", "Foreword"),
        Spacer(1, 8),
        *[
            Paragraph(text, ParagraphStyle("foreword", BODY, fontSize=11.5, leading=18.5, spaceAfter=12))
            for text in texts
        ],
        Spacer(1, 14),
        Paragraph("<b>Dr Ottilie Farraday</b><br/>County Archivist", BODY),
    ]


def accessions():
    totals = [sum(values[n] for values in data.ACCESSIONS.values()) for n in range(len(data.YEARS))]
    rows = [["Metres of shelf", *map(str, data.YEARS)]]
    rows += [[origin, *map(str, values)] for origin, values in data.ACCESSIONS.items()]
    rows.append(["Together", *map(str, totals)])
    return [
        Paragraph(
            "The courts emptied their cellars, the municipal offices went over to paperless files, and three old firms "
            "closed their doors. We took in what they left, after weeding it by half.",
            BODY,
        ),
        Paragraph("Figure 1. Metres taken in, by origin", CAPTION),
        StackedBars(212, data.YEARS, data.ACCESSIONS, 350, 50),
        Paragraph("Table 1. Metres taken in", CAPTION),
        figures(rows, [41] + [17] * 7),
        Spacer(1, 14),
        amber(
            "<b>Worth a look.</b> The papers of the Tarrant studio: 1,215 glass negatives of people, shops and ships, "
            "1884 to 1931, with the order books that name them."
        ),
    ]


def reading_room():
    rows = [["", *data.MONTHS]]
    rows.append(["2022", *map(str, data.VISITS_2022)])
    rows.append(["2023", *map(str, data.VISITS_2023)])
    change = [f"{100 * (b - a) / a:+.0f} %" for a, b in zip(data.VISITS_2022, data.VISITS_2023)]
    rows.append(["Change", *change])
    now, before = sum(data.VISITS_2023), sum(data.VISITS_2022)
    return [
        Paragraph(
            f"{now:,} visits were counted, after {before:,} in the year before. The rise is greatest in summer, when "
            "families look for their forebears, and in the months in which a series goes online.",
            BODY,
        ),
        Paragraph("Figure 2. Visits by month", CAPTION),
        Lines(205, data.MONTHS, {"2022": data.VISITS_2022, "2023": data.VISITS_2023}, 500, 100),
        Paragraph("Table 2. Visits by month", CAPTION),
        figures(rows, [17] + [12] * 12, total=False),
        Spacer(1, 16),
        green(
            "<b>Evenings.</b> On the first Thursday of the month the room stays open until eight. One visitor in nine "
            "comes only then."
        ),
        Spacer(1, 10),
        red(
            "<b>Waiting.</b> An item took 34 minutes from slip to table on average; our aim is 25. The second lift will "
            "help."
        ),
    ]


def digitisation():
    items = sum(row[1] for row in data.DIGITISED)
    images = sum(row[2] for row in data.DIGITISED)
    accepted = sum(row[2] * row[3] for row in data.DIGITISED) / images
    rows = [["Series", "Items", "Images", "Accepted at first"]]
    rows += [[name, f"{count:,}", f"{made:,}", f"{share:.1f} %"] for name, count, made, share in data.DIGITISED]
    rows.append(["Together", f"{items:,}", f"{images:,}", f"{accepted:.1f} %"])
    return [
        Paragraph(
            "Six series were photographed, from cover to cover and with a colour target in every frame. Each item then "
            "became one document for readers, whose pages carry the shelf mark at the head and a running number at the "
            "foot: so that a footnote can name a page that never had a number before.",
            BODY,
        ),
        Paragraph("Table 3. Series digitised", CAPTION),
        figures(rows, [76, 24, 28, 32]),
        Paragraph("Figure 3. Images by series", CAPTION),
        Ring(170, [(row[0], row[2]) for row in data.DIGITISED], "images"),
        Spacer(1, 12),
        amber(
            "<b>Quality.</b> One image in fifty is examined on screen, at full size, by somebody who did not take it. "
            "What fails goes back with a note, not with a reproach."
        ),
    ]


def conservation():
    rows = [["Treatment", "Pieces", "Hours", "Hours a piece"]]
    rows += [[name, f"{n:,}", f"{h:,}", f"{h / n:.2f}"] for name, n, h in data.CONSERVATION]
    rows.append(
        ["Together", f"{sum(r[1] for r in data.CONSERVATION):,}", f"{sum(r[2] for r in data.CONSERVATION):,}", ""]
    )
    return [
        Paragraph(
            "The workshop worked through the vouchers of the old harbour office, which had once been wet. Leaf by leaf "
            "they were parted, cleaned with soft sponges, and dried between felts. Of 8,500 leaves, forty could not be "
            "saved whole.",
            BODY,
        ),
        Paragraph("Table 4. Treatments", CAPTION),
        figures(rows, [76, 28, 28, 28]),
        Spacer(1, 16),
        Tiles(
            [
                ("40", "leaves of 8,500 could\nnot be saved whole", BRICK),
                ("16 °C", "in all stores, all year,\ngive or take two", TEAL),
                ("52 %", "relative humidity\non average", MOSS),
            ],
            88,
        ),
        Spacer(1, 16),
        red(
            "<b>14 November.</b> Rain backed up in the drain of Customs Quay and stood four centimetres deep in the "
            "vault. The lowest shelves have been empty since the last flood. They will stay empty."
        ),
        Spacer(1, 10),
        green(
            "<b>Boxes.</b> We now make our own, from board that arrives flat. A box takes four minutes and fits its "
            "volume to the millimetre."
        ),
    ]


def stores():
    return [
        Paragraph(
            "With the two stores at Mill Lane the Archive has 11,500 metres of shelf, of which two thirds are filled. "
            "The hired rooms at Lower Brenning will be given up when the roof of Customs Quay is renewed and the boxes "
            "have come back.",
            BODY,
        ),
        Paragraph("Figure 4. How full the stores are", CAPTION),
        Levels(data.STORES),
        Paragraph("Table 5. Stores", CAPTION),
        figures(
            [["Store", "Room, metres", "Filled, metres", "Free, metres"]]
            + [[name, f"{room:,}", f"{filled:,}", f"{room - filled:,}"] for name, room, filled in data.STORES]
            + [
                [
                    "Together",
                    *(
                        f"{sum(pick(row) for row in data.STORES):,}"
                        for pick in (lambda row: row[1], lambda row: row[2], lambda row: row[1] - row[2])
                    ),
                ]
            ],
            [70, 30, 30, 30],
        ),
        Spacer(1, 16),
        amber(
            "<b>The move.</b> 6,300 boxes went to Mill Lane in 58 loads. Every box was scanned when it left its shelf "
            "and when it reached the next. Two were missing for a night, and found in the lift."
        ),
    ]


def finance():
    def signed(value):
        return "0" if value == 0 else f"{value:+,}".replace("-", "−")

    def rows(head, lines):
        table = [[head, "Budget", "Outcome", "Difference"]]
        table += [[name, f"{plan:,}", f"{real:,}", signed(real - plan)] for name, plan, real in lines]
        plan, real = sum(line[1] for line in lines), sum(line[2] for line in lines)
        table.append(["Together", f"{plan:,}", f"{real:,}", signed(real - plan)])
        return table

    surplus = sum(line[2] for line in data.INCOME) - sum(line[2] for line in data.EXPENSES)
    return [
        Paragraph(
            "All figures are in thousands of crowns. The accounts were examined by the County’s auditors in March.",
            BODY,
        ),
        Paragraph("Table 6. Income", CAPTION),
        figures(rows("Income", data.INCOME), [70, 30, 30, 30]),
        Paragraph("Table 7. Expenses", CAPTION),
        figures(rows("Expenses", data.EXPENSES), [70, 30, 30, 30]),
        Paragraph("Figure 5. Expenses by heading", CAPTION),
        Ring(150, [(name, real) for name, _, real in data.EXPENSES], "thousand crowns"),
        Spacer(1, 10),
        green(f"<b>Outcome.</b> {surplus} thousand crowns remain. They go to the fund for the roof of Customs Quay."),
    ]


def staff():
    rows = [["Group", "People", "Full-time posts"]]
    rows += [[name, str(people), f"{posts:.1f}"] for name, people, posts in data.STAFF]
    people, posts = sum(row[1] for row in data.STAFF), sum(row[2] for row in data.STAFF)
    rows.append(["Together", str(people), f"{posts:.1f}"])
    texts = [
        f"{people} people share {posts:.1f} posts. Two left for good reasons, three came. Tallis Wren passed the "
        "examination for the senior service; Juniper Ashe finished her years as a learner in the workshop, and stays.",
        "Everybody who works with paper had a day of training in what to do when it gets wet. It was used sooner than "
        "we had thought.",
    ]
    return [
        *[Paragraph(text, BODY) for text in texts],
        Paragraph("Table 8. People and posts", CAPTION),
        figures(rows, [84, 38, 38]),
        Spacer(1, 18),
        Tiles(
            [
                (f"{people}", "people", TEAL),
                ("11", "years with us,\non average", OCHRE),
                ("212", "days of training", MOSS),
                ("1", "dog, in the office\non Fridays", BRICK),
            ],
            88,
        ),
        Spacer(1, 18),
        amber(
            "<b>Wanted.</b> From September 2024 we have room for two learners, one in the reading room and one in the "
            "workshop. Patience counts for more than marks."
        ),
    ]


def outlook():
    plans = [
        ("Spring", "Finish the index of the letter books; number the leaves of the last two crates."),
        ("Summer", "Empty the upper floor of Customs Quay before the roof comes off."),
        ("Autumn", "Put the tithe maps online, with every field that can be named."),
        ("Winter", "Take stock at Mill Lane: every shelf, every box, every number."),
    ]
    cells = []
    for (season, text), colour in zip(plans, SERIES):
        title = ParagraphStyle("season", CELL, fontName=FACE + "-Bold", fontSize=12, textColor=colour)
        cells.append([Paragraph(season, title), Paragraph(text, CELL)])
    table = Table(cells, colWidths=[34 * mm, 126 * mm], rowHeights=[36] * len(cells))
    table.setStyle(
        TableStyle(
            [
                ("VALIGN", (0, 0), (-1, -1), "MIDDLE"),
                ("BACKGROUND", (0, 0), (-1, -1), PALE),
                ("LINEBELOW", (0, 0), (-1, -1), 3, white),
                ("LEFTPADDING", (0, 0), (-1, -1), 12),
            ]
            + [("LINEBEFORE", (0, n), (0, n), 5, colour) for n, colour in zip(range(len(cells)), SERIES)]
        )
    )
    return [
        Paragraph(
            "The roof is the task of the year. Beneath it lie three thousand metres of paper, and all of it has to go "
            "somewhere else for eighteen months, in order, and come back in order.",
            BODY,
        ),
        Spacer(1, 6),
        table,
        Spacer(1, 18),
        Paragraph(
            "Beyond that we shall do what we always do: answer letters, carry boxes, mend what is torn, and put a number "
            "on every page that has none.",
            BODY,
        ),
        Spacer(1, 12),
        box(
            "<b>Where to find us.</b> Reading room and stores: Mill Lane. Offices: 4 Customs Quay. "
            '<a href="https://archive.example.org/" color="#1f6f78"><u>archive.example.org</u></a>',
            TEAL,
            PALE,
        ),
    ]


def all_pages():
    """The flowables of each page after the cover, in order."""
    pages = [glance(), contents(), foreword()]
    makers = (accessions, reading_room, digitisation, conservation, stores, finance, staff, outlook)
    for (key, title, line, _), maker in zip(CHAPTERS, makers):
        pages.append([Chapter(key, title), Paragraph(line, LEAD), *maker()])
    return pages
