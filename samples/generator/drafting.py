"""A drawing board: sheets with a frame and a title block, and views that map metres to the sheet."""

import math

from reportlab.lib.colors import HexColor, white

from .pdfwork import GREY, INK, TEAL

FACE = "Narrow"
GLASS = HexColor("#cfe3e8")
WATER = HexColor("#dbe9ef")
GRASS = HexColor("#e9f0de")
EARTH = HexColor("#e6ddcd")
WOOD = HexColor("#efe2c8")
BRICKWORK = HexColor("#e8cfc5")
SLATE = HexColor("#c9d1d8")

PROJECT = "Reading room and record store, Mill Lane"
CLIENT = "Saltmere County Archive"
OFFICE = "Harrow & Finch Architects"


class Sheet:
    """One sheet as its reader sees it, `width` by `height` points, origin at its lower left corner."""

    def __init__(self, canvas, width, height):
        self.canvas = canvas
        self.width = width
        self.height = height

    def frame(self, number, title, scale, note):
        c = self.canvas
        edge = 30
        c.setStrokeColor(INK)
        c.setLineWidth(1.4)
        c.rect(edge, edge, self.width - 2 * edge, self.height - 2 * edge)
        width, height = 236, 80
        x, y = self.width - edge - width, edge
        c.setFillColor(white)
        c.rect(x, y, width, height, fill=1)
        c.setLineWidth(0.5)
        c.line(x, y + 50, x + width, y + 50)
        c.line(x, y + 19, x + width, y + 19)
        c.line(x + 166, y, x + 166, y + 50)
        c.line(x + 72, y, x + 72, y + 19)
        self._mark(x + 17, y + 65)
        self.text(x + 34, y + 66.5, OFFICE, 9.5, bold=True)
        self.text(x + 34, y + 56.5, f"{PROJECT}  ·  {CLIENT}", 6, colour=GREY)
        self.text(x + 7, y + 39.5, "DRAWING", 5, colour=GREY)
        self.text(x + 7, y + 26, title, 12, bold=True)
        self.text(x + 173, y + 39.5, "SHEET", 5, colour=GREY)
        self.text(x + 173, y + 25.5, number, 15, bold=True, colour=TEAL)
        for left, label, value in ((7, "SCALE", scale), (79, "PAGE", note), (173, "DATE", "2024-02-19")):
            self.text(x + left, y + 12.5, label, 4.6, colour=GREY)
            self.text(x + left, y + 4.5, value, 7.2)

    def _mark(self, x, y):
        c = self.canvas
        c.setFillColor(TEAL)
        path = c.beginPath()
        path.moveTo(x - 10, y - 7)
        path.lineTo(x - 10, y + 1)
        path.lineTo(x, y + 8)
        path.lineTo(x + 10, y + 1)
        path.lineTo(x + 10, y - 7)
        path.lineTo(x + 3, y - 7)
        path.lineTo(x + 3, y - 1)
        path.lineTo(x - 3, y - 1)
        path.lineTo(x - 3, y - 7)
        path.close()
        c.drawPath(path, stroke=0, fill=1)

    def text(self, x, y, text, size, bold=False, italic=False, colour=INK, align="left", turned=0):
        c = self.canvas
        face = FACE + {(0, 0): "", (1, 0): "-Bold", (0, 1): "-Italic", (1, 1): "-BoldItalic"}[(bold, italic)]
        c.saveState()
        c.setFont(face, size)
        c.setFillColor(colour)
        c.translate(x, y)
        c.rotate(turned)
        {"left": c.drawString, "centre": c.drawCentredString, "right": c.drawRightString}[align](0, 0, text)
        c.restoreState()

    def heading(self, x, y, title, note=""):
        self.text(x, y, title, 11, bold=True)
        if note:
            self.text(x, y - 10, note, 7, colour=GREY)

    def notes(self, x, y, lines, title="Notes"):
        self.text(x, y, title, 8, bold=True)
        for number, line in enumerate(lines, 1):
            self.text(x, y - 11 * number - 1, f"{number}", 7, bold=True, colour=TEAL)
            self.text(x + 11, y - 11 * number - 1, line, 7)

    def north(self, x, y, radius=15):
        c = self.canvas
        c.setStrokeColor(INK)
        c.setLineWidth(0.7)
        c.circle(x, y, radius)
        path = c.beginPath()
        path.moveTo(x, y + radius)
        path.lineTo(x + radius * 0.42, y - radius * 0.78)
        path.lineTo(x, y - radius * 0.45)
        path.close()
        c.setFillColor(INK)
        c.drawPath(path, stroke=1, fill=1)
        path = c.beginPath()
        path.moveTo(x, y + radius)
        path.lineTo(x - radius * 0.42, y - radius * 0.78)
        path.lineTo(x, y - radius * 0.45)
        path.close()
        c.drawPath(path, stroke=1, fill=0)
        self.text(x, y + radius + 4, "N", 9, bold=True, align="centre")

    def view(self, x, y, ratio, user_unit=1):
        """A drawing at 1 : `ratio` with its origin at (x, y), true to scale when the page is shown at its size."""
        return View(self, x, y, 72 / 0.0254 / ratio / user_unit)


