# SPDX-FileCopyrightText: 2026 The Tonewright Authors
# SPDX-License-Identifier: GPL-3.0-or-later
"""The real program where something is missing, broken, or gone in the middle: what is stated happens, and no more."""
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
from screen import Screen, wait_until

SOUND_SERVER = str(SOURCE / "tools/sound-server")
PRESSES = 1000 if PATIENCE < 30 else 100


def catches(program: Program, number: int) -> bool:
    """Tell whether the program has a handler for a signal (proc(5))."""
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

    def start(self, tree: Tree | None = None, **keywords) -> Program:
        """Start the program and give its window the keyboard."""
        program = Program(tree, **keywords)
        self.addCleanup(program.kill)
        program.window = self.screen.wait_window(program.process.pid)
        program.wait_first_frame()
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

    def test_files_that_are_no_sound(self):
        good = (BUILD / "share/tonewright/1.m4a").read_bytes()
        damaged = bytearray(good)
        damaged[:512] = os.urandom(512)
        for kind, content in (("damaged", bytes(damaged)), ("truncated", good[:len(good) // 2])):
            with self.subTest(kind):
                file = BUILD / f"{kind}.m4a"
                file.write_bytes(content)
                program = self.start(self.tree().every_loop_is(file))
                program.wait_ready()
                playing = self.play(program)
                problem = [line for line in program.lines[:playing] if "Could not create AVAudioFile" in line]
                if kind != "truncated":  # what is left of one may be sound
                    self.assertRegex(problem[0], r"AUEnginePlayer::ERROR: Could not create AVAudioFile instance for URL "
                                                 r"'Optional\(file:///.*/\d+\.m4a\)'\. error: .+\.")
                    self.assertIn("AUEnginePlayer::ERROR: `file` parameter must not be nil.", program.lines[:playing])
                self.stop(program)
                self.close(program)

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
            while not catches(program, signal.SIGTERM):  # while the libraries are loaded nobody can
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
        # Loops go on being counted on the silent device.
        program.wait_for(r"AUEnginePlayer: Current audio file '.*' looped: \d+\.", after=len(program.lines), count=4)
        subprocess.run([SOUND_SERVER, "start"], check=True)
        self.wait_heard()
        self.assertLessEqual(len(re.findall("silent", program.errors())), 1, program.errors())
        self.stop(program)
        self.close(program)

    def test_no_sound_server_at_start(self):
        subprocess.run([SOUND_SERVER, "stop"], check=True)
        self.addCleanup(lambda: subprocess.run([SOUND_SERVER, "start"]))
        program = self.start(self.tree().every_loop_is(self.noise(24000)))
        program.wait_ready()
        playing = self.play(program)
        self.assertIn("AUEnginePlayer: Audio session was set active.", program.lines[:playing])
        program.wait_for(r"AUEnginePlayer: Current audio file '.*' looped: 2\.")
        self.stop(program)
        self.play(program)
        self.assertEqual(re.findall(".*silent.*", program.errors()),
                         ["No sound server and no sound card answers; playing silently until that changes."])
        self.close(program)


if __name__ == "__main__":
    main("e2e_faults")
