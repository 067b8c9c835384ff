# SPDX-FileCopyrightText: 2026 The Tonewright Authors
# SPDX-License-Identifier: GPL-3.0-or-later
"""Tests the platform's entry point and the main screen's controls with real keys and clicks."""
import os
import signal
import subprocess
import threading
import time
import unittest

import numpy

from program import BUILD, PLAYING, STOPPED, main
from contrast import contrast
from screen import X, XK, Gio, GLib, Run, Screen, wait_until, xtest

PROGRAM = BUILD / "bin" / "tonewright"
SCREEN = Screen(accessible=True)  # the accessibility library connects to only one bus per process


class Portal:
    """A fake settings portal that answers one query, on a private bus."""
    NAME, PATH, SETTINGS = "org.freedesktop.portal.Desktop", "/org/freedesktop/portal/desktop", "org.freedesktop.portal.Settings"
    KEY = ("org.freedesktop.appearance", "color-scheme")
    INTERFACE = f"""<node><interface name="{SETTINGS}">
      <method name="Read"><arg type="s" direction="in"/><arg type="s" direction="in"/><arg type="v" direction="out"/></method>
    </interface></node>"""

    def __init__(self, scheme: int):
        self.scheme = scheme
        self.bus = subprocess.Popen(["dbus-daemon", "--session", "--nofork", "--nopidfile", "--print-address=1"],
                                    stdout=subprocess.PIPE, text=True)
        self.address = self.bus.stdout.readline().strip()
        flags = Gio.DBusConnectionFlags.AUTHENTICATION_CLIENT | Gio.DBusConnectionFlags.MESSAGE_BUS_CONNECTION
        self.connection = Gio.DBusConnection.new_for_address_sync(self.address, flags, None, None)
        self.connection.register_object(self.PATH, Gio.DBusNodeInfo.new_for_xml(self.INTERFACE).interfaces[0],
                                        self.answer, None, None)
        self.connection.call_sync("org.freedesktop.DBus", "/", "org.freedesktop.DBus", "RequestName",
                                  GLib.Variant("(su)", (self.NAME, 0)), None, Gio.DBusCallFlags.NONE, -1, None)
        threading.Thread(target=GLib.MainLoop().run, daemon=True).start()

    def answer(self, _connection, _sender, _path, _interface, _method, parameters, invocation):
        if parameters.unpack() == self.KEY:
            invocation.return_value(GLib.Variant("(v)", (GLib.Variant("v", GLib.Variant("u", self.scheme)),)))
        else:
            invocation.return_dbus_error("org.freedesktop.portal.Error.NotFound", "no such setting")

    def choose(self, scheme: int) -> None:
        self.scheme = scheme
        self.connection.emit_signal(None, self.PATH, self.SETTINGS, "SettingChanged",
                                    GLib.Variant("(ssv)", (*self.KEY, GLib.Variant("u", scheme))))
        self.connection.flush_sync()


class OnADisplay(unittest.TestCase):
    def started(self, takes_keyboard: bool = True, **environment: str) -> Run:
        run = Run(SCREEN, takes_keyboard=takes_keyboard,
                  environment={"LV2_PATH": "/nonexistent", "TONEWRIGHT_OUTPUT": "silent"} | environment)
        self.addCleanup(run.kill)
        return run


class Controls(OnADisplay):
    def test_space_goes_to_the_focused_control_that_uses_it(self):
        run = self.started()
        SCREEN.press_key("Tab")  # moves from Play to Unit
        for key, is_shown in (("space", True), ("Return", False)):
            SCREEN.press_key(key)
            wait_until(lambda: run.has("push button", "Unit", "EXPANDED") == is_shown)
        for key in ("Tab", "Tab", "Tab", "space"):  # passes Help and Info and returns to Play
            SCREEN.press_key(key)
        run.wait_for_text(PLAYING)

    def test_a_held_key_is_one_press(self):
        run, told = self.started(), []
        for keys, line in ((["space"], PLAYING), (["Alt_L", "s"], STOPPED)):
            told.append(line)
            codes = [SCREEN.x.keysym_to_keycode(XK.string_to_keysym(key)) for key in keys]
            for code in codes:
                xtest.fake_input(SCREEN.x, X.KeyPress, code)
            SCREEN.x.sync()
            run.wait_for_text(line)
            time.sleep(1.2)  # key repeat starts after 0.66 s; there is no event to wait for
            for code in codes:
                xtest.fake_input(SCREEN.x, X.KeyRelease, code)
            self.assertEqual([line for line in run.lines if line in (PLAYING, STOPPED)], told)


