# SPDX-FileCopyrightText: 2026 The Tonewright Authors
# SPDX-License-Identifier: GPL-3.0-or-later
"""The built bundle under programs that others wrote: the validator of the LV2 toolbox and three hosts."""
import math
import os
import pathlib
import shutil
import struct
import subprocess
import sys
import tempfile
import unittest
import wave

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


def write_strokes(path: pathlib.Path, frames: int) -> None:
    with wave.open(str(path), "wb") as out:
        out.setnchannels(2)
        out.setsampwidth(2)
        out.setframerate(48000)
        samples = []
        for i in range(frames):
            t = (i % 12000) / 48000
            samples += 2 * [int(14000 * math.exp(-12 * t) * math.sin(2 * math.pi * 196 * t))]
        out.writeframes(struct.pack(f"<{len(samples)}h", *samples))


class Validator(unittest.TestCase):
    def validate(self, bundle: pathlib.Path) -> subprocess.CompletedProcess:
        files = [str(f) for name in SCHEMAS for f in sorted((SYSTEM / f"{name}.lv2").glob("*.ttl"))]
        return run("sord_validate", *files, *(str(f) for f in sorted(bundle.glob("*.ttl"))))

    def test_finds_nothing(self):
        result = self.validate(LV2 / "tonewright.lv2")
        self.assertEqual(result.returncode, 0, result.stderr)
        self.assertIn("Found 0 errors", result.stdout + result.stderr)

    def test_would_find_something(self):
        with tempfile.TemporaryDirectory() as folder:
            broken = pathlib.Path(folder)
            for file in (LV2 / "tonewright.lv2").glob("*.ttl"):
                shutil.copy(file, broken)
            text = (broken / "tonewright.ttl").read_text()
            (broken / "tonewright.ttl").write_text(text.replace('lv2:symbol "drive"', 'lv2:symbol "not a symbol"'))
            self.assertNotIn("Found 0 errors", self.validate(broken).stderr + self.validate(broken).stdout)


@unittest.skipIf(SANITIZED, "a foreign program does not bring the detector's run-time library")
class ForeignHosts(unittest.TestCase):
    def test_lv2apply_changes_the_sound_and_keeps_the_length(self):
        with tempfile.TemporaryDirectory() as folder:
            source, dry, wet = (pathlib.Path(folder) / f"{name}.wav" for name in ("in", "dry", "wet"))
            write_strokes(source, 48000)
            for target, controls in ((dry, ["-c", "enabled", "0"]), (wet, ["-c", "resonator_mix", "80"])):
                result = run("lv2apply", "-i", str(source), "-o", str(target), *controls, URI)
                self.assertEqual(result.returncode, 0, result.stderr)
            # It writes float samples, which the wave module does not read: take the data chunk as it is.
            original = struct.unpack("<96000h", source.read_bytes()[44:44 + 192000])
            signals = []
            for path in (dry, wet):
                data = path.read_bytes()
                at = data.index(b"data") + 8
                kind = {2: "h", 4: "f"}[(len(data) - at) // 96000]
                values = struct.unpack(f"<96000{kind}", data[at:at + 96000 * struct.calcsize(kind)])
                signals.append([v if kind == "f" else v / 32768 for v in values])
            late = 37 * 2
            for i in range(late, 96000):
                self.assertAlmostEqual(signals[0][i], original[i - late] / 32768, delta=1e-4)
            difference = sum((a - b) ** 2 for a, b in zip(*signals)) / 96000
            self.assertGreater(math.sqrt(difference), 0.005)

    def test_lv2bench_runs_it(self):
        result = run("lv2bench", URI)
        self.assertEqual(result.returncode, 0, result.stderr)
        seconds, uri = result.stdout.split()[:2]
        self.assertEqual(uri, URI)
        self.assertGreater(float(seconds), 0)

    def test_lv2info_describes_it(self):
        result = run("lv2info", URI)
        self.assertEqual(result.returncode, 0, result.stderr)
        self.assertEqual(result.stderr, "")
        for words in ("KVRN: Orvo Tonewright Extension", "reported by port 6", "ui#X11UI", "Sympathetic Strings"):
            self.assertIn(words, result.stdout)


if __name__ == "__main__":
    main("test_effect_bundle")
