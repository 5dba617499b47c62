"""The sheets that look down on the building: site, two floors, roof."""

import math

from reportlab.lib.colors import HexColor, white

from .drafting import EARTH, GRASS, SLATE, WATER, WOOD
from .pdfwork import GREY, INK, PALE, RULE, TEAL

OUTER = 0.40
INNER = 0.16


def shelves(view, x1, y1, x2, y2, rows):
    """Rows of mobile shelving within a rectangle, lying from left to right."""
    depth = (y2 - y1) / (rows * 1.6)
    for row in range(rows):
        y = y1 + row * (y2 - y1) / rows
        view.box(x1, y, x2, y + depth, 0.35, fill=PALE)
        view.lines([(x1, y + depth / 2), (x2, y + depth / 2)], 0.25, GREY)
        bays = int((x2 - x1) / 0.9)
        for bay in range(1, bays):
            x = x1 + bay * (x2 - x1) / bays
            view.lines([(x, y), (x, y + depth)], 0.2, GREY)


def table(view, x, y, width, depth, chairs):
    view.box(x, y, x + width, y + depth, 0.4, fill=WOOD)
    for chair in range(chairs):
        middle = x + (chair + 0.5) * width / chairs
        for edge in (y - 0.32, y + depth + 0.32):
            view.circle(middle, edge, 0.21, 0.35, fill=white)


def stair(view, x1, y1, x2, y2, steps, up=True):
    """Two flights side by side, with the line of walk."""
    middle = (x1 + x2) / 2
    landing = y2 - 1.1
    view.box(x1, y1, x2, y2, 0.4, fill=white)
    view.lines([(middle, y1), (middle, landing)], 0.8)
    view.lines([(x1, landing), (x2, landing)], 0.4)
    for step in range(steps):
        y = y1 + (landing - y1) * step / steps
        view.lines([(x1, y), (x2, y)], 0.3, GREY)
    left, right = (x1 + middle) / 2, (middle + x2) / 2
    turn = landing + 0.55
    view.lines([(left, y1 + 0.15), (left, turn), (right, turn)], 0.6, TEAL)
    view.arrow(right, turn, right, y1 + 0.3, TEAL)
    view.text(left - 0.12, y1 + 0.3, "up" if up else "down", 5.5, colour=TEAL, turned=90)


def outline(view, windows_south, windows_north, door=None, windows_west=(), windows_east=()):
    """The outer walls of the building, 18 by 11 metres over the axes, with windows as (start, length)."""
    south = list(windows_south) + ([door] if door else [])
    view.box(0, 0, 18, 11, 0, fill=white)
    view.wall(-OUTER / 2, 0, 18 + OUTER / 2, 0, OUTER, [(a + OUTER / 2, n) for a, n in south])
    view.wall(-OUTER / 2, 11, 18 + OUTER / 2, 11, OUTER, [(a + OUTER / 2, n) for a, n in windows_north])
    view.wall(0, 0, 0, 11, OUTER, windows_west)
    view.wall(18, 0, 18, 11, OUTER, windows_east)
    for y, windows in ((0, windows_south), (11, windows_north)):
        for start, length in windows:
            view.window(start, y, start + length, y, OUTER)
    for x, windows in ((0, windows_west), (18, windows_east)):
        for start, length in windows:
            view.window(x, start, x, start + length, OUTER)


def chains(view):
    view.dimension([0, 4.5, 11, 14.5, 18], -1.5)
    view.dimension([0, 18], -2.3)
    view.dimension([0, 4, 6.5, 11], 19.6, vertical=True)
    view.dimension([0, 11], 20.4, vertical=True)


ROOMS = [
    ("Entrance", "oak boards", 26.0),
    ("Reading room", "oak boards", 75.6),
    ("Office", "linoleum", 18.0),
    ("Copying", "linoleum", 14.0),
    ("Cloaks", "tiles", 14.0),
    ("Lobby", "stone", 17.5),
    ("Store 1", "screed, sealed", 31.5),
]


