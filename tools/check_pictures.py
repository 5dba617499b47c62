#!/usr/bin/env python3
"""Stamps every picture of a folder and compares the copies with what other programs decode from the sources.

    tools/check_pictures.py build/dev/bin/quillfern-run FOLDER [--each N] [--report FILE] [--keep FOLDER]

Each TIFF, BMP, JPEG, PNG and GIF below FOLDER gets a small stamp in its last corner. The copy is compared with the
source as Pillow, ImageMagick and, for TIFF, libtiff's tiff2rgba decode it: pages, sizes, pixels away from the stamp,
and resolution, each of which must be that of at least one of the programs. A source that fewer than two of them open
is damaged, one that all of them show otherwise is disputed; of the others ("sound") 99.5 % must come out right, or the
check ends with 1. --report gets a line for each
file that is not right. --each takes only so many files of one folder and format. Equal files count once.

Needs python3-pil, python3-numpy, ImageMagick (convert-im6.q16) and libtiff-tools.
"""

import argparse
import collections
import concurrent.futures
import dataclasses
import hashlib
import itertools
import math
import multiprocessing
import os
import pathlib
import re
import resource
import subprocess
import sys
import tempfile
import warnings

import numpy
from PIL import Image, ImageFile, ImageSequence

SUFFIXES = {".tif": "tiff", ".tiff": "tiff", ".bmp": "bmp", ".jpg": "jpeg", ".jpeg": "jpeg",
            ".png": "png", ".gif": "gif"}
ENOUGH = 0.995
STAMP = 4  # points: the size of the block that is stamped
MOST_FRAMES = 6  # pages of a file that are compared
MOST_PIXELS = 8_000_000  # larger pictures are not compared
LIMIT = 3 << 30  # bytes of memory for a program under test or compared with

Image.MAX_IMAGE_PIXELS = None
warnings.simplefilter("ignore")


class TooLarge(Exception):
    """A picture that takes too long to compare."""


@dataclasses.dataclass
class Reading:
    """What one program makes of a file."""

    pages: int
    frames: list  # of arrays, height x width x (red, green, blue, opacity)
    dots: tuple  # per inch, of the first page as it is shown; None where nothing is stated


def limited():
    os.nice(5)
    resource.setrlimit(resource.RLIMIT_AS, (LIMIT, LIMIT))


def run(command, timeout=120):
    environment = dict(os.environ, MAGICK_THREAD_LIMIT="1")
    return subprocess.run(command, capture_output=True, timeout=timeout, preexec_fn=limited, env=environment)


def rgba(image):
    """Pixels as the usual programs show them."""
    if image.mode.startswith("I;16") or image.mode == "I":
        values = numpy.asarray(image).astype(float) / 257
        image = Image.fromarray(values.clip(0, 255).round().astype("uint8"))
    elif image.mode == "F":
        values = numpy.nan_to_num(numpy.asarray(image), posinf=0, neginf=0)
        low, high = min(0, values.min()), max(1, values.max())
        image = Image.fromarray(((values - low) * 255 / (high - low)).round().astype("uint8"))
    return numpy.asarray(image.convert("RGBA"))


def turned(frame, orientation):
    if orientation >= 5:
        frame = frame.transpose(1, 0, 2)
    if orientation in (2, 3, 6, 7):
        frame = frame[:, ::-1]
    if orientation in (3, 4, 7, 8):
        frame = frame[::-1]
    return frame


def sensible(dots):
    """The resolution as numbers; None where there is none."""
    try:
        pair = tuple(map(float, dots or ()))
    except (ArithmeticError, ValueError):
        return None
    return pair if len(pair) == 2 and all(0.01 < d < 1e7 for d in pair) else None


def with_pillow(path):
    with Image.open(path) as image:
        if image.width * image.height > MOST_PIXELS:
            raise TooLarge
        orientation = image.getexif().get(0x112, 1)
        dots = image.info.get("dpi")
        if image.format == "TIFF" and image.tag_v2.get(296, 2) == 1:
            dots = None
        dots = sensible(dots)
        frames, pages = [], 0
        for frame in ImageSequence.Iterator(image):
            pages += 1
            if pages > MOST_FRAMES:
                break
            turn = frame.tag_v2.get(274, 1) if image.format == "TIFF" else orientation
            pixels = rgba(frame)
            # Pillow turns some TIFFs by itself.
            if image.format == "TIFF" and 274 not in frame.tag_v2:
                turn = 1
            frames.append(turned(pixels, turn if turn in range(1, 9) else 1))
        if dots and orientation in range(5, 9):
            dots = dots[::-1]
        return Reading(getattr(image, "n_frames", 1), frames, dots)


