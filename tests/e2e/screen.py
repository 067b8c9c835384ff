# SPDX-FileCopyrightText: 2026 The Tonewright Authors
# SPDX-License-Identifier: GPL-3.0-or-later
"""The program's windows as a user sees them: controls by accessible role and name, real input events, pictures."""
import functools
import os
import subprocess
import time

import gi
import numpy
from program import Program
from Xlib import X, XK, display
from Xlib.error import BadWindow
from Xlib.ext import xtest
from Xlib.protocol import event

gi.require_version("Atspi", "2.0")
from gi.repository import Atspi, Gio, GLib  # noqa: E402,F401 (for the tests)


def wait_until(condition, what: str = "the condition did not become true", timeout: float = 30):
    """Call `condition` repeatedly until its result is true; return the result."""
    end = time.monotonic() + timeout
    while not (answer := condition()):
        if time.monotonic() > end:
            raise AssertionError(what)
        time.sleep(0.02)
    return answer


class Screen:
    """The virtual display on which this test runs; starts an accessibility bus if requested."""

    def __init__(self, accessible: bool = False):
        self.x = display.Display()
        self._buses = []
        if accessible:
            self._start_buses()

    def _start_buses(self) -> None:
        directory = os.environ["XDG_RUNTIME_DIR"]
        address = f"unix:path={directory}/a11y-session"
        quiet = {"stdin": subprocess.DEVNULL, "stdout": subprocess.DEVNULL, "stderr": subprocess.DEVNULL}
        self._buses.append(subprocess.Popen(
            ["dbus-daemon", "--session", "--nofork", "--nopidfile", f"--address={address}"], **quiet))
        wait_until(lambda: os.path.exists(f"{directory}/a11y-session"), "the accessibility bus did not start", 10)
        os.environ["DBUS_SESSION_BUS_ADDRESS"] = address
        for switched_off in ("GTK_A11Y", "NO_AT_BRIDGE"):
            os.environ.pop(switched_off, None)
        self._buses.append(subprocess.Popen(["/usr/libexec/at-spi-bus-launcher", "--launch-immediately"], **quiet))

    def close(self) -> None:
        self.x.close()
        for process in reversed(self._buses):
            process.terminate()
            process.wait()

    def windows(self, pid: int) -> list:
        """Return the mapped top-level windows of a process."""
        atom = self.x.intern_atom("_NET_WM_PID")
        found = []
        for window in self.x.screen().root.query_tree().children:
            try:
                owner = window.get_full_property(atom, X.AnyPropertyType)
                if owner and owner.value[0] == pid and window.get_attributes().map_state == X.IsViewable:
                    found.append(window)
            except BadWindow:
                pass  # the window disappeared after it was listed
        return found

    def wait_window(self, pid: int, timeout: float = 30):
        return wait_until(lambda: self.windows(pid), "the program shows no window", timeout)[0]

    def press_key(self, name: str) -> None:
        self.press_keys(name)

    def press_keys(self, *names: str) -> None:
        """Press all keys and then release them, so that the last key is pressed while the others are held."""
        codes = [self.x.keysym_to_keycode(XK.string_to_keysym(name)) for name in names]
        for code in codes:
            xtest.fake_input(self.x, X.KeyPress, code)
        for code in reversed(codes):
            xtest.fake_input(self.x, X.KeyRelease, code)
        self.x.sync()

    def focus(self, window) -> None:
        """Give a window the keyboard focus, as a window manager would."""
        window.set_input_focus(X.RevertToParent, X.CurrentTime)
        self.x.sync()

    def point_at(self, window, x: int, y: int) -> None:
        """Move the pointer to a position in a window."""
        place = window.translate_coords(self.x.screen().root, 0, 0)
        xtest.fake_input(self.x, X.MotionNotify, x=x - place.x, y=y - place.y)
        self.x.sync()

    def click(self, window, x: int, y: int) -> None:
        """Press and release the left button at a position in a window."""
        self.point_at(window, x, y)
        for kind in (X.ButtonPress, X.ButtonRelease):
            xtest.fake_input(self.x, kind, 1)
        self.x.sync()

    def resize(self, window, width: int, height: int) -> None:
        window.configure(width=width, height=height)
        self.x.sync()

    def ask_to_close(self, window) -> None:
        """Ask a window to close, like the close button of a title bar."""
        protocols, close = self.x.intern_atom("WM_PROTOCOLS"), self.x.intern_atom("WM_DELETE_WINDOW")
        window.send_event(event.ClientMessage(window=window, client_type=protocols,
                                              data=(32, [close, X.CurrentTime, 0, 0, 0])))
        self.x.sync()

    def picture(self, window, area: tuple[int, int, int, int] | None = None) -> numpy.ndarray:
        """Return the pixels (height, width, 3) of a window on the screen, including the windows inside it."""
        root, size = self.x.screen().root, window.get_geometry()
        place = window.translate_coords(root, 0, 0)
        x, y, width, height = area or (0, 0, size.width, size.height)
        image = root.get_image(x - place.x, y - place.y, width, height, X.ZPixmap, 0xFFFFFFFF)
        pixels = numpy.frombuffer(image.data, numpy.uint8).reshape(height, width, 4)
        return pixels[:, :, 2::-1]


