# SPDX-FileCopyrightText: 2026 The Tonewright Authors
# SPDX-License-Identifier: GPL-3.0-or-later
"""The platform's entry and the main screen's controls, worked with real keys and clicks on a virtual display."""
import os
import pathlib
import signal
import subprocess
import sys
import time
import unittest

import numpy

sys.path.append(str(pathlib.Path(__file__).resolve().parents[1] / "e2e"))
from program import BUILD, Program, main  # noqa: E402
from screen import X, XK, Screen, wait_until, xtest  # noqa: E402

PROBE = BUILD / "bin" / "tests" / "screen_probe"
START = ["didFinishLaunching", "setWindow", "viewDidLoad", "viewWillAppear", "didBecomeActive"]
END = ["willResignActive", "viewDidDisappear", "didEnterBackground", "willTerminate"]


class Probe(Program):
    """The running probe; its lines are taken one after the other."""

    def __init__(self, screen: Screen, takes_keyboard: bool = True, **environment: str):
        super().__init__(path=PROBE, environment=environment)
        self.screen, self.taken = screen, 0
        self.wait_first_frame()  # from now on there is something to hit
        self.window = screen.wait_window(self.process.pid)
        self.wait(*START)
        if takes_keyboard:
            screen.focus(self.window)

    def wait(self, *wanted: str) -> None:
        """Wait until exactly these lines have come, and take them."""
        for line in wanted:
            came = self.lines[self.wait_for(".*", after=self.taken)]
            if came != line:
                raise AssertionError(f"expected {line!r}, heard {came!r}")
            self.taken += 1

    def press(self, *keys: str) -> None:
        self.screen.press_keys(*keys)

    def hold(self, *keys: str, kind: int = X.KeyPress) -> None:
        for key in keys:
            xtest.fake_input(self.screen.x, kind, self.screen.x.keysym_to_keycode(XK.string_to_keysym(key)))
        self.screen.x.sync()


class OnADisplay(unittest.TestCase):
    def setUp(self):
        self.screen = Screen()
        self.addCleanup(self.screen.close)

    def started(self, **keywords) -> Probe:
        probe = Probe(self.screen, **keywords)
        self.addCleanup(probe.kill)
        return probe


class Controls(OnADisplay):
    def setUp(self):
        super().setUp()
        self.probe = self.started()

    def test_space_goes_to_the_focused_control_that_uses_it(self):
        self.probe.press("Tab")  # from Play to Unit
        self.probe.press("space")
        self.probe.wait("panel shown")
        self.probe.press("Return")
        self.probe.wait("panel hidden")
        for _ in range(3):
            self.probe.press("Tab")  # past Help and Info round to Play
        self.probe.press("space")
        self.probe.wait("playing")

    def test_a_held_key_is_one_press(self):
        for keys, line in ((["space"], "playing"), (["Alt_L", "s"], "stopped"), (["Alt_L", "u"], "panel shown")):
            self.probe.hold(*keys)
            self.probe.wait(line)
            time.sleep(1.2)  # the server repeats after 0.66 s; there is no event for "nothing happened"
            self.probe.hold(*reversed(keys), kind=X.KeyRelease)
            self.assertEqual(self.probe.lines[self.probe.taken:], [])


class Surroundings(OnADisplay):
    def test_keys_do_not_follow_the_pointer_into_an_effects_window(self):
        probe = self.started(takes_keyboard=False)
        x = self.screen.x
        inner = probe.window.create_window(0, 0, 400, 300, 0, X.CopyFromParent, event_mask=X.KeyPressMask)
        inner.map()
        self.screen.point_at(probe.window, 100, 100)
        wait_until(lambda: x.get_input_focus().focus not in (probe.window, X.PointerRoot, X.NONE))
        probe.press("space")
        probe.wait("playing")

    def test_light_and_dark_follow_the_desktop(self):
        portal = subprocess.Popen([sys.executable, pathlib.Path(__file__).with_name("fakePortal.py"), "1"],
                                  stdin=subprocess.PIPE, stdout=subprocess.PIPE, text=True)
        self.addCleanup(portal.communicate)  # the end of its input ends it
        address = portal.stdout.readline().strip()
        probe = self.started(DBUS_SESSION_BUS_ADDRESS=address)

        def brightness() -> float:
            return float(self.screen.picture(probe.window, (300, 20, 40, 40)).mean())

        wait_until(lambda: brightness() < 90)
        for scheme, fits in (("2", lambda: brightness() > 160), ("1", lambda: brightness() < 90),
                             ("0", lambda: brightness() > 160)):
            portal.stdin.write(scheme + "\n")
            portal.stdin.flush()
            wait_until(fits)


def contrast(one: numpy.ndarray, other: numpy.ndarray) -> numpy.ndarray:
    """Give the ratio of the luminances of colours (..., 3), from 1 to 21."""
    def luminance(colours: numpy.ndarray) -> numpy.ndarray:
        parts = colours / 255
        parts = numpy.where(parts <= 0.04045, parts / 12.92, ((parts + 0.055) / 1.055) ** 2.4)
        return parts @ (0.2126, 0.7152, 0.0722) + 0.05

    one, other = luminance(one), luminance(other)
    return numpy.maximum(one, other) / numpy.minimum(one, other)


