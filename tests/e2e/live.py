# SPDX-FileCopyrightText: 2026 The Tonewright Authors
# SPDX-License-Identifier: GPL-3.0-or-later
"""The real program as a musician uses it, on a display and with a sound server: key presses and clicks, the lines that
it prints, the effect's interface, and the recorded sound. All tests run once with the bundled effect and once with an
unrelated effect that a side bundle makes the program choose."""
import os
import pathlib
import re
import shutil
import subprocess
import tempfile
import time
import unittest

import numpy

import sound
from program import BUILD, MIDI, PATIENCE, PLAYING, READY, SOURCE, STOPPED, main
from screen import Run, Screen, wait_until

RATE = 48000  # of the sound server
BUNDLED = "https://tonewright.example/lv2/tonewright"
BUNDLED_PATH = os.environ.get("TONEWRIGHT_PLAIN_LV2") or str(BUILD / "lib/lv2")
FOREIGN = "http://lsp-plug.in/plugins/lv2/trigger_midi_stereo"

SCREEN = Screen(accessible=True)  # the accessibility library connects to only one bus per process


def differs(one: numpy.ndarray, other: numpy.ndarray) -> numpy.ndarray:
    """Return where two pictures differ, within their common area, because the window grows for a large interface."""
    height, width = (min(sizes) for sizes in zip(one.shape[:2], other.shape[:2]))
    return numpy.any(one[:height, :width] != other[:height, :width], axis=2)


