#!/usr/bin/python3
"""Stamps many small files: 1,000 PDF documents of 3 pages, and 200 TIFF files of one page.

    bench/many.py [--runs N] [--runner PATH]

Shows how far a job over several files at once uses the processors, beside a PyMuPDF loop in one process. All are
timed as whole processes, in turn, in one run. Needs Debian's python3-fitz, libtiff-tools and imagemagick, and a
release build of quillfern-run.
"""

import argparse
import filecmp
import os
import pathlib
import subprocess
import sys
import tempfile

sys.dont_write_bytecode = True
import measure

HERE = pathlib.Path(__file__).resolve().parent

LOOP = """
import sys, pathlib, fitz
number = 0
for path in sorted(pathlib.Path(sys.argv[1]).glob("*.pdf")):
    document = fitz.open(path)
    for page in document:
        number += 1
        page.insert_text((280, 770), f"{number} of 3000", fontsize=12)
    document.save(pathlib.Path(sys.argv[2]) / path.name)
    document.close()
"""


def make_pdfs(folder, count):
    import fitz

    folder.mkdir()
    for i in range(count):
        document = fitz.open()
        for page in range(3):
            document.new_page(width=612, height=792).insert_text((72, 72), f"File {i}, page {page + 1}", fontsize=11)
        document.save(folder / f"f{i:04}.pdf")


def make_tiffs(folder, count):
    folder.mkdir()
    first = folder / "p000.tif"
    lines = "\n".join(f"Line {line}: the quick brown fox jumps over the lazy dog {line * 7919}" for line in range(50))
    subprocess.run(["convert-im6.q16", "-size", "1240x1754", "xc:white", "-fill", "navy", "-pointsize", "26", "-annotate", "+100+120",
                    lines, "-type", "truecolor", "-density", "150", "-compress", "lzw", first], check=True)
    for i in range(1, count):
        (folder / f"p{i:03}.tif").write_bytes(first.read_bytes())


def ours(runner, source, out, files_at_once=None, cores=None):
    out.mkdir(exist_ok=True)
    command = ["taskset", "-c", cores] if cores else []
    command += [runner, "--output", out, "--text", "{0} of {1}", "--continuous", "--margins", "36,36,36,18pt", "--quiet"]
    if files_at_once:
        command += ["--files-at-once", str(files_at_once)]
    return command + [source]


def require_same(first, second):
    names = sorted(os.listdir(first))
    _, different, missing = filecmp.cmpfiles(first, second, names, shallow=False)
    if not names or different or missing:
        sys.exit(f"{second.name} differs from {first.name} in {len(different) + len(missing)} of {len(names)} files")


def main():
    parser = argparse.ArgumentParser(description=__doc__, formatter_class=argparse.RawDescriptionHelpFormatter)
    parser.add_argument("--runs", type=int, default=5)
    parser.add_argument("--runner", type=pathlib.Path, default=HERE.parent / "build/release/bin/quillfern-run")
    options = parser.parse_args()
    with tempfile.TemporaryDirectory(dir=HERE.parent / "build") as name:
        folder = pathlib.Path(name)
        make_pdfs(folder / "pdf", 1000)
        make_tiffs(folder / "tiff", 200)
        (folder / "loop.py").write_text(LOOP)
        (folder / "fitz").mkdir()
        for kind in ["pdf", "tiff"]:
            source = folder / kind
            commands = [
                ("as many at once as processors", ours(options.runner, source, folder / f"{kind}-all")),
                ("one processor", ours(options.runner, source, folder / f"{kind}-one", cores="0")),
                ("two at once", ours(options.runner, source, folder / f"{kind}-2", 2)),
                ("eight at once", ours(options.runner, source, folder / f"{kind}-8", 8)),
            ]
            if kind == "pdf":
                commands.append(("PyMuPDF loop", ["/usr/bin/python3", folder / "loop.py", source, folder / "fitz"]))
            results = measure.compare(commands, options.runs)
            measure.print_table(f"{len(os.listdir(source))} files, {kind}, {os.cpu_count()} processors", results, commands[0][0])
            for other in ["one", "2", "8"]:
                require_same(folder / f"{kind}-all", folder / f"{kind}-{other}")


if __name__ == "__main__":
    main()
