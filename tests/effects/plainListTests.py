# SPDX-FileCopyrightText: 2026 The Tonewright Authors
# SPDX-License-Identifier: GPL-3.0-or-later
"""The plain list of an effect without an interface, read through the accessibility API of the real program."""
import os
import time
import unittest

from program import PLAYING, main
from screen import Atspi, GLib, Run, Screen, wait_until

SCREEN = Screen(accessible=True)  # the accessibility library connects to only one bus per process


class PlainList(unittest.TestCase):
    def setUp(self):
        self.program = Run(SCREEN, environment={
            "TONEWRIGHT_EFFECT": "urn:tonewright:test:controls", "TONEWRIGHT_OUTPUT": "silent",
            "LV2_PATH": os.environ["TONEWRIGHT_FIXTURES"] + ":/usr/lib/lv2"})
        self.addCleanup(self.program.kill)
        self.program.wait_ready()
        self.controls, self.press = self.program.controls, self.program.press
        self.press("Unit")
        self.controls.wait_for("slider", "Rate")

    def value(self, role: str, name: str) -> tuple[float, float, float, str]:
        """Return the smallest, the current and the largest value of a control, and its description."""
        control = self.controls.find(role, name)
        return (Atspi.Value.get_minimum_value(control), round(Atspi.Value.get_current_value(control), 3),
                Atspi.Value.get_maximum_value(control), control.get_description())

    def test_tells_names_and_values_in_their_units(self):
        self.assertEqual(self.value("slider", "Rate"), (1, 100, 10000, "100 Hz"))
        self.assertEqual(self.value("slider", "Depth"), (-24, -6, 24, "-6.00 dB"))
        self.assertEqual(self.value("level bar", "Rate used"), (-10, 0, 10000, "0.00 Hz"))
        self.assertFalse(self.program.has("check box", "Hold", "CHECKED"))
        self.assertEqual(len([node for node in self.controls.all() if node.get_role_name() == "slider"]), 2)
        for name, items in (("Shape: Square", ["Sine", "Square", "Saw"]), ("Preset: Preset", ["Preset", "Fast"])):
            self.controls.find("combo box", name.split(":")[0])
            self.press(name)
            self.controls.wait_for("list", name.split(":")[0])
            wait_until(lambda: all(self.controls.called("list item", item) for item in items), f"items of {name}", 5)
            SCREEN.press_key("Escape")

    def test_takes_a_value_in_its_unit_and_tells_of_every_move(self):
        heard = []
        listener = Atspi.EventListener.new(
            lambda event: heard.append((event.source.get_role_name(), event.source.get_name(), event.any_data)))
        listener.register("object:property-change:accessible-description")
        self.addCleanup(listener.deregister, "object:property-change:accessible-description")

        def hears(*wanted) -> None:
            def has_come() -> bool:
                GLib.MainContext.default().iteration(False)
                return all(event in heard for event in wanted)

            wait_until(has_come, f"not all of {wanted} among {heard}", 10)
            heard.clear()

        self.press("Play")
        self.program.wait_for_text(PLAYING)
        hears(("level bar", "Rate used", "100 Hz"))  # without a change by the user
        Atspi.Value.set_current_value(self.controls.find("slider", "Rate"), 1000)
        hears(("slider", "Rate", "1000 Hz"), ("level bar", "Rate used", "1000 Hz"))
        self.assertEqual(self.value("slider", "Rate"), (1, 1000, 10000, "1000 Hz"))
        # A preset moves the slider, too.
        self.press("Preset: Preset")
        self.controls.wait_for("list", "Preset")
        for key in ("Down", "Return"):
            SCREEN.press_key(key)
        hears(("slider", "Rate", "5000 Hz"), ("level bar", "Rate used", "5000 Hz"))
        self.assertEqual(self.value("slider", "Rate")[1], 5000)

    def test_tab_goes_from_one_control_to_the_next(self):
        self.press("Preset: Preset")
        self.controls.wait_for("list", "Preset")
        SCREEN.press_key("Escape")
        for role, name in (("push button", "Preset: Preset"), ("slider", "Rate"), ("check box", "Hold"),
                           ("push button", "Shape: Square"), ("slider", "Depth")):
            wait_until(lambda: self.controls.has(self.controls.find(role, name), "FOCUSED"), f"{name} has no focus", 5)
            SCREEN.press_key("Tab")

    def test_keys_move_a_ratio_by_ratios_and_the_space_bar_plays(self):
        x, y, width, height = self.controls.area(self.controls.find("slider", "Rate"))
        SCREEN.click(self.program.window, x + width // 4, y + height // 2)
        wait_until(lambda: self.program.has("slider", "Rate", "FOCUSED"), "the slider did not get the focus", 5)
        before = self.value("slider", "Rate")[1]
        SCREEN.press_key("Right")
        # Each key press multiplies the value by 10,000 to the power of 1/100.
        wait_until(lambda: self.value("slider", "Rate")[1] > before, "the key did not move the slider", 5)
        self.assertAlmostEqual(self.value("slider", "Rate")[1] / before, 10000 ** 0.01, 3)
        SCREEN.press_key("End")
        wait_until(lambda: self.value("slider", "Rate")[1] == 10000, "End did not move the slider", 5)
        SCREEN.press_key("space")
        self.program.wait_for_text(PLAYING)
        first = len(self.program.lines)
        SCREEN.press_key("Tab")
        SCREEN.press_key("space")  # the switch handles the key itself
        wait_until(lambda: self.program.has("check box", "Hold", "CHECKED"), "the switch is still off", 5)
        self.assertEqual([line for line in self.program.lines[first:] if "Audio engine" in line], [])


if __name__ == "__main__":
    unittest.addModuleCleanup(SCREEN.close)
    main("test_effects_plain_list")
