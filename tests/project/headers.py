# SPDX-FileCopyrightText: 2026 The Tonewright Authors
# SPDX-License-Identifier: GPL-3.0-or-later
"""Checks that every header compiles on its own and that every source is compiled with the project's warnings as errors."""
import concurrent.futures
import json
import os
import re
import shlex
import shutil
import subprocess
import unittest

from tree import BUILD, SOURCE, code, main

WARNINGS = ["-Wall", "-Wextra", "-Wpedantic", "-Wshadow", "-Wconversion", "-Werror"]


def commands() -> list[dict]:
    return json.loads((BUILD / "compile_commands.json").read_text())


class Headers(unittest.TestCase):
    def test_every_header_compiles_alone(self):
        # Every header is compiled with the definitions and include paths of all sources.
        words = dict.fromkeys(word for command in commands()
                              for word in shlex.split(re.sub("-isystem +", "-isystem", command["command"])))
        flags = [*{word.split("=")[0]: word for word in words if re.match(r"-(I|isystem|D)\S", word)}.values()]
        out = BUILD / "headers"
        out.mkdir(exist_ok=True)
        launcher = ["ccache"] if shutil.which("ccache") else []

        def compile_alone(name: str) -> str:
            unit = out / (re.sub(r"\W", "_", name) + ".cpp")
            content = f'#include "{SOURCE / name}"\n'
            if not unit.exists() or unit.read_text() != content:
                unit.write_text(content)
            command = [*launcher, "g++", "-std=c++20", "-O0", *WARNINGS, *flags,
                       f"-I{SOURCE}", "-c", str(unit), "-o", str(unit.with_suffix(".o"))]
            result = subprocess.run(command, capture_output=True, text=True, cwd=BUILD)
            return "" if result.returncode == 0 else f"{name}:\n{result.stderr[:1500]}"

        headers = [name for name in code() if name.endswith((".hpp", ".h"))]
        self.assertTrue(headers)
        with concurrent.futures.ThreadPoolExecutor(os.cpu_count()) as pool:
            failures = [failure for failure in pool.map(compile_alone, headers) if failure]
        self.assertEqual(failures, [], "\n".join(failures))

    def test_warnings_are_errors_for_every_source(self):
        lax = []
        for command in commands():
            words = shlex.split(command["command"])
            if os.path.relpath(command["file"], SOURCE).startswith("..") or str(BUILD) in command["file"]:
                continue
            missing = [flag for flag in WARNINGS if flag not in words]
            if missing:
                lax.append(f"{os.path.relpath(command['file'], SOURCE)}: {' '.join(missing)}")
        self.assertEqual(lax, [])


if __name__ == "__main__":
    main("project_headers")
