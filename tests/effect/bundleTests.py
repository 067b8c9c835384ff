# SPDX-FileCopyrightText: 2026 The Tonewright Authors
# SPDX-License-Identifier: GPL-3.0-or-later
"""The built bundle under programs that others wrote: the validator of the LV2 toolbox and a host."""
import os
import pathlib
import subprocess
import sys
import tempfile
import unittest
import wave

import numpy

sys.path.append(str(pathlib.Path(__file__).resolve().parents[1] / "support"))
from cases import BUILD, main  # noqa: E402

URI = "https://tonewright.example/lv2/tonewright"
LV2 = BUILD / "lib" / "lv2"
SYSTEM = pathlib.Path("/usr/lib/lv2")
# The specifications' own bundles; the other packages beside them are plug-ins.
SCHEMAS = ("atom buf-size core event midi options parameters patch port-groups port-props presets resize-port "
           "schemas state time ui units urid worker log").split()
ENVIRONMENT = {**os.environ, "LV2_PATH": f"{LV2}:{SYSTEM}"}
SANITIZED = any(name in os.environ for name in ("ASAN_OPTIONS", "TSAN_OPTIONS", "RTSAN_OPTIONS"))


def run(*command: str) -> subprocess.CompletedProcess:
    return subprocess.run(command, env=ENVIRONMENT, capture_output=True, text=True, timeout=100)


class Validator(unittest.TestCase):
    def validate(self, bundle: pathlib.Path) -> subprocess.CompletedProcess:
        files = [str(f) for name in SCHEMAS for f in sorted((SYSTEM / f"{name}.lv2").glob("*.ttl"))]
        return run("sord_validate", *files, *(str(f) for f in sorted(bundle.glob("*.ttl"))))

    def test_finds_nothing(self):
        result = self.validate(LV2 / "tonewright.lv2")
        self.assertEqual(result.returncode, 0, result.stderr)
        self.assertIn("Found 0 errors", result.stdout + result.stderr)


@unittest.skipIf(SANITIZED, "a foreign program does not bring the detector's run-time library")
class ForeignHosts(unittest.TestCase):
    def test_lv2apply_changes_the_sound_and_keeps_the_length(self):
        with tempfile.TemporaryDirectory() as folder:
            source, dry, wet = (pathlib.Path(folder) / f"{name}.wav" for name in ("in", "dry", "wet"))
            noise = numpy.random.default_rng(1).integers(-9000, 9000, 96000).astype("<i2")
            with wave.open(str(source), "wb") as out:
                out.setparams((2, 2, 48000, 0, "NONE", ""))
                out.writeframes(noise.tobytes())
            signals = []
            for target, controls in ((dry, ["-c", "enabled", "0"]), (wet, ["-c", "resonator_mix", "80"])):
                result = run("lv2apply", "-i", str(source), "-o", str(target), *controls, URI)
                self.assertEqual(result.returncode, 0, result.stderr)
                with wave.open(str(target)) as written:
                    signals.append(numpy.frombuffer(written.readframes(48000), "<i2").astype(float))
            late = 37 * 2
            numpy.testing.assert_allclose(signals[0][late:], noise[:-late], atol=3)
            self.assertGreater(numpy.std(signals[0] - signals[1]), 160)


if __name__ == "__main__":
    main("test_effect_bundle")
