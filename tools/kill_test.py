#!/usr/bin/env python3
"""Kills jobs at random moments and checks that no file was harmed.

    tools/kill_test.py build/dev/bin/quillfern-run [--jobs 72] [--files 50] [--seed N]

Jobs run in turn in place with a backup and into a folder, over PDF and TIFF files, and each is killed (SIGKILL)
at a random moment of the time that a whole job takes. Afterwards every file has to be whole, old or new
(qpdf --check, tiffinfo); in place, a stamped file has the original as its backup; and nothing else has appeared
but hidden temporary files. Needs qpdf and tiffinfo. Ends with 1 when anything is wrong.
"""

import argparse
import os
import pathlib
import random
import re
import shutil
import signal
import subprocess
import sys
import tempfile
import time

TEMPORARY = re.compile(r"\.quillfern-[0-9a-f]{8}-\d+-\d+-[0-9a-f]{16}\.tmp")


def pdf(pages):
    """A document of blank pages with a classic cross-reference table."""
    kids = " ".join(f"{3 + i} 0 R" for i in range(pages))
    objects = ["<</Type/Catalog/Pages 2 0 R>>", f"<</Type/Pages/Count {pages}/Kids[{kids}]>>"]
    objects += ["<</Type/Page/Parent 2 0 R/MediaBox[0 0 300 400]>>"] * pages
    text, places = "%PDF-1.5\n", []
    for number, item in enumerate(objects, 1):
        places.append(len(text))
        text += f"{number} 0 obj\n{item}\nendobj\n"
    table = "".join(f"{place:010} 00000 n \n" for place in places)
    size = len(objects) + 1
    return (f"{text}xref\n0 {size}\n0000000000 65535 f \n{table}"
            f"trailer\n<</Size {size}/Root 1 0 R>>\nstartxref\n{len(text)}\n%%EOF\n").encode()


def tiff(width=800, height=600):
    """One grey page, not compressed."""
    def entry(tag, kind, value):
        return b"".join(n.to_bytes(size, "little") for n, size in ((tag, 2), (kind, 2), (1, 4), (value, 4)))

    entries = [(256, 4, width), (257, 4, height), (258, 3, 8), (259, 3, 1), (262, 3, 1),
               (273, 4, 8), (277, 3, 1), (278, 4, height), (279, 4, width * height)]
    pixels = bytes(random.randrange(200, 256) for _ in range(width)) * height
    return (b"II*\0" + (8 + len(pixels)).to_bytes(4, "little") + pixels + len(entries).to_bytes(2, "little") +
            b"".join(entry(*e) for e in entries) + bytes(4))


def is_whole(path):
    command = ["qpdf", "--check"] if path.name.endswith(".pdf") else ["tiffinfo"]
    return subprocess.run([*command, path], stdout=subprocess.DEVNULL, stderr=subprocess.DEVNULL).returncode == 0


class Job:
    def __init__(self, runner, folder, originals, in_place):
        self.originals, self.in_place = originals, in_place
        self.source = folder / "in"
        self.target = self.source if in_place else folder / "out"
        self.source.mkdir(parents=True)
        self.target.mkdir(exist_ok=True)
        for name, data in originals.items():
            (self.source / name).write_bytes(data)
        if not in_place:  # an earlier copy, which a killed job may only replace by a whole one
            for name in list(originals)[::2]:
                (self.target / name).write_bytes(originals[name])
        self.command = [runner, "--output", self.target, "--text", "{0}"] + ["--backup"] * in_place + [self.source]
        self.environment = dict(os.environ, XDG_DATA_HOME=str(folder / "data"))

    def run(self, kill_after=None):
        """Returns how long the job took, and whether it was killed."""
        begun = time.monotonic()
        job = subprocess.Popen(self.command, env=self.environment, stdout=subprocess.DEVNULL,
                               stderr=subprocess.DEVNULL)
        try:
            job.wait(kill_after)
        except subprocess.TimeoutExpired:
            job.send_signal(signal.SIGKILL)
            job.wait()
        return time.monotonic() - begun, job.returncode == -signal.SIGKILL

    def faults(self):
        """What is wrong, and how many documents were stamped."""
        wrong, stamped = [], 0
        for name, data in self.originals.items():
            path, backup = self.target / name, self.source / (name + ".bak")
            if not self.in_place and (self.source / name).read_bytes() != data:
                wrong.append(f"{name}: the source has changed")
            if not path.exists():
                if self.in_place:
                    wrong.append(f"{name}: is gone")
                continue
            is_new = path.read_bytes() != data
            stamped += is_new
            if is_new and not is_whole(path):
                wrong.append(f"{name}: is not whole")
            if backup.exists() and backup.read_bytes() != data:
                wrong.append(f"{name}: the backup is not the original")
            if self.in_place and is_new and not backup.exists():
                wrong.append(f"{name}: was stamped without a backup")
        for folder in {self.source, self.target}:
            for path in folder.iterdir():
                name = path.name.removesuffix(".bak") if self.in_place else path.name
                if name not in self.originals and not TEMPORARY.fullmatch(path.name):
                    wrong.append(f"{path.name}: nobody's file")
        return wrong, stamped


def main():
    parser = argparse.ArgumentParser(description=__doc__, formatter_class=argparse.RawDescriptionHelpFormatter)
    parser.add_argument("runner", type=pathlib.Path)
    parser.add_argument("--jobs", type=int, default=72)
    parser.add_argument("--files", type=int, default=50)
    parser.add_argument("--seed", type=int, default=int(time.time()))
    options = parser.parse_args()
    random.seed(options.seed)
    originals = {f"doc{i:03}.pdf" if i % 3 else f"scan{i:03}.tif": pdf(5 + i % 20) if i % 3 else tiff()
                 for i in range(options.files)}
    runner = options.runner.resolve()
    failed = killed = stamped = 0
    with tempfile.TemporaryDirectory() as scratch:
        whole = {}
        for in_place in (False, True):
            job = Job(runner, pathlib.Path(scratch) / f"whole{in_place}", originals, in_place)
            whole[in_place], _ = job.run()
            wrong, done = job.faults()
            if wrong or done != len(originals):
                sys.exit(f"a job that was not killed stamped {done} of {len(originals)} files: {wrong[:3]}")
        for number in range(options.jobs):
            in_place = number % 2 == 1
            folder = pathlib.Path(scratch) / f"job{number}"
            job = Job(runner, folder, originals, in_place)
            _, was_killed = job.run(random.uniform(0, whole[in_place]))
            wrong, done = job.faults()
            killed += was_killed
            stamped += done
            failed += bool(wrong)
            for line in wrong:
                print(f"job {number} ({'in place' if in_place else 'into a folder'}): {line}")
            shutil.rmtree(folder)
    print(f"seed {options.seed}: {options.jobs} jobs, {killed} killed, {stamped} files stamped, "
          f"{failed} jobs with a fault")
    return 1 if failed or not killed else 0


if __name__ == "__main__":
    sys.exit(main())
