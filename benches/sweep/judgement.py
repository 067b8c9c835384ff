# SPDX-FileCopyrightText: 2026 The Tonewright Authors
# SPDX-License-Identifier: GPL-3.0-or-later
"""Judges the lines that the children printed, and writes the tables."""
import dataclasses
import datetime
import platform as machine
import subprocess

from children import Outcome

RATES = (48000, 44100)
ABSURD = 1e4  # 80 dB above full scale
PRESETS = 16  # the most presets that are tried of one effect
# The stages that an effect has to pass with its default settings.
PLAIN = ("256", "1", "63", "257", "1000", "257 of 1000", "1 of 1000", "in time", "another")


@dataclasses.dataclass
class Row:
    uri: str
    name: str
    package: str
    ours: dict[int, Outcome] = dataclasses.field(default_factory=dict)
    host: dict[int, Outcome] = dataclasses.field(default_factory=dict)
    jalv: str | None = None  # None: not run in jalv
    screen: Outcome | None = None

    def faults(self, rate: int) -> list[str]:
        """Return why the effect does not run here at that rate; an empty list if it runs."""
        return faults(self.ours[rate], PLAIN)

    def runs(self, rate: int) -> bool:
        return not self.faults(rate)

    def peer_runs(self, rate: int) -> bool:
        return not faults(self.host[rate], PLAIN)

    @property
    def plays(self) -> bool:
        """Return whether the effect runs under the conditions of jalv: blocks of 256 at 48 kHz, default settings."""
        outcome = self.ours[48000]
        return bool(outcome.values("peak")) and not any(
            value[0] == "256" for value in outcome.values("bad")) and float(outcome.values("peak")[0][1]) < ABSURD

    @property
    def jalv_runs(self) -> bool:
        return self.jalv is not None and (self.jalv == "" or self.jalv.startswith("ran"))


def faults(outcome: Outcome, stages: tuple[str, ...]) -> list[str]:
    if reason := outcome.first("refused"):
        return [f"refused: {reason}"]
    found = []
    if outcome.ended and not outcome.values("done"):
        found.append(f"{outcome.ended} at “{outcome.stage}”")
    elif outcome.ended:
        found.append(f"{outcome.ended} after the end")
    for what in ("failure", "rate"):
        found += [f"{what}: {' '.join(value)}" for value in outcome.values(what)]
    bad = [stage for stage, *_ in outcome.values("bad") if stage in stages]
    if bad:
        found.append(f"NaN or infinite at “{bad[0]}”")
    for stage, value in outcome.values("peak"):
        if stage in stages and float(value) >= ABSURD:
            found.append(f"peak {float(value):.0e} at “{stage}”")
            break
    return found


def presets(row: Row) -> str:
    number = row.ours[RATES[0]].first("presets")
    if not number:
        return "–"
    tried = sum(1 for stage in row.ours[RATES[0]].values("stage") if stage[0].startswith("preset "))
    text = number if tried == int(number) else f"{tried} of {number}"
    unset = max(len(outcome.values("unset")) for outcome in row.ours.values())
    bad = {stage for outcome in row.ours.values() for stage, *_ in outcome.values("bad") if stage.startswith("preset ")}
    loud = {stage for outcome in row.ours.values() for stage, value in outcome.values("peak")
            if stage.startswith("preset ") and float(value) >= ABSURD}
    for count, what in ((unset, "not set"), (len(bad), "not finite"), (len(loud), "too loud")):
        if count:
            text += f", {count} {what}"
    return text


def state(row: Row) -> str:
    found = []
    for rate in RATES:
        for stage, *difference in row.ours[rate].values("state"):
            if difference:
                found.append(f"{stage} ({rate // 100 / 10:g} kHz): `{'` became `'.join(difference)}`")
    if found:
        return found[0] + (f" and {len(found) - 1} more" if len(found) > 1 else "")
    return "kept" if any(outcome.values("state") for outcome in row.ours.values()) else "–"


