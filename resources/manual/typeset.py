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

import weasyprint  # noqa: E402

logging.getLogger("fontTools").setLevel(logging.ERROR)  # it finds the date of the font's own making strange
complaints = logging.getLogger("weasyprint")
complaints.handlers = [logging.StreamHandler(sys.stderr)]
complaints.setLevel(logging.ERROR)

source, target = sys.argv[1:]
# PDF/UA carries the structure of the text, for readers that speak.
weasyprint.HTML(source).write_pdf(target + ".new", variant="pdf/ua-1")
os.replace(target + ".new", target)
