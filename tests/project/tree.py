# SPDX-FileCopyrightText: 2026 The Tonewright Authors
# SPDX-License-Identifier: GPL-3.0-or-later
"""The files of the project, for the checks in this folder."""
import functools
import pathlib
import subprocess

from cases import BUILD, SOURCE, main  # noqa: F401 (for the checks)

CODE = {".cpp", ".hpp", ".c", ".h"}


@functools.lru_cache(maxsize=None)
def files() -> tuple[str, ...]:
    """Return the paths of all files of the project, relative to its root: those that git tracks or would add."""
    listing = subprocess.run(
        ["git", "-c", "safe.directory=*", "ls-files", "-z", "--cached", "--others", "--exclude-standard"],
        cwd=SOURCE, capture_output=True, check=True).stdout.decode()
    return tuple(sorted(name for name in set(listing.split("\0")) if name and (SOURCE / name).is_file()))


def code() -> list[str]:
    return [name for name in files() if pathlib.Path(name).suffix in CODE]


def text(name: str) -> str:
    return (SOURCE / name).read_text(encoding="utf-8", errors="replace")
