#!/usr/bin/python3
"""Draws the sample documents of this folder.

    make_samples.py [FOLDER]

Every document is of our own invention: people, firms, places and figures in them do not exist. The
files are the same byte for byte on every run with the same packages, so that a change in a sample is
always a change in these scripts. FOLDER is where they are written; without it, the folder of this script.

Needs the Debian packages
    python3-reportlab   PDF pages
    python3-pil         pictures
    qpdf                object streams, attachments, document identifiers that repeat
    fonts-liberation    the faces all text is set in
and Debian's own interpreter, /usr/bin/python3, which sees them.
"""

import argparse
import importlib.util
import pathlib
import shutil
import sys
import tempfile

sys.dont_write_bytecode = True

FONT_FOLDER = pathlib.Path("/usr/share/fonts/truetype/liberation")


def missing_packages():
    """The Debian packages that are not there, by name."""
    missing = []
    if importlib.util.find_spec("reportlab") is None:
        missing.append("python3-reportlab")
    if importlib.util.find_spec("PIL") is None:
        missing.append("python3-pil")
    if shutil.which("qpdf") is None:
        missing.append("qpdf")
    if not (FONT_FOLDER / "LiberationSans-Regular.ttf").is_file():
        missing.append("fonts-liberation")
    return missing


def main():
    parser = argparse.ArgumentParser(description="Draws the sample documents.")
    parser.add_argument("folder", nargs="?", type=pathlib.Path, default=pathlib.Path(__file__).resolve().parent)
    arguments = parser.parse_args()

    missing = missing_packages()
    if missing:
        sys.exit(
            "make_samples.py: these Debian packages are missing: "
            + ", ".join(missing)
            + "\nInstall them with: apt-get install "
            + " ".join(missing)
            + "\nand run the script with /usr/bin/python3."
        )

    from generator import contract, fax, form, logo, photos, pictures, plans, report, scan

    makers = [
        ("contract.pdf", contract.make),
        ("scan.pdf", scan.make),
        ("plans.pdf", plans.make),
        ("form.pdf", form.make),
        ("report.pdf", report.make),
        ("letter-fax.tif", fax.make),
        ("photos.tif", photos.make),
        ("receipt.jpg", pictures.make_receipt),
        ("diagram.png", pictures.make_diagram),
        ("animation.gif", pictures.make_animation),
        ("old-scan.bmp", pictures.make_old_scan),
        ("logo.png", logo.make),
    ]
    arguments.folder.mkdir(parents=True, exist_ok=True)
    with tempfile.TemporaryDirectory(prefix="samples-") as work:
        for name, make in makers:
            made = make(pathlib.Path(work), name)
            shutil.copyfile(made, arguments.folder / name)
            print(f"{name:16} {made.stat().st_size:8,d} bytes")


if __name__ == "__main__":
    main()
