"""The sheets that look at the building from the side: elevation, section, details; and the schedule."""

from reportlab.lib.colors import HexColor, white

from .drafting import BRICKWORK, EARTH, GLASS, SLATE, WOOD
from .pdfwork import GREY, INK, PALE, RULE, TEAL


def sash(view, x, y, width, height, panes=2, rows=3):
    """A window as it is seen from outside, with a stone head and sill."""
    view.box(x - 0.12, y - 0.16, x + width + 0.12, y, 0.5, fill=white)
    view.box(x - 0.18, y + height, x + width + 0.18, y + height + 0.28, 0.5, fill=white)
    view.box(x, y, x + width, y + height, 0.8, fill=GLASS)
    view.lines([(x, y + height), (x + width * 0.45, y + height), (x, y + height * 0.4)], 0, fill=HexColor("#e3eff2"))
    for pane in range(1, panes):
        view.lines([(x + pane * width / panes, y), (x + pane * width / panes, y + height)], 0.5)
    for row in range(1, rows):
        view.lines([(x, y + row * height / rows), (x + width, y + row * height / rows)], 0.5)


def person(view, x, y, height=1.7):
    colour = HexColor("#8c979f")
    view.circle(x, y + height * 0.935, height * 0.065, 0, fill=colour)
    half = [
        (0.0, 0.47),
        (0.016, 0.0),
        (0.075, 0.0),
        (0.078, 0.3),
        (0.096, 0.5),
        (0.098, 0.66),
        (0.112, 0.44),
        (0.138, 0.44),
        (0.14, 0.68),
        (0.126, 0.79),
        (0.09, 0.835),
        (0.034, 0.85),
        (0.03, 0.9),
    ]
    body = half + [(-a, b) for a, b in reversed(half)]
    view.lines([(x + a * height, y + b * height) for a, b in body], 0, fill=colour, closed=True)


def side_tree(view, x, y, height):
    view.box(x - 0.12, y, x + 0.12, y + height * 0.4, 0, fill=HexColor("#b9a58a"))
    for dx, dy, radius in ((0, 0.72, 0.27), (-0.16, 0.56, 0.2), (0.17, 0.58, 0.2)):
        view.circle(x + dx * height, y + dy * height, radius * height, 0, fill=HexColor("#dbe6ca"))


def south_elevation(sheet):
    view = sheet.view(160, 200, 100)
    sheet.heading(60, sheet.height - 62, "South elevation", "brick in lime mortar, stone dressings, slate")
    side_tree(view, -2.3, 0, 5.2)
    side_tree(view, 19.4, 0, 3.2)
    view.box(0, 0, 18, 6.7, 0.9, fill=BRICKWORK)
    for course in range(1, 27):
        view.lines([(0, course * 0.25), (18, course * 0.25)], 0.15, HexColor("#cfa999"))
    view.box(0, 0, 18, 0.45, 0.6, fill=HexColor("#d9d4c9"))
    view.box(0, 3.45, 18, 3.65, 0.5, fill=white)
    view.lines([(-0.6, 6.7), (18.6, 6.7), (12.5, 9.6), (5.5, 9.6)], 1.2, fill=SLATE)
    for course in range(1, 10):
        share = course / 10
        view.lines(
            [(-0.6 + 6.1 * share, 6.7 + 2.9 * share), (18.6 - 6.1 * share, 6.7 + 2.9 * share)],
            0.2,
            HexColor("#8d99a3"),
        )
    view.box(-0.65, 6.5, 18.65, 6.72, 0.7, fill=white)
    view.box(14.0, 8.0, 14.9, 10.5, 0.8, fill=BRICKWORK)
    view.box(13.9, 10.3, 15.0, 10.5, 0.6, fill=white)
    for x, width in ((0.9, 2.4), (11.6, 1.6), (15.3, 1.8)):
        sash(view, x, 0.95, width, 1.9)
    for x, width in ((0.9, 2.4), (5.2, 1.8), (8.4, 1.8), (11.6, 1.6), (15.3, 1.8)):
        sash(view, x, 4.4, width, 1.55)
    view.box(6.1, 0, 8.9, 3.05, 0.7, fill=white)
    view.box(6.4, 0.1, 8.6, 2.6, 0.8, fill=TEAL)
    view.lines([(7.5, 0.1), (7.5, 2.6)], 0.7, white)
    for x in (6.55, 7.65):
        view.box(x, 1.4, x + 0.8, 2.4, 0.5, white, fill=GLASS)
        view.box(x, 0.3, x + 0.8, 1.2, 0.5, white)
    view.text(7.5, 2.75, "ARCHIVE", 6.5, bold=True, align="centre")
    view.box(5.8, 0, 9.2, 0.1, 0.5, fill=HexColor("#d9d4c9"))
    person(view, 9.9, 0)
    person(view, 10.5, 0, 1.62)
    view.lines([(-4, 0), (22, 0)], 1.8)
    view.hatched(-4, -0.28, 22, 0, 0.3)
    for y, text in ((0, "±0.00"), (3.8, "+3.80"), (6.7, "+6.70"), (9.6, "+9.60")):
        view.level_mark(21.0, y, text)
    view.dimension([0, 18], -1.1)
    for x, name in ((0, "A"), (4.5, "B"), (11, "C"), (14.5, "D"), (18, "E")):
        view.lines([(x, -0.4), (x, -1.6)], 0.3, TEAL, (8, 2, 1.5, 2))
        view.bubble(x, -2.0, name)


