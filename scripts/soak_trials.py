"""Tries which planted mistakes generated cases find by themselves."""
import concurrent.futures
import random
import re
import subprocess
import sys
import time

from scratch_project import PATIENCE_SECONDS, must_be_alone
from soak_table import SoakTable, commands_that_run, folder_beyond
from variants import DoesNotBuild

FOREVER = float("inf")
DOES_NOT_BUILD = "does not build"


def found_by(soak, cases, commands=(), first=1):
    """(seed, complaint) of the first of so many cases that fails; None when none does. Played are those that
    run one of the commands; all, when none is given."""
    chosen = ["--of", ",".join(commands)] if commands else []
    try:
        run = subprocess.run([soak, "--seed", str(first), "--runs", str(cases), "--first", *chosen],
                             capture_output=True, text=True, errors="replace", timeout=PATIENCE_SECONDS)
    except subprocess.TimeoutExpired:
        return None
    failed = [(int(seed), text) for seed, text in re.findall(r"^seed (\d+): (.*)$", run.stdout, re.M)]
    return min(failed, default=None)


class Trials:
    """Takes mistakes until time is out, several at once, and notes in the table what comes of them."""

    def __init__(self, scratch, soak, planted, arguments, every):
        self.scratch, self.soak, self.planted = scratch, soak, planted
        self.arguments, self.every = arguments, every
        self.table = SoakTable()
        self.ends = time.monotonic() + arguments.seconds
        self.tried, self.missed, self.broken = 0, 0, []

    def cases_for(self, mistake):
        return self.table.cases_allowed(mistake["name"]) if self.arguments.check else self.arguments.runs

    def attempt(self, mistake):
        """(what was found, seconds to build, seconds to find), or that it does not build; None when time is
        out."""
        if time.monotonic() > self.ends:
            return None
        start = time.monotonic()
        try:
            with self.scratch.changed(mistake["file"], self.planted(mistake)) as changed:
                soak = changed.build("soak")
                built = time.monotonic()
                found = found_by(soak, self.cases_for(mistake), commands_that_run(mistake["file"]))
        except DoesNotBuild:
            return DOES_NOT_BUILD
        if found is not None and found_by(self.soak, 1, first=found[0]) is not None:
            sys.exit(f"case {found[0]} fails without any mistake")
        return found, built - start, time.monotonic() - built

    def note(self, mistake, result):
        if result is None:
            return
        if result == DOES_NOT_BUILD:
            self.broken.append(mistake["name"])
            return
        found, build_seconds, find_seconds = result
        cases = self.cases_for(mistake)
        self.tried, self.missed = self.tried + 1, self.missed + (found is None)
        said = f"not in {cases}" if found is None else f"{found[0]}: {found[1][:110]}"
        print(f"{mistake['name']} ({build_seconds:.0f} s + {find_seconds:.0f} s): {said}", flush=True)
        if not self.arguments.check:
            self.table.note(mistake["name"], found and found[0], cases)
            self.table.write(self.every)

    def run(self, mistakes):
        """What must be alone comes last."""
        beside = [each for each in mistakes if not must_be_alone(each["file"], "soak")]
        with concurrent.futures.ThreadPoolExecutor(self.arguments.jobs) as pool:
            for mistake, result in zip(beside, pool.map(self.attempt, beside)):
                self.note(mistake, result)
        for mistake in mistakes:
            if mistake not in beside:
                self.note(mistake, self.attempt(mistake))


def chosen_of(mistakes, arguments, table):
    """Those that are to be tried."""
    chosen = [each for each in mistakes if folder_beyond(each["file"]) is None]
    if arguments.check:
        chosen = [each for each in chosen if table.cases_allowed(each["name"]) is not None]
    if arguments.lost:
        chosen = [each for each in chosen if table.cases_allowed(each["name"]) is None]
    if arguments.seconds < FOREVER:
        random.shuffle(chosen)
    return chosen


def try_by_soak(scratch, mistakes, planted, arguments, every):
    """The status to end with. `every` has all mistakes there are."""
    gaps = SoakTable().gaps(mistakes) if arguments.check else []
    for name in gaps:
        print(f"{name} is neither found nor explained")
    scratch.copy_sources()
    scratch.core.configure()
    soak = scratch.core.build("soak")
    if found_by(soak, 1000) is not None:
        sys.exit("a generated case fails without any mistake")
    trials = Trials(scratch, soak, planted, arguments, every)
    trials.run(chosen_of(mistakes, arguments, trials.table))
    for name in trials.broken:
        print(f"{name} does not build")
    print(f"{trials.tried - trials.missed} of {trials.tried} planted mistakes found by soak")
    return 1 if gaps or trials.broken or (arguments.check and trials.missed) else 0
