# SPDX-FileCopyrightText: 2026 The Tonewright Authors
# SPDX-License-Identifier: GPL-3.0-or-later
"""Generates and keeps the trees that the file benchmarks scan, and measures single runs of programs."""
import os
import pathlib
import subprocess
import tempfile


def programs(build: pathlib.Path) -> pathlib.Path:
    return build / "bin/benches"


def tree(build: pathlib.Path, kind: str, items: int) -> str:
    """Return the path of a tree of this kind and size; generate the tree if it does not exist yet."""
    folder = pathlib.Path(os.environ.get("TONEWRIGHT_BENCH_TREES", tempfile.gettempdir() + "/tonewright-bench-trees"))
    folder.mkdir(parents=True, exist_ok=True)
    path = folder / f"{kind}-{items}"
    if not path.exists():
        made = folder / f".{kind}-{items}-{os.getpid()}"  # renamed when complete, so that no run uses a partial tree
        subprocess.run([programs(build) / "bench_make_tree", made, kind, str(items)], check=True)
        made.rename(path)
    return str(path)


def run(command: list) -> tuple[float, str]:
    """Run a program until it exits; return its CPU seconds (user and system) and the last line that it wrote."""
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