def section(sheet):
    view = sheet.view(138, 350, 100)
    sheet.heading(
        60, sheet.height - 62, "Section through the stores", "looking west; concrete cut black, timber shown in tone"
    )
    view.box(-1.4, -1.9, 12.4, 0, 0, fill=EARTH)
    view.hatched(-1.4, -1.9, 12.4, 0, 0.35, HexColor("#b8a888"))
    view.box(-0.2, -0.25, 11.2, 6.7, 0, fill=white)
    view.lines([(-0.6, 6.5), (5.5, 9.6), (11.6, 6.5), (11.2, 6.5), (5.5, 9.38), (-0.2, 6.5)], 0.7, fill=WOOD)
    view.lines([(0, 6.65), (5.5, 9.38), (11, 6.65)], 0, fill=HexColor("#f7f3ea"))
    for x in (1.8, 3.6, 5.5, 7.4, 9.2):
        top = 6.65 + (9.38 - 6.65) * (1 - abs(x - 5.5) / 5.5)
        view.box(x - 0.07, 6.7, x + 0.07, top, 0.4, fill=WOOD)
    view.lines([(1.8, 6.7), (5.5, 8.6), (9.2, 6.7)], 0.5)
    for level in (-0.25, 3.55, 6.45):
        view.box(-0.2, level, 11.2, level + 0.25, 0.5, fill=INK)
    for x in (0, 11):
        view.box(x - 0.2, -1.2, x + 0.2, 6.7, 0.5, fill=INK)
        view.box(x - 0.45, -1.5, x + 0.45, -1.2, 0.5, fill=INK)
    view.box(6.35, 0, 6.65, 6.45, 0.5, fill=INK)
    for base in (0, 3.8):
        for stack in range(5):
            x = 6.95 + stack * 0.78
            view.box(x, base, x + 0.5, base + 2.2, 0.5, fill=PALE)
            for shelf in range(1, 6):
                view.lines([(x, base + shelf * 0.37), (x + 0.5, base + shelf * 0.37)], 0.4)
    for base in (0, 3.8):
        view.box(1.4, base + 0.72, 3.6, base + 0.77, 0.5, fill=WOOD)
        for x in (1.5, 3.45):
            view.box(x, base, x + 0.06, base + 0.72, 0.4, fill=WOOD)
        person(view, 4.6, base)
    view.lines([(2.5, 3.55), (2.5, 2.6)], 0.5)
    view.lines([(2.2, 2.35), (2.8, 2.35), (2.62, 2.6), (2.38, 2.6)], 0.6, fill=white)
    view.text(4.5, 3.05, "Reading room", 8, bold=True, align="centre")
    view.text(4.5, 6.02, "Conservation", 8, bold=True, align="centre")
    view.text(8.8, 3.05, "Store 1", 7.5, bold=True, align="centre")
    view.text(8.8, 6.15, "Store 2", 7.5, bold=True, align="centre")
    view.text(6.45, 7.1, "roof space", 7, colour=GREY, align="centre")
    for y, text in ((0, "±0.00"), (3.8, "+3.80"), (6.7, "+6.70"), (9.6, "+9.60")):
        view.level_mark(12.9, y, text)
    view.dimension([0, 3.8, 6.7], -1.0, vertical=True)
    view.dimension([0, 6.5, 11], -2.4)
    sheet.notes(
        60,
        232,
        [
            "Walls of the stores: 400 mm, lime plaster inside, no membrane.",
            "Floors: 250 mm concrete; live load in the stores 12.5 kN/m².",
            "No pipes that carry water run above or through a store.",
            "Shelving runs on rails set flush with the screed.",
            "Doors of the stores: 90 minutes, self-closing, sill of 20 mm.",
        ],
    )


