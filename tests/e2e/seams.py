# SPDX-FileCopyrightText: 2026 The Tonewright Authors
# SPDX-License-Identifier: GPL-3.0-or-later
"""What comes out of a real sound server is the loop, to the sample, for pass after pass; and the loop at its pitch on
devices of another rate and another number of channels."""
import pathlib
import shutil
import subprocess
import sys
import tempfile
import time
import unittest

import numpy

import sound
from program import BUILD, PLAYING, SOURCE, Program, Tree, main
from screen import Screen


def noise(frames: int) -> numpy.ndarray:
    return numpy.random.default_rng(frames).uniform(-0.3, 0.3, (frames, 2)).astype(numpy.float32)


def play(file: pathlib.Path, seconds: float, rate: int = 48000, channels: int = 2) -> numpy.ndarray:
    """Run the program without an effect on one file under every loop's name; give what is heard."""
    work, tree, screen = pathlib.Path(tempfile.mkdtemp(prefix="seams.")), Tree(), Screen()
    program = Program(tree.without_effects().every_loop_is(file))
    try:
        program.wait_for_text("ERROR: There were no audio units found.")
        recording = sound.Recording(work / "heard.wav", rate, channels)
        program.wait_first_frame()
        screen.focus(screen.wait_window(program.process.pid))
        screen.press_key("space")
        program.wait_for_text(PLAYING)
        time.sleep(seconds)
        return recording.stop()
    finally:
        program.kill()
        screen.close()
        tree.remove()
        shutil.rmtree(work)


def longest_exact_run(heard: numpy.ndarray, loop: numpy.ndarray) -> int:
    """Give the frames of the longest stretch that is the loop, pass after pass, to the sample. A server on a busy
    machine loses blocks; behind one the next stretch begins, wherever in the loop that is."""
    longest, start = 0, 0
    while start + 16 < len(heard):
        places = numpy.flatnonzero(numpy.abs(loop[:, 0] - heard[start, 0]) < 1e-6)
        exact = 0
        for place in places:
            wanted = numpy.tile(loop, ((len(heard) - start + place) // len(loop) + 1, 1))[place:][:len(heard) - start]
            wrong = numpy.abs(heard[start:] - wanted).max(axis=1) > 1e-6
            exact = max(exact, int(numpy.argmax(wrong)) if wrong.any() else len(wrong))
        longest = max(longest, exact)
        start += exact + 64
    return longest


class Seams(unittest.TestCase):
    def test_passes_follow_each_other_to_the_sample(self):
        # An odd length, an even one, and one shorter than a block of the server (1024 frames).
        for frames in (24011, 30000, 701):
            with self.subTest(frames=frames):
                loop = noise(frames)
                file = sound.write_wav(BUILD / f"noise{frames}.wav", loop, 48000)
                wanted = max(2 * frames, 40000)  # two seams at least
                for attempt in range(3):
                    heard = play(file, 4)
                    heard = heard[int(numpy.argmax(numpy.abs(heard).max(axis=1) > 1e-3)):]
                    found = longest_exact_run(heard, loop)
                    if found > wanted:
                        break
                self.assertGreater(found, wanted)


class OtherDevices(unittest.TestCase):
    """Runs itself beside a sound server of another kind."""

    def test_44100_mono(self):
        result = subprocess.run([SOURCE / "tools/sound-server", "--rate", "44100", "--channels", "1", sys.executable,
                                 __file__, "--other-device"], capture_output=True, text=True)
        self.assertEqual(result.returncode, 0, result.stdout + result.stderr)


def other_device() -> None:
    """Check that a loop of 48 kHz stereo is heard at 44.1 kHz mono, at its pitch and without a seam."""
    rate, frames = 44100, 24011
    loop = numpy.repeat(noise(frames)[:, :1], 2, axis=1)
    work = pathlib.Path(tempfile.mkdtemp(prefix="device."))
    file = sound.write_wav(work / "loop.wav", loop, 48000)
    wanted = sound.passes(file, 4, rate, work)[0][:, 0]
    heard = play(sound.write_wav(BUILD / "noise.wav", loop, 48000), 3, rate, 1)
    began = int(numpy.argmax(numpy.abs(heard).max(axis=1) > 1e-3))
    part = heard[began + 8000:began + 8000 + rate // 2, 0]  # half a second; the pass is a little longer
    _, likeness = sound.best_place(part, wanted)
    if likeness < 0.98:
        raise SystemExit(f"the sound is not the loop: likeness {likeness:.3f}, level {sound.loudness(part):.1f} dB")


if __name__ == "__main__":
    if "--other-device" in sys.argv:
        other_device()
    else:
        main("e2e_seams")