class Controls:
    """The accessible objects of one process."""

    def __init__(self, pid: int):
        Atspi.init()

        def application():
            desktop = Atspi.get_desktop(0)
            for index in range(desktop.get_child_count()):
                child = desktop.get_child_at_index(index)
                try:
                    if child and child.get_process_id() == pid:
                        return child
                except GLib.Error:
                    pass

        self._application = wait_until(application, "the program is not on the accessibility bus")

    def all(self):
        """Return all accessible objects of the process, parents first."""
        waiting = [self._application]
        while waiting:
            node = waiting.pop(0)
            node.clear_cache_single() if hasattr(node, "clear_cache_single") else node.clear_cache()
            yield node
            try:
                waiting += [child for i in range(node.get_child_count()) if (child := node.get_child_at_index(i))]
            except GLib.Error:
                continue

    def called(self, role: str, name: str) -> list:
        return [node for node in self.all() if (node.get_role_name(), node.get_name()) == (role, name)]

    def find(self, role: str, name: str):
        return wait_until(lambda: self.called(role, name), f"no {role} called {name!r}", 0)[0]

    def wait_for(self, role: str, name: str):
        """Wait until a control is visible; return it."""
        return wait_until(lambda: [node for node in self.called(role, name) if self.has(node, "VISIBLE")],
                          f"no {role} called {name!r} appeared on the screen")[0]

    def middle(self, name: str) -> tuple[int, int]:
        """Return the centre of a button after waiting until it is visible."""
        x, y, width, height = self.area(self.wait_for("push button", name))
        return x + width // 2, y + height // 2

    @staticmethod
    def area(node) -> tuple[int, int, int, int]:
        """Return the x, y, width and height of a control within its window."""
        extents = node.get_extents(Atspi.CoordType.WINDOW)
        return extents.x, extents.y, extents.width, extents.height

    @staticmethod
    def has(node, state: str) -> bool:
        return node.get_state_set().contains(getattr(Atspi.StateType, state))


class Run(Program):
    """A running program with its window on a screen."""

    def __init__(self, screen: Screen, *arguments, takes_keyboard: bool = True, **keywords):
        super().__init__(*arguments, **keywords)
        self.screen = screen
        self.window = screen.wait_window(self.process.pid)
        self.wait_first_frame()  # the window can be clicked from now on
        if takes_keyboard:
            screen.focus(self.window)

    @functools.cached_property
    def controls(self) -> Controls:
        return Controls(self.process.pid)

    def press(self, button: str) -> None:
        """Wait until a button is visible, and click it."""
        self.screen.click(self.window, *self.controls.middle(button))

    def has(self, role: str, name: str, state: str) -> bool:
        return self.controls.has(self.controls.find(role, name), state)

    def still(self, area: tuple[int, int, int, int] | None = None) -> numpy.ndarray:
        """Return a picture of the window when three consecutive pictures are equal."""
        pictures = []

        def rests() -> bool:
            time.sleep(0.25)
            pictures.append(self.screen.picture(self.window, area))
            return len(pictures) > 2 and all(numpy.array_equal(pictures[-1], one) for one in pictures[-3:])

        wait_until(rests, "the window does not come to rest")
        return pictures[-1]
