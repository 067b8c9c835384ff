# SPDX-FileCopyrightText: 2026 The Tonewright Authors
# SPDX-License-Identifier: GPL-3.0-or-later
"""What each folder may include: the arrows of docs/ARCHITECTURE.md."""
import re
import unittest

from tree import code, main, text

# Folder -> the folders of ours whose headers it may include, besides its own.
MAY_INCLUDE = {
    "app": {"shared", "platform/foundation", "platform/dispatch", "platform/ui", "platform/audio", "platform/effects"},
    "shared": {"platform/foundation", "platform/dispatch", "platform/network", "platform/ui", "platform/web"},
    "gallery": {"shared", "platform/foundation", "platform/dispatch", "platform/ui"},
    "platform/foundation": set(),
    "platform/realtime": set(),
    "platform/dispatch": {"platform/foundation"},
    "platform/network": {"platform/dispatch", "platform/foundation"},
    "platform/audio": {"platform/realtime", "platform/dispatch", "platform/foundation"},
    "platform/ui": {"platform/dispatch", "platform/foundation"},
    "platform/web": {"platform/ui", "platform/dispatch", "platform/foundation"},
    "platform/effects": {"platform/audio", "platform/realtime", "platform/ui", "platform/dispatch",
                         "platform/foundation"},
    "effect": set(),
}
# The effect's view is where the plug-in host and the toolkit meet; nothing else of the host sees a screen.
EFFECTS_MEET_UI = re.compile(r"platform/effects/[^/]*View[^/]*\.[ch]pp$")
# The headers of the system and the processor that a public header may include besides the standard library's.
NEAR_THE_MACHINE = {"platform/realtime": {"semaphore.h", "xmmintrin.h"}}
# Libraries that a folder must not know at all.
FOREIGN_TO = {
    "platform/audio": re.compile(r"^(lv2|lilv|suil|gtk|gdk|X11|cairo)"),
    "platform/ui": re.compile(r"^(lv2|lilv|pipewire|spa/|libav|libsw|RtAudio|rtaudio)"),
    "platform/dispatch": re.compile(r"^(gtk|gdk|X11|lv2|lilv|pipewire|spa/|libav)"),
    "platform/foundation": re.compile(r"^(gtk|gdk|X11|lv2|lilv|pipewire|spa/|libav)"),
}
# Folders whose headers are private to the room around them.
PRIVATE = re.compile(r"/(detail|devices|interface|toolkit|images)/")
INCLUDE = re.compile(r'^\s*#\s*include\s*([<"])([^>"]+)[>"]', re.M)


def folder_of(name: str) -> str | None:
    for folder in sorted(MAY_INCLUDE, key=len, reverse=True):
        if name.startswith(folder + "/"):
            return folder
    return None


def is_private(name: str) -> bool:
    """Tell whether a header is private to its room: by its name, or by where it lies."""
    return name.endswith(".private.hpp") or (name.startswith("platform/") and PRIVATE.search(name) is not None)


def is_public(name: str) -> bool:
    return name.endswith(".hpp") and not is_private(name)


def faults(name: str, folder: str, mark: str, header: str):
    """Say what is wrong with one include."""
    target, system = folder_of(header), folder in ("app", "shared", "gallery")
    public = folder.startswith("platform/") and is_public(name)
    if mark == '"' and target is None and "/" in header and folder != "effect":
        yield "which lies in no known folder"
    if target and target != folder and target not in MAY_INCLUDE[folder]:
        yield "where it may not point to"
    if folder == "platform/effects" and target == "platform/ui" and not EFFECTS_MEET_UI.search(name):
        yield "but is no place where the plug-in host meets the screen"
    standard = re.fullmatch(r"[a-z_0-9]+", header) or header in NEAR_THE_MACHINE.get(folder, ())
    if mark == "<" and not standard and (system or public):
        yield "which is not of the standard library"
    if public and is_private(header):
        yield "which is private, from a public header"
    if system and is_private(header) and target not in (None, folder):
        yield "which is private to another folder"
    if folder in FOREIGN_TO and FOREIGN_TO[folder].match(header):
        yield "of a library that its folder must not know"


class Arrows(unittest.TestCase):
    def test_includes_point_only_where_they_may(self):
        seen = [(name, folder, mark, header) for name in code() if (folder := folder_of(name))
                for mark, header in INCLUDE.findall(text(name))]
        self.assertGreater(len(seen), 20)
        self.assertEqual([f"{one[0]} includes {one[3]}, {fault}" for one in seen for fault in faults(*one)], [])


if __name__ == "__main__":
    main("project_arrows")
