"""The README: its moving picture is what its script draws of today's programs, its promises name rules that are checked,
and what it shows of runs is so."""
import os
import re
import subprocess
import sys
import tempfile
import unittest
from pathlib import Path
from xml.etree import ElementTree

from mac import DRIVER, ROOT, SIMULATED_MAC

sys.path.insert(0, str(ROOT / "scripts"))
import picture_steps

README = (ROOT / "README.md").read_text(encoding="utf-8")
PICTURE = ROOT / "docs/pictures/behind.svg"
PICTURE_BYTES_MAX = 100_000


def drawn(target, **programs):
    return subprocess.run([ROOT / "scripts/moving-picture", target], capture_output=True, text=True, timeout=60, check=False,
                          env={**os.environ, "DRIVER_EXECUTABLE": DRIVER, "SIMULATED_MAC_EXECUTABLE": SIMULATED_MAC, **programs})


class Picture(unittest.TestCase):
    def setUp(self):
        folder = tempfile.TemporaryDirectory(prefix="readme-")
        self.addCleanup(folder.cleanup)
        self.folder = Path(folder.name)

    def test_is_what_the_script_draws(self):
        done = drawn(self.folder / "behind.svg")
        self.assertEqual((0, "", ""), (done.returncode, done.stdout, done.stderr))
        self.assertEqual(PICTURE.read_text(encoding="utf-8"), (self.folder / "behind.svg").read_text(encoding="utf-8"),
                         "scripts/moving-picture draws it anew")

    def test_is_not_drawn_of_an_agent_that_the_user_notices(self):
        driver = self.folder / "driver"
        driver.write_text(f'#!/bin/sh\n{SIMULATED_MAC} user move 1,1 >&2\nexec {DRIVER} "$@"\n')
        driver.chmod(0o755)
        done = drawn(self.folder / "behind.svg", DRIVER_EXECUTABLE=str(driver))
        self.assertEqual((1, "the user noticed: driver bg-click Mail 100 158\n"), (done.returncode, done.stderr))
        self.assertFalse((self.folder / "behind.svg").exists())

    def test_asks_for_nothing_and_runs_nothing(self):
        text = PICTURE.read_text(encoding="utf-8")
        ElementTree.fromstring(text)
        self.assertLess(len(text), PICTURE_BYTES_MAX)
        self.assertNotRegex(text, r"<script|<image|<foreignObject|href|@import|url\((?!#)| on\w+=")

    def test_stands_still_for_whoever_asks_for_that(self):
        self.assertIn("@media(prefers-reduced-motion:reduce){g{animation:none!important}}",
                      PICTURE.read_text(encoding="utf-8"))

    def test_is_shown_first(self):
        self.assertEqual("docs/pictures/behind.svg", re.search(r"!\[[^]]*\]\(([^)]+)\)", README)[1])


class Steps(unittest.TestCase):
    pictures = [{"desk": "D", "old": "1", "hand": "H"}, {"desk": "D", "old": "2", "new": "N", "hand": "H"},
                {"desk": "D", "old": "1", "new": "N", "hand": "H"}]

    def test_are_drawn_once_for_as_long_as_they_look_alike(self):
        self.assertEqual([("desk", 0, 3, "D"), ("old", 0, 1, "1"), ("old", 1, 2, "2"), ("old", 2, 3, "1"),
                          ("new", 1, 3, "N"), ("hand", 0, 3, "H")], picture_steps.spans_of(self.pictures))

    def test_are_seen_at_their_time(self):
        self.assertEqual("@keyframes s{0%{visibility:hidden}20%{visibility:visible}70%{visibility:hidden}}"
                         ".s{animation:s 10s step-end infinite}", picture_steps.keyframes("s", 2, 7, 10))
        self.assertEqual("@keyframes s{0%{visibility:visible}50%{visibility:hidden}}.s{animation:s 4s step-end infinite}",
                         picture_steps.keyframes("s", 0, 2, 4))
        self.assertEqual("@keyframes s{0%{visibility:hidden}75%{visibility:visible}}.s{animation:s 4s step-end infinite}",
                         picture_steps.keyframes("s", 3, 4, 4))

    def test_show_the_end_where_nothing_moves(self):
        drawn_groups = re.findall(r'<g class="([^"]+)">(.)</g>', picture_steps.animated(self.pictures, [1, 1, 2], (10, 10)))
        self.assertEqual([("s0-1 past", "1"), ("s1-2 past", "2"), ("s2-3", "1"), ("s1-3", "N")], drawn_groups)


class Promises(unittest.TestCase):
    def test_name_rules_that_are_checked_and_tests_that_are_there(self):
        rows = re.search(r"^\| `driver` promises .*?\n\n", README, re.M | re.S)[0].strip().splitlines()[2:]
        self.assertGreater(len(rows), 5)
        testing = (ROOT / "docs/TESTING.md").read_text(encoding="utf-8")
        for row in rows:
            with self.subTest(promise=row.split("|")[1].strip()):
                rules = re.findall(r"\b[IP]\d+\b", row.split("|")[3])
                self.assertGreater(len(rules), 0)
                for rule in rules:
                    self.assertIn(f"\n| {rule} | ", testing)


class Runs(unittest.TestCase):
    def test_reply_as_is_shown(self):
        shown = re.findall(r"^\$ (simulated-mac run .*|driver .*)\n(\{.*)$", README, re.M)
        self.assertEqual(2, len(shown))
        for command, reply in shown:
            with self.subTest(command=command):
                words = command.split()
                if words[0] == "driver":
                    words = ["simulated-mac", "run", "--virtual", "demo/desk.world", "--", *words]
                paths = os.pathsep.join({str(Path(each).parent) for each in (DRIVER, SIMULATED_MAC)})
                done = subprocess.run(words, cwd=ROOT, capture_output=True, text=True, timeout=60, check=False,
                                      env={**os.environ, "PATH": paths + os.pathsep + os.environ["PATH"]})
                self.assertEqual((0, f"{reply}\n"), (done.returncode, done.stdout))


if __name__ == "__main__":
    unittest.main()
