# SPDX-FileCopyrightText: 2026 The Tonewright Authors
# SPDX-License-Identifier: GPL-3.0-or-later
"""Runs a script's unittest cases and reports them as GoogleTest's executables do, so that ./test counts both alike."""
import os
import pathlib
import sys
import time
import unittest
import xml.etree.ElementTree as xml

SOURCE = pathlib.Path(__file__).resolve().parents[2]
BUILD = pathlib.Path(os.environ.get("TONEWRIGHT_BUILD_DIR", SOURCE / "build" / "release"))


class _Result(unittest.TextTestResult):
    """Remembers what became of each case."""

    def __init__(self, *arguments, **keywords):
        super().__init__(*arguments, **keywords)
        self.cases = []
        self._began = 0.0
        self._became = ("run", None)

    def startTest(self, test):
        super().startTest(test)
        self._began, self._became = time.monotonic(), ("run", None)

    def _fail(self, error):
        self._became = ("failed", str(error[1]))

    def addFailure(self, test, err):
        super().addFailure(test, err)
        self._fail(err)

    def addError(self, test, err):
        super().addError(test, err)
        self._fail(err)
        if not hasattr(test, "_testMethodName"):  # a set-up that failed before any case began
            self.cases.append((str(test), 0.0, self._became))

    def addSubTest(self, test, subtest, err):
        super().addSubTest(test, subtest, err)
        if err is not None:
            self._fail(err)

    def addSkip(self, test, reason):
        super().addSkip(test, reason)
        self._became = ("skipped", reason)

    def stopTest(self, test):
        super().stopTest(test)
        self.cases.append((test.id(), time.monotonic() - self._began, self._became))


def main(name: str) -> None:
    """Run the cases of the calling script as the test `name`; end the process with 1 when one failed."""
    suite = unittest.defaultTestLoader.loadTestsFromModule(sys.modules["__main__"])
    if len(sys.argv) > 1:
        suite = unittest.defaultTestLoader.loadTestsFromNames(sys.argv[1:], sys.modules["__main__"])
    result = unittest.TextTestRunner(stream=sys.stderr, verbosity=2, resultclass=_Result).run(suite)
    output = os.environ.get("GTEST_OUTPUT", "")
    if output.startswith("xml:"):
        root = xml.Element("testsuites")
        for case, seconds, (became, why) in result.cases:
            element = xml.SubElement(root, "testcase", name=case, time=f"{seconds:.3f}")
            if became != "run":
                xml.SubElement(element, "failure" if became == "failed" else "skipped", message=why or "")
        xml.ElementTree(root).write(f"{output[4:]}{name}.xml")
    sys.exit(0 if result.wasSuccessful() and result.testsRun else 1)