def remarks(row: Row) -> str:
    found = []
    for rate in RATES:
        for stage in ("moved", "restored", "restored in another", "other rate"):
            if any(value[0] == stage for value in row.ours[rate].values("bad")):
                found.append(f"not finite with controls moved ({rate})")
                break
    peers = []
    for rate in RATES:
        if why := faults(row.host[rate], PLAIN):
            peers.append(f"lilv host at {rate}: {why[0]}")
    if row.jalv:
        peers.append(f"jalv: {row.jalv}")
    return "; ".join(found + peers)


def packages(bundles: dict[str, str]) -> dict[str, str]:
    """Return the package of each effect, with its version. `bundles` maps each effect to its bundle."""
    paths = sorted({bundle.rstrip("/") for bundle in bundles.values()})
    names = {}
    for line in subprocess.run(["dpkg-query", "-S", *paths], capture_output=True, text=True).stdout.splitlines():
        package, _, path = line.partition(": ")
        names[path.strip()] = package.split(",")[0].split(":")[0]
    versions = {}
    if names:
        shown = subprocess.run(["dpkg-query", "-W", "-f=${Package} ${Version}\n", *sorted(set(names.values()))],
                               capture_output=True, text=True).stdout
        versions = dict(line.split() for line in shown.splitlines())
    return {uri: f"{package} {versions.get(package, '')}" if (package := names.get(bundle.rstrip("/"))) else "–"
            for uri, bundle in bundles.items()}


def figures(rows: list[Row]) -> dict[str, int]:
    pairs = [(row, rate) for row in rows for rate in RATES]
    return {
        "effects": len(rows),
        "ours_48000": sum(row.runs(48000) for row in rows),
        "ours_44100": sum(row.runs(44100) for row in rows),
        "host_pairs": sum(row.peer_runs(rate) for row, rate in pairs),
        "host_pairs_ours_too": sum(row.peer_runs(rate) and row.runs(rate) for row, rate in pairs),
        "jalv_asked": sum(row.jalv is not None for row in rows),
        "jalv": sum(row.jalv_runs for row in rows),
        "jalv_ours_too": sum(row.jalv_runs and row.plays for row in rows),
        "jalv_ours_all": sum(row.jalv_runs and row.runs(48000) for row in rows),
        "state_kept": sum(state(row) == "kept" for row in rows),
        "interfaces": sum(shown(row) == "own" for row in rows),
        "interfaces_larger": sum(row.screen is not None and bool(row.screen.values("larger")) for row in rows),
        "interfaces_scroll": sum(row.screen is not None and bool(row.screen.values("scrolls")) for row in rows),
        "interfaces_failed": sum(shown(row) not in ("", "own", "list") for row in rows),
    }


def share(part: int, whole: int) -> str:
    return f"{100 * part / whole:.1f} %" if whole else "–"


def summary(rows: list[Row]) -> list[str]:
    found = figures(rows)
    lines = [f"Of {found['effects']} effects, {found['ours_48000']} run here at 48 kHz and {found['ours_44100']} at 44.1 kHz.",
             f"Of {found['host_pairs']} pairs of effect and rate that the bare lilv host runs, "
             f"{found['host_pairs_ours_too']} run here ({share(found['host_pairs_ours_too'], found['host_pairs'])})."]
    if found["jalv_asked"]:
        lines.append(f"jalv runs {found['jalv']} of {found['jalv_asked']} effects; of these {found['jalv_ours_too']} also "
                     f"play here in the same blocks ({share(found['jalv_ours_too'], found['jalv'])}), and "
                     f"{found['jalv_ours_all']} pass the whole sweep ({share(found['jalv_ours_all'], found['jalv'])}).")
    lines.append(f"{found['state_kept']} effects restore their state.")
    if found["interfaces"]:
        lines.append(f"{found['interfaces']} effects show an interface of their own. {found['interfaces_larger']} of these "
                     f"interfaces are larger than the panel, and {found['interfaces_scroll']} do not fit on the screen. "
                     f"{found['interfaces_failed']} effects fail to show their interface.")
    return lines


def shown(row: Row) -> str:
    """Return what the screen shows: the effect's own interface, the list, or how it failed; empty if it was not opened."""
    if row.screen is None or row.screen.values("refused"):
        return ""
    if row.screen.ended and not row.screen.values("done"):
        return f"{row.screen.ended} at “{row.screen.stage}”"
    return row.screen.first("shows")


