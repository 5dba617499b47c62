#!/usr/bin/env python3
"""Stamps 40 pages of A4 at 300 dpi beside programs that only copy them.

    raster.py [--runner build/release/bin/quillfern-run] [--runs 3] [--pages 40] [--many 400]

The same four files (RGB LZW, RGB JPEG, grey Deflate, bilevel Group 4) go through quillfern-run, which stamps every
page, through ImageMagick's convert and through `tiffcp -c`, which decode and encode them without stamping. The last
table shows that memory does not grow with the number of pages.

Needs ImageMagick (convert-im6.q16) and libtiff-tools.
"""

import argparse
import os
import pathlib
import subprocess
import tempfile

import measure

HERE = pathlib.Path(__file__).resolve().parent

# name, file, the compression option of tiffcp, ImageMagick's name of the compression
KINDS = [
    ("RGB LZW", "rgb-lzw.tif", "lzw:2", "LZW"),
    ("RGB JPEG", "rgb-jpeg.tif", "jpeg:r:85", "JPEG"),
    ("grey Deflate", "grey-deflate.tif", "zip:2", "Zip"),
    ("bilevel Group 4", "bilevel-g4.tif", "g4", "Group4"),
]

# ImageMagick's default policy refuses a thousand million pixels; this policy allows the memory for them.
POLICY = """<policymap>
<policy domain="resource" name="memory" value="12GiB"/>
<policy domain="resource" name="map" value="12GiB"/>
<policy domain="resource" name="area" value="12GB"/>
<policy domain="resource" name="disk" value="12GiB"/>
</policymap>
"""

DISTINCT = 4  # number of different pages, which a document repeats


def font_file():
    return subprocess.run(
        ["fc-match", "-f", "%{file}", "sans"], check=True, capture_output=True, text=True
    ).stdout


def make_pages(folder):
    """Pages of text with a coloured heading and a picture, as RGB, grey and bilevel TIFFs without compression."""
    for page in range(1, DISTINCT + 1):
        lines = "\n".join(
            f"Page {page}, line {line}: the quick brown fox jumps over the lazy dog while {line * page * 7919} look on."
            for line in range(1, 63)
        )
        rgb = folder / f"rgb{page}.tif"
        subprocess.run(
            ["convert-im6.q16", "-seed", str(page), "-size", "2480x3508", "xc:white", "-fill", "black",
             "-pointsize", "42", "-font", font_file(), "-annotate", "+200+260", lines,
             "(", "-size", "700x500", "plasma:red-blue", ")", "-geometry", "+1500+2700", "-composite",
             "-fill", "#0040a0", "-draw", "rectangle 200,100 2280,160",
             "-depth", "8", "-type", "TrueColor", "-units", "PixelsPerInch", "-density", "300",
             "-compress", "none", str(rgb)],
            check=True,
        )
        subprocess.run(
            ["convert-im6.q16", str(rgb), "-colorspace", "Gray", "-depth", "8", "-type", "Grayscale",
             "-compress", "none", str(folder / f"grey{page}.tif")],
            check=True,
        )
        subprocess.run(
            ["convert-im6.q16", str(rgb), "-colorspace", "Gray", "-threshold", "50%", "-type", "Bilevel",
             "-compress", "Group4", str(folder / f"bilevel{page}.tif")],
            check=True,
        )


def make_documents(folder, pages):
    for name, file, coding, _ in KINDS:
        kind = file.split("-")[0]
        sources = [str(folder / f"{kind}{i % DISTINCT + 1}.tif") for i in range(pages)]
        subprocess.run(["tiffcp", "-c", coding, *sources, str(folder / file)], check=True)


def stamp(runner, source, target):
    return [str(runner), "--text", "Page {0} of {1}", "--font-size", "60", "--anchor", "BottomMiddle",
            "--quiet", "--output", str(target), str(source)]


def main():
    parser = argparse.ArgumentParser(description=__doc__.split("\n")[0])
    parser.add_argument("--runner", default=HERE.parent / "build/release/bin/quillfern-run", type=pathlib.Path)
    parser.add_argument("--runs", default=3, type=int)
    parser.add_argument("--pages", default=40, type=int)
    parser.add_argument("--many", default=400, type=int, help="pages of the memory comparison; 0 leaves it out")
    arguments = parser.parse_args()

    with tempfile.TemporaryDirectory(prefix="quillfern-bench-") as name:
        folder = pathlib.Path(name)
        (folder / "policy.xml").write_text(POLICY)
        os.environ["MAGICK_CONFIGURE_PATH"] = str(folder)
        os.environ["XDG_DATA_HOME"] = str(folder / "data")
        out = folder / "out"
        out.mkdir()
        make_pages(folder)
        make_documents(folder, arguments.pages)

        for title, file, coding, magick in KINDS:
            source = folder / file
            results = measure.compare(
                [
                    ("ImageMagick convert (no stamp)",
                     ["convert-im6.q16", str(source), "-compress", magick, str(out / "magick.tif")]),
                    (f"tiffcp -c {coding} (no stamp)",
                     ["tiffcp", "-c", coding, str(source), str(out / "tiffcp.tif")]),
                    ("quillfern-run (stamped)", stamp(arguments.runner, source, out)),
                ],
                arguments.runs,
            )
            sizes = ", ".join(
                f"{who} {path.stat().st_size / 1e6:.1f}"
                for who, path in (("source", source), ("ImageMagick", out / "magick.tif"),
                                  ("tiffcp", out / "tiffcp.tif"), ("quillfern-run", out / file))
            )
            measure.print_table(f"{title}, {arguments.pages} pages ({sizes} MB)", results,
                                "ImageMagick convert (no stamp)")

        if arguments.many:
            for path in out.iterdir():
                path.unlink()
            print(f"Peak memory in MiB of quillfern-run, {arguments.pages} and {arguments.many} pages")
            few = {title: measure.run_once(stamp(arguments.runner, folder / file, out))[1] for title, file, _, _ in KINDS}
            make_documents(folder, arguments.many)
            for title, file, _, _ in KINDS:
                many = measure.run_once(stamp(arguments.runner, folder / file, out))[1]
                print(f"  {title:20}{few[title]:8.0f}{many:8.0f}")
                (out / file).unlink()


if __name__ == "__main__":
    main()
