# SPDX-FileCopyrightText: 2026 The Tonewright Authors
# SPDX-License-Identifier: GPL-3.0-or-later
"""The trees that the file benchmarks scan, made once and kept, and the measuring of one program's run."""
import os
import pathlib
import subprocess
import tempfile


def programs(build: pathlib.Path) -> pathlib.Path:
    return build / "bin/benches"


def tree(build: pathlib.Path, kind: str, items: int) -> str:
    """Give the path of a tree of this kind; made at the first call."""
    folder = pathlib.Path(os.environ.get("TONEWRIGHT_BENCH_TREES", tempfile.gettempdir() + "/tonewright-bench-trees"))
    folder.mkdir(parents=True, exist_ok=True)
    path = folder / f"{kind}-{items}"
    if not path.exists():
        made = folder / f".{kind}-{items}-{os.getpid()}"  # a broken-off one must not be taken for whole
        subprocess.run([programs(build) / "bench_make_tree", made, kind, str(items)], check=True)
        made.rename(path)
    return str(path)


def run(command: list) -> tuple[float, str]:
    """Run a program to its end; give its CPU seconds, user and system, and the last line that it wrote."""
    with tempfile.TemporaryFile() as output:
        process = subprocess.Popen([str(word) for word in command], stdin=subprocess.DEVNULL, stdout=output,
                                   stderr=subprocess.DEVNULL)
        _, status, usage = os.wait4(process.pid, 0)
        process.returncode = os.waitstatus_to_exitcode(status)
        if process.returncode != 0:
            raise SystemExit(f"{command[0]} ended with {process.returncode}")
        output.seek(max(0, output.seek(0, os.SEEK_END) - 200))
        lines = output.read().decode(errors="replace").splitlines()
    return usage.ru_utime + usage.ru_stime, lines[-1] if lines else ""
