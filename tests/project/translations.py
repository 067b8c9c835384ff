# SPDX-FileCopyrightText: 2026 The Tonewright Authors
# SPDX-License-Identifier: GPL-3.0-or-later
"""Checks that the translation template contains all texts of the program and no others."""
import pathlib
import subprocess
import tempfile
import unittest

from tree import SOURCE, files, main, text


class Translations(unittest.TestCase):
    def test_template_holds_the_programs_texts(self):
        with tempfile.TemporaryDirectory() as folder:
            made = pathlib.Path(folder, "made.pot")
            subprocess.run([SOURCE / "tools/make-texts", made], check=True)
            self.assertEqual(text("po/tonewright.pot"), made.read_text(), "tools/make-texts was not run")

    def test_translations_are_complete(self):
        for name in files():
            if name.startswith("po/") and name.endswith(".po"):
                for command in (["msgfmt", "--check", "-o", "/dev/null", SOURCE / name],
                                ["msgcmp", SOURCE / name, SOURCE / "po/tonewright.pot"]):
                    result = subprocess.run(command, capture_output=True, text=True)
                    self.assertEqual(result.returncode, 0, result.stderr)


if __name__ == "__main__":
    main("project_translations")
