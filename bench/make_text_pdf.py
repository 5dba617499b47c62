#!/usr/bin/env python3
"""Writes a document of any length for benchmarks.

    make_text_pdf.py [--shape text|light|pieces|scan] [--objstm] PAGES OUT.pdf

Letter pages of small, justified type, as a book or a transcript has them: each page has a content stream of its
own with its own words, about 11.5 KB when compressed, so that 2,000 pages make about 23 MB. The page tree has nodes
of 50 kids; MediaBox and Resources are inherited from its root. Two of the standard 14 fonts, nothing embedded, a
classic cross-reference table. The same arguments give the same bytes.

The other shapes keep the page tree and change what is on the pages:
    light   a few lines of type, so that 2,000 pages make about 1.2 MB in few objects
    pieces  the light page's type in 40 small content streams a page: 2,000 pages make about 84,000 objects
    scan    one grey picture a page, 591 KB that do not compress: 700 pages make 414 MB

--objstm passes the document through qpdf, which packs its objects into object streams and writes a
cross-reference stream. That option needs qpdf; all else is Python's standard library.
"""

import argparse
import hashlib
import multiprocessing
import os
import random
import subprocess
import sys
import zlib

KIDS = 50
WIDTH, HEIGHT = 612, 792
SIDE, TOP, BOTTOM = 36, 48, 50
SIZE, LEADING = 6.4, 7.15
INDENT = 12

# Words are put together from these, so that a page holds many different ones, as real text does.
STEMS = """
acre amber anchor apple arch ash autumn barley barn basin beacon bell birch blossom board bone border bough branch
brass bread brick bridge brook broom candle canvas carpet castle cedar chalk chapel charcoal cherry circle clay cliff
clock cloud clover coast cobble copper coral cord corner cotton court cradle crane creek crest crown crystal curtain
dawn deer dew drift drum dune dust eagle earth east edge elder elm ember engine evening fair falcon fallow farm feather
fence fern ferry field finch fir flag flame flax flint flock flour flute foam fold ford forest forge fountain fox frame
frost garden gate glass gleam glen gold grain granite grass gravel grove gull hall hammer harbour harvest hawk hay hazel
hearth heath hedge heron hill hive hollow honey horn house ice inlet iron island ivory ivy jasper juniper keel kettle
lace ladder lake lamp lantern larch lark laurel lawn leaf ledge light lily lime linen loam loom lumber maple marble
market marsh mast meadow mill mint mirror mist moon moor morning moss mountain needle nest night north oak oar oat olive
onyx orchard otter owl paddle paper parchment pasture path pearl pebble pepper pine pitch plain plank plough plum pond
poplar poppy porch prairie prism quarry quartz quill rain raven reed resin ribbon ridge river road robin rock root rope
rose rowan rudder rush rust rye saddle saffron sage sail salt sand sapling seed shade shell shield shore silk silver
sketch slate sleet smoke snow south spark sparrow spindle spire spring spruce stable star steel stem steppe stone storm
stove straw stream summer swallow swan tallow tar tea thatch thistle thorn thread thunder tide timber tin tower trail
vale valley vane vault velvet village vine violet wall walnut water wave wax weaver well west wharf wheat wheel willow
wind window winter wood wool wren yarrow yew
""".split()
ENDINGS = ["", "", ""] + "s ed ing er ers less like ward wards y ish man land ness work".split()
SMALL = """
a an and are as at be but by for from had has he her his in is it its no not of on or our she so that the their they this
to was we were what when which who will with you
""".split()

# Advance widths of Times-Roman from a to z, in thousandths of the size.
ADVANCES = """
444 500 444 500 444 333 500 500 278 278 500 278 778 500 500 500 500 333 389 278 500 500 722 500 500 444
""".split()
LETTERS = {chr(ord("a") + place): int(advance) for place, advance in enumerate(ADVANCES)}
SPACE = 250
# Pairs of letters and how much closer they stand to each other.
KERNS = {}
for closer, pairs in (
    (5, "ge yo we"),
    (10, "fa ke ko lw oy ry wa wo"),
    (15, "bv ex ey ky ny ov ve xe"),
    (18, "rg"),
    (20, "av ay fi vo"),
    (25, "ev ew ff ow"),
    (40, "nv"),
):
    KERNS.update((pair, -closer) for pair in pairs.split())


def typeset(word):
    """A word as a piece of a TJ array, broken where a kern goes, and its width in thousandths."""
    pieces, width = ["(", word[0]], LETTERS[word[0]]
    for before, letter in zip(word, word[1:]):
        kern = KERNS.get(before + letter, 0)
        if kern:
            pieces.append(f"){-kern}(")
        pieces.append(letter)
        width += LETTERS[letter] + kern
    pieces.append(")")
    return "".join(pieces), width


