# SPDX-FileCopyrightText: 2026 The Tonewright Authors
# SPDX-License-Identifier: GPL-3.0-or-later
"""The scenes that the documents' pictures show, played by the real program with real input. tools/make-pictures keeps
them as docs/pictures/NAME.png; tests/e2e/pictures.py holds what is kept against the program of today."""
import dataclasses
import re
import subprocess
import time

import numpy

from program import BUILD, Program
from screen import Controls, Screen, wait_until

# An effect without an interface of its own, from a package of tools/packages/test.txt.
PLAIN_EFFECT = "http://drobilla.net/plugins/fomp/autowah"


@dataclasses.dataclass
class Scene:
    name: str
    pixels: numpy.ndarray  # (height, width, 3)
    moving: tuple = ()  # areas (x, y, width, height) in which two pictures of the same program differ


class Window:
    """One run of the program, seen by a person who knows where its buttons are."""

    def __init__(self, screen: Screen, environment: dict[str, str] | None = None):
        self.screen = screen
        self.program = Program(environment=environment)
        self.window = screen.wait_window(self.program.process.pid)
        self.program.wait_first_frame()
        self.program.wait_ready()
        screen.focus(self.window)
        self.controls = Controls(self.program.process.pid)

    def press(self, button: str) -> None:
        self.screen.click(self.window, *self.controls.middle(button))

    def still(self, area: tuple[int, int, int, int] | None = None, timeout: float = 20) -> numpy.ndarray:
        """Give the picture of a window that has come to rest: three looks in a row see the same."""
        end, last, same = time.monotonic() + timeout, None, 0
        while time.monotonic() < end:
            time.sleep(0.25)
            now = self.screen.picture(self.window, area)
            same = same + 1 if last is not None and numpy.array_equal(now, last) else 0
            if same == 2:
                return now
            last = now
        raise AssertionError("the window does not come to rest")

    def rest_pointer(self) -> None:
        """Put the pointer where nothing is hovered over."""
        size = self.window.get_geometry()
        self.screen.point_at(self.window, size.width // 2, size.height - 4)


def scenes(screen: Screen):
    """Play the scenes one after the other."""
    main = Window(screen)
    try:
        main.rest_pointer()
        yield Scene("start", main.still())

        main.press("Unit")
        main.still()
        screen.click(main.window, 460, 23)  # the list of presets
        screen.point_at(main.window, 420, 112)  # over one of them
        yield Scene("presets", main.still((270, 0, 380, 334)))

        screen.press_key("Escape")
        screen.click(main.window, 200, 23)  # beside all controls: none keeps the keyboard
        main.press("Play")
        main.program.wait_for(r".* looped: 1\.")
        main.rest_pointer()
        time.sleep(1)  # the meters have settled
        signal, cutoff = (0, 44, 920, 178), (312, 280, 108, 96)  # the dot on the cutoff's ring moves with the sound
        yield Scene("main-window", screen.picture(main.window), (signal, cutoff))
    finally:
        main.program.kill()

    plain = Window(screen, {"TONEWRIGHT_EFFECT": PLAIN_EFFECT})
    try:
        plain.press("Unit")
        plain.rest_pointer()
        yield Scene("plain-list", plain.still((0, 0, 920, 240)))
    finally:
        plain.program.kill()


def gallery(screen: Screen) -> numpy.ndarray:
    """Give the picture of the gallery in the middle of a movement."""
    process = subprocess.Popen([BUILD / "bin" / "tonewright-gallery"], stdin=subprocess.DEVNULL)
    try:
        window = screen.wait_window(process.pid)
        screen.focus(window)
        size = window.get_geometry()
        screen.point_at(window, size.width // 2, size.height - 4)
        controls = Controls(process.pid)
        screen.press_key("r")
        wait_until(lambda: any(int(found[1]) >= 70 for node in controls.all()
                               if (found := re.match(r"Frame (\d+) ", node.get_name()))))
        return screen.picture(window)
    finally:
        process.kill()
        process.wait()
