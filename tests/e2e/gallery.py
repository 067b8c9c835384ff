# SPDX-FileCopyrightText: 2026 The Tonewright Authors
# SPDX-License-Identifier: GPL-3.0-or-later
"""The gallery as a person meets it: real keys and clicks, what assistive technology reads, pixels of the window."""
import math
import re
import subprocess
import time
import unittest

import numpy
from program import BUILD, PATIENCE, Program, main
from screen import Controls, Screen, wait_until

STATUS = re.compile(r"Frame (\d+) of (\d+) · (\w+) · [\d.]+ µs a tick of (\d+) tweens")
MOVING, HEAD = (51, 130, 224), (214, 84, 15)  # the colours of what is on its way and of a timeline's head
CAPTION, MARGIN = 15, 7  # of a plot: the name below it, the room around it


def colored(pixels: numpy.ndarray, color: tuple[int, int, int]) -> tuple[numpy.ndarray, numpy.ndarray]:
    """Return the rows and the columns of the pixels that have a colour."""
    return numpy.nonzero(numpy.abs(pixels.astype(int) - color).max(axis=2) < 12)


def dot_in(pixels: numpy.ndarray) -> tuple[float, float] | None:
    """Give the middle of the pixels that have a moving dot's colour."""
    rows, columns = colored(pixels, MOVING)
    return (columns.mean(), rows.mean()) if len(rows) else None


def contrast(one: numpy.ndarray, other: numpy.ndarray) -> float:
    """Return the contrast ratio of two colours, from 1 to 21, as WCAG 2 defines it."""
    def luminance(color: numpy.ndarray) -> float:
        linear = [c / 12.92 if c <= 0.04045 else ((c + 0.055) / 1.055) ** 2.4 for c in color / 255]
        return numpy.dot(linear, (0.2126, 0.7152, 0.0722))
    darker, lighter = sorted((luminance(one), luminance(other)))
    return (lighter + 0.05) / (darker + 0.05)


