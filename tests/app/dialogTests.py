# SPDX-FileCopyrightText: 2026 The Tonewright Authors
# SPDX-License-Identifier: GPL-3.0-or-later
"""The main screen's alerts and its folder chooser, answered with real keys and clicks, and pages opened outside."""
import os
import pathlib
import select
import shutil
import subprocess
import sys
import tempfile
import time
import unittest
from urllib.parse import quote

sys.path += [str(pathlib.Path(__file__).resolve().parents[1] / folder) for folder in ("support", "e2e")]
from cases import BUILD, main  # noqa: E402
from screen import X, XK, Controls, Screen, xtest  # noqa: E402

PROBE = BUILD / "bin" / "tests" / "dialog_probe"
CONFIRMED, CANCELED, NOTHING = "Alert was confirmed.", "Alert was canceled.", "The document picker was canceled."
LIST = (150, 40, 300, 60)  # a part of the chooser's window in which its list stands: left, top, width, height
KEYS = {"/": "slash", "-": "minus", ".": "period"}


def until(condition, act=lambda: None) -> None:
    """Do what `act` does, again every second as a person would, until `condition` holds, at most half a minute."""
    for turn in range(1500):
        if turn % 50 == 0:
            act()
        if condition():
            return
        time.sleep(0.02)
    raise AssertionError("it did not come about")


class Display(Screen):
    """The virtual display, with keys pressed together."""

    def press(self, *keys: str) -> None:
        codes = [self.x.keysym_to_keycode(XK.string_to_keysym(KEYS.get(key, key))) for key in keys]
        for code in codes:
            xtest.fake_input(self.x, X.KeyPress, code)
        for code in reversed(codes):
            xtest.fake_input(self.x, X.KeyRelease, code)
        self.x.sync()


class Probe:
    """The running probe, what it wrote and the windows it shows besides its main one."""

    def __init__(self, screen: Display, **environment: str):
        self.screen = screen
        self.process = subprocess.Popen([PROBE], stdin=subprocess.PIPE, stdout=subprocess.PIPE,
                                        stderr=subprocess.PIPE, env=dict(os.environ, **environment))
        self.heard = b""
        self.main = screen.wait_window(self.process.pid)
        self.answers_to("ready")

    def do(self, command: str, *arguments: str) -> None:
        words = [command] + [quote(argument, safe="") or "-" for argument in arguments]
        self.process.stdin.write(" ".join(words).encode() + b"\n")
        self.process.stdin.flush()

    def wait(self, text: str, timeout: float = 30) -> str:
        """Wait for `text` as the next line (it may hold line ends itself); give what came before it."""
        wanted, end = b"\n" + text.encode() + b"\n", time.monotonic() + timeout
        while wanted not in b"\n" + self.heard:
            if time.monotonic() > end or self.process.poll() is not None:
                raise AssertionError(f"{text[:60]!r} did not come, but {self.heard[-200:]!r}")
            if select.select([self.process.stdout], [], [], 0.1)[0]:
                self.heard += os.read(self.process.stdout.fileno(), 65536)
        before, _, self.heard = (b"\n" + self.heard).partition(wanted)
        return before.decode().lstrip("\n")

    def answers_to(self, word: str) -> str:
        """Give the lines until now: the loop answers, so that it is not stuck in a dialog."""
        self.do("say", word)
        return self.wait(word)

    def dialogs(self, count: int) -> list:
        """Wait until exactly `count` dialogs stand there; give them in the order of their coming."""
        def found() -> list:
            return [window for window in self.screen.windows(self.process.pid) if window.id != self.main.id]

        until(lambda: len(found()) == count)
        return sorted(found(), key=lambda window: window.id)

    def shows(self, window) -> bool:
        return window.id in (shown.id for shown in self.screen.windows(self.process.pid))

    def dialog(self):
        """Wait for the one dialog, drawn, and give it the keyboard."""
        window = self.dialogs(1)[0]
        self.answers_to("laid out")
        self.screen.focus(window)
        # It is drawn a frame later; a picture of one colour shows nothing yet. Until then the toolkit may give the
        # keyboard to the main window once more.
        until(lambda: self.screen.picture(window).std() > 0)
        self.screen.focus(window)
        return window

    def end(self) -> str:
        if self.process.poll() is None:
            self.process.kill()
        return self.process.communicate()[1].decode()