def stair_from_above(view, base, going, steps):
    width = 1.2
    end = 0.1 + going * steps
    view.box(0.1, base, end, base + width, 0.8, fill=white)
    for step in range(steps):
        x = 0.1 + going * step
        view.box(x, base, x + 0.03, base + width, 0, fill=WOOD)
        view.lines([(x, base), (x, base + width)], 0.4)
        if step % 5 == 0:
            view.text(x + going / 2, base + 0.1, str(step + 1), 6, align="centre", colour=GREY)
    view.box(end, base, 5.3, base + width, 0.8, fill=PALE)
    view.lines([(-0.15, base + width / 2), (end + 0.2, base + width / 2)], 0.7, TEAL)
    view.arrow(end, base + width / 2, end + 0.45, base + width / 2, TEAL)
    view.circle(-0.15, base + width / 2, 0.05, 0.8, TEAL, white)
    for y in (base + 0.05, base + width - 0.05):
        view.lines([(-0.15, y), (5.3, y)], 1.4)
    view.box(-0.6, base - 0.16, 5.3, base, 0.5, fill=INK)
    view.dimension([base, base + width], 5.75, vertical=True)
    view.text(2.4, base + width + 0.16, "16 × 181 / 280", 12, bold=True, align="centre", colour=TEAL)


def stair_detail(sheet):
    view = sheet.view(100, 268, 40)
    sheet.heading(60, sheet.height - 62, "Stair to the roof space", "plan and section; oak treads on a steel string")
    rise, going, steps = 2.9 / 16, 0.28, 16
    stair_from_above(view, 5.05, going, steps)
    view.box(-0.6, -0.25, 5.3, 0, 0.6, fill=INK)
    top = rise * steps
    view.box(0.1 + going * steps, top - 0.25, 5.3, top, 0.6, fill=INK)
    string = [(0.0, 0.0), (0.1, 0.0), (0.1 + going * steps, top - 0.28), (0.1 + going * steps, top), (0.05, 0.06)]
    view.lines(string, 0.5, fill=HexColor("#aab4bb"))
    for step in range(steps):
        x, y = 0.1 + going * step, rise * (step + 1)
        view.box(x - 0.04, y - 0.05, x + going + 0.01, y, 0.5, fill=WOOD)
        view.lines([(x, y - rise), (x, y - 0.05)], 0.4, GREY)
        view.lines([(x + going / 2, y), (x + going / 2, y + 0.9)], 0.7, HexColor("#7d8992"))
    first = (0.1 + going / 2, rise + 0.9)
    last = (0.1 + going * (steps - 0.5), top + 0.9)
    view.lines([(first[0] - 0.25, first[1]), first, last, (5.3, last[1])], 2.2)
    for x in (4.75, 5.0):
        view.lines([(x, top), (x, last[1])], 0.7, HexColor("#7d8992"))
    person(view, 2.47, rise * 9)
    view.level_mark(-0.55, 0, "+3.80")
    view.level_mark(5.4, top, "+6.70")
    view.dimension([0.1, 0.1 + going * steps], -0.55)
    view.dimension([0, top], 5.75, vertical=True)
    view.arrow(0.9, 2.62, 1.42, rise * 5 + 0.98)
    view.text(0.1, 2.7, "handrail, oak, 45 mm, oiled", 8)
    view.arrow(3.6, 0.75, 3.15, rise * 10.4)
    view.text(3.3, 0.6, "string, steel, 12 mm", 8)
    sheet.notes(
        60,
        190,
        [
            "Treads are let into the string by 5 mm and fixed from below.",
            "16 risers of 181 mm, goings of 280 mm; the rail runs on by 300 mm.",
            "All steel is painted in the workshop; touch up on site.",
            "A strip of contrasting wood marks the edge of each tread.",
        ],
    )


