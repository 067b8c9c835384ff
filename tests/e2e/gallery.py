# SPDX-FileCopyrightText: 2026 The Tonewright Authors
# SPDX-License-Identifier: GPL-3.0-or-later
"""The gallery as a user sees it: real keys and clicks, the information for assistive technology, pixels of the window."""
import math
import re
import time
import unittest

import numpy
from program import BUILD, PATIENCE, main
from contrast import contrast
from screen import Run, Screen, wait_until

STATUS = re.compile(r"Frame (\d+) of (\d+) · (\w+) · [\d.]+ µs a tick of (\d+) tweens")
MOVING, HEAD = (51, 130, 224), (214, 84, 15)  # the colours of moving shapes and of a timeline's playhead
CAPTION, MARGIN = 15, 7  # of a plot: the height of the name below it, and its margin


def colored(pixels: numpy.ndarray, color: tuple[int, int, int]) -> tuple[numpy.ndarray, numpy.ndarray]:
    """Return the rows and the columns of the pixels that have this colour."""
    return numpy.nonzero(numpy.abs(pixels.astype(int) - color).max(axis=2) < 12)


def dot_in(pixels: numpy.ndarray) -> tuple[float, float] | None:
    """Return the centre of the pixels that have the colour of a moving dot."""
    rows, columns = colored(pixels, MOVING)
    return (columns.mean(), rows.mean()) if len(rows) else None