class Gallery(unittest.TestCase):
    @classmethod
    def setUpClass(cls):
        cls.screen = Screen(accessible=True)
        cls.addClassCleanup(cls.screen.close)

    def setUp(self):
        self.start()

    def start(self, environment: dict[str, str] | None = None) -> None:
        self.program = Program(path=BUILD / "bin" / "tonewright-gallery", environment=environment)
        self.addCleanup(self.program.kill)
        self.program.wait_first_frame()
        self.window = self.screen.wait_window(self.program.process.pid)
        self.screen.focus(self.window)
        self.controls = Controls(self.program.process.pid)

    def status(self) -> re.Match:
        for node in self.controls.all():
            if node.get_role_name() == "label" and (match := STATUS.fullmatch(node.get_name())):
                return match
        raise AssertionError("the line of figures is not on the screen")

    def wait_status(self, condition, why: str) -> None:
        wait_until(lambda: condition(self.status()), why, PATIENCE)

    def plot(self, name: str) -> numpy.ndarray:
        """Give the pixels of one curve's plot."""
        return self.screen.picture(self.window, self.controls.area(self.controls.find("push button", name)))

    def exhibit(self, name: str) -> numpy.ndarray:
        """Return the pixels of the exhibit that assistive technology calls `name`."""
        area = next(self.controls.area(node) for node in self.controls.all()
                    if node.get_name() == name and node.get_role_name() in ("image", "icon"))
        return self.screen.picture(self.window, area)

    def resize(self, width: int, height: int) -> None:
        """Resize the window and wait until the last curve is where it belongs."""
        def fits() -> bool:
            x, y, w, h = self.controls.area(self.controls.find("push button", "easeOutInBounce"))
            return x + w <= width and height - 130 < y + h <= height and w > width / 16

        self.screen.resize(self.window, width, height)
        wait_until(fits, f"the curves do not fit {width} by {height}", PATIENCE)

    def pause(self, condition=lambda status: 20 <= int(status[1]) <= 100) -> int:
        """Pause by the key in the middle of a movement; give the frame."""
        self.screen.press_key("r")
        self.wait_status(condition, "the movement does not get there")
        self.screen.press_key("p")
        self.controls.wait_for("push button", "Play")
        return int(self.status()[1])

    def test_a_paused_dot_lies_on_its_curve(self):
        frame = self.pause()
        time.sleep(0.2)  # the last frame has been painted
        progress = frame / int(self.status()[2])
        for name, curve in {"easeInQuad": lambda u: u * u, "easeOutSine": lambda u: math.sin(u * math.pi / 2),
                            "easeInCirc": lambda u: 1 - math.sqrt(1 - u * u)}.items():
            pixels = self.plot(name)
            dot = dot_in(pixels)
            self.assertIsNotNone(dot, name)
            height, width, _ = pixels.shape
            # The plot lies in the middle of its button.
            left, top = MARGIN, MARGIN
            across, up = width - 2 * MARGIN, height - 2 * MARGIN - CAPTION
            self.assertAlmostEqual(dot[0], left + progress * across, delta=2.5, msg=name)
            self.assertAlmostEqual(dot[1], top + up * (1 - curve(progress)), delta=2.5, msg=name)
        size, before = self.window.get_geometry(), self.screen.picture(self.window)
        time.sleep(0.5)
        self.assertTrue((before == self.screen.picture(self.window)).all(), "something moved while paused")
        self.resize(size.width + 80, size.height)  # each layout shows where everything is by now
        self.resize(size.width, size.height)
        wait_until(lambda: (before == self.screen.picture(self.window)).all(), "something moved unseen while paused", 5)
        self.screen.press_key("p")
        self.controls.wait_for("push button", "Pause")
        self.wait_status(lambda status: int(status[1]) != frame, "it does not go on")

    def test_bars_are_time_and_their_dots_values(self):
        self.pause(lambda status: 60 <= int(status[1]) <= 100)
        time.sleep(0.2)
        pixels = self.exhibit("Sequencer")
        head = colored(pixels, HEAD)[1]
        self.assertTrue(len(head), "the timeline has no head")
        time_part = pixels[:, :pixels.shape[1] * 6 // 10]
        filled = colored(time_part, MOVING)[1]
        self.assertTrue(len(filled), "no bar is filled")
        self.assertLessEqual(filled.max(), head.max(), "a bar is filled beyond the present frame")
        self.assertTrue(len(colored(pixels[:, time_part.shape[1]:], MOVING)[1]), "no value is on its way")

    def test_curves_are_chosen_and_speeds_changed_by_mouse_and_keys(self):
        self.assertEqual(self.status()[3], "easeOutBounce")
        self.assertTrue(self.controls.has(self.controls.find("push button", "easeOutBounce"), "PRESSED"))
        self.screen.click(self.window, *self.controls.middle("easeInElastic"))
        self.wait_status(lambda status: status[3] == "easeInElastic", "the click chose nothing")
        self.assertFalse(self.controls.has(self.controls.find("push button", "easeOutBounce"), "PRESSED"))
        for key in ("Right", "space"):  # to the next curve
            self.screen.press_key(key)
        self.wait_status(lambda status: status[3] == "easeOutElastic", "the keys chose nothing")
        for key, frames in (("plus", "60"), ("plus", "30"), ("plus", "30"), ("minus", "60")):
            self.screen.press_key(key)
            self.wait_status(lambda status: status[2] == frames, f"{key} did not lead to {frames} frames")
        self.assertTrue(self.enabled("Faster"))
        self.screen.click(self.window, *self.controls.middle("Faster"))
        wait_until(lambda: not self.enabled("Faster"), "Faster can be pressed at its limit")
        wait_until(lambda: self.controls.has(self.controls.find("push button", "Slower"), "FOCUSED"),
                   "the keyboard is lost with the button that it was at")
        for frames in ("60", "120", "240", "480"):
            self.screen.press_key("space")
            self.wait_status(lambda status: status[2] == frames, f"Slower did not lead to {frames} frames")
        wait_until(lambda: not self.enabled("Slower"), "Slower can be pressed at its limit")
        wait_until(lambda: self.controls.has(self.controls.find("push button", "Faster"), "FOCUSED"),
                   "the keyboard is lost with the button that it was at")
        names = [node.get_name() for node in self.controls.all() if node.get_name().startswith("ease")]
        self.assertEqual(len(set(names)), 40)

    def enabled(self, button: str) -> bool:
        return self.controls.has(self.controls.find("push button", button), "SENSITIVE")

    def test_captions_tell_the_curves_apart_in_the_smallest_window(self):
        hints = self.window.get_wm_normal_hints()
        self.resize(hints.min_width, hints.min_height)
        self.screen.point_at(self.window, hints.min_width // 2, hints.min_height - 4)
        self.pause(lambda status: int(status[1]) >= 5)
        time.sleep(0.2)
        captions = {}
        for node in self.controls.all():
            if (name := node.get_name()).startswith("ease") and node.get_role_name() == "push button":
                x, y, width, height = self.controls.area(node)
                if not self.controls.has(node, "PRESSED"):  # it has a ground of its own
                    first, last = (self.screen.picture(self.window, (x + 1, y + height - up, width - 2, 13)).tobytes()
                                   for up in (28, 15))
                    captions[name] = (x, first, last)
        self.assertEqual(len({(first, last) for x, first, last in captions.values()}), 39)
        for name, (x, first, last) in captions.items():
            kind, family = re.fullmatch(r"(ease[InOut]+)([A-Z][a-z]+)", name).groups()
            for other, (other_x, other_first, other_last) in captions.items():
                if x == other_x:  # in the same column, that is of the same kind
                    self.assertEqual(first, other_first, f"{name} and {other} are both of the kind {kind}")
                    self.assertEqual(last == other_last, other.endswith(family), f"{name} and {other}")

    def test_exhibits_stand_out_from_the_window_in_light_and_dark(self):
        for theme in ("Adwaita", "Adwaita:dark"):
            self.program.kill()
            self.start({"GTK_THEME": theme})
            for name in ("Stack", "Chain", "Sequencer"):
                ground = self.exhibit(name)[5, 5]
                window = self.screen.picture(self.window, (2, 2, 1, 1))[0, 0]
                self.assertGreater(contrast(ground, window), 1.1, f"{name} in {theme}")
                self.assertGreater(contrast(ground, numpy.array(MOVING)), 3, f"{name} in {theme}")

    def test_the_impulse_comes_to_rest_and_is_flicked_again(self):
        def ball() -> float | None:
            dot = dot_in(self.screen.picture(self.window, area))
            return dot[0] if dot else None

        area = self.controls.area(self.controls.find("push button", "Flick"))
        wait_until(lambda: ball() is None, "the ball did not come to rest", PATIENCE)
        self.screen.press_key("f")
        seen = set()
        wait_until(lambda: seen.add(ball()) or len(seen) > 5, "the ball did not move", PATIENCE)
        # A quarter of the frames: the ball is at rest before the curves begin anew.
        for frames in ("60", "30"):
            self.screen.press_key("plus")
            self.wait_status(lambda status: status[2] == frames, f"there are not {frames} frames")
        self.wait_status(lambda status: status[1] == "30", "the curves do not arrive")
        self.wait_status(lambda status: status[1] != "30", "the curves do not begin anew")
        self.assertIsNone(ball(), "the ball does not move faster")

    def test_it_is_resized_and_closed(self):
        for size in ((1400, 900), (900, 620)):
            self.resize(*size)
        self.screen.ask_to_close(self.window)
        self.assertEqual(self.program.wait_end(), 0)
        self.assertRegex(self.program.errors(), r"\Afirst frame .*\n\Z")


class CommandLine(unittest.TestCase):
    def test_it_names_itself(self):
        answer = subprocess.run([BUILD / "bin" / "tonewright-gallery", "--version"], capture_output=True, text=True)
        self.assertRegex(answer.stdout, r"\Atonewright-gallery \d+\.\d+\.\d+\n\Z")


if __name__ == "__main__":
    main("e2e_gallery")
