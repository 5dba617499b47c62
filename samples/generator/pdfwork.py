"""What the PDF samples share: colours, faces, a canvas that repeats, and the qpdf steps that finish a file."""

import json
import os
import pathlib
import subprocess

from reportlab import rl_config
from reportlab.lib.colors import HexColor
from reportlab.pdfbase import pdfmetrics
from reportlab.pdfbase.ttfonts import TTFont

FONT_FOLDER = pathlib.Path("/usr/share/fonts/truetype/liberation")

INK = HexColor("#1d2a35")
GREY = HexColor("#6b7680")
RULE = HexColor("#c4ccd2")
PALE = HexColor("#eef2f3")
TEAL = HexColor("#1f6f78")
OCHRE = HexColor("#c98a2b")
BRICK = HexColor("#a6473c")
MOSS = HexColor("#6b8e4e")
PAPER = HexColor("#faf6ec")

# Streams go out as plain binary; the clock and random identifiers stay out of the files.
rl_config.useA85 = 0
rl_config.invariant = 1


def use_family(name, stem):
    """Registers a Liberation family (such as "LiberationSerif") under `name` with its four members."""
    for suffix, member in (("", "Regular"), ("-Bold", "Bold"), ("-Italic", "Italic"), ("-BoldItalic", "BoldItalic")):
        if name + suffix not in pdfmetrics.getRegisteredFontNames():
            pdfmetrics.registerFont(TTFont(name + suffix, str(FONT_FOLDER / f"{stem}-{member}.ttf")))
    pdfmetrics.registerFontFamily(
        name, normal=name, bold=name + "-Bold", italic=name + "-Italic", boldItalic=name + "-BoldItalic"
    )


def set_date(seconds):
    """The date that documents made from now on carry, in seconds since 1970 (UTC)."""
    os.environ["SOURCE_DATE_EPOCH"] = str(seconds)


def describe(canvas, title, author, subject, keywords=()):
    """Fills the information dictionary."""
    canvas.setTitle(title)
    canvas.setAuthor(author)
    canvas.setSubject(subject)
    canvas.setKeywords(list(keywords))
    canvas.setCreator("make_samples.py")
    canvas.setProducer("make_samples.py")


def qpdf(*arguments):
    subprocess.run(["qpdf", *map(str, arguments)], check=True)


def finish(raw, target, *options):
    """Rewrites `raw` compactly as `target`, with identifiers that depend on nothing but the content."""
    qpdf(
        raw,
        "--deterministic-id",
        "--recompress-flate",
        "--compression-level=9",
        "--object-streams=disable",
        *options,
        target,
    )
    return target


def patch(source, target, change):
    """Edits objects of a PDF through qpdf's JSON form.

    `change` is handed the dictionary of objects ("obj:5 0 R" to {"value": …}), and the keys of the pages in
    order, and gives back the dictionary of those objects that are new or changed.
    """
    text = subprocess.run(
        ["qpdf", "--json=2", "--json-key=qpdf", "--json-key=pages", "--json-stream-data=none", str(source)],
        check=True,
        capture_output=True,
    ).stdout
    document = json.loads(text)
    header, objects = document["qpdf"]
    pages = ["obj:" + page["object"] for page in document["pages"]]
    changed = change(objects, pages)
    update = pathlib.Path(str(source) + ".json")
    update.write_text(json.dumps({"qpdf": [header, changed]}))
    qpdf(source, "--deterministic-id", f"--update-from-json={update}", target)
    return target


def catalog_of(objects):
    """The key of the catalog among the objects."""
    return "obj:" + objects["trailer"]["value"]["/Root"]


def new_key(objects):
    """The key of an object that does not exist yet."""
    numbers = [int(key.split(":")[1].split()[0]) for key in objects if key.startswith("obj:")]
    return f"obj:{max(numbers) + 1} 0 R"
