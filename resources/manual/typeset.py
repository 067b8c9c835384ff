#!/usr/bin/python3
# SPDX-FileCopyrightText: 2026 The Tonewright Authors
# SPDX-License-Identifier: GPL-3.0-or-later
"""Set the manual as a PDF: usage: typeset.py manual.html manual.pdf. The same sources and fonts give the same bytes."""
import logging
import os
import sys

# Both are read when Python or a library starts: names of subsets come from hashes, subsets carry a date.
FIXED = {"PYTHONHASHSEED": "0", "SOURCE_DATE_EPOCH": "1764000000"}
if any(os.environ.get(name) != value for name, value in FIXED.items()):
    os.execve(sys.executable, [sys.executable, *sys.argv], {**os.environ, **FIXED})

sys.dont_write_bytecode = True  # a folder of the source that changes would have the program built again
import tagging  # noqa: E402
import weasyprint  # noqa: E402

logging.getLogger("fontTools").setLevel(logging.ERROR)  # it finds the date of the font's own making strange


class Complaints(logging.StreamHandler):
    """Say what is wrong with the sources, and count it: a link without a target, a picture that is not there."""
    count = 0

    def emit(self, record):
        self.count += 1
        super().emit(record)


complaints = Complaints(sys.stderr)
complaints.setLevel(logging.ERROR)
logging.getLogger("weasyprint").handlers = [complaints]

source, target = sys.argv[1:]
weasyprint.HTML(source).write_pdf(target + ".new", variant=tagging.variant())
if complaints.count:
    sys.exit(f"{source} has {complaints.count} mistakes.")
os.replace(target + ".new", target)
