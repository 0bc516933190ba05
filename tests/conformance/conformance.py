"""The scenarios of this folder, on this Mac or on a simulated one; scripts/conformance runs it."""
import argparse
import difflib
import json
import subprocess
import sys
from pathlib import Path

from normalise import REASONS, Layout
from player import Player
from sides import RealMac, Simulated, Trouble

HERE = Path(__file__).resolve().parent
COLUMNS_MAX = 100
# What a driver, or a fixture, that does not do as it should can lead to.
FAILURES = (OSError, ValueError, TypeError, LookupError, subprocess.SubprocessError, Trouble)


class Stored:
    """The stored replies, a file for each scenario."""

    def __init__(self, folder):
        self._folder = Path(folder)

    def path(self, name):
        return self._folder / f"{name.replace(' ', '-')}.json"

    def entries(self, name):
        """None when there are none."""
        path = self.path(name)
        return json.loads(path.read_text()) if path.exists() else None

    def write(self, name, entries):
        self._folder.mkdir(parents=True, exist_ok=True)
        self.path(name).write_text(shown(entries) + "\n")

    def unused(self, names):
        """The files that belong to no scenario."""
        used = {self.path(name) for name in names}
        return sorted(path for path in self._folder.glob("*") if path not in used)


def shown(value, indent="", before=""):
    """JSON as it is stored and compared: what fits stands on one line."""
    text = json.dumps(value, ensure_ascii=False)
    if len(indent + before + text) < COLUMNS_MAX or not isinstance(value, (dict, list)):
        return f"{indent}{before}{text}"
    inner = indent + "  "
    if isinstance(value, list):
        lines = [shown(each, inner) for each in value]
    else:
        lines = [shown(each, inner, f"{json.dumps(key, ensure_ascii=False)}: ")
                 for key, each in value.items()]
    opening, closing = "[]" if isinstance(value, list) else "{}"
    return f"{indent}{before}{opening}\n" + ",\n".join(lines) + f"\n{indent}{closing}"


def difference(name, stored, entries):
    """The lines that differ, the stored ones and the new ones, each with its step."""
    lines = difflib.unified_diff(shown(stored).splitlines(), shown(entries).splitlines(),
                                 f"{name}: stored", f"{name}: now", n=8, lineterm="")
    return list(lines)


def play(side, layout, scenario, stored):
    """The entries of a scenario, and what was wrong beside them."""
    with side.start(scenario.get("start", [])) as desk:
        before = desk.user_state()
        entries = Player(side, desk, layout, stored).play(scenario)
        after = desk.user_state()
        faults = [f"rule of safe input broken: {rule}" for rule in desk.broken_rules()]
    # Whether the screen is locked is part of it.
    if before != after and not scenario.get("locks"):
        faults.append(f"the user's state has changed: {before!r} has become {after!r}")
    return entries, faults


class Session:
    """One run of scenarios on one side."""

    def __init__(self, side, layout, stored, update):
        self._side = side
        self._layout = layout
        self._stored = stored
        self._update = update
        self.steps = 0
        self.faults = 0

    def run(self, scenario):
        """Plays and compares a scenario, prints a line of the table and what differs."""
        name = scenario["name"]
        stored = self._stored.entries(name)
        try:
            entries, faults = play(self._side, self._layout, scenario, stored)
        except FAILURES as error:
            entries, faults = [], [f"it could not be played to its end: {error!r}"]
        lines = self._compare(name, stored, entries, broken=bool(faults))
        self.steps += len(entries)
        verdict = "differs" if lines or faults else "as stored"
        print(f"{name:34} {len(entries):3} replies  {verdict}")
        for line in [*lines, *faults]:
            print(f"    {line}")
        self.faults += bool(faults) or (bool(lines) and not self._update)
        sys.stdout.flush()

    def _compare(self, name, stored, entries, broken):
        if stored == entries:
            return []
        if self._update and not broken:
            self._stored.write(name, entries)
        elif stored is None:
            return [f"no replies are stored in {self._stored.path(name).name}; now:",
                    *shown(entries).splitlines()]
        return difference(name, stored or [], entries)

    def sweep(self, names):
        """Stored replies of no scenario are a fault, or go when replies are written anew."""
        for path in self._stored.unused(names):
            print(f"{path.name}: stored replies of no scenario")
            if self._update:
                path.unlink()
            else:
                self.faults += 1


def parsed(arguments):
    """The options. Exits with status 2, and says why, when there is anything wrong with them."""
    parser = argparse.ArgumentParser(
        prog="conformance", allow_abbrev=False,
        usage="scripts/conformance [--driver PATH] [--update] [--lock] [SCENARIO]...")
    parser.add_argument("scenario", nargs="*", help="names of scenarios; all without")
    parser.add_argument("--side", choices=("mac", "simulated"), required=True)
    parser.add_argument("--fixture", help="the fixture's bundle, on a Mac")
    parser.add_argument("--scenarios", default=HERE / "scenarios.json", type=Path)
    parser.add_argument("--replies", default=HERE / "replies", type=Path)
    parser.add_argument("--update", action="store_true", help="store the replies of this run")
    parser.add_argument("--lock", action="store_true",
                        help="on a Mac too, play the scenarios that lock the screen")
    parser.add_argument("--normalisations", action="store_true", help="say what is not compared")
    options = parser.parse_args(arguments)
    unknown = set(options.scenario) - {scenario["name"] for scenario in read(options.scenarios)}
    if unknown:
        parser.error("no such scenario: " + ", ".join(sorted(unknown)))
    return options


def read(path):
    return json.loads(path.read_text())


def chosen(scenarios, options):
    """The scenarios to play: those named, or all; on a Mac without those that lock it."""
    for scenario in scenarios:
        if options.scenario and scenario["name"] not in options.scenario:
            continue
        if scenario.get("locks") and options.side == "mac" and not options.lock:
            print(f"{scenario['name']:34} not played: it locks the screen, see --lock")
            continue
        yield scenario


def print_normalisations(scenarios):
    """All that is not compared as it is."""
    for what, reason in REASONS.items():
        print(f"{what}: {reason}")
    for scenario in scenarios:
        for step in scenario["steps"]:
            for key, reason in (step.get("without", {}) if isinstance(step, dict) else {}).items():
                print(f"{scenario['name']}, {step['run']}: not \"{key}\": {reason}")


def run(options):
    """0 when all replies are as stored, 1 when one is not, 2 when nothing could be played."""
    layout = Layout(read(HERE / "layout.json"))
    scenarios = read(options.scenarios)
    if options.normalisations:
        print_normalisations(scenarios)
        return 0
    try:
        side = Simulated(layout)
        if options.side == "mac":
            side = RealMac(options.fixture)
            side.check()
            print("Leave mouse and keyboard alone until this has ended.", flush=True)
        session = Session(side, layout, Stored(options.replies), options.update)
        played = 0
        for scenario in chosen(scenarios, options):
            session.run(scenario)
            played += 1
    except Trouble as trouble:
        print(trouble)
        return 2
    session.sweep([scenario["name"] for scenario in scenarios])
    print(f"{played} scenarios, {session.steps} replies, {session.faults} faults")
    print(side.summary)
    return 1 if session.faults else 0
