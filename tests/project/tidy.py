# SPDX-FileCopyrightText: 2026 The Tonewright Authors
# SPDX-License-Identifier: GPL-3.0-or-later
"""Checks that clang-tidy finds nothing. It takes seconds per file, so a run checks only the files that changed on this
branch and every twenty-fourth of the others, a different selection for each commit; tools/tidy checks all files."""
import json
import os
import subprocess
import unittest

from tree import BUILD, SOURCE, main

SHARE = 24


def git(*arguments: str) -> list[str]:
    result = subprocess.run(["git", "-c", "safe.directory=*", *arguments], cwd=SOURCE, capture_output=True, text=True)
    return result.stdout.split() if result.returncode == 0 else []


def chosen() -> list[str]:
    compiled = sorted({os.path.relpath(command["file"], SOURCE)
                       for command in json.loads((BUILD / "compile_commands.json").read_text())})
    sources = [name for name in compiled if not name.startswith(("..", "build/"))]
    base = git("merge-base", "HEAD", "origin/main") or git("merge-base", "HEAD", "main")
    changed = set(git("diff", "--name-only", *base) if base else [])
    turn = int((git("rev-list", "--count", "HEAD") or ["0"])[0]) % SHARE
    return sorted([name for name in sources if name in changed][:16] + sources[turn::SHARE])


class Tidy(unittest.TestCase):
    def test_nothing_is_found(self):
        names = sorted(set(chosen()))
        self.assertTrue(names)
        result = subprocess.run([SOURCE / "tools/tidy", *names], cwd=SOURCE, capture_output=True, text=True,
                                env=dict(os.environ, TONEWRIGHT_BUILD_DIR=str(BUILD)))
        self.assertEqual(result.returncode, 0, result.stdout[-6000:] + result.stderr[-2000:])


if __name__ == "__main__":
    main("project_tidy")
