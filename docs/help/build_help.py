"""Makes the manual, a PDF document, of manual.html with WeasyPrint.

    build_help.py VERSION OUTPUT.pdf

Figures that name a picture of docs/pictures in `data-picture` are left out as long as there is no such picture.
Whatever WeasyPrint complains of (a picture that is missing, a link that leads nowhere, a style it does not know)
ends the build: a manual with a hole in it shall not be shipped. Nothing is read from the network.
"""

import logging
import os
import pathlib
import re
import sys

import weasyprint

HERE = pathlib.Path(__file__).resolve().parent
PICTURES = HERE.parent / "pictures"
FIGURE = re.compile(r'<figure\b[^>]*\bdata-picture="([^"]+)".*?</figure>\s*', re.DOTALL)


def source(version):
    def kept(match):
        return match[0] if (PICTURES / match[1]).exists() else ""

    html = (HERE / "manual.html").read_text(encoding="utf-8")
    return FIGURE.sub(kept, html.replace("{{version}}", version))


def local_only(url, **options):
    if not url.startswith(("file:", "data:")):
        raise ValueError(f"the manual may not read {url}")
    return weasyprint.default_url_fetcher(url, **options)


class Complaints(logging.Handler):
    def __init__(self):
        super().__init__(logging.WARNING)
        self.lines = []

    def emit(self, record):
        self.lines.append(record.getMessage())


def main():
    version, output = sys.argv[1], pathlib.Path(sys.argv[2])
    complaints = Complaints()
    weasyprint.LOGGER.handlers = [complaints]
    page = weasyprint.HTML(string=source(version), base_url=HERE.as_uri() + "/", url_fetcher=local_only)
    output.parent.mkdir(parents=True, exist_ok=True)
    half = output.with_name(output.name + ".part")
    page.write_pdf(half)
    if complaints.lines:
        half.unlink()
        sys.exit("The manual has faults:\n" + "\n".join(complaints.lines))
    os.replace(half, output)


if __name__ == "__main__":
    main()