class Dialogs(unittest.TestCase):
    def setUp(self):
        self.screen = Display()
        self.addCleanup(self.screen.close)

    def started(self, **environment: str) -> Probe:
        probe = Probe(self.screen, **environment)
        self.addCleanup(probe.end)
        return probe

    def folder(self) -> pathlib.Path:
        """Give a new folder whose path the keyboard can write."""
        place = pathlib.Path(tempfile.gettempdir(), f"pick-{os.getpid()}-{time.monotonic_ns()}")
        place.mkdir()
        self.addCleanup(shutil.rmtree, place, ignore_errors=True)
        return place


class Alerts(Dialogs):
    def test_every_text_and_every_way_out(self):
        probe, press = self.started(), self.screen.press

        def click(share: float):
            """Click into the row of buttons: OK is its left half."""
            def at(window) -> None:
                size = window.get_geometry()
                self.screen.click(window, int(size.width * share), size.height - 24)
            return at

        endless, lines = "W" * 100_000, "line of text\n" * 5_000
        for title, message, way, line in (
                ("T", "M", lambda _: press("Return"), CONFIRMED),
                ("T", "M", lambda _: press("Escape"), CANCELED),
                ("T", "M", self.screen.ask_to_close, CANCELED),
                ("T", "M", click(0.25), CONFIRMED),
                ("T", "M", click(0.75), CANCELED),
                ("", "", lambda _: press("space"), CONFIRMED),
                ("Only a title", "", lambda _: press("Escape"), CANCELED),
                ("", "only a message", lambda _: (press("Tab"), press("space")), CANCELED),
                ("two\nlines", "<b>no</b> &markup; _x %s %n\tü \u202e 漢 🎛", lambda _: press("Return"), CONFIRMED),
                ("Long", endless, click(0.25), CONFIRMED),
                (endless, lines, click(0.75), CANCELED)):
            with self.subTest(title=title[:20], message=message[:20], outcome=line):
                probe.do("alert", title, message)
                self.assertEqual(probe.wait(f"{title}: {message}"), "")
                window = probe.dialog()
                size, screen = window.get_geometry(), self.screen.x.screen()
                self.assertLess(size.width, screen.width_in_pixels)
                self.assertLess(size.height, screen.height_in_pixels)
                way(window)
                self.assertEqual(probe.wait(line), "")
                probe.dialogs(0)
                self.assertEqual(probe.answers_to("done"), "")

    def test_has_a_name_for_every_ear(self):
        screen = Screen(accessible=True)
        self.addCleanup(screen.close)
        probe = Probe(screen)
        self.addCleanup(probe.end)
        probe.do("alert", "Title", "Message")
        probe.dialog()
        controls = Controls(probe.process.pid)
        self.assertEqual(controls.find("dialog", "Title").get_description(), "Message")
        self.assertTrue(controls.has(controls.find("push button", "OK"), "FOCUSED"))
        controls.find("push button", "Cancel")

    def test_several_at_once_are_answered_one_by_one(self):
        probe = self.started()
        for number in range(5):
            probe.do("alert", f"T{number}", "M")
            probe.wait(f"T{number}: M")
        for left in range(5, 0, -1):  # the last one lies in front
            window = probe.dialogs(left)[-1]
            self.screen.focus(window)
            self.assertEqual(probe.answers_to("shown"), "")
            self.screen.press("Return" if left % 2 else "Escape")
            self.assertEqual(probe.wait(CONFIRMED if left % 2 else CANCELED), "")
        probe.dialogs(0)
        self.assertEqual(probe.answers_to("done"), "")

    def test_program_ends_with_an_alert_open(self):
        probe = self.started()
        probe.do("alert", "T", "M")
        probe.dialog()
        probe.process.terminate()
        self.assertEqual(probe.process.wait(20), 0)


