# SPDX-FileCopyrightText: 2026 The Tonewright Authors
# SPDX-License-Identifier: GPL-3.0-or-later
"""Tests the command-line program tonewright-loops: its help, one-sentence error messages, exit status and files."""
import pathlib
import subprocess
import tempfile
import unittest

from cases import BUILD, SOURCE, main


class LoopsProgram(unittest.TestCase):
    def setUp(self):
        folder = tempfile.TemporaryDirectory()
        self.addCleanup(folder.cleanup)
        self.folder = pathlib.Path(folder.name)

    def run_program(self, *arguments) -> tuple[int, str]:
        """Return the exit status and the text on standard output and standard error."""
        result = subprocess.run([BUILD / "bin/tonewright-loops", "--sounds", SOURCE / "loops/recipes", *arguments], stdout=subprocess.PIPE,
                                stderr=subprocess.STDOUT, text=True, cwd=self.folder, timeout=60)
        return result.returncode, result.stdout

    def test_says_what_it_can_do(self):
        status, said = self.run_program("--help")
        self.assertEqual(status, 0)
        self.assertIn("--wav RECIPE FILE", said)

    def test_names_the_line_of_a_fault_in_one_sentence(self):
        (self.folder / "1.loop").write_text("title A\ntempo 120\nplay kazoo\n")
        status, said = self.run_program("1.loop", "--out", ".")
        self.assertEqual(status, 1)
        self.assertRegex(said, r"\A.*1\.loop:3: unknown instrument 'kazoo'.*\n\Z")
        self.assertFalse((self.folder / "1.m4a").exists())

    def test_writes_loops_and_samples(self):
        (self.folder / "7.loop").write_text("title A\ntempo 120\nbars 1\ndrums tight\nkick x...\n")
        self.assertEqual(self.run_program("7.loop", "--out", "new"), (0, ""))
        self.assertEqual([file.name for file in (self.folder / "new").iterdir()], ["7.m4a"])
        self.assertEqual(self.run_program("--wav", "7.loop", "7.wav")[0], 0)
        self.assertEqual((self.folder / "7.wav").stat().st_size, 88 + 88200 * 2 * 4)

    def test_refuses_nonsense(self):
        for arguments in ([], ["--frob"], ["1.loop"], ["--wav", "1.loop"], ["--out", "x"]):
            self.assertEqual(self.run_program(*arguments)[0], 2, arguments)
        self.assertEqual(self.run_program("missing.loop", "--out", ".")[0], 1)


if __name__ == "__main__":
    main("loop_program_tests")
