"""Charts and boxes for the sample report."""

import math

from reportlab.lib.colors import HexColor, white
from reportlab.platypus import Flowable

from .pdfwork import BRICK, GREY, INK, MOSS, OCHRE, RULE, TEAL

FACE = "Sans"
SERIES = (TEAL, OCHRE, MOSS, BRICK, HexColor("#5d6d8e"))


class Chart(Flowable):
    """A drawing of a fixed height, as wide as the column, with an axis of values on its left."""

    left, low, above = 34, 20, 22

    def __init__(self, height):
        super().__init__()
        self.height = height

    def wrap(self, width, height):
        self.width = width
        return width, self.height

    def text(self, x, y, text, size=8, colour=GREY, align="left", bold=False):
        c = self.canv
        c.setFont(FACE + ("-Bold" if bold else ""), size)
        c.setFillColor(colour)
        {"left": c.drawString, "centre": c.drawCentredString, "right": c.drawRightString}[align](x, y, text)

    def axis(self, top, step):
        """Lines across at every `step` up to `top`; gives back the points for one unit."""
        c = self.canv
        scale = (self.height - self.low - self.above) / top
        for value in range(0, top + 1, step):
            y = self.low + value * scale
            c.setStrokeColor(INK if value == 0 else RULE)
            c.setLineWidth(0.8 if value == 0 else 0.4)
            c.line(self.left, y, self.width, y)
            self.text(self.left - 5, y - 2.8, f"{value:,}", align="right")
        return scale

    def legend(self, names, colours):
        x = self.left
        for name, colour in zip(names, colours):
            self.canv.setFillColor(colour)
            self.canv.rect(x, self.height - 9, 9, 9, stroke=0, fill=1)
            self.text(x + 13, self.height - 7.6, name)
            x += 13 + self.canv.stringWidth(name, FACE, 8) + 16


class StackedBars(Chart):
    def __init__(self, height, labels, series, top, step):
        super().__init__(height)
        self.labels, self.series, self.top, self.step = labels, series, top, step

    def draw(self):
        scale = self.axis(self.top, self.step)
        slot = (self.width - self.left) / len(self.labels)
        for number, label in enumerate(self.labels):
            x, y = self.left + slot * (number + 0.22), self.low
            for values, colour in zip(self.series.values(), SERIES):
                self.canv.setFillColor(colour)
                self.canv.setStrokeColor(white)
                self.canv.setLineWidth(0.6)
                self.canv.rect(x, y, slot * 0.56, values[number] * scale, stroke=1, fill=1)
                y += values[number] * scale
            total = sum(values[number] for values in self.series.values())
            self.text(x + slot * 0.28, y + 4, str(total), bold=True, colour=INK, align="centre")
            self.text(x + slot * 0.28, self.low - 12, str(label), align="centre")
        self.legend(self.series, SERIES)


class Lines(Chart):
    def __init__(self, height, labels, series, top, step):
        super().__init__(height)
        self.labels, self.series, self.top, self.step = labels, series, top, step

    def draw(self):
        c = self.canv
        scale = self.axis(self.top, self.step)
        slot = (self.width - self.left) / len(self.labels)
        colours = (HexColor("#b3bcc3"), TEAL)
        for number, label in enumerate(self.labels):
            self.text(self.left + slot * (number + 0.5), self.low - 12, label, align="centre")
        for values, colour in zip(self.series.values(), colours):
            points = [(self.left + slot * (n + 0.5), self.low + v * scale) for n, v in enumerate(values)]
            path = c.beginPath()
            path.moveTo(*points[0])
            for point in points[1:]:
                path.lineTo(*point)
            c.setStrokeColor(colour)
            c.setLineWidth(2)
            c.setLineJoin(1)
            c.drawPath(path)
            for x, y in points:
                c.setFillColor(white)
                c.setLineWidth(1.4)
                c.circle(x, y, 2.6, stroke=1, fill=1)
        last = list(self.series.values())[-1]
        peak = max(range(len(last)), key=last.__getitem__)
        x, y = self.left + slot * (peak + 0.5), self.low + last[peak] * scale
        self.text(x, y + 7, str(last[peak]), bold=True, colour=INK, align="centre")
        self.legend(self.series, colours)


class Levels(Chart):
    """One horizontal bar a row, filled to its level."""

    def __init__(self, rows, step=30):
        super().__init__(step * len(rows))
        self.rows, self.step = rows, step

    def draw(self):
        c = self.canv
        left = 150
        for number, (name, room, filled) in enumerate(self.rows):
            y = self.height - self.step * (number + 1) + 8
            share = filled / room
            self.text(0, y + 4, name, 9, INK)
            c.setFillColor(HexColor("#e4e9ec"))
            c.roundRect(left, y, self.width - left - 84, 14, 4, stroke=0, fill=1)
            c.setFillColor(BRICK if share > 0.9 else TEAL)
            c.roundRect(left, y, (self.width - left - 84) * share, 14, 4, stroke=0, fill=1)
            self.text(self.width, y + 4, f"{filled:,} of {room:,} m", 8.5, align="right")


class Ring(Chart):
    """Shares of a whole as a ring, with the whole in its middle."""

    def __init__(self, height, rows, unit):
        super().__init__(height)
        self.rows, self.unit = rows, unit

    def draw(self):
        c = self.canv
        whole = sum(value for _, value in self.rows)
        radius = self.height / 2 - 4
        x, y = radius + 12, self.height / 2
        angle = 90.0
        shades = SERIES + (HexColor("#9aa5ad"),)
        for (_, value), colour in zip(self.rows, shades):
            extent = 360 * value / whole
            c.setFillColor(colour)
            c.setStrokeColor(white)
            c.setLineWidth(1.2)
            c.wedge(x - radius, y - radius, x + radius, y + radius, angle - extent, extent, stroke=1, fill=1)
            middle = math.radians(angle - extent / 2)
            if extent > 22:
                self.text(
                    x + radius * 0.79 * math.cos(middle),
                    y + radius * 0.79 * math.sin(middle) - 3,
                    f"{100 * value / whole:.0f} %",
                    8,
                    white,
                    "centre",
                    bold=True,
                )
            angle -= extent
        c.setFillColor(white)
        c.circle(x, y, radius * 0.58, stroke=0, fill=1)
        self.text(x, y + 1, f"{whole:,}", 17, INK, "centre", bold=True)
        self.text(x, y - 12, self.unit, 8, GREY, "centre")
        for number, ((name, value), colour) in enumerate(zip(self.rows, shades)):
            line = self.height - 26 - number * 19
            c.setFillColor(colour)
            c.rect(2 * radius + 52, line - 1, 10, 10, stroke=0, fill=1)
            self.text(2 * radius + 70, line, name, 9.5, INK)
            self.text(self.width - 20, line, f"{value:,}", 9.5, INK, "right", bold=True)


class Tiles(Chart):
    """Coloured boxes side by side, each with a figure and what it counts."""

    def __init__(self, tiles, height=86):
        super().__init__(height)
        self.tiles = tiles

    def draw(self):
        c = self.canv
        gap = 12
        width = (self.width - gap * (len(self.tiles) - 1)) / len(self.tiles)
        for number, (figure, label, colour) in enumerate(self.tiles):
            x = number * (width + gap)
            c.setFillColor(colour)
            c.roundRect(x, 0, width, self.height, 7, stroke=0, fill=1)
            self.text(x + 12, self.height - 38, figure, 24, white, bold=True)
            for row, part in enumerate(label.split("\n")):
                self.text(x + 12, self.height - 55 - 11.5 * row, part, 8.8, white)