def room_list(sheet, x, y):
    """The list of rooms with floors and areas, to the right of a plan."""
    c = sheet.canvas
    width, step = 200, 16
    sheet.text(x, y + 8, "Rooms", 9, bold=True)
    rows = [*((name, floor, f"{area:.1f} m²") for name, floor, area in ROOMS)]
    rows.append(("Together", "", f"{sum(area for _, _, area in ROOMS):.1f} m²"))
    c.setLineWidth(0.8)
    c.setStrokeColor(INK)
    c.line(x, y, x + width, y)
    for number, (name, floor, area) in enumerate(rows, 1):
        line = y - step * number
        last = number == len(rows)
        sheet.text(x, line + 4.5, name, 8, bold=last)
        sheet.text(x + 84, line + 4.5, floor, 8, colour=GREY)
        sheet.text(x + width, line + 4.5, area, 8, bold=last, align="right")
        c.setStrokeColor(INK if number >= len(rows) - 1 else RULE)
        c.setLineWidth(0.8 if number >= len(rows) - 1 else 0.4)
        c.line(x, line, x + width, line)


def ground_floor(sheet):
    view = sheet.view(124, 232, 75)
    sheet.heading(60, sheet.height - 62, "Ground floor", "finished floor ±0.00 = 6.40 above harbour datum")
    view.axes([0, 4.5, 11, 14.5, 18], [0, 4, 6.5, 11], -1.6, 18.8, -3.2, 11.9)
    outline(
        view,
        windows_south=[(0.9, 2.4), (11.6, 1.6), (15.3, 1.8)],
        windows_north=[(1.2, 2.0), (5.4, 2.2), (8.2, 2.2), (12.0, 1.6)],
        door=(6.4, 2.2),
        windows_west=[(1.2, 1.8), (7.8, 2.0)],
    )
    view.wall(4.5, 0.2, 4.5, 4, INNER, [(2.3, 0.95)])
    view.wall(0.2, 4, 18, 4, INNER, [(6.2, 1.8), (12.9, 0.95)])
    view.wall(11, 0.2, 11, 4, INNER, [(2.2, 0.95)])
    view.wall(11, 4, 11, 11, 0.30, [(0.9, 1.2)])
    view.wall(14.5, 0.2, 14.5, 4, INNER, [(1.0, 0.9)])
    view.wall(11, 6.5, 18, 6.5, INNER, [(0.5, 1.0)])
    # A pair of leaves at the entrance, single leaves inside.
    view.door(6.4, -0.2, 1.1, 0, 90)
    view.door(8.6, -0.2, 1.1, 180, 90)
    view.door(4.5, 2.5, 0.95, 90, 180)
    view.door(6.4, 4, 0.9, 0, 90)
    view.door(8.2, 4, 0.9, 180, 90)
    view.door(11, 2.4, 0.95, 90, 0)
    view.door(14.5, 1.2, 0.9, 90, 0)
    view.door(14.05, 4, 0.95, 180, 90)
    view.door(11, 4.9, 1.2, 90, 0)
    view.door(12.5, 6.5, 1.0, 180, 90)
    for column in range(3):
        for row in range(2):
            table(view, 1.5 + column * 3.2, 5.6 + row * 2.7, 2.2, 1.0, 3)
    shelves(view, 13.2, 6.95, 17.5, 10.7, 5)
    stair(view, 15.2, 4.2, 17.7, 6.3, 7)
    view.box(5.0, 1.0, 6.0, 3.2, 0.4, fill=WOOD)
    view.box(0.6, 0.6, 2.4, 1.4, 0.4, fill=WOOD)
    view.box(0.5, 2.6, 1.2, 3.7, 0.4, fill=PALE)
    view.box(16.9, 0.4, 17.6, 1.0, 0.4, fill=PALE)
    view.circle(15.2, 3.4, 0.25, 0.4, fill=PALE)
    view.box(11.4, 0.4, 13.8, 1.1, 0.4, fill=WOOD)
    view.room(5.6, 10.25, "Reading room", 75.6)
    view.room(7.5, 1.6, "Entrance", 26.0)
    view.room(2.4, 2.1, "Office", 18.0)
    view.room(12.75, 2.5, "Copying", 14.0)
    view.room(16.25, 2.2, "Cloaks", 14.0)
    view.room(12.9, 5.8, "Lobby", 17.5)
    view.room(12.15, 9.9, "Store 1", 31.5, 7)
    chains(view)
    sheet.north(sheet.width - 70, sheet.height - 84)
    view.scale_bar(0, -4.55, 5, 5)
    room_list(sheet, sheet.width - 260, 600)
    sheet.notes(
        sheet.width - 260,
        420,
        [
            "Dimensions are in metres, to the axes of walls.",
            "Outer walls: brick, 400 mm; inner walls: brick, 160 mm.",
            "The wall between reading room and store is of concrete.",
            "Tables: 2.20 by 1.00, six readers each, 36 places.",
            "For doors and windows see sheet A-501.",
        ],
    )


