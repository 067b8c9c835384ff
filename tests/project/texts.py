# SPDX-FileCopyrightText: 2026 The Tonewright Authors
# SPDX-License-Identifier: GPL-3.0-or-later
"""Checks what every file of the tree must and must not contain: licence headers, sizes, links, code format."""
import fnmatch
import os
import pathlib
import re
import subprocess
import tomllib
import unittest

from tree import CODE, SOURCE, code, files, main, text

LICENCE = re.compile(r"SPDX-License-Identifier: ([A-Za-z0-9.-]+)")
# Texts that would tie the tree to one machine or to papers outside the tree. The patterns do not match themselves.
TIES = {
    "a path of one machine": re.compile(r"(?<![\w.])/(?:[w]ork|[h]ome/\w+|[r]oot)/\w"),
    "a host that packages are fetched from": re.compile(r"\b(?:deb[.]debian|registry[.]npmjs|pypi)[.]org\b"),
    "a paper outside the tree": re.compile(r"\b(?:Part \d+[.]\d|[Rr]uling \d|[Ii]ssue #?\d|spec[.]md|rulings?[.]md)"),
    "a folder beside the tree": re.compile(r"[.][.]/[s]hared/"),
}

# Wordings that readers had to read twice, in comments and documents. The pattern does not match itself.
STUMBLES = re.compile(r"\b(?:an[ ]own|said[ ]on standard error|are[ ]no numbers|is[ ]no number|comes? to[ ]play|found[ ]no room|"
                      r"behind the[ ]last|stands?[ ]under|time[ ]line|reckon(?:ed)?[ ]|one[ ]behind the other|"
                      r"called[ ]with, and end|behind[ ]the program's name|stands?[ ](?:elsewhere|nowhere)|told[ ]in one line|"
                      r"[Tt]ells?[ ]whether|by[ ](?:turns|chance)|this[ ]text and end)\b")


def annotated() -> list[str]:
    """Return the patterns of files that cannot contain comments, whose licence is therefore in REUSE.toml."""
    paths = [annotation["path"] for annotation in tomllib.loads(text("REUSE.toml"))["annotations"]]
    return [one for path in paths for one in ([path] if isinstance(path, str) else path)]


class Texts(unittest.TestCase):
    def test_every_file_says_its_licence(self):
        exempt, missing, used = annotated(), [], set()
        for name in files():
            if name.startswith("LICENSES/") or any(fnmatch.fnmatch(name, pattern) for pattern in exempt):
                continue
            head = "\n".join(text(name).splitlines()[:8])
            found = LICENCE.search(head)
            if not found or "SPDX-FileCopyrightText:" not in head:
                missing.append(name)
            else:
                used.add(found.group(1))
        self.assertEqual(missing, [])
        for licence in used:
            self.assertTrue((SOURCE / f"LICENSES/{licence}.txt").exists(), licence)

    def test_nothing_ties_the_tree_to_one_place(self):
        found = [f"{name}: {what}: {match.group(0)}"
                 for name in files() if not name.startswith("LICENSES/")
                 for what, pattern in TIES.items()
                 for match in [pattern.search(name + "\n" + text(name))] if match]
        self.assertEqual(found, [])

    def test_no_wording_stops_the_reader(self):
        found = [f"{name}: {match.group(0)}" for name in files()
                 if pathlib.PurePath(name).suffix in CODE | {".py", ".md", ".html", ".1", ".txt"} and "LICENSES" not in name
                 for match in STUMBLES.finditer(text(name))]
        self.assertEqual(found, [])

    def test_code_files_stay_small(self):
        large = [f"{name}: {lines} lines" for name in code() if (lines := text(name).count("\n")) > 500]
        self.assertEqual(large, [])

    def test_links_between_documents_lead_somewhere(self):
        broken = []
        for name in files():
            if name.endswith(".md"):
                for target in re.findall(r"\]\(([^)#\s]+)(?:#[^)]*)?\)|<img[^>]*src=\"([^\"]+)\"", text(name)):
                    link = next(part for part in target if part)
                    if "://" not in link and not (SOURCE / name).parent.joinpath(link).exists():
                        broken.append(f"{name} -> {link}")
        self.assertEqual(broken, [])

    def test_text_files_end_with_one_newline_and_have_no_trailing_blanks(self):
        wrong = []
        for name in files():
            path = pathlib.PurePath(name)
            if path.suffix in CODE | {".py", ".txt", ".cmake", ".ttl", ".md", ".json"} and "LICENSES" not in name:
                content = text(name)
                if content and (not content.endswith("\n") or content.endswith("\n\n") or re.search(r"[ \t]+$", content, re.M)):
                    wrong.append(name)
        self.assertEqual(wrong, [])

    def test_code_is_formatted(self):
        result = subprocess.run(["clang-format", "--dry-run", "-Werror", *code()], cwd=SOURCE, capture_output=True,
                                text=True)
        self.assertEqual(result.returncode, 0, result.stderr[:4000])

    def test_shell_scripts_are_sound(self):
        scripts = [name for name in files()
                   if os.access(SOURCE / name, os.X_OK) and text(name).startswith("#!/usr/bin/env bash")]
        self.assertGreater(len(scripts), 3)
        result = subprocess.run(["shellcheck", "-x", "-S", "warning", "--source-path=SCRIPTDIR", *scripts], cwd=SOURCE,
                                capture_output=True, text=True)
        self.assertEqual(result.returncode, 0, result.stdout[:4000])


class DesktopFiles(unittest.TestCase):
    """Checks the files that desktop environments read with the validators of these environments."""

    def test_are_valid(self):
        for pattern, *command in (("*.desktop", "desktop-file-validate"),
                                  ("*.metainfo.xml", "appstreamcli", "validate", "--no-net", "--explain"),
                                  ("*.1", "mandoc", "-T", "lint", "-W", "warning")):
            names = fnmatch.filter(files(), f"*/{pattern}")
            self.assertTrue(names, pattern)
            for name in names:
                result = subprocess.run([*command, name], cwd=SOURCE, capture_output=True, text=True)
                self.assertEqual(result.returncode, 0, f"{name}: {result.stdout}{result.stderr}")


if __name__ == "__main__":
    main("project_texts")