class View:
    """A drawing on a sheet. Coordinates are metres; line weights and type sizes are points.

    `scale` is in units of the page to the metre.
    """

    def __init__(self, sheet, x, y, scale):
        self.sheet = sheet
        self.canvas = sheet.canvas
        self.x = x
        self.y = y
        self.scale = scale

    def at(self, x, y):
        return self.x + x * self.scale, self.y + y * self.scale

    def pen(self, weight, colour=INK, dash=()):
        self.canvas.setLineWidth(weight)
        self.canvas.setStrokeColor(colour)
        self.canvas.setDash(list(dash))

    def lines(self, points, weight=0.5, colour=INK, dash=(), fill=None, closed=False):
        self.pen(weight, colour, dash)
        path = self.canvas.beginPath()
        path.moveTo(*self.at(*points[0]))
        for point in points[1:]:
            path.lineTo(*self.at(*point))
        if closed or fill is not None:
            path.close()
        if fill is not None:
            self.canvas.setFillColor(fill)
        self.canvas.drawPath(path, stroke=int(weight > 0), fill=int(fill is not None))
        self.canvas.setDash([])

    def box(self, x1, y1, x2, y2, weight=0.5, colour=INK, fill=None, dash=()):
        self.lines([(x1, y1), (x2, y1), (x2, y2), (x1, y2)], weight, colour, dash, fill, closed=True)

    def circle(self, x, y, radius, weight=0.5, colour=INK, fill=None):
        self.pen(weight, colour)
        if fill is not None:
            self.canvas.setFillColor(fill)
        self.canvas.circle(*self.at(x, y), radius * self.scale, stroke=int(weight > 0), fill=int(fill is not None))

    def text(self, x, y, text, size=7, **how):
        self.sheet.text(*self.at(x, y), text, size, **how)

    def room(self, x, y, name, area, size=8):
        px, py = self.at(x, y)
        self.sheet.text(px, py, name, size, bold=True, align="centre")
        self.sheet.text(px, py - size * 1.15, f"{area:.1f} m²", size * 0.85, colour=GREY, align="centre")

    def hatched(self, x1, y1, x2, y2, gap=0.25, colour=GREY, weight=0.3, rising=True):
        """Slanted lines within a rectangle."""
        c = self.canvas
        c.saveState()
        path = c.beginPath()
        left, low = self.at(x1, y1)
        right, high = self.at(x2, y2)
        path.rect(left, low, right - left, high - low)
        c.clipPath(path, stroke=0)
        self.pen(weight, colour)
        tall, step = high - low, gap * self.scale
        for number in range(int((right - left + tall) / step) + 2):
            x = left - tall + number * step
            c.line(x, low if rising else high, x + tall, high if rising else low)
        c.restoreState()

    def wall(self, x1, y1, x2, y2, thick, openings=()):
        """A wall along one axis, from its axis' start to its end, less the openings (start, length) along it."""
        level = y1 == y2
        half = thick / 2
        start = x1 if level else y1
        end = x2 if level else y2
        pieces, reached = [], start
        for begin, length in sorted(openings):
            pieces.append((reached, start + begin))
            reached = start + begin + length
        pieces.append((reached, end))
        for a, b in pieces:
            if b - a < 0.001:
                continue
            if level:
                self.box(a, y1 - half, b, y1 + half, 0.2, INK, fill=INK)
            else:
                self.box(x1 - half, a, x1 + half, b, 0.2, INK, fill=INK)

    def window(self, x1, y1, x2, y2, thick):
        half = thick / 2
        if y1 == y2:
            self.box(x1, y1 - half, x2, y1 + half, 0.4, fill=white)
            self.box(x1, y1 - half * 0.3, x2, y1 + half * 0.3, 0.4, fill=GLASS)
        else:
            self.box(x1 - half, y1, x1 + half, y2, 0.4, fill=white)
            self.box(x1 - half * 0.3, y1, x1 + half * 0.3, y2, 0.4, fill=GLASS)

    def door(self, x, y, width, closed, opened):
        """A leaf hinged at (x, y) with the arc of its way from `closed` to `opened`, directions in degrees."""
        px, py = self.at(x, y)
        reach = width * self.scale
        self.pen(0.35, GREY)
        low, extent = min(closed, opened), abs(opened - closed)
        self.canvas.arc(px - reach, py - reach, px + reach, py + reach, low, extent)
        angle = math.radians(opened)
        self.pen(1.1)
        self.canvas.line(px, py, px + reach * math.cos(angle), py + reach * math.sin(angle))

    def dimension(self, stops, level, vertical=False, size=6.2, digits=2):
        """A chain of dimensions through `stops`, at the height (or, vertical, the abscissa) `level`."""
        tick = 3 / self.scale
        mark = 1.6 / self.scale

        def point(along, across):
            return (across, along) if vertical else (along, across)

        self.lines([point(stops[0], level), point(stops[-1], level)], 0.35, GREY)
        for stop in stops:
            self.lines([point(stop, level - tick), point(stop, level + tick)], 0.35, GREY)
            self.lines([point(stop - mark, level - mark), point(stop + mark, level + mark)], 0.9)
        for a, b in zip(stops, stops[1:]):
            px, py = self.at(*point((a + b) / 2, level))
            value = f"{b - a:.{digits}f}"
            if vertical:
                self.sheet.text(px - 2.6, py, value, size, align="centre", turned=90)
            else:
                self.sheet.text(px, py + 2.6, value, size, align="centre")

    def bubble(self, x, y, name):
        px, py = self.at(x, y)
        self.pen(0.6, TEAL)
        self.canvas.setFillColor(white)
        self.canvas.circle(px, py, 8, fill=1)
        self.sheet.text(px, py - 3, name, 8.5, bold=True, colour=TEAL, align="centre")

    def axes(self, xs, ys, left, right, low, high):
        """Grid axes: letters below, figures to the left."""
        for name, x in zip("ABCDEFGH", xs):
            self.lines([(x, low), (x, high)], 0.3, TEAL, (8, 2, 1.5, 2))
            self.bubble(x, low, name)
        for number, y in enumerate(ys, 1):
            self.lines([(left, y), (right, y)], 0.3, TEAL, (8, 2, 1.5, 2))
            self.bubble(left, y, str(number))

    def level_mark(self, x, y, text):
        px, py = self.at(x, y)
        c = self.canvas
        self.pen(0.5)
        c.line(px, py, px + 42, py)
        path = c.beginPath()
        path.moveTo(px + 6, py)
        path.lineTo(px + 2.5, py + 5)
        path.lineTo(px + 9.5, py + 5)
        path.close()
        c.setFillColor(INK)
        c.drawPath(path, stroke=0, fill=1)
        self.sheet.text(px + 12, py + 2, text, 6.8)

    def tree(self, x, y, radius):
        self.circle(x, y, radius, 0.4, HexColor("#8aa06d"), HexColor("#dfe9d0"))
        for step in range(9):
            angle = math.radians(40 * step)
            self.lines(
                [(x, y), (x + radius * 0.8 * math.cos(angle), y + radius * 0.8 * math.sin(angle))],
                0.25,
                HexColor("#8aa06d"),
            )
        self.circle(x, y, radius * 0.1, 0, fill=HexColor("#6b7f52"))

    def scale_bar(self, x, y, metres, parts):
        step = metres / parts
        height = 4 / self.scale
        for part in range(parts):
            shade = INK if part % 2 == 0 else white
            self.box(x + part * step, y, x + (part + 1) * step, y + height, 0.5, fill=shade)
        for part in range(parts + 1):
            px, py = self.at(x + part * step, y)
            self.sheet.text(px, py - 8, f"{part * step:g}", 6.2, align="centre")
        px, py = self.at(x + metres, y)
        self.sheet.text(px + 8, py - 8, "m", 6.2)

    def arrow(self, x1, y1, x2, y2, colour=INK):
        self.lines([(x1, y1), (x2, y2)], 0.6, colour)
        (ax, ay), (bx, by) = self.at(x1, y1), self.at(x2, y2)
        angle = math.atan2(by - ay, bx - ax)
        path = self.canvas.beginPath()
        path.moveTo(bx, by)
        for turn in (2.75, -2.75):
            path.lineTo(bx + 6 * math.cos(angle + turn), by + 6 * math.sin(angle + turn))
        path.close()
        self.canvas.setFillColor(colour)
        self.canvas.drawPath(path, stroke=0, fill=1)
