#!/usr/bin/env python3
"""An office suite reads what the chat view holds, and the reader reads what the office suite writes.

usage: check_office.py OFFICE_SAMPLE TABLE SAMPLE_FODT   (exit status 77: the suite isn't installed)
"""

import collections
import pathlib
import re
import shutil
import subprocess
import sys
import tempfile

PALETTE = ["ffffff", "000000", "000080", "008000", "ff0000", "800000", "800080", "ff8000",
           "ffff00", "00ff00", "008080", "00ffff", "0000ff", "ff00ff", "404040", "c0c0c0"]


def run(*command):
    return subprocess.run(command, check=True, capture_output=True, timeout=240).stdout


def convert(folder, target, *files):
    run("soffice", f"-env:UserInstallation=file://{folder}/profile", "--headless", "--convert-to", target,
        "--outdir", str(folder), *map(str, files))


def squeezed(text):
    """Without white space: where lines break and what stands for a picture differs between programs."""
    return re.sub(r"\s|\ufeff", "", text)


def colours_of(ppm):
    """How often each colour stands in a rendered page."""
    fields = ppm.split(None, 4)
    data = fields[4]
    return collections.Counter(data[i:i + 3].hex() for i in range(0, len(data) - 2, 3))


class Check:
    def __init__(self):
        self.faults = []

    def that(self, holds, what):
        if not holds:
            self.faults.append(what)


def reads_ours(check, folder, sample, table):
    run(sample, "write", str(folder), table)
    expected = squeezed((folder / "chat.txt").read_text(encoding="utf-8"))
    pictures = 3
    documents = [folder / "chat.rtf", folder / "box.rtf"]
    convert(folder, "pdf", *documents)
    for document in documents:
        name = document.name
        pdf = str(document.with_suffix(".pdf"))
        printed = squeezed(run("pdftotext", "-raw", pdf, "-").decode())
        check.that(printed == expected, f"{name} is read as\n{printed}\ninstead of\n{expected}")
        images = run("pdfimages", "-list", pdf).decode()
        check.that(len(re.findall(r"^\s*\d+\s+\d+\s+image", images, re.M)) == pictures,
                   f"{name}: {pictures} pictures expected\n{images}")
        seen = colours_of(run("pdftoppm", "-r", "150", "-singlefile", pdf))
        for index, colour in enumerate(PALETTE):
            check.that(seen[colour] > 20, f"{name}: palette colour {index} is not on the page")


def reads_theirs(check, folder, sample, fodt):
    convert(folder, "rtf", fodt)
    out = run(sample, "read", str(folder / "sample.rtf")).decode()
    for line in ["b - - 24 bold", "i - - 24 italic", "u - - 24 under", "s - - 24 struck",
                 " c00040 ffff00 40 όλους"]:
        check.that(line in out.splitlines(), f"no run '{line}'")
    text = "".join(line.split(" ", 4)[4] for line in out.splitlines() if not line.startswith("paragraph"))
    for piece in ["plain bold italic under struck", "Καλημέρα σε όλους “quoted” – done", "and { braces \\ }"]:
        check.that(piece in text, f"no text '{piece}'")
    check.that("paragraph 2 pictures 0" in out and "paragraph 0 pictures 1" in out, "alignment or picture")
    if check.faults:
        check.faults.append(out)


def main(sample, table, fodt):
    if not all(shutil.which(tool) for tool in ("soffice", "pdftotext", "pdfimages", "pdftoppm")):
        print("no office suite here")
        return 77
    check = Check()
    with tempfile.TemporaryDirectory() as name:
        folder = pathlib.Path(name)
        reads_ours(check, folder, sample, table)
        reads_theirs(check, folder, sample, fodt)
    print("\n".join(check.faults) or "text, colours and pictures are the same on both sides")
    return 1 if check.faults else 0


sys.exit(main(*sys.argv[1:4]))
