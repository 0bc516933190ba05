"""Gives a mistake to the tests that reach its place, the quickest first, until one fails."""
import collections
import os
import resource
import subprocess
from pathlib import Path

from scratch_project import FROM_OUTSIDE, failure_told_by

# The kernel takes no longer word on a command line.
FILTER_CHARACTERS_MAX = 100_000

# A try: the quickest tests of a suite, which most mistakes do not survive.
FIRST_TESTS = 30
FIRST_MILLISECONDS = 300

# What is wrong may go on for ever, and take all memory.
MEMORY_MAX_BYTES = 4 << 30
PATIENCE_SECONDS = 3
PATIENCE_FACTOR = 10

# Of tests that take as long as each other the one that reaches fewer mistakes says more of each.
Test = collections.namedtuple("Test", "suite name milliseconds reaches")


def limits(seconds):
    """Of processor time, since others may keep the machine busy."""
    def set_them():
        resource.setrlimit(resource.RLIMIT_CPU, (seconds, seconds))
        resource.setrlimit(resource.RLIMIT_AS, (MEMORY_MAX_BYTES, MEMORY_MAX_BYTES))
        resource.setrlimit(resource.RLIMIT_CORE, (0, 0))
    return set_them


def failure(executable, number, names, milliseconds):
    """The first of these tests of an executable that fails with a mistake; None when all pass."""
    seconds = PATIENCE_SECONDS + PATIENCE_FACTOR * milliseconds // 1000
    command = [executable, "--gtest_fail_fast", "--gtest_brief=1", "--gtest_filter=" + ":".join(names)]
    try:
        run = subprocess.run(command, env={**os.environ, "MUTANT": str(number)}, capture_output=True, text=True,
                             errors="replace", timeout=10 * seconds, preexec_fn=limits(seconds), cwd=executable.parent)
    except subprocess.TimeoutExpired:
        return f"{executable.name} does not end"
    return failure_told_by(run)


def run(executable, path):
    """Writes what its tests reach."""
    new = Path(str(path) + ".new")
    marks = Path(str(new) + ".marks")
    marks.unlink(missing_ok=True)
    done = subprocess.run([executable, "--gtest_brief=1"], capture_output=True, text=True, errors="replace",
                          env={**os.environ, "MUTANT": "-1", "REACHED": str(new)}, cwd=executable.parent)
    if done.returncode != 0:
        raise SystemExit(f"{executable.name} fails without any mistake:\n{done.stdout[-3000:]}")
    marks.unlink()
    new.rename(path)


class Reached:
    """Which tests reach the place of each mistake."""

    def __init__(self, build):
        """Runs each suite without mistakes. It has to pass."""
        self.folder = build.folder
        self.tests_of, self.all_of = collections.defaultdict(list), collections.defaultdict(list)
        for suite in build.suites:
            self.read(suite)

    def read(self, suite):
        executable, path = self.folder / suite, self.folder / f"{suite}.reached"
        if not path.exists() or path.stat().st_mtime < executable.stat().st_mtime:
            run(executable, path)
        before, *lines = path.read_text().splitlines()
        for line in lines:
            name, milliseconds, *numbers = line.split(" ")
            test = Test(suite, name, int(milliseconds), len(numbers))
            self.all_of[suite].append(test)
            for number in numbers:
                self.tests_of[int(number)].append(test)
        # Made before any test, as in a constant.
        for number in before.split(" ")[2:]:
            self.tests_of[int(number)] += self.all_of[suite]

    def near(self, numbers):
        """The tests that reach one of these mistakes."""
        return set().union(*(self.tests_of[each] for each in numbers))

    def rounds(self, reaching, suites):
        """(suite, tests): of each of these suites the quickest of these tests, and then the others of each."""
        first, later = [], []
        for suite in suites:
            tests = sorted((each for each in reaching if each.suite == suite),
                           key=lambda each: (each.milliseconds, each.reaches, each.name))
            count, total = 0, 0
            while count < min(len(tests), FIRST_TESTS) and total <= FIRST_MILLISECONDS:
                total += tests[count].milliseconds
                count += 1
            first.append((suite, tests[:count]))
            later.append((suite, tests[count:]))
        return [(suite, part) for suite, tests in first + later for part in in_filters(tests)]


def in_filters(tests):
    """In parts whose names fit into one filter."""
    part, characters = [], 0
    for each in tests:
        if characters + len(each.name) + 1 > FILTER_CHARACTERS_MAX:
            yield part
            part, characters = [], 0
        part.append(each)
        characters += len(each.name) + 1
    if part:
        yield part


def killer_in_schema(reached, number, suites):
    """The first test of these suites that fails with a mistake that is compiled in; None when none does."""
    return first_killer(reached.rounds(reached.tests_of[number], suites), number, lambda suite: reached.folder / suite)


def killer_alone(alone, reached, neighbours, suites):
    """The same of one that is compiled by itself: of the tests that reach its neighbours, which are compiled in."""
    linked = {}

    def executable(suite):
        if suite not in linked:
            linked[suite] = alone.link(suite)
        return linked[suite]

    reaching = [each for each in reached.near(neighbours) if each.suite not in FROM_OUTSIDE]
    return first_killer(reached.rounds(reaching, suites), 0, executable)


def first_killer(rounds, number, executable_of):
    for suite, tests in rounds:
        found = failure(executable_of(suite), number, [each.name for each in tests],
                        sum(each.milliseconds for each in tests))
        if found is not None:
            return found
    return None
