# SPDX-FileCopyrightText: 2026 The Tonewright Authors
# SPDX-License-Identifier: GPL-3.0-or-later
"""What the sweep makes of the children's lines, and the table of it."""
import dataclasses
import datetime
import platform as machine
import subprocess

from children import Outcome

RATES = (48000, 44100)
ABSURD = 1000.0  # 60 dB above full scale
PRESETS = 16  # of an effect, at most
# What is asked of an effect with its default settings.
PLAIN = ("256", "1", "63", "257", "1000", "257 of 1000", "1 of 1000", "another", "other rate")


@dataclasses.dataclass
class Row:
    uri: str
    name: str
    package: str
    ours: dict[int, Outcome] = dataclasses.field(default_factory=dict)
    host: dict[int, Outcome] = dataclasses.field(default_factory=dict)
    jalv: str | None = None  # None: not asked

    def faults(self, rate: int) -> list[str]:
        """Give what keeps the effect from running here at that rate; nothing when it runs."""
        return faults(self.ours[rate], PLAIN)

    def runs(self, rate: int) -> bool:
        return not self.faults(rate)

    def peer_runs(self, rate: int) -> bool:
        return not faults(self.host[rate], PLAIN)

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
        for stage in ("moved", "restored"):
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
    """Give the package and its version for each effect; `bundles`: the bundle of each effect."""
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
        "jalv_ours_too": sum(row.jalv_runs and row.runs(48000) for row in rows),
        "state_kept": sum(state(row) == "kept" for row in rows),
    }


def share(part: int, whole: int) -> str:
    return f"{100 * part / whole:.1f} %" if whole else "–"


def summary(rows: list[Row]) -> list[str]:
    found = figures(rows)
    lines = [f"{found['effects']} effects; here {found['ours_48000']} run at 48 kHz and {found['ours_44100']} at 44.1 kHz.",
             f"Of {found['host_pairs']} pairs of effect and rate that the bare lilv host runs, "
             f"{found['host_pairs_ours_too']} run here ({share(found['host_pairs_ours_too'], found['host_pairs'])})."]
    if found["jalv_asked"]:
        lines.append(f"jalv was given {found['jalv_asked']} effects and runs {found['jalv']}; of these "
                     f"{found['jalv_ours_too']} run here ({share(found['jalv_ours_too'], found['jalv'])}).")
    lines.append(f"The state is kept by {found['state_kept']} effects.")
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


def document(rows: list[Row], extra: list[str]) -> str:
    """Give the whole of docs/EFFECTS.md."""
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
             "Each effect ran in a child process of its own, through the registry and the engine on the offline device: a",
             "second in blocks of 256 frames, then blocks of 1, 63 and 257, then 1000, 257 and 1 on a device of 1000; notes,",
             f"where it takes MIDI; up to {PRESETS} presets; all controls moved; the state there and back, in the same instance",
             "and in a new one; then a change of the device's rate. It runs when nothing of this crashed, hung or failed, and",
             "with its default settings every sample was finite and none above 1000. The peers are a host of 250 lines on lilv",
             "(`benches/sweep/host.cpp`: blocks of 256, default settings) and jalv on JACK's dummy driver.",
             ""]
    if with_trouble:
        parts += ["## Effects that do not run", "", *table(with_trouble), ""]
    parts += ["## All effects", "", *table(rows), ""] + extra
    return "\n".join(parts)
