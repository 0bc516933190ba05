"""Every line that any run of the tests in C++ wrote is as its schema says."""
import json
import os
import sys
import unittest
from pathlib import Path

from mac import ROOT
from validation import Validation

import table

FOLDER = Path(os.environ.get("BUILD_FOLDER", ROOT / "build/release"))
FILES = [FOLDER / f"replies-{suite}.txt" for suite in ("direct", "forked", "joined")]
SKIPPED = 77


def entries():
    """(command, line) of each that was written."""
    for file in FILES:
        for entry in file.read_bytes().decode().removesuffix("\n").split("\n"):
            command, _, line = entry.partition("\t")
            yield command, line


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


if __name__ == "__main__":
    missing = [file.name for file in FILES if not file.exists()]
    if missing:
        print(f"not all tests have been run: there is no {', '.join(missing)}")
        sys.exit(SKIPPED)
    unittest.main()