class Gallery(unittest.TestCase):
    @classmethod
    def setUpClass(cls):
        cls.screen = Screen(accessible=True)
        cls.addClassCleanup(cls.screen.close)

    def setUp(self):
        self.start()

    def start(self, environment: dict[str, str] | None = None) -> None:
        self.program = Run(self.screen, path=BUILD / "bin" / "tonewright-gallery", environment=environment)
        self.addCleanup(self.program.kill)
        self.window, self.controls = self.program.window, self.program.controls

    def status(self) -> re.Match:
        for node in self.controls.all():
            if node.get_role_name() == "label" and (match := STATUS.fullmatch(node.get_name())):
                return match
        raise AssertionError("the status line is not on the screen")

    def wait_status(self, condition, why: str) -> None:
        wait_until(lambda: condition(self.status()), why, PATIENCE)

    def plot(self, name: str) -> numpy.ndarray:
        """Return the pixels of one curve's plot."""
        return self.screen.picture(self.window, self.controls.area(self.controls.find("push button", name)))

    def exhibit(self, name: str) -> numpy.ndarray:
        """Return the pixels of the exhibit with this accessible name."""
        area = next(self.controls.area(node) for node in self.controls.all()
                    if node.get_name() == name and node.get_role_name() in ("image", "icon"))
        return self.screen.picture(self.window, area)

    def resize(self, width: int, height: int) -> None:
        """Resize the window and wait until the last curve has its new place."""
        def fits() -> bool:
            x, y, w, h = self.controls.area(self.controls.find("push button", "easeOutInBounce"))
            return x + w <= width and height - 130 < y + h <= height and w > width / 16

        self.screen.resize(self.window, width, height)
        wait_until(fits, f"the curves do not fit {width} by {height}", PATIENCE)

    def pause(self, condition=lambda status: 20 <= int(status[1]) <= 100) -> int:
        """Pause with the key in the middle of a movement; return the frame number."""
        self.screen.press_key("r")
        self.wait_status(condition, "the movement did not reach the frame")
        self.screen.press_key("p")
        self.controls.wait_for("push button", "Play")
        return int(self.status()[1])

    def test_a_paused_dot_lies_on_its_curve(self):
        frame = self.pause()
        time.sleep(0.2)  # until the last frame has been painted
        progress = frame / int(self.status()[2])
        for name, curve in {"easeInQuad": lambda u: u * u, "easeOutSine": lambda u: math.sin(u * math.pi / 2),
                            "easeInCirc": lambda u: 1 - math.sqrt(1 - u * u)}.items():
            pixels = self.plot(name)
            dot = dot_in(pixels)
            self.assertIsNotNone(dot, name)
            height, width, _ = pixels.shape
            # The plot is inset in its button by the margin.
            left, top = MARGIN, MARGIN
            across, up = width - 2 * MARGIN, height - 2 * MARGIN - CAPTION
            self.assertAlmostEqual(dot[0], left + progress * across, delta=2.5, msg=name)
            self.assertAlmostEqual(dot[1], top + up * (1 - curve(progress)), delta=2.5, msg=name)
        size, before = self.window.get_geometry(), self.screen.picture(self.window)
        time.sleep(0.5)
        self.assertTrue((before == self.screen.picture(self.window)).all(), "something moved while paused")
        self.resize(size.width + 80, size.height)  # every layout draws the current positions
        self.resize(size.width, size.height)
        wait_until(lambda: (before == self.screen.picture(self.window)).all(), "positions changed while paused", 5)
        self.screen.press_key("p")
        self.controls.wait_for("push button", "Pause")
        self.wait_status(lambda status: int(status[1]) != frame, "the movement does not continue")

    def test_bars_are_time_and_their_dots_values(self):
        self.pause(lambda status: 60 <= int(status[1]) <= 100)
        time.sleep(0.2)
        pixels = self.exhibit("Sequencer")
        head = colored(pixels, HEAD)[1]
        self.assertTrue(len(head), "the timeline has no playhead")
        time_part = pixels[:, :pixels.shape[1] * 6 // 10]
        filled = colored(time_part, MOVING)[1]
        self.assertTrue(len(filled), "no bar is filled")
        self.assertLessEqual(filled.max(), head.max(), "a bar is filled beyond the present frame")
        self.assertTrue(len(colored(pixels[:, time_part.shape[1]:], MOVING)[1]), "no value is moving")

    def test_curves_are_chosen_and_speeds_changed_by_mouse_and_keys(self):
        self.assertEqual(self.status()[3], "easeOutBounce")
        self.assertTrue(self.program.has("push button", "easeOutBounce", "PRESSED"))
        self.program.press("easeInElastic")
        self.wait_status(lambda status: status[3] == "easeInElastic", "the click did not choose the curve")
        self.assertFalse(self.program.has("push button", "easeOutBounce", "PRESSED"))
        for key in ("Right", "space"):  # moves to the next curve
            self.screen.press_key(key)
        self.wait_status(lambda status: status[3] == "easeOutElastic", "the keys did not choose the curve")
        for key, frames in (("plus", "60"), ("plus", "30"), ("plus", "30"), ("minus", "60")):
            self.screen.press_key(key)
            self.wait_status(lambda status: status[2] == frames, f"{key} did not lead to {frames} frames")
        self.assertTrue(self.program.has("push button", "Faster", "SENSITIVE"))
        self.program.press("Faster")
        wait_until(lambda: not self.program.has("push button", "Faster", "SENSITIVE"), "Faster can be pressed at its limit")
        wait_until(lambda: self.program.has("push button", "Slower", "FOCUSED"),
                   "the keyboard focus was lost when its button was disabled")
        for frames in ("60", "120", "240", "480"):
            self.screen.press_key("space")
            self.wait_status(lambda status: status[2] == frames, f"Slower did not lead to {frames} frames")
        wait_until(lambda: not self.program.has("push button", "Slower", "SENSITIVE"), "Slower can be pressed at its limit")
        wait_until(lambda: self.program.has("push button", "Faster", "FOCUSED"),
                   "the keyboard focus was lost when its button was disabled")
        names = [node.get_name() for node in self.controls.all() if node.get_name().startswith("ease")]
        self.assertEqual(len(set(names)), 40)

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
                if not self.controls.has(node, "PRESSED"):  # a pressed button has another background
                    first, last = (self.screen.picture(self.window, (x + 1, y + height - up, width - 2, 13)).tobytes()
                                   for up in (28, 15))
                    captions[name] = (x, first, last)
        self.assertEqual(len({(first, last) for x, first, last in captions.values()}), 39)
        for name, (x, first, last) in captions.items():
            kind, family = re.fullmatch(r"(ease[InOut]+)([A-Z][a-z]+)", name).groups()
            for other, (other_x, other_first, other_last) in captions.items():
                if x == other_x:  # curves in the same column are of the same kind
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
                self.assertGreater(contrast(ground, MOVING), 3, f"{name} in {theme}")

    def test_the_impulse_comes_to_rest_and_is_flicked_again(self):
        def ball() -> float | None:
            dot = dot_in(self.screen.picture(self.window, area))
            return dot[0] if dot else None

        area = self.controls.area(self.controls.find("push button", "Flick"))
        wait_until(lambda: ball() is None, "the ball did not come to rest", PATIENCE)
        self.screen.press_key("f")
        seen = set()
        wait_until(lambda: seen.add(ball()) or len(seen) > 5, "the ball did not move", PATIENCE)
        # Only a quarter as many frames, so that the ball comes to rest before the curves restart.
        for frames in ("60", "30"):
            self.screen.press_key("plus")
            self.wait_status(lambda status: status[2] == frames, f"there are not {frames} frames")
        self.wait_status(lambda status: status[1] == "30", "the curves do not finish")
        self.wait_status(lambda status: status[1] != "30", "the curves do not restart")
        self.assertIsNone(ball(), "the ball does not move faster")

if __name__ == "__main__":
    main("e2e_gallery")
