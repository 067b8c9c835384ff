# SPDX-FileCopyrightText: 2026 The Tonewright Authors
# SPDX-License-Identifier: GPL-3.0-or-later
"""The main screen's alerts and its folder chooser, answered with real keys and clicks, and pages opened outside."""
import os
import pathlib
import shutil
import subprocess
import sys
import tempfile
import time
import unittest
from urllib.parse import quote

sys.path.append(str(pathlib.Path(__file__).resolve().parents[1] / "e2e"))
from program import BUILD, Program, main  # noqa: E402
from screen import Controls, Screen, wait_until  # noqa: E402

CONFIRMED, CANCELED, NOTHING = "Alert was confirmed.", "Alert was canceled.", "The document picker was canceled."
LIST = (150, 40, 300, 60)  # a part of the chooser's window in which its list stands: left, top, width, height
KEYS = {"/": "slash", "-": "minus", ".": "period"}
SCREEN = Screen(accessible=True)


class Probe(Program):
    """The running probe. Its lines are taken one after the other."""

    def __init__(self, **environment: str):
        environment |= {"LV2_PATH": "/nonexistent", "TONEWRIGHT_OUTPUT": "silent"}
        super().__init__(path=BUILD / "bin/tests/dialog_probe", stdin=subprocess.PIPE, environment=environment)
        self.wait_first_frame()
        self.main = SCREEN.wait_window(self.process.pid)
        self.do("say", "ready")
        self.taken = self.wait_for_text("ready") + 1

    def do(self, command: str, *arguments: str) -> None:
        words = [command] + [quote(argument, safe="") or "-" for argument in arguments]
        self.process.stdin.write(" ".join(words).encode() + b"\n")
        self.process.stdin.flush()

    def tells(self, text: str = "") -> None:
        """Wait for exactly these lines, and for the loop to answer after them: it is not stuck in a dialog."""
        wanted = text.split("\n") if text else []
        wait_until(lambda: len(self.lines) >= self.taken + len(wanted), f"{text[:60]!r} did not come")
        self.do("say", "what now?")
        end = self.wait_for_text("what now?", after=self.taken)
        if self.lines[self.taken:end] != wanted:
            raise AssertionError(f"{text[:60]!r} was expected, not {self.lines[self.taken:end][:5]}")
        self.taken = end + 1

    def dialogs(self) -> list:
        windows = [window for window in SCREEN.windows(self.process.pid) if window.id != self.main.id]
        return sorted(windows, key=lambda window: window.id)

    def dialog(self, count: int = 1):
        """Wait for so many dialogs; give the last one, drawn and with the keyboard."""
        wait_until(lambda: len(self.dialogs()) == count, f"{count} dialogs did not come")
        window = self.dialogs()[-1]
        self.tells()
        # Until it is drawn the toolkit may give the keyboard to the main window once more.
        wait_until(lambda: SCREEN.picture(window).std() > 0)
        SCREEN.focus(window)
        return window

    def write(self, path: pathlib.Path) -> None:
        for key in str(path):
            SCREEN.press_key(KEYS.get(key, key))
        self.tells()


