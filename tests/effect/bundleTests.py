# SPDX-FileCopyrightText: 2026 The Tonewright Authors
# SPDX-License-Identifier: GPL-3.0-or-later
"""Checks the built bundle with the validator of the LV2 toolbox; e2e/live.py plays it in an independent host."""
import pathlib
import subprocess
import unittest

from cases import BUILD, main

SYSTEM = pathlib.Path("/usr/lib/lv2")
# The bundles of the specifications; other packages install plug-ins in the same folder.
SCHEMAS = ("atom buf-size core event midi options parameters patch port-groups port-props presets resize-port "
           "schemas state time ui units urid worker log").split()


class Validator(unittest.TestCase):
    def test_finds_nothing(self):
        folders = [SYSTEM / f"{name}.lv2" for name in SCHEMAS] + [BUILD / "lib/lv2/tonewright.lv2"]
        result = subprocess.run(["sord_validate", *(file for folder in folders for file in sorted(folder.glob("*.ttl")))],
                                capture_output=True, text=True, timeout=100)
        self.assertEqual(result.returncode, 0, result.stderr)
        self.assertIn("Found 0 errors", result.stdout + result.stderr)


if __name__ == "__main__":
    main("test_effect_bundle")
