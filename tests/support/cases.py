# SPDX-FileCopyrightText: 2026 The Tonewright Authors
# SPDX-License-Identifier: GPL-3.0-or-later
"""Runs a script's unittest cases and reports them like GoogleTest programs, so that ./test counts both in the same way."""
import os
import pathlib
import sys
import time
import unittest
import xml.etree.ElementTree as xml

SOURCE = pathlib.Path(__file__).resolve().parents[2]
BUILD = pathlib.Path(os.environ.get("TONEWRIGHT_BUILD_DIR", SOURCE / "build" / "release"))


class _Result(unittest.TextTestResult):
    """Records how long each case took."""

    def __init__(self, *arguments, **keywords):
        super().__init__(*arguments, **keywords)
        self.seconds = {}

    def startTest(self, test):
        super().startTest(test)
        self._began = time.monotonic()

    def stopTest(self, test):
        super().stopTest(test)
        self.seconds[test.id()] = time.monotonic() - self._began


def main(name: str) -> None:
    """Run the cases of the calling script as the test `name`; exit with 1 if a case fails."""
    suite = unittest.defaultTestLoader.loadTestsFromModule(sys.modules["__main__"])
    if len(sys.argv) > 1:
        suite = unittest.defaultTestLoader.loadTestsFromNames(sys.argv[1:], sys.modules["__main__"])
    result = unittest.TextTestRunner(stream=sys.stderr, verbosity=2, resultclass=_Result).run(suite)
    output = os.environ.get("GTEST_OUTPUT", "")
    if output.startswith("xml:"):
        root = xml.Element("testsuites")
        # A case can fail in a subtest, and a set-up can fail before any case has begun.
        failed = {getattr(test, "test_case", test).id(): text for test, text in result.failures + result.errors}
        skipped = {test.id(): reason for test, reason in result.skipped}
        for case in result.seconds | failed | skipped:
            element = xml.SubElement(root, "testcase", name=case, time=f"{result.seconds.get(case, 0):.3f}")
            if case in failed | skipped:
                xml.SubElement(element, "failure" if case in failed else "skipped", message=(skipped | failed)[case])
        xml.ElementTree(root).write(f"{output[4:]}{name}.xml")
    sys.exit(0 if result.wasSuccessful() and result.testsRun else 1)
