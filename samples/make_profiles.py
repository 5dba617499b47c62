#!/usr/bin/env python3
"""Writes the sample profiles beside this file, and with --pictures also the pictures of them in docs/pictures.

    make_profiles.py [--pictures QUILLFERN-RUN]

Profiles are property lists; this writes them with Python's own plistlib, so that they are also a check of the
reader. The same script gives the same bytes.
"""

import argparse
import pathlib
import plistlib
import subprocess

HERE = pathlib.Path(__file__).resolve().parent
BOTTOM_LEFT, BOTTOM_MIDDLE, BOTTOM_RIGHT = 7, 8, 9
TOP_LEFT, TOP_MIDDLE, TOP_RIGHT, MIDDLE = 1, 2, 3, 5
PLAIN, NUMBERS, ROMAN_SMALL = 0, 1, 3
MILLIMETRES = 1


def shared(label, anchor, under=False, symmetric=False):
    return {"isSymmetry": symmetric, "isDrawUnderPDFContent": under, "marginAnchor": anchor, "label": label,
            "isSelected": True}


def text(template, anchor, size=10.0, color="#FF000000", kind=NUMBERS, padding=1, bold=False, italic=False,
         opacity=100, rotation=0, label="", under=False, symmetric=False):
    return {
        "textRotation": rotation, "outlineOpacity": 100, "textOpacity": opacity, "numberType": kind,
        "paddingLength": padding, "paddingCharacter": "0", "numberFormat": template, "underlineStyle": 0,
        "isEmbedFont": False, "isUnderline": False, "isItalic": italic, "isBold": bold,
        "outlineColor": b"#FF000000", "outlineWidth": 0,
        "font": {"fontColor": color.encode("ascii"), "isStandard": False, "fontSize": float(size), "fontID": 4,
                 "fontName": "Helvetica"},
        **shared(label, anchor, under, symmetric),
    }


def picture(name, width, height, anchor, opacity=100, label=""):
    return {"stampImageRotation": 0, "stampImageOpacity": opacity, "stampImageHeight": height,
            "stampImageWidth": width, "stampImage": (HERE / name).read_bytes(), "stampImagePath": name,
            **shared(label, anchor)}


def profile(stamps, margins, **fields):
    left, top, right, bottom = (float(margin) for margin in margins)
    return {
        "endPage": 0, "hasLabel": False, "isBackupFile": False, "isContinuousNumbering": False,
        "isMarginInPercentage": False, "isSymmetryPage": False, "labelPrefix": "", "marginLeft": left,
        "marginTop": top, "marginRight": right, "marginBottom": bottom, "marginUnit": MILLIMETRES,
        "numberSteps": 1, "outputFolder": "", "pageRange": 0, "startNumber": 1, "startPage": 1,
        "isHighlightStamp": True, "isLivePreview": True, **fields, "Stamps": stamps,
    }


# name: (the profile, the sample that it is shown on)
PROFILES = {
    "page-x-of-y": (
        profile([text("Page {0} of {1}", BOTTOM_MIDDLE, 12, label="Footer")], (15, 15, 15, 10)),
        "form.pdf"),
    "bates-numbers": (
        profile([text("SALTMERE {0}", BOTTOM_RIGHT, 13, bold=True, padding=6, label="Number"),
                 text("Produced in confidence", BOTTOM_LEFT, 10, "#FF8A1C1C", PLAIN, label="Notice")],
                (12, 12, 12, 10), isContinuousNumbering=True, startNumber=1001),
        "scan.pdf"),
    "roman-front-matter": (
        profile([text("{0}", BOTTOM_MIDDLE, 15, kind=ROMAN_SMALL, italic=True, label="Front matter")],
                (15, 15, 15, 12), endPage=4, startNumber=7),
        "contract.pdf"),
    "facing-pages": (
        profile([text("{0}", BOTTOM_RIGHT, 15, bold=True, symmetric=True, label="Outer edge"),
                 text("Saltmere County Archive", TOP_RIGHT, 11, "#FF4A5A66", PLAIN, symmetric=True,
                      label="Running head")],
                (18, 10, 18, 12)),
        "contract.pdf"),
    "draft": (
        profile([text("DRAFT", MIDDLE, 150, "#FFB03030", PLAIN, bold=True, opacity=18, rotation=55,
                      label="Across the page")],
                (10, 10, 10, 10)),
        "contract.pdf"),
    "logo-and-text": (
        profile([picture("logo.png", 60, 60, TOP_LEFT, label="Logo"),
                 text("Received {0}", TOP_RIGHT, 13, "#FF1F6E78", padding=4, bold=True, label="Number")],
                (12, 8, 12, 8)),
        "scan.pdf"),
}


def main():
    parser = argparse.ArgumentParser(description=__doc__, formatter_class=argparse.RawDescriptionHelpFormatter)
    parser.add_argument("--pictures", metavar="QUILLFERN-RUN")
    arguments = parser.parse_args()
    pictures = HERE.parent / "docs" / "pictures"
    for name, (content, sample) in PROFILES.items():
        path = HERE / f"{name}.qfprofile"
        path.write_bytes(plistlib.dumps(content, sort_keys=False))
        if arguments.pictures:
            pictures.mkdir(parents=True, exist_ok=True)
            subprocess.run([arguments.pictures, "--profile", path, "--preview", pictures / f"{name}.png",
                            "--preview-size", "420x595", HERE / sample], check=True)


if __name__ == "__main__":
    main()