class LivePath:
    """Tests that every effect must pass. They run in the order of their numbers, in a single run of the program."""

    changes_the_sound = True

    @classmethod
    def setUpClass(cls):
        cls.work = pathlib.Path(tempfile.mkdtemp(prefix="live."))
        cls.screen = SCREEN
        cls.prepare()
        cls.program = Run(cls.screen)
        cls.addClassCleanup(lambda: (cls.program.kill(), shutil.rmtree(cls.work)))
        cls.window = cls.program.window
        cls.ready = cls.program.wait_ready()

    @classmethod
    def prepare(cls) -> None:
        pass

    def test_1_start_is_told_in_order(self):
        lines = self.program.lines[:self.ready + 1]
        # The search prints its lines concurrently with these two lines.
        paths = [f"ViewController: The app's documents path is: {os.path.expanduser('~/Documents')}",
                 f"ViewController: The app's resources path is: {BUILD}/share/tonewright"]
        self.assertEqual([line for line in lines if line in paths], paths)
        self.assertEqual([line for line in lines if line not in paths], [
            "Info: Main view controller loaded.",
            "NOTE: WE ARE IN AUDIO UNIT RELEASE MODE. ENSURE THE STORYBOARD CONNECTIONS ARE VALID!",
            "AUExtensionManager: Loaded component has following properties.",
            "", f"Process Name: tonewright PID: {self.program.process.pid}", "",
            "AUExtension (", "type: aumf", "subtype: ovTw", "manufacturer: KVRN", "flags: 0x00000002", ")",
            "AUExtensionManager: Audio unit was found, making connections now ...",
            "AUEnginePlayer: A new audio unit will be connected.",
            "AUEnginePlayer: The audio unit reports MIDI output names. Assigning a handling block.",
            "AUEnginePlayer: Audio unit was attached.",
            "AUEnginePlayer::ERROR: There was a problem with the file processing format or the file is nil (yet).",
            "AUExtensionManager: Performed audio unit connection.",
            "ViewController: Loading the audio unit's interface...",
            READY])

    def test_2_unit_shows_and_hides_the_interface(self):
        self.screen.focus(self.window)
        hidden = self.screen.picture(self.window)
        side = hidden.shape[1] // 10  # only the edge, because an interface may open a window of its own in the middle

        def changed(picture: numpy.ndarray) -> float:
            return float(numpy.mean(differs(picture[:, :side], hidden[:, :side])))

        self.program.press("Unit")
        self.wait_picture(lambda picture: changed(picture) > 0.2)
        self.assertTrue(self.program.has("push button", "Unit", "EXPANDED"))
        self.program.press("Unit")
        self.wait_picture(lambda picture: changed(picture) < 0.02)
        self.assertFalse(self.program.has("push button", "Unit", "EXPANDED"))
        self.program.press("Unit")  # opens the interface, which stays open for the following tests
        self.wait_picture(lambda picture: changed(picture) > 0.2)

    def wait_picture(self, good) -> numpy.ndarray:
        """Wait until two consecutive pictures are acceptable and nearly equal; return the last one."""
        pictures = [self.screen.picture(self.window)]

        def is_good() -> bool:
            time.sleep(0.2)
            pictures.append(self.screen.picture(self.window))
            now, before = pictures[-1], pictures[-2]
            return good(now) and now.shape == before.shape and numpy.mean(differs(now, before)) < 0.05

        wait_until(is_good, "the window did not show the expected picture", PATIENCE)
        return pictures[-1]

    def test_3_play_is_heard_and_told(self):
        # On a busy machine the server sometimes drops a block. The sound is therefore checked in pieces, and if no seam
        # is found intact, Play is pressed again.
        for attempt in range(3):
            if attempt:
                self.program.press("Stop")
                self.program.wait_for_text(STOPPED, after=len(self.program.lines))
            path, heard = self.play_two_passes()
            dry, length = sound.passes(path, 3, RATE, self.work)
            wet = self.through_another_host(dry) if self.changes_the_sound else dry
            pieces = list(sound.pieces_found(heard, wet))
            found = [place for place, likeness in pieces if likeness > 0.99]
            self.assertGreater(len(found), len(pieces) / 5, f"the sound is not the loop through the effect: {pieces}")
            if self.changes_the_sound:
                plain = [likeness for _, likeness in sound.pieces_found(heard, dry)]
                # The effect changes some loops only a little. A bypassed effect would make the dry loop match as well
                # as the wet loop does now.
                alike = float(numpy.median([likeness for _, likeness in pieces if likeness > 0.99]))
                self.assertGreater(1 - float(numpy.median(plain)), max(1e-4, 10 * (1 - alike)), "the sound is the dry loop")
            if any(place < seam < place + sound.PIECE for place in found for seam in (length, 2 * length)):
                return
        self.fail("no seam was heard as it should be")

    def through_another_host(self, dry: numpy.ndarray) -> numpy.ndarray:
        """Return a sound processed by the bundled effect with its default settings."""
        source, wet = sound.write_wav(self.work / "dry.wav", dry, RATE), self.work / "wet.wav"
        subprocess.run(["lv2apply", "-i", source, "-o", wet, BUNDLED], check=True,
                       env=dict(os.environ, LV2_PATH=BUNDLED_PATH + ":/usr/lib/lv2"))
        return sound.read(wet)

    def play_two_passes(self) -> tuple[pathlib.Path, numpy.ndarray]:
        """Press Play and check the output; return the loop's file, and the recording until the end of its second pass."""
        recording = sound.Recording(self.work / f"heard{len(self.program.lines)}.wav")
        first = len(self.program.lines)
        self.program.press("Play")
        playing = self.program.wait_for_text(PLAYING, after=first)
        lines = self.program.system_lines(first, playing + 1)
        path = lines[0].split("'")[1]
        self.assertRegex(path, re.escape(str(BUILD / "share/tonewright")) + r"/([1-9]|[1-7]\d|80)\.m4a$")
        channels = lines[3]
        self.assertIn(channels, ("1", "2"))
        self.assertEqual(lines, [
            f"AUEnginePlayer: Audio file at '{path}' was selected for loading into the player.",
            "AUEnginePlayer: Player was (temporarily) disconnecting from the main mixer.",
            "AUEnginePlayer: Audio unit was (temporarily) disconnecting from the player.",
            channels,
            "AUEnginePlayer: Audio unit re-connecting to the player.",
            "AUEnginePlayer: Audio unit re-connectingto the main mixer.",
            path,
            "AUEnginePlayer: Audio session was set active.",
            PLAYING])
        for passes in (1, 2):
            self.program.wait_for_text(f"AUEnginePlayer: Current audio file '{path}' looped: {passes}.", after=playing,
                                       timeout=PATIENCE + 20)
        time.sleep(0.5)  # the loop is counted up to 200 ms before it is heard
        return pathlib.Path(path), recording.stop()

    def test_4_midi_events_are_told(self):
        def events() -> list[str]:
            return [line for line in self.program.lines if line.startswith(MIDI)]

        for attempt in range(5):  # the effect may detect no onset in a loop without a beat
            try:
                wait_until(events, "the effect sent no note", PATIENCE)
                break
            except AssertionError:
                if attempt == 4:
                    raise
            for line in (STOPPED, PLAYING):
                first = len(self.program.lines)
                self.screen.press_key("space")
                self.program.wait_for_text(line, after=first)
        for line in events():
            self.assertRegex(line, re.escape(MIDI) + r"\d+, data: \d{1,3}, \d{1,3}, \d{1,3}")

    def test_5_stop_is_told_and_silent(self):
        first = len(self.program.lines)
        self.program.press("Stop")
        stopped = self.program.wait_for_text(STOPPED, after=first)
        lines = [line for line in self.program.system_lines(first, stopped + 1) if " looped: " not in line]
        self.assertEqual(lines, ["AUEnginePlayer: Audio session was set active.", STOPPED])
        silence = sound.Recording(self.work / "silence.wav")
        time.sleep(1)
        self.assertLess(sound.loudness(silence.stop()), -120)
        self.program.controls.wait_for("push button", "Play")

    def test_6_space_plays_and_stops_from_inside_the_effect_and_closing_ends(self):
        outside = self.screen.x.get_input_focus().focus

        def has_keyboard() -> bool:
            return self.screen.x.get_input_focus().focus not in (outside, self.window)

        for _ in range(6):  # moves from control to control until the effect has the focus
            if not has_keyboard():
                self.screen.press_key("Tab")
                time.sleep(0.2)
        wait_until(has_keyboard, "Tab did not move the focus to the effect", 5)
        inside = self.screen.x.get_input_focus().focus
        for line in (PLAYING, STOPPED, PLAYING):
            first = len(self.program.lines)
            self.screen.press_key("space")
            self.program.wait_for_text(line, after=first)
            wait_until(lambda: self.screen.x.get_input_focus().focus == inside, "the focus did not return to the effect")
        self.screen.ask_to_close(self.window)
        self.assertEqual(self.program.wait_end(), 0, self.program.errors())


class BundledEffect(LivePath, unittest.TestCase):
    """The bundled effect."""


class ForeignEffect(LivePath, unittest.TestCase):
    """An effect from a Debian package; tools/make-side-bundle assigns it the codes for which the program searches."""

    changes_the_sound = False  # with its default settings it passes the sound unchanged and adds notes

    @classmethod
    def prepare(cls):
        subprocess.run([SOURCE / "tools/make-side-bundle", FOREIGN, "The other effect"], check=True)


if __name__ == "__main__":
    unittest.addModuleCleanup(SCREEN.close)
    main("e2e_live")