def upper_floor(sheet):
    view = sheet.view(112, 216, 100)
    sheet.heading(60, 66, "Upper floor", "finished floor +3.80; dimensions in metres, to the axes of walls")
    view.axes([0, 4.5, 11, 14.5, 18], [0, 4, 6.5, 11], -1.5, 18.6, -3.0, 11.5)
    outline(
        view,
        windows_south=[(0.9, 2.4), (5.2, 1.8), (8.4, 1.8), (11.6, 1.6), (15.3, 1.8)],
        windows_north=[(1.2, 2.0), (4.2, 2.0), (9.2, 2.0)],
        windows_west=[(1.2, 1.8), (4.4, 1.6)],
    )
    view.wall(0.2, 4, 18, 4, INNER, [(2.6, 0.95), (8.6, 0.95), (11.8, 0.95), (15.4, 0.9)])
    view.wall(4.5, 0.2, 4.5, 4, INNER)
    view.wall(11, 0.2, 11, 4, INNER)
    view.wall(14.5, 0.2, 14.5, 4, INNER)
    view.wall(0.2, 6.5, 18, 6.5, 0.30, [(1.6, 1.2), (7.4, 1.2)])
    view.wall(7, 6.5, 7, 11, INNER)
    for hinge in (2.8, 8.8, 12.0):
        view.door(hinge, 4, 0.95, 0, -90)
    view.door(16.5, 4, 0.9, 180, 270)
    view.door(1.8, 6.5, 1.2, 0, 90)
    view.door(7.6, 6.5, 1.2, 0, 90)
    shelves(view, 9.4, 6.95, 17.5, 10.7, 5)
    table(view, 3.0, 8.2, 2.8, 1.2, 3)
    table(view, 6.0, 0.95, 3.4, 1.2, 4)
    for x in (0.6, 2.4):
        view.box(x, 0.6, x + 1.5, 1.5, 0.4, fill=WOOD)
    view.box(11.5, 0.5, 14.0, 1.2, 0.4, fill=PALE)
    stair(view, 15.2, 4.2, 17.7, 6.3, 7, up=False)
    view.room(2.3, 2.6, "Digitising", 18.0)
    view.room(7.7, 3.45, "Meeting", 26.0)
    view.room(12.75, 2.3, "Tea kitchen", 14.0)
    view.room(16.25, 2.2, "Plant", 14.0)
    view.room(6.4, 5.2, "Gallery", 36.0)
    view.room(2.2, 10.0, "Conservation", 31.5)
    view.room(8.2, 9.6, "Store 2", 49.5, 7)
    chains(view)


