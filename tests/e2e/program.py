# SPDX-FileCopyrightText: 2026 The Tonewright Authors
# SPDX-License-Identifier: GPL-3.0-or-later
"""Runs the real program as a child process: the tree that it runs in, the lines that it prints, and its end."""
import os
import pathlib
import re
import shutil
import signal
import subprocess
import sys
import tempfile
import threading
import time

sys.path.insert(0, str(pathlib.Path(__file__).resolve().parents[1] / "support"))
from cases import BUILD, SOURCE, main  # noqa: E402,F401 (for the tests)

# Sanitizer builds are several times slower.
PATIENCE = 60.0 if os.environ.get("TSAN_OPTIONS") or os.environ.get("ASAN_OPTIONS") else 25.0

MIDI = "AUEnginePlayer: MIDI event from audio unit at: "
PLAYING = "AUEnginePlayer: Audio engine starting."
STOPPED = "AUEnginePlayer: Audio engine stopping."
READY = "WARNING: Audio unit is nil (yet?)."


class Tree:
    """A copy of the built tree, in which a test can replace the loops and the plug-ins."""

    def __init__(self):
        (BUILD / "e2e").mkdir(exist_ok=True)
        self.root = pathlib.Path(tempfile.mkdtemp(dir=BUILD / "e2e"))
        (self.root / "bin").mkdir()
        # The program finds its tree by the path of its executable, so the executable cannot be a symbolic link.
        os.link(BUILD / "bin" / "tonewright", self.program)
        shutil.copytree(BUILD / "share", self.root / "share", symlinks=True)
        for loop in self.loops().glob("*.m4a"):
            loop.unlink()
        for number in range(1, 81):
            (self.loops() / f"{number}.m4a").symlink_to((BUILD / "share/tonewright" / f"{number}.m4a").resolve())
        if (BUILD / "lib").exists():
            shutil.copytree(BUILD / "lib", self.root / "lib")

    @property
    def program(self) -> pathlib.Path:
        return self.root / "bin" / "tonewright"

    def loops(self) -> pathlib.Path:
        return self.root / "share" / "tonewright"

    def every_loop_is(self, file: pathlib.Path) -> "Tree":
        """Replace every loop by `file`."""
        for number in range(1, 81):
            loop = self.loops() / f"{number}.m4a"
            loop.unlink()
            os.link(file, loop)
        return self

    def remove(self) -> None:
        shutil.rmtree(self.root, ignore_errors=True)


class Program:
    """A running program. `lines` contains its output in order of arrival."""

    def __init__(self, tree: Tree | None = None, stdout=subprocess.PIPE, environment: dict[str, str] | None = None,
                 path: pathlib.Path = BUILD / "bin" / "tonewright"):
        self.path = tree.program if tree else path
        self.lines: list[str] = []
        self._news = threading.Condition()
        self._ended = False
        env = dict(os.environ, TONEWRIGHT_TRACE_START="1")
        env.update(environment or {})
        self._errors = tempfile.TemporaryFile()
        self.process = subprocess.Popen([str(self.path)], stdin=subprocess.DEVNULL, stdout=stdout,
                                        stderr=self._errors, env=env)
        self._reader = None
        if stdout == subprocess.PIPE:
            self._reader = threading.Thread(target=self._read, daemon=True)
            self._reader.start()

    def _read(self) -> None:
        for line in self.process.stdout:
            with self._news:
                self.lines.append(line.decode("utf-8", "surrogateescape").rstrip("\n"))
                self._news.notify_all()
        with self._news:
            self._ended = True
            self._news.notify_all()

    def errors(self) -> str:
        """Return what the program has written to standard error so far."""
        return os.pread(self._errors.fileno(), 1 << 20, 0).decode("utf-8", "replace")  # keeps the child's offset

    def wait_for(self, pattern: str, after: int = 0, timeout: float = PATIENCE, count: int = 1) -> int:
        """Wait for the count-th line from index `after` on that matches the whole pattern; return its index."""
        expression, end = re.compile(pattern), time.monotonic() + timeout
        with self._news:
            while True:
                found = [i for i in range(after, len(self.lines)) if expression.fullmatch(self.lines[i])]
                if len(found) >= count:
                    return found[count - 1]
                left = end - time.monotonic()
                if left <= 0 or self._ended:
                    heard = "\n".join(self.lines[-30:])
                    raise AssertionError(f"no line {pattern!r} {'before the program ended' if self._ended else 'in time'};"
                                         f" the last ones:\n{heard}\nstandard error:\n{self.errors()[-3000:]}")
                self._news.wait(left)

    def wait_for_text(self, text: str, **keywords) -> int:
        return self.wait_for(re.escape(text), **keywords)

    def wait_first_frame(self) -> None:
        """Wait until the window has been drawn and can be clicked."""
        end = time.monotonic() + PATIENCE
        while "first frame" not in self.errors():
            if self.process.poll() is not None or time.monotonic() > end:
                raise AssertionError(f"the window showed no frame; standard error:\n{self.errors()}")
            time.sleep(0.01)

    def wait_ready(self) -> int:
        return self.wait_for_text(READY)

    def system_lines(self, first: int = 0, last: int | None = None) -> list[str]:
        """Return the lines without those about MIDI events of the effect, which can appear between any others."""
        return [line for line in self.lines[first:last] if not line.startswith(MIDI)]

    def wait_end(self, timeout: float = PATIENCE) -> int:
        code = self.process.wait(timeout)
        if self._reader:
            self._reader.join(5)
        return code

    def kill(self) -> None:
        if self.process.poll() is None:
            self.process.send_signal(signal.SIGKILL)
        self.process.wait()
