# SPDX-FileCopyrightText: 2026 The Tonewright Authors
# SPDX-License-Identifier: GPL-3.0-or-later
"""The built bundle under the validator of the LV2 toolbox, and in a host that is not ours (e2e/live.py has another)."""
import os
import pathlib
import subprocess
import sys
import unittest

import numpy

sys.path.append(str(pathlib.Path(__file__).resolve().parents[1] / "support"))
from cases import BUILD, main  # noqa: E402

SYSTEM = pathlib.Path("/usr/lib/lv2")
# The specifications' own bundles; the other packages beside them are plug-ins.
SCHEMAS = ("atom buf-size core event midi options parameters patch port-groups port-props presets resize-port "
           "schemas state time ui units urid worker log").split()


class Validator(unittest.TestCase):
    def test_finds_nothing(self):
        folders = [SYSTEM / f"{name}.lv2" for name in SCHEMAS] + [BUILD / "lib/lv2/tonewright.lv2"]
        result = subprocess.run(["sord_validate", *(file for folder in folders for file in sorted(folder.glob("*.ttl")))],
                                capture_output=True, text=True, timeout=100)
        self.assertEqual(result.returncode, 0, result.stderr)
        self.assertIn("Found 0 errors", result.stdout + result.stderr)


class ForeignHost(unittest.TestCase):
    @unittest.skipIf("ASAN_OPTIONS" in os.environ or "TSAN_OPTIONS" in os.environ,
                     "a foreign program does not bring the detector's run-time library")
    def test_ffmpeg_plays_through_it(self):
        def sound(*effect: str) -> numpy.ndarray:
            tone = "0.3*sin(2*PI*110*t)"
            result = subprocess.run(["ffmpeg", "-v", "error", "-f", "lavfi", "-i", f"aevalsrc={tone}|{tone}:s=48000:d=2",
                                     *effect, "-f", "f32le", "-"], capture_output=True, timeout=100,
                                    env=dict(os.environ, LV2_PATH=f"{BUILD}/lib/lv2:{SYSTEM}"))
            self.assertEqual((result.returncode, result.stderr), (0, b""))
            return numpy.frombuffer(result.stdout, "<f4")

        dry = sound()
        wet = sound("-af", r"lv2=p=https\\://tonewright.example/lv2/tonewright")
        self.assertEqual(wet.shape, dry.shape)
        self.assertLess(float(numpy.abs(wet).max()), 1)  # and not a number would not be less
        level = float(numpy.sqrt(numpy.mean(numpy.square(wet[48000:])) / numpy.mean(numpy.square(dry[48000:]))))
        self.assertTrue(0.3 < level < 3, level)
        self.assertLess(float(numpy.corrcoef(wet[48000:], dry[48000:])[0, 1]), 0.999)


if __name__ == "__main__":
    main("test_effect_bundle")
