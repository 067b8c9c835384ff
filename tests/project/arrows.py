# SPDX-FileCopyrightText: 2026 The Tonewright Authors
# SPDX-License-Identifier: GPL-3.0-or-later
"""Checks which headers each folder may include, as described in docs/ARCHITECTURE.md."""
import re
import unittest

from tree import code, main, text

# Maps a folder to the project's folders whose headers it may include, besides its own.
MAY_INCLUDE = {
    "app": {"shared", "platform/foundation", "platform/dispatch", "platform/ui", "platform/audio", "platform/effects"},
    "shared": {"platform/foundation", "platform/dispatch", "platform/network", "platform/ui", "platform/web"},
    "gallery": {"shared", "platform/foundation", "platform/dispatch", "platform/ui"},
    "examples": {"shared", "platform/foundation", "platform/dispatch"},
    "tools": {"shared", "platform/foundation", "platform/dispatch", "platform/network"},
    "benches": {"app", "shared", "platform/foundation", "platform/dispatch", "platform/network", "platform/ui",
                "platform/audio", "platform/effects", "tests"},
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
    "loops": set(),
}
# Folders that may use only the standard library and the platform.
SYSTEM = ("app", "shared", "gallery", "examples")
# Only the effect's view connects the plug-in host with GTK; nothing else in the host includes GTK.
EFFECTS_MEET_UI = re.compile(r"platform/effects/(view/|AUViewController\.hpp$)")
# System headers that a public header may include, besides those of the standard library.
NEAR_THE_MACHINE = {"platform/realtime": {"semaphore.h", "xmmintrin.h"}}
# Libraries that a folder must not include at all.
FOREIGN_TO = {
    "platform/audio": re.compile(r"^(lv2|lilv|suil|gtk|gdk|X11|cairo)"),
    "platform/ui": re.compile(r"^(lv2|lilv|pipewire|spa/|libav|libsw|RtAudio|rtaudio)"),
    "platform/dispatch": re.compile(r"^(gtk|gdk|X11|lv2|lilv|pipewire|spa/|libav)"),
    "platform/foundation": re.compile(r"^(gtk|gdk|X11|lv2|lilv|pipewire|spa/|libav)"),
}
# Private types of members of public classes. Using pointers instead would cost the time or memory that they save.
SHOWN_DETAILS = {
    "shared/Common/Animator/detail/Callback.hpp",
    "shared/Common/Files/detail/CompactText.hpp",
    "shared/Common/Files/detail/NodeLocation.hpp",
}
# The layers of a folder, the lowest first. A file includes nothing from a layer above its own.
FLOORS = {
    "platform/effects": [r"", r"process/", r"(lv2|detail)/", r"running/", r"unit/", r"(inside|outside|child|module)/",
                         r"view/"],
    "platform/ui": [
        r"(CGRect|Canvas|GObjectRef|LayoutEdge|Mark|UIColor|detail/CanvasTarget|webSandbox)\.",
        r"(toolkit|images)/",
        r"",  # the views, and all files that are not named here
        r"interface/",
        r"(UIAlertController|UIApplication|UIDocumentPicker|UIStoryboardSegue|UIViewController|detail/dialogWindow)",
    ],
}
# Exceptions: includes of a higher layer, with their reasons in docs/ARCHITECTURE.md.
RUN_UP = {
    ("platform/ui/UIWindow.cpp", "platform/ui/UIViewController.hpp"),
    ("platform/effects/unit/ComponentProvider.cpp", "platform/effects/inside/InsideModule.hpp"),
    ("platform/effects/unit/ComponentProvider.cpp", "platform/effects/outside/OutsideProcessor.hpp"),
}
# Only these folders of the plug-in host include what runs plug-ins; the program contains none of them.
RUNNING = "platform/effects/running/"
RUNS_PLUGINS = re.compile(r"platform/effects/(running|child|module)/")
INCLUDE = re.compile(r'^\s*#\s*include\s*([<"])([^>"]+)[>"]', re.M)


def folder_of(name: str) -> str | None:
    for folder in sorted([*MAY_INCLUDE, "tests"], key=len, reverse=True):
        if name.startswith(folder + "/"):
            return folder
    return None


def private_to(name: str) -> str | None:
    """Return the folder that a header is private to, or None if it is public. In a folder of the platform only headers
    in subfolders are private; elsewhere a folder named detail is private to the folder around it."""
    room = re.match(r"(platform/\w+)/.+/", name) or re.match(r"(.+)/detail/", name)
    return room.group(1) if room and name.endswith(".hpp") else None


def floor_of(name: str, room: str) -> int:
    floors = FLOORS[room]
    places = [place for place, pattern in enumerate(floors) if pattern and re.match(pattern, name[len(room) + 1:])]
    return places[0] if places else floors.index("")


def faults(name: str, folder: str, mark: str, header: str):
    """Yield the errors of one include."""
    target, room, own = folder_of(header), private_to(header), private_to(name)
    public = name.endswith(".hpp") and own is None and folder.startswith(("platform/", "shared"))
    if mark == '"' and target is None and "/" in header and folder != "effect":
        yield "which lies in no known folder"
    if target and target != folder and target not in MAY_INCLUDE[folder]:
        yield "which its folder may not include"
    if folder == "platform/effects" and target == "platform/ui" and not EFFECTS_MEET_UI.search(name):
        yield "but is not part of the effect's view"
    standard = re.fullmatch(r"[a-z_0-9]+", header) or header in NEAR_THE_MACHINE.get(folder, ())
    if mark == "<" and not standard and (folder in SYSTEM or public):
        yield "which is not of the standard library"
    if room and not name.startswith(room + "/") and folder != "benches":
        yield f"which is private to {room}"
    elif room and public and header not in SHOWN_DETAILS:
        yield "which is private, from a public header"
    if folder in FLOORS and target == folder and (name, header) not in RUN_UP:
        if floor_of(name, folder) < floor_of(header, folder):
            yield "which is in a layer above it"
    if header.startswith(RUNNING) and not RUNS_PLUGINS.match(name):
        yield "which is not part of the program"
    if folder in FOREIGN_TO and FOREIGN_TO[folder].match(header):
        yield "of a library that its folder must not use"


class Arrows(unittest.TestCase):
    def test_includes_point_only_where_they_may(self):
        seen = [(name, folder, mark, header) for name in code() if (folder := folder_of(name)) and folder != "tests"
                for mark, header in INCLUDE.findall(text(name))]
        self.assertGreater(len(seen), 20)
        self.assertEqual([f"{one[0]} includes {one[3]}, {fault}" for one in seen for fault in faults(*one)], [])

    def test_every_exception_is_needed(self):
        arrows = {(name, header) for name in code() for _, header in INCLUDE.findall(text(name))}
        self.assertEqual(RUN_UP - arrows, set())
        self.assertEqual(SHOWN_DETAILS - {header for name, header in arrows if private_to(name) is None
                                          and name.endswith(".hpp")}, set())

    def test_one_convention_names_private_headers(self):
        self.assertEqual([name for name in code() if ".private." in name], [])


if __name__ == "__main__":
    main("project_arrows")