def window_detail(sheet):
    view = sheet.view(108, 370, 5)
    sheet.heading(60, sheet.height - 62, "Window, jamb", "horizontal section; box sash with a second light inside")
    wall = [(0, 0), (0.42, 0), (0.42, 0.12), (0.30, 0.12), (0.30, 0.40), (0, 0.40)]
    view.lines(wall, 0, fill=BRICKWORK, closed=True)
    view.hatched(0, 0, 0.42, 0.12, 0.02, HexColor("#b5705f"))
    view.hatched(0, 0.12, 0.30, 0.40, 0.02, HexColor("#b5705f"))
    for y, right in ((0.12, 0.30), (0.26, 0.30)):
        view.lines([(0, y), (right, y)], 1.6, white)
    view.lines(wall, 1.2, closed=True)
    view.box(0, 0.40, 0.30, 0.425, 0.7, fill=HexColor("#efeae0"))
    view.box(0.31, 0.13, 0.345, 0.33, 0.9, fill=WOOD)
    view.box(0.345, 0.13, 0.47, 0.15, 0.9, fill=WOOD)
    view.box(0.345, 0.31, 0.47, 0.33, 0.9, fill=WOOD)
    view.box(0.38, 0.175, 0.42, 0.215, 0.7, fill=HexColor("#9aa5ad"))
    view.box(0.38, 0.245, 0.42, 0.285, 0.7, fill=HexColor("#9aa5ad"))
    for y in (0.165, 0.24):
        view.box(0.475, y, 0.53, y + 0.055, 0.9, fill=WOOD)
        view.lines([(0.48, y + 0.005), (0.525, y + 0.05)], 0.4, HexColor("#a88f5f"))
        view.box(0.525, y + 0.02, 0.73, y + 0.032, 0.7, fill=GLASS)
    view.box(0.345, 0.36, 0.40, 0.40, 0.9, fill=WOOD)
    view.box(0.40, 0.365, 0.455, 0.395, 0.9, fill=WOOD)
    view.box(0.45, 0.372, 0.73, 0.388, 0.7, fill=GLASS)
    view.lines([(0.73, 0.12), (0.745, 0.2), (0.715, 0.25), (0.73, 0.4)], 0.6)
    view.text(0.6, 0.05, "outside", 9, italic=True, colour=GREY, align="centre")
    view.text(0.6, 0.44, "inside", 9, italic=True, colour=GREY, align="centre")
    for number, (x, y, tx, ty) in enumerate(
        [
            (0.12, 0.25, 0.06, 0.56),
            (0.15, 0.412, 0.2, 0.56),
            (0.33, 0.28, 0.34, 0.56),
            (0.40, 0.265, 0.46, 0.56),
            (0.50, 0.27, 0.58, 0.56),
            (0.66, 0.38, 0.68, 0.56),
            (0.33, 0.125, 0.3, -0.06),
        ],
        1,
    ):
        view.arrow(tx, ty - 0.012 if ty > 0 else ty + 0.02, x, y, TEAL)
        view.bubble(tx, ty, str(number))
    view.dimension([0, 0.30, 0.42], -0.14, digits=3)
    view.dimension([0, 0.12, 0.40], -0.09, vertical=True, digits=3)
    sheet.notes(
        60,
        222,
        [
            "Brick in lime mortar, half-brick reveal.",
            "Lime plaster, 25 mm, returned to the box.",
            "Box lining of pine, 35 mm, on packers.",
            "Weights of cast iron, 8.5 kg to a side.",
            "Sashes of pine, 55 mm, single glass, putty.",
            "Secondary light, opens inwards for cleaning.",
            "Joint packed with hemp, pointed with burnt sand mastic.",
        ],
        "Key",
    )


