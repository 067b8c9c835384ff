# SPDX-FileCopyrightText: 2026 The Tonewright Authors
# SPDX-License-Identifier: GPL-3.0-or-later
"""Checks that the pictures in docs/pictures show the present program. tools/make-pictures takes them again.

Pictures are compared in squares of four pixels. Small differences in how libraries draw the edges of letters are within
the tolerance; a greyed button, a moved knob or another word are not. Areas that move by themselves are ignored."""
import re
import subprocess
import unittest

import numpy

from program import SOURCE, main
from scenes import scenes
from screen import Screen

SQUARE = 4
TOLERANCE = 16  # of 255, in one square
ALLOWED = 4  # squares that may exceed TOLERANCE


def kept(name: str) -> numpy.ndarray:
    """Read docs/pictures/NAME.png as pixels (height, width, 3)."""
    ppm = subprocess.run(["convert", SOURCE / f"docs/pictures/{name}.png", "-depth", "8", "ppm:-"], check=True,
                         capture_output=True).stdout
    _, width, height, _ = ppm.split(maxsplit=4)[:4]
    count = int(width) * int(height) * 3
    return numpy.frombuffer(ppm[-count:], numpy.uint8).reshape(int(height), int(width), 3)


def squares(pixels: numpy.ndarray, moving) -> numpy.ndarray:
    """Return the mean colour of each square; areas that move by themselves are black."""
    still = pixels.astype(float)
    for x, y, width, height in moving:
        still[y:y + height, x:x + width] = 0
    rows, columns = (length // SQUARE for length in still.shape[:2])
    return still[:rows * SQUARE, :columns * SQUARE].reshape(rows, SQUARE, columns, SQUARE, 3).mean((1, 3))


def differences(one: numpy.ndarray, other: numpy.ndarray, moving=()) -> int:
    """Return the number of squares in which two pictures differ; all squares if their sizes differ."""
    if one.shape != other.shape:
        return one.shape[0] * one.shape[1] // SQUARE ** 2
    return int((numpy.abs(squares(one, moving) - squares(other, moving)).max(2) > TOLERANCE).sum())


class Pictures(unittest.TestCase):
    def test_show_the_program_of_today(self):
        screen, seen = Screen(accessible=True), []
        try:
            for scene in scenes(screen):
                seen.append(scene.name)
                with self.subTest(scene.name):
                    count = differences(kept(scene.name), scene.pixels, scene.moving)
                    self.assertLessEqual(count, ALLOWED, f"docs/pictures/{scene.name}.png is out of date")
        finally:
            screen.close()
        shown = {name for document in ("README.md", "resources/manual/manual.html")
                 for name in re.findall(r"docs/pictures/([\w-]+)[.]png", (SOURCE / document).read_text())}
        self.assertEqual(sorted(seen), sorted(shown))


if __name__ == "__main__":
    main("e2e_pictures")
