"""The waits in docs/WORST_CASE.md are those that the built driver makes, to the millisecond."""
import json
import re
import unittest
from pathlib import Path

from mac import ROOT, Mac

PAGE = (ROOT / "docs/WORST_CASE.md").read_text()
WORLD = Path(__file__).parent / "waits.world"
ROWS = re.findall(r"^\| `driver ([^`]*)` \| (\d+) \|", PAGE, re.M)
HUNG_MILLISECONDS_MAX = 12_000
SCREEN_CALLS = ("share.content", "share.screenshot")


def trace_of(command_line, *say):
    with Mac(WORLD) as mac:
        for words in say:
            mac.tell(*words)
        words = command_line.split() if isinstance(command_line, str) else command_line
        words = [mac.path(word) if word.endswith(".png") else word for word in words]
        run = mac.driver(*words)
        return run, [json.loads(line) for line in mac.tell("trace").splitlines()]


class Waits(unittest.TestCase):
    def test_are_what_the_page_says(self):
        self.assertGreater(len(ROWS), 20)
        for command_line, milliseconds in ROWS:
            with self.subTest(command=command_line):
                run, trace = trace_of(command_line)
                self.assertEqual(float(milliseconds), trace[-1]["at"], run.lines)
                refused = command_line.startswith("bg-drag") or " Deaf " in command_line
                self.assertNotEqual(refused, run.reply["ok"], run.lines)

    def test_for_lines_are_what_the_page_says(self):
        for lines, pieces in ((20 * ["x" * 50], 60), (300 * ["x"], 300)):
            _, trace = trace_of(["bg-type", "Notes", "\n".join(lines)])
            waited = 24 * pieces + 98 * (len(lines) - 1)
            self.assertEqual(430.0 + waited, trace[-1]["at"])
            self.assertIn(f"{waited / 1000:.1f} seconds", PAGE)

    def test_for_a_hung_application_are_twelve_seconds_more_at_most(self):
        for command_line, milliseconds in ROWS:
            app = command_line.split()[1]
            with self.subTest(command=command_line):
                say = [["hang", app]] if app in ("Notes", "Web") else []
                _, trace = trace_of(command_line, *say)
                self.assertLessEqual(trace[-1]["at"], float(milliseconds) + HUNG_MILLISECONDS_MAX)

    def test_for_the_screen_are_as_many_as_the_page_says(self):
        for command_line, count in (("bg-click Notes 600 500", 8), ("bg-move Web 600 500", 8),
                                    ("capture Notes out.png", 2), ("capture-probe", 2)):
            _, trace = trace_of(command_line)
            asked = [call for call in trace if call["call"] in SCREEN_CALLS]
            self.assertEqual(count, len(asked), command_line)

    def test_of_the_page_name_the_limits_of_the_sources(self):
        walk = (ROOT / "accessibility/walk.h").read_text() + (ROOT / "accessibility/listing.cpp").read_text()
        limits = set(re.findall(r"Bounds = \{([\d']+), (\d+)\}", walk))
        self.assertEqual({("20'000", "60"), ("30'000", "80"), ("4000", "80")}, limits)
        for elements, levels in limits:
            count = f"{int(elements.replace(chr(39), '')):,}"
            self.assertRegex(PAGE, rf"\| {count} \| {levels} \|")


if __name__ == "__main__":
    unittest.main()