def site_plan(sheet):
    view = sheet.view(45, 45, 250)
    tall = (sheet.height - 90) / view.scale
    c = sheet.canvas
    c.saveState()
    clip = c.beginPath()
    clip.rect(31, 31, sheet.width - 62, sheet.height - 62)
    c.clipPath(clip, stroke=0)
    view.box(-2, -2, 102, tall + 2, 0, fill=GRASS)
    river = [(x, tall * 0.83 + 3.2 * math.sin(x / 13.0)) for x in range(-4, 106, 2)]
    bank = [(x, y + 7 + 1.2 * math.sin(x / 9.0)) for x, y in reversed(river)]
    view.lines(river + bank, 0.6, TEAL, fill=WATER, closed=True)
    for offset in (2, 4):
        view.lines([(x, y + offset) for x, y in river], 0.3, HexColor("#9dbdca"), (14, 9))
    for number in range(6):
        drop = 3.2 + number * 4.6
        view.lines(
            [(x, y - drop - 1.3 * math.sin((x + number * 5) / 17.0)) for x, y in river], 0.3, HexColor("#b3c095")
        )
        x, y = river[3 + number]
        view.text(x, y - drop - 0.6, f"{6.5 - number * 0.25:.2f}", 5.5, colour=HexColor("#7c8a5c"))
    lane = [(x, 8.2 + 1.4 * math.sin((x + 4) / 24.0)) for x in range(-4, 104, 2)]
    view.lines([(x, y + 3) for x, y in lane] + [(x, y - 3) for x, y in reversed(lane)], 0.6, GREY, fill=EARTH)
    view.lines(lane, 0.5, white, (10, 8))
    sheet.text(*view.at(8, 9.1), "Mill Lane", 11, italic=True, colour=GREY, turned=2.6)
    sheet.text(*view.at(66, tall * 0.83 + 0.9), "River Brenn", 13, italic=True, colour=TEAL, turned=3)
    plot = [(14, 14), (80, 15.5), (83, 42), (48, 46), (15, 43)]
    view.lines(plot, 1.2, HexColor("#a6473c"), (12, 3, 2, 3), closed=True)
    view.box(38, 22, 56, 33, 0, fill=HexColor("#b9c0c6"))
    view.box(37.3, 22.7, 55.3, 33.7, 1.2, fill=white)
    view.hatched(37.3, 22.7, 55.3, 33.7, 0.8)
    view.lines([(42.8, 28.2), (49.8, 28.2)], 0.9)
    for corner, ridge in (((37.3, 22.7), 42.8), ((37.3, 33.7), 42.8), ((55.3, 22.7), 49.8), ((55.3, 33.7), 49.8)):
        view.lines([corner, (ridge, 28.2)], 0.9)
    label = view.at(46.3, 24.7)
    c.setFillColor(white)
    c.rect(label[0] - 54, label[1] - 7, 108, 26, stroke=0, fill=1)
    sheet.text(label[0], label[1] + 6, "Reading room", 11, bold=True, align="centre")
    sheet.text(label[0], label[1] - 4, "two floors, ridge +9.60", 7, colour=GREY, align="centre")
    view.lines([(43.5, 22.7), (43.5, 12.5), (47.5, 12.5), (47.5, 22.7)], 0.5, GREY, fill=HexColor("#f2ecdf"))
    for bay in range(9):
        view.box(56 + bay * 2.5, 16.9, 58.5 + bay * 2.5, 21.9, 0.5, GREY, fill=HexColor("#f2ecdf"))
    view.text(56.2, 22.4, "9 places", 7, colour=GREY)
    view.box(18, 30, 27, 38, 0.8, fill=HexColor("#eee3d6"))
    view.text(22.5, 33.8, "Old mill", 8, align="centre")
    view.text(22.5, 32.4, "(stays)", 6.5, colour=GREY, align="centre")
    for x, y, radius in (
        (18, 19, 2.2),
        (23, 17.5, 1.7),
        (29, 19.5, 2.4),
        (33, 40, 2.6),
        (60, 38, 2.4),
        (66, 39.5, 1.9),
        (72, 36, 2.6),
        (77, 39, 2.0),
        (78.5, 29, 2.2),
        (58.5, 27, 1.5),
        (88, 20, 2.6),
        (91, 33, 2.2),
        (7, 25, 2.5),
        (6, 33, 2.0),
        (33, 16.5, 1.5),
    ):
        view.tree(x, y, radius)
    view.dimension([37.3, 55.3], 35.2)
    view.dimension([22.7, 33.7], 35.8, vertical=True)
    view.dimension([15.0, 22.7], 51, vertical=True)
    c.restoreState()
    # The key lies on a panel of its own, so that it reads over the drawing.
    c.setFillColor(white)
    c.setStrokeColor(RULE)
    c.setLineWidth(0.5)
    c.rect(48, sheet.height - 112, 300, 66, stroke=1, fill=1)
    sheet.heading(60, sheet.height - 66, "Site plan", "levels in metres above harbour datum")
    key = sheet.height - 100
    c.setDash([12, 3, 2, 3])
    c.setStrokeColor(HexColor("#a6473c"))
    c.setLineWidth(1.2)
    c.line(60, key, 100, key)
    c.setDash([])
    sheet.text(106, key - 2.5, "boundary of the plot", 7)
    c.setStrokeColor(HexColor("#b3c095"))
    c.line(190, key, 230, key)
    sheet.text(236, key - 2.5, "contour, every 0.25", 7)
    c.setFillColor(white)
    c.setStrokeColor(RULE)
    c.rect(sheet.width - 112, sheet.height - 112, 64, 66, stroke=1, fill=1)
    sheet.north(sheet.width - 80, sheet.height - 84, 17)
    view.box(56, -0.2, 69, 2.6, 0, fill=white)
    view.scale_bar(57, 1.2, 10, 5)


