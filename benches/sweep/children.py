# SPDX-FileCopyrightText: 2026 The Tonewright Authors
# SPDX-License-Identifier: GPL-3.0-or-later
"""Runs effects in child processes, one each, and collects what each child printed and how it ended."""
import contextlib
import dataclasses
import os
import resource
import signal
import subprocess
import tempfile
import time


@dataclasses.dataclass
class Outcome:
    """A child's result: `lines` are the words and values that it printed; `ended` is empty after a normal exit."""
    lines: list[list[str]]
    errors: str
    ended: str = ""

    def values(self, word: str) -> list[list[str]]:
        return [line[1:] for line in self.lines if line[0] == word]

    def first(self, word: str) -> str:
        return next((" ".join(value) for value in self.values(word)), "")

    @property
    def stage(self) -> str:
        stages = self.values("stage")
        return stages[-1][0] if stages else "start"


def _limits() -> None:
    resource.setrlimit(resource.RLIMIT_CORE, (0, 0))
    resource.setrlimit(resource.RLIMIT_AS, (16 << 30, 16 << 30))


def run(command: list[str], seconds: float) -> Outcome:
    """Run a child in a session of its own; kill all processes of the session when the time is over."""
    with tempfile.TemporaryFile() as out, tempfile.TemporaryFile() as err:
        child = subprocess.Popen(command, stdin=subprocess.DEVNULL, stdout=out, stderr=err,
                                 start_new_session=True, preexec_fn=_limits)
        ended = ""
        try:
            code = child.wait(seconds)
            if code < 0:
                ended = signal.Signals(-code).name
            elif code > 0:
                ended = f"code {code}"
        except subprocess.TimeoutExpired:
            ended = f"no end in {seconds:.0f} s"
        with contextlib.suppress(ProcessLookupError):
            os.killpg(child.pid, signal.SIGKILL)  # including the child's own children
        child.wait()
        out.seek(0)
        err.seek(0)
        text = out.read(1 << 20).decode(errors="replace")
        return Outcome([line.split("\t") for line in text.splitlines() if line], err.read(1 << 20).decode(errors="replace"),
                       ended)


class Jack:
    """A JACK server without hardware, for jalv."""

    def __init__(self):
        self.environment = os.environ | {"JACK_DEFAULT_SERVER": f"sweep{os.getpid()}"}
        self._server = subprocess.Popen(
            ["jackd", "-n", self.environment["JACK_DEFAULT_SERVER"], "-r", "-d", "dummy", "-r", "48000", "-p", "256"],
            stdin=subprocess.DEVNULL, stdout=subprocess.DEVNULL, stderr=subprocess.DEVNULL, env=self.environment)
        time.sleep(2)

    def jalv(self, uri: str, number: int, seconds: float) -> str:
        """Run an effect in jalv for a second; return an empty text if it ran, or how it ended."""
        read, write = os.pipe()  # jalv runs until its input ends; stdbuf turns off buffering
        with tempfile.TemporaryFile() as out, os.fdopen(write, "wb") as hold:
            child = subprocess.Popen(["stdbuf", "-o0", "jalv", "-n", f"sweep{number}", uri], stdin=read, stdout=out,
                                     stderr=subprocess.STDOUT, env=self.environment, start_new_session=True,
                                     preexec_fn=_limits)
            os.close(read)
            began = time.monotonic()
            prompts = 0
            while child.poll() is None and time.monotonic() - began < seconds:
                time.sleep(0.05)
                if os.pread(out.fileno(), 1 << 20, 0).endswith(b"> "):
                    prompts += 1
                if prompts == 20:  # jalv has been prompting for a second
                    break
            hold.close()
            try:
                code = child.wait(5)
            except subprocess.TimeoutExpired:
                code = None
                os.killpg(child.pid, signal.SIGKILL)
                child.wait()
            text = os.pread(out.fileno(), 1 << 20, 0).decode(errors="replace").strip().splitlines()
        if prompts == 20 and code == 0:
            return ""
        if prompts == 20:
            return "ran, did not end" if code is None else f"ran, ended by {signal.Signals(-code).name if code < 0 else code}"
        return text[-1][:100] if text else f"ended with {code}"

    def stop(self) -> None:
        self._server.terminate()
        try:
            self._server.wait(5)
        except subprocess.TimeoutExpired:
            self._server.kill()
            self._server.wait()
