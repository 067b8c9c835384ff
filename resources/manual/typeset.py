#!/usr/bin/python3
# SPDX-FileCopyrightText: 2026 The Tonewright Authors
# SPDX-License-Identifier: GPL-3.0-or-later
"""Typeset the manual. Usage: typeset.py manual.html manual.pdf. The output is reproducible byte by byte."""
import logging
import os
import sys

# For reproducible output, because names of font subsets depend on hashes and subsets contain a date. Python reads both
# variables at startup.
FIXED = {"PYTHONHASHSEED": "0", "SOURCE_DATE_EPOCH": "1764000000"}
if any(os.environ.get(name) != value for name, value in FIXED.items()):
    os.execve(sys.executable, [sys.executable, *sys.argv], {**os.environ, **FIXED})

sys.dont_write_bytecode = True  # a change in the source folder would trigger a rebuild
import tagging  # noqa: E402
import weasyprint  # noqa: E402

logging.getLogger("fontTools").setLevel(logging.ERROR)  # hides warnings about the date in the font


class Complaints(logging.StreamHandler):
    """Report and count errors in the sources, such as a link without a target or a missing picture."""
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
    sys.exit(f"{source} has {complaints.count} errors.")
os.replace(target + ".new", target)
