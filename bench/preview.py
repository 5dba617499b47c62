#!/usr/bin/python3
"""Times the preview on a long text document, beside pdftoppm on the same page.

    bench/preview.py [--pages N] [--runs N] [--bench PATH]

Needs poppler-utils and a release build with -DQUILLFERN_BENCH=ON.
"""

import argparse
import pathlib
import subprocess
import sys
import tempfile

HERE = pathlib.Path(__file__).resolve().parent


def main():
    parser = argparse.ArgumentParser(description=__doc__, formatter_class=argparse.RawDescriptionHelpFormatter)
    parser.add_argument("--pages", type=int, default=2000)
    parser.add_argument("--runs", type=int, default=21)
    parser.add_argument("--bench", default=HERE.parent / "build" / "release" / "bin" / "bench_preview")
    arguments = parser.parse_args()
    with tempfile.TemporaryDirectory() as folder:
        document = pathlib.Path(folder) / "long.pdf"
        subprocess.run([sys.executable, HERE / "make_text_pdf.py", str(arguments.pages), document], check=True)
        subprocess.run([arguments.bench, document, str(arguments.runs)], check=True)


if __name__ == "__main__":
    main()