def word_list():
    """All words, each as (piece of a TJ array, width, plain). Small words come again, as they are more frequent."""
    words = [stem + ending for stem in STEMS for ending in ENDINGS]
    words += [first + second for first, second in zip(STEMS, STEMS[7:] + STEMS[:7])]
    words += [first + second for first, second in zip(STEMS, STEMS[101:] + STEMS[:101])]
    words += SMALL * (len(words) // (4 * len(SMALL)))
    return [(*typeset(word), word) for word in words]


WORDS = word_list()

# Removes the brackets and numbers of a TJ array from a piece of the array, which leaves the word.
UNKERNED = str.maketrans("", "", "()0123456789-")


def content(number):
    """The content stream of a page, before compression."""
    chance = random.Random(number)
    measure = (WIDTH - 2 * SIDE) * 1000 / SIZE
    lines = int((HEIGHT - TOP - BOTTOM) / LEADING)
    supply = iter(chance.choices(WORDS, k=lines * 60))
    title = " ".join(word for _, _, word in (next(supply) for _ in range(5))).title()
    out = [
        f"BT\n/F2 9 Tf\n1 0 0 1 {SIDE} {HEIGHT - TOP + 10} Tm\n({number}  {title})Tj\nET\n"
        f"0.4 w\n{SIDE} {HEIGHT - TOP + 5} m\n{WIDTH - SIDE} {HEIGHT - TOP + 5} l\nS\n"
        f"BT\n/F1 {SIZE} Tf\n1 0 0 1 {SIDE} {HEIGHT - TOP + LEADING - 8:g} Tm\n"
    ]
    left = chance.randint(3, 9)
    indent = carried = 0
    pending = next(supply)
    for _ in range(lines):
        room = measure - indent * 1000 / SIZE
        parts, used = [pending[0]], pending[1]
        pending = next(supply)
        while used + SPACE + pending[1] <= room:
            parts.append(pending[0])
            used += SPACE + pending[1]
            pending = next(supply)
        left -= 1
        move = indent - carried
        carried = indent
        if left == 0:
            # The last line of a paragraph: not stretched, and cut at a random word.
            words = parts[: max(1, chance.randint(len(parts) // 4, len(parts) - 1))]
            plain = " ".join(word.translate(UNKERNED) for word in words)
            out.append(f"{move} -{LEADING} Td\n({plain}.)Tj\n")
            left = chance.randint(3, 9)
            indent = INDENT
        else:
            gap = -(SPACE + (room - used) / max(1, len(parts) - 1))
            out.append(f"{move} -{LEADING} Td\n[{f'{gap:.1f}'.join(parts)}]TJ\n")
            indent = 0
    out.append("ET\n")
    return "".join(out)


def stream(data, entries=b""):
    return b"<< /Length %d%s >>\nstream\n" % (len(data), entries) + data + b"\nendstream"


def deflated(text):
    return stream(zlib.compress(text.encode("ascii"), 6), b" /Filter /FlateDecode")


def text_page(number):
    """The streams of a page: those of its content, and the one of its picture if there is one."""
    return [deflated(content(number))], None


def light_lines(number, count):
    chance = random.Random(number)
    for line in range(count):
        words = " ".join(word for _, _, word in chance.choices(WORDS, k=8))
        yield f"BT /F1 11 Tf 72 {700 - 15 * line} Td ({words}) Tj ET\n"


def light_page(number):
    return [deflated("".join(light_lines(number, 6)))], None


def pieces_page(number):
    return [stream(line.encode("ascii")) for line in light_lines(number, 40)], None


def scan_page(number):
    width, height = 600, 985
    picture = stream(
        random.Random(number).randbytes(width * height),
        b" /Type /XObject /Subtype /Image /Width %d /Height %d /ColorSpace /DeviceGray /BitsPerComponent 8"
        % (width, height),
    )
    return [stream(b"q %d 0 0 %d 0 0 cm /Im0 Do Q\n" % (WIDTH, HEIGHT))], picture


SHAPES = {"text": text_page, "light": light_page, "pieces": pieces_page, "scan": scan_page}


def tree_levels(pages):
    """The page tree from the leaves up: for each level, the number of nodes on it; the last is one, the root."""
    levels = [pages]
    while levels[-1] > 1 or len(levels) == 1:
        levels.append((levels[-1] + KIDS - 1) // KIDS)
    return levels


class Writer:
    """Writes objects and remembers where each begins."""

    def __init__(self, file):
        self.file = file
        self.offsets = {}
        self.written = 0

    def write(self, data):
        self.file.write(data)
        self.written += len(data)

    def put(self, number, body):
        self.offsets[number] = self.written
        self.write(b"%d 0 obj\n" % number + body + b"\nendobj\n")

    def finish(self, root, info, identifier):
        start = self.written
        count = max(self.offsets) + 1
        table = [b"xref\n0 %d\n0000000000 65535 f \n" % count]
        table += [b"%010d 00000 n \n" % self.offsets[number] for number in range(1, count)]
        self.write(b"".join(table))
        self.write(
            b"trailer\n<< /Size %d /Root %d 0 R /Info %d 0 R /ID [<%s> <%s>] >>\nstartxref\n%d\n%%%%EOF\n"
            % (count, root, info, identifier, identifier, start)
        )


def write_document(pages, shape, file):
    writer = Writer(file)
    writer.write(b"%PDF-1.7\n%\xe2\xe3\xcf\xd3\n")
    catalog, info, font1, font2 = 1, 2, 3, 4
    levels = tree_levels(pages)
    # The object numbers of each level; those of the streams come after them.
    first, next_number = [], 5
    for count in levels:
        first.append(next_number)
        next_number += count
    root = first[-1]

    writer.put(catalog, b"<< /Type /Catalog /Pages %d 0 R >>" % root)
    title = b"/Title (Text of %d pages)" % pages
    writer.put(info, b"<< " + title + b" /Producer (make_text_pdf.py) /CreationDate (D:20240101000000Z) >>")
    writer.put(font1, b"<< /Type /Font /Subtype /Type1 /BaseFont /Times-Roman /Encoding /WinAnsiEncoding >>")
    writer.put(font2, b"<< /Type /Font /Subtype /Type1 /BaseFont /Helvetica-Bold /Encoding /WinAnsiEncoding >>")
    for level in range(len(levels) - 1, 0, -1):
        below, span = levels[level - 1], KIDS ** (level - 1)
        for node in range(levels[level]):
            kids = range(node * KIDS, min(below, (node + 1) * KIDS))
            leaves = min(pages, (node + 1) * KIDS * span) - node * KIDS * span
            body = b"<< /Type /Pages /Kids [ %s ] /Count %d" % (
                b" ".join(b"%d 0 R" % (first[level - 1] + kid) for kid in kids),
                leaves,
            )
            if level == len(levels) - 1:
                body += b" /MediaBox [ 0 0 %d %d ]" % (WIDTH, HEIGHT)
                body += b" /Resources << /Font << /F1 %d 0 R /F2 %d 0 R >> >>" % (font1, font2)
            else:
                body += b" /Parent %d 0 R" % (first[level + 1] + node // KIDS)
            writer.put(first[level] + node, body + b" >>")
    with multiprocessing.Pool() as pool:
        for page, (contents, picture) in enumerate(pool.imap(SHAPES[shape], range(1, pages + 1), chunksize=20)):
            references = b" ".join(b"%d 0 R" % (next_number + place) for place in range(len(contents)))
            entries = b" /Contents " + (references if len(contents) == 1 else b"[ " + references + b" ]")
            if picture:
                entries += b" /Resources << /XObject << /Im0 %d 0 R >> >>" % (next_number + len(contents))
                contents = contents + [picture]
            writer.put(
                first[0] + page, b"<< /Type /Page /Parent %d 0 R" % (first[1] + page // KIDS) + entries + b" >>"
            )
            for body in contents:
                writer.put(next_number, body)
                next_number += 1
    writer.finish(catalog, info, hashlib.md5(b"text %d" % pages).hexdigest().encode())


def main():
    parser = argparse.ArgumentParser(description="Writes a document of any length for benchmarks.")
    parser.add_argument("--shape", choices=SHAPES, default="text", help="what is on the pages")
    parser.add_argument("--objstm", action="store_true", help="pack the objects into object streams (needs qpdf)")
    parser.add_argument("pages", type=int, help="how many pages, at least one")
    parser.add_argument("out", help="the file to write")
    arguments = parser.parse_args()
    if arguments.pages < 1:
        parser.error("PAGES is a whole number of at least 1")

    part, packed = arguments.out + ".part", arguments.out + ".packed"
    try:
        with open(part, "wb") as file:
            write_document(arguments.pages, arguments.shape, file)
        if arguments.objstm:
            subprocess.run(["qpdf", "--object-streams=generate", "--deterministic-id", part, packed], check=True)
            os.replace(packed, arguments.out)
        else:
            os.replace(part, arguments.out)
    except FileNotFoundError as error:
        sys.exit(f"make_text_pdf.py: not found: {error.filename}")
    except subprocess.CalledProcessError as error:
        sys.exit(f"make_text_pdf.py: qpdf failed with status {error.returncode}")
    finally:
        for leftover in (part, packed):
            if os.path.exists(leftover):
                os.remove(leftover)


if __name__ == "__main__":
    main()
