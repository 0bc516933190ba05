"""Every line that any run of the tests wrote is as its schema says, and the catalogue's failures occur.

A failure counts as reached only when a run wrote it: of the driver itself, or of a whole command in
the tests in C++.
"""
import json
import os
import re
import sys
import unittest
from pathlib import Path

from mac import ROOT
from validation import Validation

import table

FOLDER = Path(os.environ.get("BUILD_FOLDER", ROOT / "build/release")) / "replies"
SUITES = os.environ.get("DRIVER_TEST_SUITES", "").split()
FILES = [FOLDER / f"{suite}.txt" for suite in SUITES] or sorted(FOLDER.glob("*.txt"))
SKIPPED = 77

# Failure texts that no command line leads to: what they guard against is ruled out before. Unit tests
# hold them.
RULED_OUT = {
    # ax-menu has a title at least, or its usage is the answer.
    "empty menu path",
    # A session shares its window before it takes commands, and one that cannot ends the service.
    'native screen sharing unavailable: InputFailure(message: "no shared window for input")',
}
if os.geteuid() != 0:
    # Only root can be somebody else for a test.
    RULED_OUT.add("the simulated Mac at {socket} is another user's")


def entries():
    """(command, line) of each that was written; several suites write the same."""
    written = {}
    for file in FILES:
        written.update(dict.fromkeys(file.read_bytes().decode().removesuffix("\n").split("\n")))
    for entry in written:
        command, _, line = entry.partition("\t")
        yield command, line


def failures():
    """(command, failure text) of each that a whole command wrote."""
    names = {command.name for command in table.commands()}
    found = set()
    for command, line in entries():
        if command == "inside":
            continue
        for value in values_in(line):
            for reply in (value, value.get("reply")):
                if isinstance(reply, dict) and "error" in reply:
                    found.add((command if command in names else None, reply["error"]))
    return found


def values_in(line):
    """The objects on a line: more than one when the line feed between them was not taken."""
    decoder = json.JSONDecoder()
    at = 0
    while at < len(line):
        value, at = decoder.raw_decode(line, at)
        yield value


class Suite(unittest.TestCase):
    def test_writes_nothing_that_does_not_validate(self):
        seen = Validation()
        names = {command.name for command in table.commands()}
        met = set()
        for command, line in entries():
            for value in values_in(line):
                if command == "inside":
                    continue  # a piece of the program that a test runs by itself
                if command not in names:
                    command = "no-command"
                met.add(command)
                with self.subTest(command=command, line=line[:300]):
                    self.assertEqual([], seen.faults(command, value))
                if command == "capture-service" and "reply" in value:
                    with self.subTest(line=line[:300]):
                        self.assert_shared(seen, value["reply"])
        print(f"{seen.count} lines of {len(met)} commands validated, {len(seen.errors)} failures")
        self.assertEqual(names | {"no-command"}, met)

    def assert_shared(self, seen, reply):
        """A reply within a session is one of those that shared commands give."""
        shared = ("held-focus", "bg-click", "bg-scroll", "bg-drag", "capture")
        self.assertTrue(any(not seen.faults(name, reply) for name in shared))


class Catalogue(unittest.TestCase):
    maxDiff = None

    def test_has_no_failure_that_nothing_reaches(self):
        seen = failures()
        unreached = []
        for entry in table.errors():
            if "open" in entry or entry.get("platform") == "macos":
                continue
            names = set(table.commands_of(entry)) or {None}
            pattern = re.compile(table.pattern_of(table.whole_message(entry)))
            if not any(name in names and pattern.search(error) for name, error in seen):
                unreached.append(table.whole_message(entry))
        self.assertEqual(RULED_OUT, set(unreached))


if __name__ == "__main__":
    missing = [file.name for file in FILES if not file.exists()]
    if missing or not FILES:
        print(f"not all tests have been run: there is no {', '.join(missing) or FOLDER}")
        sys.exit(SKIPPED)
    unittest.main()