class Dialogs(unittest.TestCase):
    def started(self, **environment: str) -> Probe:
        probe = Probe(**environment)
        self.addCleanup(probe.kill)
        return probe

    def folder(self, *names: str) -> pathlib.Path:
        """Give a new folder whose path the keyboard can write, with these folders in it."""
        place = pathlib.Path(tempfile.gettempdir(), f"pick-{os.getpid()}-{time.monotonic_ns()}")
        for name in ("", *names):
            (place / name).mkdir()
        self.addCleanup(shutil.rmtree, place, ignore_errors=True)
        return place

    def test_alerts_with_every_text_are_answered_in_every_way(self):
        def click(share: float):
            """Click into the row of buttons: OK is its left half."""
            def at(window) -> None:
                size = window.get_geometry()
                SCREEN.click(window, int(size.width * share), size.height - 24)
            return at

        probe, endless = self.started(), "W" * 100_000
        for title, message, way, line in (
                ("T", "M", lambda _: SCREEN.press_key("Return"), CONFIRMED),
                ("", "", lambda _: SCREEN.press_key("Escape"), CANCELED),
                ("Only a title", "", SCREEN.ask_to_close, CANCELED),
                ("two\nlines", "<b>no</b> &markup; _x %s %n\tü \u202e 漢 🎛", click(0.25), CONFIRMED),
                (endless, "line of text\n" * 5_000 + endless, click(0.75), CANCELED)):
            with self.subTest(title=title[:20]):
                probe.do("alert", title, message)
                probe.tells(f"{title}: {message}")
                window = probe.dialog()
                size, screen = window.get_geometry(), SCREEN.x.screen()
                self.assertTrue(size.width < screen.width_in_pixels and size.height < screen.height_in_pixels)
                if title == "T":
                    controls = Controls(probe.process.pid)
                    self.assertEqual(controls.find("dialog", "T").get_description(), "M")
                    self.assertTrue(controls.has(controls.find("push button", "OK"), "FOCUSED"))
                way(window)
                probe.tells(line)
                wait_until(lambda: not probe.dialogs())

    def test_several_alerts_are_answered_one_by_one_or_end_with_the_program(self):
        probe = self.started()
        for number in range(3):
            probe.do("alert", str(number), "M")
            probe.tells(f"{number}: M")
        for left, key, line in ((3, "Return", CONFIRMED), (2, "Escape", CANCELED)):
            probe.dialog(left)
            SCREEN.press_key(key)
            probe.tells(line)
        probe.process.terminate()
        self.assertEqual(probe.wait_end(), 0)

    def test_choices_and_ways_out(self):
        probe, place = self.started(LC_ALL="C.UTF-8", LANGUAGE="de"), self.folder()
        for way, lines in (
                (lambda _: (probe.write(place), SCREEN.press_key("Return")),
                 f"documentPicker: [file://{place}/]\ndocumentPicker (didPickDocumentsAt): {place}"),
                (lambda _: SCREEN.press_key("Escape"), NOTHING),
                (SCREEN.ask_to_close, NOTHING),
                (lambda _: (probe.write(place), place.rmdir(), SCREEN.press_key("Return")), "")):
            probe.do("pick")
            window = probe.dialog()
            self.assertEqual(window.get_full_text_property(SCREEN.x.intern_atom("_NET_WM_NAME")), "Ordner auswählen")
            way(window)
            probe.tells(lines)
            self.assertEqual(len(probe.dialogs()), 0 if lines else 1)  # a folder that vanished is no answer

    def test_several_choices_are_one_answer(self):
        place = self.folder("a", "b")
        probe = self.started(HOME=str(place))

        def act(*acts) -> None:
            """Do so, as often as it needs, until the list looks otherwise and rests."""
            before = SCREEN.picture(window, LIST)
            for turn in range(30):
                if turn % 3 == 0:
                    [one() for one in acts]
                time.sleep(0.4)
                now = SCREEN.picture(window, LIST)
                if (now != before).any() and (now == SCREEN.picture(window, LIST)).all():
                    return
            self.fail("the list stays as it was")

        probe.do("pick-many")
        probe.tells("shown")
        window = probe.dialog()
        size = window.get_geometry()
        act(lambda: SCREEN.focus(window), lambda: SCREEN.press_keys("Alt_L", "Home"))
        SCREEN.click(window, size.width // 2, size.height // 2)
        act(lambda: SCREEN.press_keys("Control_L", "a"))
        SCREEN.click(window, size.width - 48, size.height - 24)
        probe.tells(f"documentPicker: [file://{place}/a/, file://{place}/b/]\n"
                    f"documentPicker (didPickDocumentsAt): {place}/a")

    def test_pages_go_to_the_desktop(self):
        place, page = self.folder("empty"), "https://tonewright.example/"
        tool = place / "xdg-open"
        for script, answer, said in (
                (f'#!/bin/sh\necho noise\necho "$@" >"{place}/asked"\n', "opened", ""),
                ("#!/bin/sh\nexec sleep 30 2>&-\n", "opened", ""),  # a browser that stays
                ("#!/bin/sh\nexit 3\n", "opened", "could not be opened"),
                ("", "not opened", "could not be opened")):
            with self.subTest(script):
                tool.write_text(script)
                tool.chmod(0o755)
                probe = self.started(PATH=f"{place}:{os.environ['PATH']}" if script else f"{place}/empty")
                probe.do("open", page)
                probe.tells(answer)
                wait_until(lambda: said in probe.errors())  # a failure comes later than the answer
        self.assertEqual((place / "asked").read_text(), page + "\n")


if __name__ == "__main__":
    unittest.addModuleCleanup(SCREEN.close)
    main("test_dialogs")
