#!/usr/bin/python3
"""Stamps a 2,000-page text document with Quillfern's runner and with the programs that people would use otherwise.

    bench/pdf.py [--pages N] [--runs N] [--runner PATH]

All are timed as whole processes, in turn, in one run. Needs Debian's python3-fitz, qpdf, pdftk-java and
poppler-utils, and a release build of quillfern-run.
"""

import argparse
import os
import pathlib
import subprocess
import sys
import tempfile

sys.dont_write_bytecode = True
import measure

HERE = pathlib.Path(__file__).resolve().parent

INSERT_TEXT = """
import sys, fitz
document = fitz.open(sys.argv[1])
total = len(document)
for number, page in enumerate(document, 1):
    page.insert_text((280, 770), f"{number} of {total}", fontsize=12)
document.save(sys.argv[2])
"""


def make_overlay(pages, path):
    """A document of stamps only, for the tools that lay one document over another."""
    import fitz

    overlay = fitz.open()
    for number in range(1, pages + 1):
        overlay.new_page(width=612, height=792).insert_text((280, 770), f"{number} of {pages}", fontsize=12)
    overlay.save(path)


def contenders(runner, folder, source, overlay):
    out = folder / "out"
    out.mkdir(exist_ok=True)
    script = folder / "insert_text.py"
    script.write_text(INSERT_TEXT)
    python = "/usr/bin/python3"
    return [
        ("quillfern-run", [runner, "--output", out, "--text", "{0} of {1}", "--margins", "36,36,36,18pt", "--quiet", source]),
        ("PyMuPDF insert_text + save", [python, script, source, folder / "fitz.pdf"]),
        ("qpdf (rewrites, stamps nothing)", ["qpdf", source, folder / "qpdf.pdf"]),
        ("qpdf --overlay (stamps made before)", ["qpdf", source, "--overlay", overlay, "--", folder / "overlay.pdf"]),
        ("pdftk multistamp (stamps made before)", ["pdftk", source, "multistamp", overlay, "output", folder / "pdftk.pdf"]),
    ]


def generate(pages, path):
    subprocess.run([sys.executable, HERE / "make_text_pdf.py", str(pages), path], check=True, stdout=subprocess.DEVNULL)


def check_output(folder, pages):
    """Checks that the last page of each copy has its stamp: a program that stamps nothing would be fast."""
    for path in [folder / "out" / "text.pdf", folder / "fitz.pdf", folder / "overlay.pdf", folder / "pdftk.pdf"]:
        text = subprocess.run(["pdftotext", "-f", str(pages), "-l", str(pages), path, "-"], capture_output=True, check=True)
        if f"{pages} of {pages}" not in text.stdout.decode():
            sys.exit(f"{path.name} is not stamped")


def growth(runner, folder):
    """Peak memory and output growth over the number of pages."""
    print("  pages   source MB   peak MiB   KiB a page   growth, bytes a page")
    previous = None
    for pages in [1, 1000, 2000, 4000, 8000]:
        source = folder / f"growth{pages}.pdf"
        generate(pages, source)
        command = [runner, "--output", folder / "out", "--text", "{0} of {1}", "--quiet", source]
        _, peak = measure.run_once(command)
        added = (folder / "out" / source.name).stat().st_size - source.stat().st_size
        line = f"  {pages:5}{source.stat().st_size / 1e6:12.1f}{peak:11.0f}"
        if previous:
            line += f"{(peak - previous[1]) * 1024 / (pages - previous[0]):13.2f}"
            line += f"{(added - previous[2]) / (pages - previous[0]):23.0f}"
        print(line)
        previous = (pages, peak, added)
    print("  (the last two columns: against the line above)")


def main():
    parser = argparse.ArgumentParser(description=__doc__.split("\n")[0])
    parser.add_argument("--pages", type=int, default=2000)
    parser.add_argument("--runs", type=int, default=5)
    parser.add_argument("--runner", default=str(HERE.parent / "build/release/bin/quillfern-run"))
    arguments = parser.parse_args()
    if not os.access(arguments.runner, os.X_OK):
        sys.exit(f"{arguments.runner} is not built; run ./run.sh first")

    with tempfile.TemporaryDirectory() as name:
        folder = pathlib.Path(name)
        os.environ["XDG_DATA_HOME"] = str(folder / "data")
        source = folder / "text.pdf"
        overlay = folder / "stamps.pdf"
        generate(arguments.pages, source)
        make_overlay(arguments.pages, overlay)
        results = measure.compare(contenders(arguments.runner, folder, source, overlay), arguments.runs)
        check_output(folder, arguments.pages)
        title = f"{arguments.pages} pages, {source.stat().st_size / 1e6:.1f} MB, median of {arguments.runs} runs"
        measure.print_table(title, results, "PyMuPDF insert_text + save")
        growth(arguments.runner, folder)


if __name__ == "__main__":
    main()