class Surroundings(OnADisplay):
    def test_keys_do_not_follow_the_pointer_into_an_effects_window(self):
        run = self.started(takes_keyboard=False)
        x = SCREEN.x
        inner = run.window.create_window(0, 0, 400, 300, 0, X.CopyFromParent, event_mask=X.KeyPressMask)
        inner.map()
        SCREEN.point_at(run.window, 100, 100)
        wait_until(lambda: x.get_input_focus().focus not in (run.window, X.PointerRoot, X.NONE))
        SCREEN.press_key("space")
        run.wait_for_text(PLAYING)

    def test_light_and_dark_follow_the_desktop(self):
        portal = Portal(1)
        self.addCleanup(portal.bus.terminate)
        run = self.started(DBUS_SESSION_BUS_ADDRESS=portal.address)

        def brightness() -> float:
            return float(SCREEN.picture(run.window, (300, 20, 40, 40)).mean())

        wait_until(lambda: brightness() < 90)
        for scheme, fits in ((2, lambda: brightness() > 160), (1, lambda: brightness() < 90),
                             (0, lambda: brightness() > 160)):
            portal.choose(scheme)
            wait_until(fits)


def commonest(colours: numpy.ndarray, share: float = 0) -> numpy.ndarray:
    """Return the most common of the colours (count, 3), or all colours whose fraction exceeds `share`."""
    found, counts = numpy.unique(colours, axis=0, return_counts=True)
    return found[counts > share * len(colours)] if share else found[counts.argmax()]


def beside(mask: numpy.ndarray) -> numpy.ndarray:
    """Return a mask of the pixels next to those in `mask`."""
    wide = numpy.pad(mask, 1)
    return (wide[:-2, 1:-1] | wide[2:, 1:-1] | wide[1:-1, :-2] | wide[1:-1, 2:]) & ~mask


class Contrast(OnADisplay):
    def test_hint_and_focus_can_be_made_out_in_every_theme(self):
        for theme in ("Adwaita", "Adwaita:dark", "HighContrast", "HighContrast:dark"):
            with self.subTest(theme):
                run = self.started(GTK_THEME=theme)
                SCREEN.point_at(run.window, 450, 660)
                plain = run.still()
                middle = plain[230:390, 200:720]  # the name, and the hint below it
                ground = commonest(middle.reshape(-1, 3))
                lines = numpy.any(middle != ground, axis=(1, 2))
                last = numpy.flatnonzero(lines)[-1]
                first = last - int(numpy.argmin(lines[last::-1])) + 1
                self.assertTrue(8 < last - first < 24, (first, last))
                self.assertGreaterEqual(contrast(middle[first:last + 1], ground).max(), 4.5, "the hint")
                for _ in range(4):
                    SCREEN.press_key("Tab")
                    self.look_at_ring(plain, run.still())
                time.sleep(3.5)  # the ring must not disappear after a while
                self.look_at_ring(plain, run.still())
                run.kill()

    def look_at_ring(self, plain: numpy.ndarray, focused: numpy.ndarray) -> None:
        changed = numpy.any(plain != focused, axis=2)
        self.assertGreater(changed.sum(), 100, "there is no focus ring")
        colour = commonest(focused[changed])
        ring = numpy.all(focused == colour, axis=2) & changed
        self.assertGreater(ring.sum(), 100, "the focus ring is not of one colour")
        self.assertGreaterEqual(contrast(plain[ring], colour).mean(), 3, "the ring compared with the same pixels without focus")
        # Compares with every colour that makes up at least a twentieth of the ring's edge, because corners are rounded.
        for neighbour in commonest(focused[beside(ring)], 0.05):
            self.assertGreaterEqual(contrast(neighbour, colour), 3, f"the ring {colour} beside {neighbour}")


class Life(OnADisplay):
    def test_closed_window_and_signals_end_in_order(self):
        for number in (None, signal.SIGTERM, signal.SIGINT, signal.SIGHUP):
            run = self.started()
            run.process.send_signal(number) if number else SCREEN.ask_to_close(run.window)
            self.assertEqual(run.wait_end(), 0)

    def test_window_can_be_made_small_and_remembers_nothing(self):
        run = self.started()
        before = run.window.get_geometry()
        hints = run.window.get_wm_normal_hints()
        self.assertTrue(320 <= hints.min_width <= 640 and 240 <= hints.min_height <= 480, hints)
        SCREEN.resize(run.window, before.width + 100, before.height + 50)
        SCREEN.ask_to_close(run.window)
        run.wait_end()
        again = self.started().window.get_geometry()
        self.assertEqual((again.width, again.height), (before.width, before.height))


def run(*arguments: str, display: str = "") -> subprocess.CompletedProcess:
    environment = {name: text for name, text in os.environ.items() if name not in ("DISPLAY", "WAYLAND_DISPLAY")}
    return subprocess.run([PROGRAM, *arguments], stdin=subprocess.DEVNULL, capture_output=True, text=True, timeout=60,
                          env=environment | ({"DISPLAY": display} if display else {}))


class Entry(unittest.TestCase):
    def test_options_are_answered_without_a_display(self):
        version = r"\Atonewright \d+\.\d+\.\d+\nConfinement: (Landlock ABI \d+|no Landlock), (no )?seccomp\n\Z"
        for option, text in (("--version", version), ("--help", r"\AUsage: tonewright ")):
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
    unittest.addModuleCleanup(SCREEN.close)
    main("test_ui_screen")