def roof_plan(sheet):
    view = sheet.view(126, 182, 50, user_unit=2)
    sheet.heading(60, sheet.height - 62, "Roof", "slate on boarding, pitch 25°; gutters of zinc")
    view.box(-0.6, -0.6, 18.6, 11.6, 1.2, fill=PALE)
    low, high, left, right, ridge = -0.6, 11.6, -0.6, 18.6, 5.5
    faces = [
        ([(left, low), (right, low), (12.5, ridge), (5.5, ridge)], SLATE),
        ([(left, high), (right, high), (12.5, ridge), (5.5, ridge)], HexColor("#dde3e7")),
        ([(left, low), (left, high), (5.5, ridge)], HexColor("#d3dae0")),
        ([(right, low), (right, high), (12.5, ridge)], HexColor("#e4e9ec")),
    ]
    for face, shade in faces:
        view.lines(face, 0.9, fill=shade)
    for course in range(1, 12):
        share = course / 12
        y1, y2 = low + (ridge - low) * share, high + (ridge - high) * share
        x1, x2 = left + (5.5 - left) * share, right + (12.5 - right) * share
        view.lines([(x1, y1), (x2, y1), (x2, y2), (x1, y2)], 0.2, HexColor("#8d99a3"), closed=True)
    view.box(left, low, right, high, 1.6)
    view.box(left + 0.12, low + 0.12, right - 0.12, high - 0.12, 0.4)
    view.lines([(5.5, ridge), (12.5, ridge)], 1.6)
    for x in (3.2, 8.0, 12.8):
        view.box(x, 7.9, x + 1.2, 9.3, 0.8, fill=white)
        view.box(x + 0.12, 8.02, x + 1.08, 9.18, 0.4, fill=WATER)
    view.box(14.0, 4.4, 14.9, 5.5, 1, fill=HexColor("#d9b8ab"))
    view.circle(14.25, 4.95, 0.15, 0.5, fill=white)
    view.circle(14.65, 4.95, 0.15, 0.5, fill=white)
    for x, y in ((0, 0), (18, 0), (0, 11), (18, 11)):
        view.circle(x + (-0.36 if x == 0 else 0.36), y + (-0.36 if y == 0 else 0.36), 0.16, 0.9, fill=white)
    for x in (6.4, 11.0):
        view.arrow(x, 4.4, x, 1.2)
        view.text(x + 0.15, 2.8, "25°", 7)
    view.arrow(9.0, 6.4, 9.0, 7.6)
    view.arrow(3.2, 5.5, 0.8, 5.5)
    view.text(1.7, 5.65, "25°", 7)
    view.text(9.0, 5.75, "ridge +9.60", 8, bold=True, align="centre")
    view.text(9.0, -0.35, "eaves gutter, fall 0.5 %", 6.5, align="centre", colour=GREY)
    view.dimension([-0.6, 5.5, 12.5, 18.6], -1.5)
    view.dimension([-0.6, 18.6], -2.3)
    view.dimension([-0.6, 5.5, 11.6], -1.4, vertical=True)
    sheet.north(sheet.width - 70, sheet.height - 84)