def commonest(colours: numpy.ndarray, share: float = 0) -> numpy.ndarray:
    """Give the most common of the colours (count, 3), or all that make up more than a share of them."""
    found, counts = numpy.unique(colours, axis=0, return_counts=True)
    return found[counts > share * len(colours)] if share else found[counts.argmax()]


def beside(mask: numpy.ndarray) -> numpy.ndarray:
    """Mark the pixels next to the marked ones."""
    wide = numpy.pad(mask, 1)
    return (wide[:-2, 1:-1] | wide[2:, 1:-1] | wide[1:-1, :-2] | wide[1:-1, 2:]) & ~mask


class Contrast(OnADisplay):
    def test_hint_and_focus_can_be_made_out_in_every_theme(self):
        for theme in ("Adwaita", "Adwaita:dark", "HighContrast", "HighContrast:dark"):
            with self.subTest(theme):
                probe = self.started(GTK_THEME=theme)
                self.screen.point_at(probe.window, 450, 660)
                plain = self.still(probe)
                middle = plain[230:390, 200:720]  # the name, and the hint below it
                ground = commonest(middle.reshape(-1, 3))
                lines = numpy.any(middle != ground, axis=(1, 2))
                last = numpy.flatnonzero(lines)[-1]
                first = last - int(numpy.argmin(lines[last::-1])) + 1
                self.assertTrue(8 < last - first < 24, (first, last))
                self.assertGreaterEqual(contrast(middle[first:last + 1], ground).max(), 4.5, "the hint")
                for _ in range(4):
                    probe.press("Tab")
                    self.look_at_ring(plain, self.still(probe))
                time.sleep(3.5)  # it stays
                self.look_at_ring(plain, self.still(probe))
                probe.kill()

    def still(self, probe: Probe) -> numpy.ndarray:
        """Give the picture of the window after what moves in it; a ring comes in a fifth of a second."""
        pictures = [self.screen.picture(probe.window)]

        def rests() -> bool:
            time.sleep(0.3)
            pictures.append(self.screen.picture(probe.window))
            return numpy.array_equal(*pictures[-2:])

        wait_until(rests)
        return pictures[-1]

    def look_at_ring(self, plain: numpy.ndarray, focused: numpy.ndarray) -> None:
        changed = numpy.any(plain != focused, axis=2)
        self.assertGreater(changed.sum(), 100, "no ring")
        colour = commonest(focused[changed])
        ring = numpy.all(focused == colour, axis=2) & changed
        self.assertGreater(ring.sum(), 100, "no ring of one colour")
        self.assertGreaterEqual(contrast(plain[ring], colour).mean(), 3, "the ring beside no ring")
        # What a twentieth of its edge touches; the corners are rounded.
        for neighbour in commonest(focused[beside(ring)], 0.05):
            self.assertGreaterEqual(contrast(neighbour, colour), 3, f"the ring {colour} beside {neighbour}")


class Life(OnADisplay):
    def test_closed_window_and_signals_end_in_order(self):
        for number in (None, signal.SIGTERM, signal.SIGINT, signal.SIGHUP):
            probe = self.started()
            probe.process.send_signal(number) if number else self.screen.ask_to_close(probe.window)
            probe.wait(*END)
            self.assertEqual(probe.wait_end(), 0)

    def test_window_can_be_made_small_and_remembers_nothing(self):
        probe = self.started()
        before = probe.window.get_geometry()
        hints = probe.window.get_wm_normal_hints()
        self.assertTrue(320 <= hints.min_width <= 640 and 240 <= hints.min_height <= 480, hints)
        self.screen.resize(probe.window, before.width + 100, before.height + 50)
        self.screen.ask_to_close(probe.window)
        probe.wait(*END)
        again = self.started().window.get_geometry()
        self.assertEqual((again.width, again.height), (before.width, before.height))


def run(*arguments: str, display: str = "") -> subprocess.CompletedProcess:
    environment = {name: text for name, text in os.environ.items() if name not in ("DISPLAY", "WAYLAND_DISPLAY")}
    return subprocess.run([PROBE, *arguments], stdin=subprocess.DEVNULL, capture_output=True, text=True, timeout=60,
                          env=environment | ({"DISPLAY": display} if display else {}))


class Entry(OnADisplay):
    def test_options_are_answered_without_a_display(self):
        for option, text in (("--version", r"\Atonewright \d+\.\d+\.\d+\n\Z"), ("--help", r"\AUsage: probe\n\Z")):
            answer = run(option)
            self.assertRegex(answer.stdout, text)
            self.assertEqual((answer.stderr, answer.returncode), ("", 0))

    def test_unknown_arguments_are_refused_in_one_sentence(self):
        for argument in ("--frobnicate", "file.wav", "-x", ""):
            answer = run(argument, display=os.environ["DISPLAY"])
            self.assertEqual((answer.stdout, answer.returncode), ("", 2))
            self.assertEqual(answer.stderr.count("\n"), 1, answer.stderr)

    def test_no_display_is_said_in_one_sentence(self):
        for display in ("", ":4711"):
            answer = run(display=display)
            self.assertEqual((answer.stdout, answer.returncode), ("", 1))
            self.assertRegex(answer.stderr, r"\Atonewright: cannot open display.*\n\Z")


if __name__ == "__main__":
    main("test_ui_screen")