def with_imagemagick(path, kind):
    source = f"{kind}:{path}" + (f"[0-{MOST_FRAMES - 1}]" if kind in ("gif", "tiff") else "")
    with tempfile.NamedTemporaryFile(suffix=".pam") as target:
        done = run(["convert-im6.q16", source, "-format", "%n %x %y %U %[orientation]\\n", "-write", "info:",
                    *(["-coalesce"] if kind == "gif" else []), "-auto-orient", "-colorspace", "sRGB",
                    "-depth", "8", target.name])
        lines = done.stdout.decode("latin1").splitlines()
        if done.returncode != 0 or b" @ error" in done.stderr or not lines:
            raise ValueError(done.stderr.decode("latin1"))
        frames = list(pam_frames(target.read()))
    pages = len(frames)
    if pages == MOST_FRAMES:
        pages = len(run(["identify-im6.q16", "-ping", "-format", "%w\n", f"{kind}:{path}"]).stdout.split())
    words = lines[0].split()
    dots = None
    try:
        factor = {"PixelsPerInch": 1, "PixelsPerCentimeter": 2.54}.get(words[-2], 0)
        dots = (float(words[1]) * factor, float(words[2]) * factor)
    except ValueError:
        pass
    if dots and words[-1] in ("LeftTop", "RightTop", "RightBottom", "LeftBottom"):
        dots = dots[::-1]
    return Reading(pages, frames, sensible(dots))


