# SPDX-FileCopyrightText: 2026 The Tonewright Authors
# SPDX-License-Identifier: GPL-3.0-or-later
"""Runs the real program with real input and takes the pictures for the documents. tools/make-pictures saves them as
docs/pictures/NAME.png; tests/e2e/pictures.py compares the saved pictures with the present program."""
import dataclasses
import time

import numpy

from screen import Run, Screen

# An effect without an interface, from a package in tools/packages/test.txt.
PLAIN_EFFECT = "http://drobilla.net/plugins/fomp/autowah"


@dataclasses.dataclass
class Scene:
    name: str
    pixels: numpy.ndarray  # (height, width, 3)
    moving: tuple = ()  # areas (x, y, width, height) that differ between two pictures of the same program


class Window(Run):
    """One run of the program, operated by clicking where its buttons are."""

    def __init__(self, screen: Screen, **keywords):
        super().__init__(screen, **keywords)
        self.wait_ready()

    def rest_pointer(self) -> None:
        """Move the pointer to a place without a control."""
        size = self.window.get_geometry()
        self.screen.point_at(self.window, size.width // 2, size.height - 4)


def scenes(screen: Screen):
    """Run the program and yield one scene after the other."""
    main = Window(screen)
    try:
        main.rest_pointer()
        yield Scene("start", main.still())

        main.press("Unit")
        main.still()
        screen.click(main.window, 460, 23)  # opens the list of presets
        screen.point_at(main.window, 420, 112)  # hovers over a preset
        yield Scene("presets", main.still((270, 0, 380, 334)))

        screen.press_key("Escape")
        screen.click(main.window, 200, 23)  # outside all controls, so that none has the keyboard focus
        main.press("Play")
        main.wait_for(r".* looped: 1\.")
        main.rest_pointer()
        time.sleep(1)  # until the meters have settled
        signal, cutoff = (0, 44, 920, 178), (312, 280, 108, 96)  # the mark on the cutoff's ring follows the sound
        yield Scene("main-window", screen.picture(main.window), (signal, cutoff))
    finally:
        main.kill()

    plain = Window(screen, environment={"TONEWRIGHT_EFFECT": PLAIN_EFFECT})
    try:
        plain.press("Unit")
        plain.rest_pointer()
        yield Scene("plain-list", plain.still((0, 0, 920, 240)))
    finally:
        plain.kill()
