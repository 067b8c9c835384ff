# SPDX-FileCopyrightText: 2026 The Tonewright Authors
# SPDX-License-Identifier: GPL-3.0-or-later
"""Help and Info in the real program, operated with real keys and clicks, also with a missing or damaged manual."""
import os
import pathlib
import signal
import subprocess
import unittest

import numpy

from program import PATIENCE, Program, Tree, main
from screen import Run, Screen, wait_until

NAVIGATION = "navigationAction: "
SITE = "https://tonewright.example/"
MANUAL = "share/tonewright/manual.pdf"


def children(pid: int) -> str:
    """Return the PIDs and names of the child processes of a process."""
    return subprocess.run(["pgrep", "--list-name", "--parent", str(pid)], capture_output=True, text=True).stdout


class Help(unittest.TestCase):
    def setUp(self):
        self.screen = Screen()
        self.addCleanup(self.screen.close)

    def start(self, tree: Tree | None = None) -> Program:
        program = Run(self.screen, tree, environment={"PATH": "/nonexistent"})  # so that no browser is found
        self.addCleanup(program.kill)
        program.wait_ready()
        return program

    def tree_without(self, file: str) -> Tree:
        tree = Tree()
        self.addCleanup(tree.remove)
        (tree.root / file).unlink()
        return tree

    def wait(self, condition, what: str) -> None:
        wait_until(condition, what, 2 * PATIENCE)  # the first page waits for the media library's list of plug-ins

    def show_manual(self, program: Program) -> None:
        """Open the manual and wait until the middle of the window shows more colours than the main screen has."""
        self.screen.press_keys("Alt_L", "h")
        self.wait(lambda: len(numpy.unique(self.screen.picture(program.window, (200, 100, 500, 400)).reshape(-1, 3),
                                           axis=0)) > 1000, "the manual is not shown")

    def changed(self, program: Program, picture: numpy.ndarray, rows: int | None = None) -> float:
        """Return the fraction of the window's pixels that differ from an earlier picture."""
        return numpy.mean(numpy.any(self.screen.picture(program.window)[:rows] != picture[:rows], axis=2))

    def wait_main_screen(self, program: Program, picture: numpy.ndarray) -> None:
        self.wait(lambda: self.changed(program, picture, 600) < 0.01, "the main screen is not shown again")
        self.wait(lambda: not children(program.process.pid), "a child process still runs")

    def test_help_info_exit_and_again(self):
        program = self.start()
        size = program.window.get_geometry()
        main_screen = self.screen.picture(program.window)
        maps = pathlib.Path(f"/proc/{program.process.pid}/maps")
        self.assertNotIn("libwebkit", maps.read_text(), "WebKit is loaded before the first page")
        manual = f"file://{program.path.parent.parent}/share/tonewright/manual.pdf"
        for number in range(2):
            first = len(program.lines)
            self.show_manual(program)
            program.wait_for_text(manual, after=first, count=2)
            self.assertEqual(program.system_lines(first),
                             ["showHelp", NAVIGATION, manual, "navigationResponse: ", manual])
            if number == 0:
                self.screen.press_key("Escape")
            else:
                self.screen.click(program.window, size.width - 40, size.height - 30)  # the Exit button
            self.wait_main_screen(program, main_screen)

            first = len(program.lines)
            self.screen.click(program.window, size.width - 40, size.height - 30)  # the Info button is where Exit was
            program.wait_for_text(SITE, after=first)
            self.assertEqual(program.system_lines(first), ["showInfo", NAVIGATION, SITE])
            self.screen.press_keys("Alt_L", "x")
            self.wait_main_screen(program, main_screen)
        self.show_manual(program)
        self.screen.ask_to_close(program.window)
        self.assertEqual(program.wait_end(), 0, program.errors())
        self.assertFalse(pathlib.Path("/.flatpak-info").exists())

    def test_missing_engine_is_told_in_its_place(self):
        program = self.start(self.tree_without("lib/tonewright/libtonewright-web.so"))
        main_screen = self.screen.picture(program.window)
        for _ in range(2):
            self.screen.press_keys("Alt_L", "h")
            self.wait(lambda: self.changed(program, main_screen) > 0.01, "no message is shown")
            self.screen.press_key("Escape")
            self.wait_main_screen(program, main_screen)
        self.assertEqual(program.errors().count("The web engine cannot be opened: "), 1)

    def test_missing_manual_is_fatal(self):
        program = self.start(self.tree_without(MANUAL))
        self.screen.press_keys("Alt_L", "h")
        self.assertEqual(program.wait_end(), -signal.SIGABRT)
        self.assertIn('The resource "manual.pdf" is missing.\n', program.errors())
        self.assertEqual(program.system_lines()[-1], "showHelp")

    def test_damaged_manual_is_no_fault_of_the_program(self):
        for content in (b"", b"%PDF-1.7\n" + os.urandom(5000)):
            tree = self.tree_without(MANUAL)
            (tree.root / MANUAL).write_bytes(content)
            program = self.start(tree)
            main_screen = self.screen.picture(program.window)
            first = len(program.lines)
            self.screen.press_keys("Alt_L", "h")
            program.wait_for_text("navigationResponse: ", after=first)
            self.screen.press_key("Escape")
            self.wait_main_screen(program, main_screen)
            program.kill()


if __name__ == "__main__":
    main("e2e_help")