class Picker(Dialogs):
    def settled(self, window):
        """Wait until the list of the chooser's folder stays as it is; give its picture."""
        picture, since = self.screen.picture(window, LIST), time.monotonic()
        end = since + 30
        while time.monotonic() - since < 0.7:
            time.sleep(0.05)
            now = self.screen.picture(window, LIST)
            if (now != picture).any():
                picture, since = now, time.monotonic()
            self.assertLess(time.monotonic(), end, "the chooser's list does not come to rest")
        return picture

    def test_choices_and_ways_out(self):
        probe, press, place = self.started(), self.screen.press, self.folder()

        def write(path: str) -> None:
            for key in path:
                press(key)

        for name, first, way, lines in (
                ("one", str(place), lambda _: press("Return"),
                 f"documentPicker: [file://{place}/]\ndocumentPicker (didPickDocumentsAt): {place}"),
                ("Escape", "", lambda _: press("Escape"), NOTHING),
                ("closed", "", self.screen.ask_to_close, NOTHING)):
            with self.subTest(name):
                probe.do("pick")
                window = probe.dialog()
                write(first)
                probe.answers_to("written")
                until(lambda: not probe.shows(window), lambda: way(window))
                self.assertEqual(probe.wait(lines), "")
                self.assertEqual(probe.answers_to("done"), "")

    def test_several_choices_are_one_answer(self):
        place = self.folder()
        (place / "a").mkdir()
        (place / "b").mkdir()
        probe = self.started(HOME=str(place))
        probe.do("pick-many")
        probe.wait("shown")
        window = probe.dialog()
        size = window.get_geometry()
        until(lambda: self.screen.picture(window, LIST).std() > 0,
              lambda: (self.screen.focus(window), self.screen.press("Alt_L", "Home")))
        self.settled(window)
        self.screen.click(window, size.width // 2, size.height // 2)
        before = self.settled(window)
        until(lambda: (self.screen.picture(window, LIST) != before).any(), lambda: self.screen.press("Control_L", "a"))
        self.settled(window)
        self.screen.click(window, size.width - 48, size.height - 24)
        self.assertEqual(probe.wait(f"documentPicker: [file://{place}/a/, file://{place}/b/]\n"
                                    f"documentPicker (didPickDocumentsAt): {place}/a"), "")

    def test_folder_that_vanished_leaves_the_chooser_usable(self):
        probe, press, place = self.started(), self.screen.press, self.folder()
        probe.do("pick")
        probe.dialog()
        for key in str(place):
            press(key)
        probe.answers_to("written")
        place.rmdir()
        press("Return")
        self.assertEqual(probe.answers_to("no answer yet"), "")

    def test_speaks_the_users_language(self):
        probe = self.started(LC_ALL="C.UTF-8", LANGUAGE="de")
        probe.do("pick")
        self.assertEqual(probe.dialog().get_full_text_property(self.screen.x.intern_atom("_NET_WM_NAME")),
                         "Ordner auswählen")


class Outside(Dialogs):
    def test_pages_go_to_the_desktop(self):
        place, page = self.folder(), "https://tonewright.example/"
        (place / "empty").mkdir()
        tool = place / "xdg-open"
        for script, answer, said in (
                (f'#!/bin/sh\necho noise\necho "$@" >"{place}/asked"\n', "opened", ""),
                ("#!/bin/sh\nexec sleep 30 2>&-\n", "opened", ""),  # a browser that stays
                ("#!/bin/sh\nexit 3\n", "opened", "could not be opened"),
                (None, "not opened", "could not be opened")):
            with self.subTest(script):
                tool.unlink(missing_ok=True)
                if script:
                    tool.write_text(script)
                    tool.chmod(0o755)
                only = str(place / "empty") if script is None else f"{place}:{os.environ['PATH']}"
                probe = self.started(PATH=only)
                probe.do("open", page)
                self.assertEqual(probe.wait(answer), "")
                time.sleep(0.3 if said else 0)  # the program's failure comes later than the answer
                self.assertEqual(probe.answers_to("done"), "")
                self.assertIn(said, probe.end())
        self.assertEqual((place / "asked").read_text(), page + "\n")


if __name__ == "__main__":
    main("test_dialogs")
