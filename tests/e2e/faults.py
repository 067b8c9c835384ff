# SPDX-FileCopyrightText: 2026 The Tonewright Authors
# SPDX-License-Identifier: GPL-3.0-or-later
"""Runs the real program with something missing, broken or disappearing, and checks that it does what is documented."""
import os
import pathlib
import re
import shutil
import signal
import socket
import subprocess
import tempfile
import time
import unittest

import numpy

import sound
from program import BUILD, PATIENCE, PLAYING, SOURCE, STOPPED, Program, Tree, main
from screen import Run, Screen, wait_until

SOUND_SERVER = str(SOURCE / "tools/sound-server")
PRESSES = 1000 if PATIENCE < 30 else 100


def catches(program: Program, number: int) -> bool:
    """Return whether the program has a handler for a signal (proc(5))."""
    status = pathlib.Path(f"/proc/{program.process.pid}/status").read_text()
    return bool(int(re.search(r"SigCgt:\s*(\w+)", status)[1], 16) >> (number - 1) & 1)


class Faults(unittest.TestCase):
    def setUp(self):
        self.work = pathlib.Path(tempfile.mkdtemp(prefix="faults."))
        self.screen = Screen()
        self.addCleanup(lambda: (self.screen.close(), shutil.rmtree(self.work)))

    def tree(self) -> Tree:
        tree = Tree()
        self.addCleanup(tree.remove)
        return tree

    def noise(self, frames: int, name: str = "noise.wav") -> pathlib.Path:
        samples = numpy.random.default_rng(frames).uniform(-0.3, 0.3, (frames, 2))
        return sound.write_wav(BUILD / name, samples, 48000)

    def start(self, tree: Tree | None = None, **keywords) -> Run:
        program = Run(self.screen, tree, **keywords)
        self.addCleanup(program.kill)
        return program

    def toggle(self, program: Program) -> None:
        self.screen.focus(program.window)
        self.screen.press_key("space")

    def play(self, program: Program, told: str = PLAYING) -> int:
        first = len(program.lines)
        self.toggle(program)
        return program.wait_for_text(told, after=first)

    def stop(self, program: Program) -> int:
        return self.play(program, STOPPED)

    def close(self, program: Program) -> None:
        self.screen.ask_to_close(program.window)
        self.assertEqual(program.wait_end(), 0, program.errors())

    def heard(self, seconds: float = 0.7) -> float:
        recording = sound.Recording(self.work / f"heard{time.monotonic()}.wav")
        time.sleep(seconds)
        return sound.loudness(recording.stop()[2048:])

    def wait_heard(self) -> None:
        wait_until(lambda: self.heard() >= -40, "nothing is heard", PATIENCE)

    def test_missing_loop_is_fatal(self):
        tree = self.tree()
        for loop in tree.loops().glob("*.m4a"):
            loop.unlink()
        program = self.start(tree)
        program.wait_ready()
        self.toggle(program)
        self.assertEqual(program.wait_end(), -signal.SIGABRT)
        self.assertIn("Unexpectedly found nil while implicitly unwrapping an Optional value", program.errors())

    def test_pressed_as_fast_as_can_be(self):
        program = self.start(self.tree().every_loop_is(self.noise(30011)))
        program.wait_ready()
        self.screen.focus(program.window)
        for _ in range(PRESSES):
            self.screen.press_key("space")
        program.wait_for_text(STOPPED, count=PRESSES // 2, timeout=4 * PATIENCE)
        states = [line for line in program.lines if line in (PLAYING, STOPPED)]
        self.assertEqual(states, [PLAYING, STOPPED] * (PRESSES // 2))
        self.play(program)
        self.wait_heard()
        self.close(program)

    def test_asked_to_end_while_the_display_does_not_answer(self):
        with socket.socket(socket.AF_UNIX) as display:
            display.bind(f"\0/tmp/.X11-unix/X{os.getpid()}")
            display.listen()
            display.settimeout(PATIENCE)
            for number in (signal.SIGTERM, signal.SIGINT, signal.SIGHUP):
                program = Program(environment={"DISPLAY": f":{os.getpid()}"})
                self.addCleanup(program.kill)
                with display.accept()[0]:
                    program.process.send_signal(number)
                    self.assertEqual((program.wait_end(), program.lines, program.errors()), (0, [], ""))

    def test_asked_to_end_while_it_starts(self):
        temporary, runtime = self.work / "tmp", pathlib.Path(os.environ["XDG_RUNTIME_DIR"])
        temporary.mkdir()
        before = sorted(runtime.iterdir())
        for milliseconds in (0, 5, 20, 50, 100, 140, 200, 300):
            program = Program(environment={"TMPDIR": str(temporary)})
            self.addCleanup(program.kill)
            end = time.monotonic() + PATIENCE
            while not catches(program, signal.SIGTERM):  # it has none while its libraries are being loaded
                self.assertLess(time.monotonic(), end)
            time.sleep(milliseconds / 1000)
            program.process.send_signal(signal.SIGTERM)
            self.assertEqual(program.wait_end(), 0, (milliseconds, program.errors()))
            self.assertEqual((sorted(temporary.iterdir()), sorted(runtime.iterdir())), ([], before), milliseconds)

    def test_closed_standard_output(self):
        reading, writing = os.pipe()
        os.close(reading)
        program = self.start(self.tree().every_loop_is(self.noise(24000)), stdout=writing)
        os.close(writing)
        self.toggle(program)
        self.wait_heard()
        self.close(program)

    def test_sound_server_goes_and_comes_back(self):
        program = self.start(self.tree().every_loop_is(self.noise(24000)))
        program.wait_ready()
        self.play(program)
        self.wait_heard()
        subprocess.run([SOUND_SERVER, "stop"], check=True)
        self.addCleanup(lambda: subprocess.run([SOUND_SERVER, "start"]))
        # The loops are also counted on the silent device.
        program.wait_for(r"AUEnginePlayer: Current audio file '.*' looped: \d+\.", after=len(program.lines), count=4)
        subprocess.run([SOUND_SERVER, "start"], check=True)
        self.wait_heard()
        self.assertLessEqual(len(re.findall("silent", program.errors())), 1, program.errors())
        self.stop(program)
        self.close(program)

    def test_no_sound_server_at_start_and_then_one_of_another_kind(self):
        subprocess.run([SOUND_SERVER, "stop"], check=True)
        kind = pathlib.Path(os.environ["TONEWRIGHT_SOUND_DIR"], "pipewire.conf")
        self.addCleanup(lambda usual: (subprocess.run([SOUND_SERVER, "stop"]), kind.write_text(usual),
                                       subprocess.run([SOUND_SERVER, "start"])), kind.read_text())
        sine = numpy.sin(numpy.arange(48000) * 2 * numpy.pi / 48) / 4  # 1 kHz
        tone = sound.write_wav(BUILD / "tone.wav", numpy.repeat(sine[:, None], 2, axis=1), 48000)
        program = self.start(self.tree().every_loop_is(tone))
        program.wait_ready()
        playing = self.play(program)
        self.assertIn("AUEnginePlayer: Audio session was set active.", program.lines[:playing])
        program.wait_for(r"AUEnginePlayer: Current audio file '.*' looped: 2\.")
        self.stop(program)
        self.play(program)
        self.assertEqual(re.findall(".*silent.*", program.errors()),
                         ["No sound server and no sound card answers; playing silently until that changes."])
        for usual, other in (("48000", "44100"), ("channels = 2", "channels = 1"), ("FL,FR", "MONO")):
            kind.write_text(kind.read_text().replace(usual, other))
        subprocess.run([SOUND_SERVER, "start"], check=True)
        self.wait_heard()
        recording = sound.Recording(self.work / "tone.wav")
        time.sleep(1.5)
        heard = recording.stop()[24000:, 0]
        self.assertAlmostEqual(numpy.abs(numpy.fft.rfft(heard)).argmax() * 48000 / len(heard), 1000, delta=5)
        self.close(program)


if __name__ == "__main__":
    main("e2e_faults")