def pam_frames(data):
    while data:
        head, data = data.split(b"ENDHDR\n", 1)
        fields = dict(line.split(None, 1) for line in head.splitlines() if b" " in line)
        width, height, depth, most = (int(fields[k]) for k in (b"WIDTH", b"HEIGHT", b"DEPTH", b"MAXVAL"))
        size = width * height * depth
        pixels = numpy.frombuffer(data[:size], "uint8").reshape(height, width, depth).astype("uint16")
        data = data[size:]
        pixels = (pixels * 255 // most).astype("uint8")
        if depth <= 2:
            pixels = numpy.concatenate([pixels[:, :, :1]] * 3 + [pixels[:, :, 1:]], axis=2)
        if pixels.shape[2] == 3:
            pixels = numpy.concatenate([pixels, numpy.full((height, width, 1), 255, "uint8")], axis=2)
        yield pixels


def with_libtiff(path):
    told = run(["tiffinfo", path]).stdout.decode("latin1")
    pages = len(re.findall(r"TIFF Directory at", told))
    found = re.search(r"Resolution: ([\d.e+-]+), ([\d.e+-]+) ?(.*)", told)
    dots = None
    if found and "unitless" not in found[3]:
        factor = 2.54 if found[3].endswith("cm") else 1
        dots = (float(found[1]) * factor, float(found[2]) * factor)
    turn = re.search(r"Orientation: row 0 (\w+), col 0 (\w+)", told)
    if dots and turn and turn[1] in ("lhs", "rhs"):
        dots = dots[::-1]
    frames = []
    with tempfile.TemporaryDirectory() as folder:
        target = os.path.join(folder, "a.tif")
        done = run(["tiff2rgba", "-c", "none", path, target])
        if done.returncode != 0 or not os.path.exists(target):
            raise ValueError(done.stderr.decode("latin1"))
        with Image.open(target) as image:
            for frame in ImageSequence.Iterator(image):
                # tiff2rgba writes colours multiplied by the opacity, and rows from the top
                turn_of = frame.tag_v2.get(274, 1)
                pixels = numpy.asarray(frame.convert("RGBA")).astype("uint16")
                frames.append(turned(pixels.astype("uint8"), turn_of))
                if len(frames) == MOST_FRAMES:
                    break
    return Reading(pages, frames, sensible(dots))


def readings(path, kind):
    programs = {"Pillow": lambda: with_pillow(path), "ImageMagick": lambda: with_imagemagick(path, kind)}
    if kind == "tiff":
        programs["libtiff"] = lambda: with_libtiff(path)
    found, refused = {}, {}
    for name, program in programs.items():
        try:
            found[name] = program()
            if not found[name].frames:
                raise ValueError("no frames")
        except TooLarge:
            raise
        except Exception as problem:
            found.pop(name, None)
            refused[name] = (str(problem).strip().splitlines() or [repr(problem)])[0][:120]
    return found, refused


def shown(frame, ground):
    """Pixels over white or black."""
    opacity = frame[:, :, 3:].astype(float) / 255
    return frame[:, :, :3] * opacity + ground * (1 - opacity)


def difference(ours, theirs, box, isLossy):
    """Nothing when both show the same outside of the stamp, and how they differ otherwise."""
    if ours.shape != theirs.shape:
        return f"size {ours.shape[1]}x{ours.shape[0]}, not {theirs.shape[1]}x{theirs.shape[0]}"
    mask = numpy.ones(ours.shape[:2], bool)
    mask[ours.shape[0] - box[1]:, ours.shape[1] - box[0]:] = False
    if not mask.any():
        return ""
    if theirs[:, :, 3].max() == 0 and ours[:, :, 3].min() == 255:
        theirs = numpy.dstack([theirs[:, :, :3], ours[:, :, 3]])  # bitmaps that nobody could see are opaque
    isOpaque = ours[:, :, 3].min() == 255 == theirs[:, :, 3].min()
    for ground in (255,) if isOpaque else (255, 0):
        if isOpaque:
            apart = ours[:, :, :3].astype("int16") - theirs[:, :, :3]
        else:
            apart = shown(ours, ground) - shown(theirs, ground)
        apart = numpy.abs(apart).max(axis=2)[mask]
        mean, far = apart.mean(), (apart > (24 if isLossy else 12)).mean()
        if mean > 3 or far > (0.02 if isLossy else 0.002):
            return f"pixels: mean {mean:.1f}, {far * 100:.2f} % far"
    return ""


def disputed(frames, isLossy):
    """True when no two programs show the same."""
    return all(difference(a, b, (0, 0), isLossy) for a, b in itertools.combinations(frames, 2))


def has_stamp(ours, before, box):
    part = (slice(ours.shape[0] - box[1], None), slice(ours.shape[1] - box[0], None))
    dark = shown(before[part], 255).min() < 60
    return dark or shown(ours[part], 255).mean(axis=2).min() < 128


def judge(path, kind, copy, line):
    """The verdict on one file: right, wrong, damaged or refused damage, with a word."""
    try:
        found, refused = readings(path, kind)
    except TooLarge:
        return "too large to compare", ""
    others = "; ".join(f"{name}: {text}" for name, text in refused.items())
    isSound = len(found) >= 2
    if not copy.exists():
        return ("wrong" if isSound else "damaged, refused"), f"{line} [{others}]"
    ours = with_pillow(copy)
    words = []
    if ours.pages not in [r.pages for r in found.values()]:
        words.append(f"{ours.pages} pages, not {[r.pages for r in found.values()]}")
    dots = [r.dots for r in found.values()] if any(r.dots for r in found.values()) else [(72, 72)]
    teller = found.get({"tiff": "libtiff", "jpeg": ""}.get(kind, "Pillow"))
    if teller and not teller.dots:
        dots.append((72, 72))  # the others may have made theirs up
    near = [d for d in dots if d and all(abs(a / b - 1) < 0.006 for a, b in zip(ours.dots, d))]
    if not near:
        words.append(f"resolution {ours.dots}, not {dots}")
    box = tuple(min(math.ceil(ours.dots[i] / 72 * STAMP * 2) + 8, ours.frames[0].shape[1 - i]) for i in (0, 1))
    for i, frame in enumerate(ours.frames):
        tries = {name: difference(frame, r.frames[i], box, kind == "jpeg")
                 for name, r in found.items() if i < len(r.frames)}
        if tries and all(tries.values()):
            if isSound and disputed([r.frames[i] for r in found.values() if i < len(r.frames)], kind == "jpeg"):
                return "disputed", f"page {i + 1}: {tries}"
            words.append(f"page {i + 1}: {tries}")
            break
        same = [name for name in tries if not tries[name]]
        if same and min(frame.shape[:2]) >= 8 and not has_stamp(frame, found[same[0]].frames[i], box):
            words.append(f"page {i + 1}: no stamp")
            break
    if not isSound:
        return "damaged, stamped", f"{words} [{others}]"
    return ("wrong", "; ".join(words) + f" [{others}]") if words else ("right", "")


def judged_apart(*arguments):
    """The verdict, from a process of its own, because the programs compared with may crash."""
    ends = multiprocessing.Pipe(False)

    def work():
        limited()
        ends[1].send(judge(*arguments))

    process = multiprocessing.Process(target=work)
    process.start()
    ends[1].close()
    try:
        return ends[0].recv()
    except EOFError:
        return "not checked", "a program compared with has crashed"
    finally:
        process.join()


def collect(folder, each):
    """One file for each content, with its format."""
    seen, counts = set(), collections.Counter()
    for path in sorted(folder.rglob("*")):
        kind = SUFFIXES.get(path.suffix.lower())
        if not kind or not path.is_file() or path.is_symlink():
            continue
        place = (path.relative_to(folder).parts[0], kind)
        if each and counts[place] >= each:
            continue
        data = path.read_bytes()
        digest = hashlib.sha1(data).digest()
        if not data or digest in seen:
            continue
        seen.add(digest)
        counts[place] += 1
        yield path, kind_of(data, kind)


def kind_of(data, kind):
    """The format by the content, as all programs go by it."""
    starts = {b"II*\0": "tiff", b"MM\0*": "tiff", b"II+\0": "tiff", b"MM\0+": "tiff", b"BM": "bmp",
              b"\xff\xd8\xff": "jpeg", b"\x89PNG\r\n\x1a\n": "png", b"GIF8": "gif"}
    return next((k for start, k in starts.items() if data.startswith(start)), kind)


def stamp(runner, files, target, environment):
    """Stamps files in one job and returns the runner's line for each."""
    done = subprocess.run([str(runner), "--output", str(target), "--text", "\u2588", "--font-size", str(STAMP),
                           "--anchor", "BottomRight", "--margins", "0,0,0,0pt", *map(str, files)],
                          capture_output=True, env=environment, timeout=900, preexec_fn=limited)
    if done.returncode not in (0, 1):
        sys.exit(f"quillfern-run ended with {done.returncode}: {done.stderr.decode()}")
    return done.stdout.decode(errors="replace"), done.stderr.decode(errors="replace")


def main():
    parser = argparse.ArgumentParser(description=__doc__.split("\n")[0])
    parser.add_argument("runner", type=lambda text: pathlib.Path(text).resolve())
    parser.add_argument("folder", type=pathlib.Path)
    parser.add_argument("--each", type=int, default=0)
    parser.add_argument("--report", type=pathlib.Path)
    parser.add_argument("--keep", type=pathlib.Path, help="folder for the copies")
    arguments = parser.parse_args()

    with tempfile.TemporaryDirectory(prefix="quillfern-pictures-") as name:
        folder = pathlib.Path(name)
        environment = dict(os.environ, XDG_DATA_HOME=str(folder / "data"))
        out = arguments.keep or folder / "out"
        out.mkdir(parents=True, exist_ok=True)
        sources = folder / "in"
        sources.mkdir()
        files = []
        for number, (path, kind) in enumerate(collect(arguments.folder, arguments.each)):
            link = sources / f"{number:05}-{path.name}"
            link.symlink_to(path.resolve())
            files.append((path, kind, link))
        lines = {}
        noise = []
        for start in range(0, len(files), 50):
            batch = [link for _, _, link in files[start:start + 50]]
            told, said = stamp(arguments.runner, batch, out, environment)
            for link in batch:
                lines[link] = next((l.strip() for l in told.splitlines() if link.name in l), "")
            noise += [l for l in said.splitlines() if not re.match(r"quillfern-run: ", l)]

        verdicts = collections.defaultdict(collections.Counter)
        report = []
        with concurrent.futures.ThreadPoolExecutor(os.cpu_count()) as pool:
            jobs = [pool.submit(judged_apart, link, kind, out / link.name, lines[link]) for _, kind, link in files]
            for (path, kind, link), job in zip(files, jobs):
                verdict, word = job.result()
                verdicts[kind][verdict] += 1
                if verdict != "right":
                    report.append(f"{verdict}\t{kind}\t{link.name}\t{path.relative_to(arguments.folder)}\t{word}")
        if arguments.report:
            arguments.report.write_text("\n".join(sorted(report) + noise) + "\n")

    right = wrong = 0
    for kind, counts in sorted(verdicts.items()):
        print(f"{kind:6}", ", ".join(f"{count} {verdict}" for verdict, count in sorted(counts.items())))
        right += counts["right"]
        wrong += counts["wrong"]
    share = right / max(1, right + wrong)
    print(f"{right} of {right + wrong} sound files are right: {share * 100:.2f} %")
    sys.exit(share < ENOUGH)


if __name__ == "__main__":
    main()
