#!/usr/bin/python3
"""Stamps documents of several shapes with Quillfern's runner and with the programs that people would use otherwise.

    bench/pdf.py [--shapes light,light-objstm,text,pieces,scan] [--runs N] [--scale F] [--runner PATH] [--growth]

make_text_pdf.py makes the documents. All programs are timed as whole processes, in turn, in one run. Needs Debian's
python3-fitz, qpdf and poppler-utils, and a release build of quillfern-run. --scale makes the documents shorter, for a
quick look; --growth also prints how memory and output grow with the number of pages.
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

# Name: arguments of make_text_pdf.py, number of pages.
SHAPES = {
    "light": (["--shape", "light"], 2000),
    "light-objstm": (["--shape", "light", "--objstm"], 2000),
    "text": (["--shape", "text"], 2000),
    "pieces": (["--shape", "pieces"], 2000),
    "scan": (["--shape", "scan"], 700),
}

# An incremental save is written into the file that was opened, so that starts as a copy.
INSERT_TEXT = """
import shutil, sys, fitz
mode, source, target = sys.argv[1:]
if mode == "incremental":
    shutil.copyfile(source, target)
    source = target
document = fitz.open(source)
total = len(document)
for number, page in enumerate(document, 1):
    page.insert_text((280, 770), f"{number} of {total}", fontsize=12)
document.saveIncr() if mode == "incremental" else document.save(target)
"""

OURS = "quillfern-run"
FULL, INCREMENTAL = "PyMuPDF, full save", "PyMuPDF, incremental save"
COPY = "cp and sync (stamps nothing)"


def runner_command(runner, out, source):
    return [runner, "--output", out, "--text", "{0} of {1}", "--margins", "36,36,36,18pt", "--quiet", source]


def contenders(runner, folder, source, shape):
    script = folder / "insert_text.py"
    script.write_text(INSERT_TEXT)
    python = "/usr/bin/python3"
    rows = [
        (OURS, runner_command(runner, folder / "out", source)),
        (FULL, [python, script, "full", source, folder / "full.pdf"]),
        (INCREMENTAL, [python, script, "incremental", source, folder / "incremental.pdf"]),
        ("qpdf (stamps nothing)", ["qpdf", source, folder / "qpdf.pdf"]),
    ]
    if shape == "scan":
        copy = folder / "copy.pdf"
        rows.append((COPY, ["sh", "-c", 'cp "$1" "$2" && sync "$2"', "sh", source, copy]))
    return rows


def generate(arguments, pages, path):
    command = [sys.executable, HERE / "make_text_pdf.py", *arguments, str(pages), path]
    subprocess.run(command, check=True, stdout=subprocess.DEVNULL)


def check_stamped(path, pages):
    """Checks the first, a middle and the last page: a program that stamps nothing would be fast."""
    for page in {1, (pages + 1) // 2, pages}:
        command = ["pdftotext", "-f", str(page), "-l", str(page), path, "-"]
        text = subprocess.run(command, capture_output=True, check=True).stdout.decode()
        if f"{page} of {pages}" not in text:
            sys.exit(f"page {page} of {path} is not stamped")


def growth_of(runner, folder, source, pages):
    """Bytes a page that a stamped copy is larger than its source, appended and rewritten."""
    command = runner_command(runner, folder / "out", source)
    sizes = []
    for options in [[], ["--rewrite"]]:
        measure.run_once([*command[:-1], *options, source])
        check_stamped(folder / "out" / source.name, pages)
        sizes.append(((folder / "out" / source.name).stat().st_size - source.stat().st_size) / pages)
    return sizes


def bench_shape(name, runner, folder, runs, scale):
    arguments, pages = SHAPES[name]
    pages = max(1, round(pages * scale))
    source = folder / f"{name}.pdf"
    generate(arguments, pages, source)
    (folder / "out").mkdir(exist_ok=True)
    results = measure.compare(contenders(runner, folder, source, name), runs)
    for path in [folder / "out" / source.name, folder / "full.pdf", folder / "incremental.pdf"]:
        check_stamped(path, pages)
    megabytes = source.stat().st_size / 1e6
    title = f"{name}: {pages} pages, {megabytes:.1f} MB, median of {runs} runs"
    measure.print_table(title, results, OURS)
    appended, rewritten = growth_of(runner, folder, source, pages)
    faster = min(results[FULL][0], results[INCREMENTAL][0])
    summary = f"  {faster / results[OURS][0]:.2f} times as fast as PyMuPDF's faster save"
    if COPY in results:
        summary += f", {results[OURS][0] / results[COPY][0]:.2f} times as long as cp and sync"
    print(f"{summary}; growth {appended:.0f} bytes a page appended, {rewritten:.0f} rewritten\n", flush=True)
    for path in folder.rglob("*.pdf"):
        path.unlink()


def growth(runner, folder):
    """Peak memory and output growth over the number of pages."""
    print("  pages   source MB   peak MiB   KiB a page   growth, bytes a page")
    previous = None
    for pages in [1, 1000, 2000, 4000, 8000]:
        source = folder / f"growth{pages}.pdf"
        generate([], pages, source)
        _, peak = measure.run_once(runner_command(runner, folder / "out", source))
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
    parser.add_argument("--shapes", default=",".join(SHAPES), help="which documents, separated by commas")
    parser.add_argument("--runs", type=int, default=7)
    parser.add_argument("--scale", type=float, default=1.0, help="of the number of pages")
    parser.add_argument("--runner", default=str(HERE.parent / "build/release/bin/quillfern-run"))
    parser.add_argument("--growth", action="store_true")
    arguments = parser.parse_args()
    shapes = arguments.shapes.split(",")
    if unknown := [name for name in shapes if name not in SHAPES]:
        parser.error(f"no such shape: {', '.join(unknown)}")
    if not os.access(arguments.runner, os.X_OK):
        sys.exit(f"{arguments.runner} is not built; run ./run.sh first")

    with tempfile.TemporaryDirectory() as name:
        folder = pathlib.Path(name)
        os.environ["XDG_DATA_HOME"] = str(folder / "data")
        for shape in shapes:
            bench_shape(shape, arguments.runner, folder, arguments.runs, arguments.scale)
        if arguments.growth:
            growth(arguments.runner, folder)


if __name__ == "__main__":
    main()