OPENINGS = [
    ("D1", "Entrance", "2 200 × 2 500", "oak, glazed, a pair", "E2", 1),
    ("D2", "Reading room", "1 800 × 2 300", "oak, glazed, a pair", "E2", 1),
    ("D3", "Stores 1 and 2", "1 200 × 2 150", "steel, 90 minutes", "E5", 2),
    ("D4", "Offices and copying", "950 × 2 150", "pine, panelled", "E1", 5),
    ("D5", "Cloaks", "900 × 2 150", "pine, panelled", "E1", 1),
    ("D6", "Conservation", "1 200 × 2 150", "steel, 30 minutes", "E4", 1),
    ("W1", "Ground floor, south", "2 400 × 1 900", "box sash, 2 × 3 panes", "F3", 1),
    ("W2", "Ground floor, south", "1 600 × 1 900", "box sash, 2 × 3 panes", "F3", 1),
    ("W3", "Ground floor, south", "1 800 × 1 900", "box sash, 2 × 3 panes", "F3", 1),
    ("W4", "Ground floor, north", "2 200 × 1 900", "fixed, secondary light", "F4", 2),
    ("W5", "Upper floor, south", "2 400 × 1 550", "box sash, 2 × 3 panes", "F3", 1),
    ("W6", "Upper floor, south", "1 800 × 1 550", "box sash, 2 × 3 panes", "F3", 3),
    ("W7", "Upper floor, north", "2 000 × 1 550", "fixed, secondary light", "F4", 1),
    ("W8", "Upper floor, north", "2 200 × 1 550", "fixed, secondary light", "F4", 2),
    ("L1", "Roof lights", "1 200 × 1 400", "steel, double glass", "F6", 3),
]


def schedule(sheet):
    c = sheet.canvas
    sheet.heading(60, sheet.height - 62, "Doors and windows", "sizes are of the clear opening, in millimetres")
    left, right, top, step = 60, sheet.width - 60, sheet.height - 92, 21.5
    columns = [left + 8, left + 54, left + 214, left + 322, left + 480, right - 8]
    heads = ("No.", "Where", "Width × height", "Leaf or frame", "Fittings", "Pieces")
    c.setFillColor(TEAL)
    c.rect(left, top - step + 6, right - left, step, stroke=0, fill=1)
    for number, row in enumerate([heads] + OPENINGS):
        y = top - step * number
        if number and number % 2 == 0:
            c.setFillColor(PALE)
            c.rect(left, y - 8 - 7.5, right - left, step, stroke=0, fill=1)
        for column, value in enumerate(row):
            head = number == 0
            colour = white if head else (TEAL if column == 0 else INK)
            sheet.text(
                columns[column],
                y - 7.5,
                str(value),
                9,
                bold=head or column == 0,
                colour=colour,
                align="right" if column == 5 else "left",
            )
    bottom = top - step * len(OPENINGS) - 15.5
    c.setStrokeColor(INK)
    c.setLineWidth(0.8)
    c.line(left, bottom, right, bottom)
    pieces = sum(row[5] for row in OPENINGS)
    sheet.text(columns[0], bottom - 15, "Together", 9, bold=True)
    sheet.text(columns[5], bottom - 15, str(pieces), 9, bold=True, align="right")
    c.setStrokeColor(RULE)
    for edge in columns[1:5]:
        c.setLineWidth(0.4)
        c.line(edge - 8, bottom, edge - 8, top - step + 6)
