# SPDX-FileCopyrightText: 2026 The Tonewright Authors
# SPDX-License-Identifier: GPL-3.0-or-later
"""What each folder may include: the arrows of docs/ARCHITECTURE.md."""
import pathlib
import re
import unittest

from tree import code, main, text

# Folder -> the folders of ours whose headers it may include, besides its own.
MAY_INCLUDE = {
    "app": {"shared", "platform/foundation", "platform/dispatch", "platform/ui", "platform/audio", "platform/effects"},
    "shared": {"platform/foundation", "platform/dispatch", "platform/network", "platform/ui", "platform/web"},
    "gallery": {"shared", "platform/foundation", "platform/dispatch", "platform/ui"},
    "platform/foundation": set(),
    "platform/dispatch": {"platform/foundation"},
    "platform/network": {"platform/dispatch", "platform/foundation"},
    "platform/audio": {"platform/dispatch", "platform/foundation"},
    "platform/ui": {"platform/dispatch", "platform/foundation"},
    "platform/web": {"platform/ui", "platform/dispatch", "platform/foundation"},
    "platform/effects": {"platform/audio", "platform/ui", "platform/dispatch", "platform/foundation"},
    "effect": set(),
}
# The effect's view is where the plug-in host and the toolkit meet; nothing else of the host sees a screen.
EFFECTS_MEET_UI = re.compile(r"platform/effects/[^/]*View[^/]*\.[ch]pp$")
# Libraries that a folder must not know at all.
FOREIGN_TO = {
    "platform/audio": re.compile(r"^(lv2|lilv|suil|gtk|gdk|X11|cairo)"),
    "platform/ui": re.compile(r"^(lv2|lilv|pipewire|spa/|libav|libsw|RtAudio|rtaudio)"),
    "platform/dispatch": re.compile(r"^(gtk|gdk|X11|lv2|lilv|pipewire|spa/|libav)"),
    "platform/foundation": re.compile(r"^(gtk|gdk|X11|lv2|lilv|pipewire|spa/|libav)"),
}
INCLUDE = re.compile(r'^\s*#\s*include\s*([<"])([^>"]+)[>"]', re.M)


def folder_of(name: str) -> str | None:
    for folder in sorted(MAY_INCLUDE, key=len, reverse=True):
        if name.startswith(folder + "/"):
            return folder
    return None


def is_private(name: str) -> bool:
    """Tell whether a header is seen by the sources of its own folder only: by its name, or by where it lies."""
    return name.endswith(".private.hpp") or "/detail/" in name or "/devices/" in name


def is_public(name: str) -> bool:
    return name.endswith(".hpp") and not is_private(name)


def is_standard(header: str) -> bool:
    return re.fullmatch(r"[a-z_0-9]+", header) is not None


class Arrows(unittest.TestCase):
    def includes(self):
        for name in code():
            folder = folder_of(name)
            if folder:
                for mark, header in INCLUDE.findall(text(name)):
                    yield name, folder, mark, header

    def test_folders_point_only_where_they_may(self):
        wrong = []
        for name, folder, mark, header in self.includes():
            target = folder_of(header)
            if mark == '"' and target is None and "/" in header and folder != "effect":
                wrong.append(f"{name} includes {header}, which lies in no known folder")
            if target and target != folder and target not in MAY_INCLUDE[folder]:
                wrong.append(f"{name} includes {header}")
        self.assertEqual(wrong, [])

    def test_plug_in_host_meets_the_screen_in_one_place(self):
        wrong = [f"{name} includes {header}" for name, folder, _, header in self.includes()
                 if folder == "platform/effects" and folder_of(header) == "platform/ui"
                 and not EFFECTS_MEET_UI.search(name)]
        self.assertEqual(wrong, [])

    def test_system_and_public_headers_use_the_standard_library_only(self):
        wrong = [f"{name} includes <{header}>" for name, folder, mark, header in self.includes()
                 if mark == "<" and not is_standard(header)
                 and (folder in ("app", "shared", "gallery") or folder.startswith("platform/") and is_public(name))]
        self.assertEqual(wrong, [])

    def test_public_headers_include_no_private_ones(self):
        wrong = [f"{name} includes {header}" for name, folder, mark, header in self.includes()
                 if folder.startswith("platform/") and is_public(name)
                 and is_private(header)]
        self.assertEqual(wrong, [])

    def test_private_headers_stay_in_their_folder(self):
        wrong = [f"{name} includes {header}" for name, folder, mark, header in self.includes()
                 if is_private(header) and folder_of(header) not in (None, folder)
                 and folder in ("app", "shared", "gallery")]
        self.assertEqual(wrong, [])

    def test_folders_do_not_know_libraries_of_others(self):
        wrong = [f"{name} includes <{header}>" for name, folder, _, header in self.includes()
                 if folder in FOREIGN_TO and FOREIGN_TO[folder].match(header)]
        self.assertEqual(wrong, [])

    def test_there_is_something_to_check(self):
        self.assertGreater(len({pathlib.PurePath(name) for name, *_ in self.includes()}), 20)


if __name__ == "__main__":
    main("project_arrows")