def why_list(row: Row) -> str:
    """Return the line on standard error that says why the plain list replaces the effect's interface."""
    return next((line for line in row.screen.errors.splitlines() if "a plain list replaces it" in line), "")


# Known faults of effects: how the effects' URIs begin, and the cause of the fault.
KNOWN_FAULTS = {
    "http://lsp-plug.in/plugins/lv2/oscilloscope_":
        "the effect reads sound before it has received any if an interface connects soon after the effect's start; "
        "a known fault, fixed by its authors after version 1.2.5",
}


def known_fault(row: Row) -> str:
    return next((text for start, text in KNOWN_FAULTS.items() if row.uri.startswith(start)), "")


def interface_table(rows: list[Row]) -> list[str]:
    lines = ["| Effect | URI | Shows | Size | Panel | Remarks |", "|---|---|---|---|---|---|"]
    for row in rows:
        what, screen = shown(row), row.screen
        if not what or (what == "list" and not why_list(row)):
            continue
        notes = [why_list(row)] if what == "list" else []
        if screen.values("larger"):
            notes.append("larger than the panel")
        if screen.values("scrolls"):
            notes.append("larger than the screen: scrolls")
        if screen.ended and not screen.values("done"):
            notes.append(known_fault(row))
        if screen.ended and screen.values("done"):
            notes.append(f"{screen.ended} after the end")
        cells = [row.name, f"`{row.uri}`", what, screen.first("size"), screen.first("panel"), "; ".join(filter(None, notes))]
        lines.append("| " + " | ".join(cell(text) for text in cells) + " |")
    return lines


def cell(text: str) -> str:
    return text.replace("|", "\\|").replace("<", "&lt;").replace("\n", " ") or " "


def table(rows: list[Row]) -> list[str]:
    lines = ["| Effect | URI | Package | 48 kHz | 44.1 kHz | Presets | State | Remarks |", "|---|---|---|---|---|---|---|---|"]
    for row in rows:
        results = ["runs" if row.runs(rate) else "; ".join(row.faults(rate)) for rate in RATES]
        cells = [row.name, f"`{row.uri}`", row.package, *results, presets(row), state(row), remarks(row)]
        lines.append("| " + " | ".join(cell(text) for text in cells) + " |")
    return lines


def document(rows: list[Row]) -> str:
    """Return the text of docs/EFFECTS.md."""
    today = datetime.date.today().isoformat()
    system = machine.freedesktop_os_release().get("PRETTY_NAME", machine.system())
    with_trouble = [row for row in rows if not all(row.runs(rate) for rate in RATES)]
    parts = ["<!-- SPDX-FileCopyrightText: 2026 The Tonewright Authors -->",
             "<!-- SPDX-License-Identifier: GPL-3.0-or-later -->",
             "# Effects",
             "",
             f"Written by `./bench sweep --markdown docs/EFFECTS.md` on {today}, {system}, {machine.machine()}.",
             "",
             *summary(rows),
             "",
             "Each effect ran in a child process of its own, through the registry and the engine on the offline device: one second in",
             "blocks of 256 frames; blocks of 1, 63 and 257 frames; blocks of 1000, 257 and 1 frames on a device with blocks of 1000;",
             f"a third of a second on a device in real time; notes, if the effect accepts MIDI; up to {PRESETS} presets; every control moved;",
             "the state saved and restored, in the same instance and in a new one; and a change of the device's rate. An effect counts",
             "as running if none of these steps crashed, hung or failed, and if with its default settings every sample was finite and",
             "none exceeded 10,000. The peers are a small host based on lilv (`benches/sweep/host.cpp`: the same block lengths, default",
             "settings) and jalv with JACK's dummy driver at 48 kHz.",
             ""]
    if with_trouble:
        parts += ["## Effects that do not run", "", *table(with_trouble), ""]
    parts += ["## All effects", "", *table(rows), ""]
    if any(row.screen for row in rows):
        parts += ["## Interfaces", "",
                  "Each interface was opened in a child process of its own, in a window of 920 x 617 pixels on a display of 1400 x 1000 pixels",
                  "without a window manager. Effects without an interface are not listed, because they always get the plain list.", "",
                  *interface_table(rows), ""]
    return "\n".join(parts)
