"""The probes that need no Mac to run: those that speak through driver say of the simulated Mac what
it assumes, and refute it where an application does otherwise."""
import json
import re
import subprocess
import sys
import tempfile
import unittest
from pathlib import Path
from unittest import mock

from mac import ROOT

sys.path[:0] = [str(ROOT / "tests" / "mac"), str(ROOT / "tests" / "conformance"),
                str(ROOT / "scripts")]
import browsers
import chromium_bundles
import sides
import through_driver
import user_picture
from mac_assumptions import load_assumptions, load_probes

# For each question what is changed in the fixture's world, so that its answer is another one.
OTHERWISE = {
    "idle-clicks": ('AXButton "Rename" {Rename}',
                    'AXButton "Idle" {Margin} press: append " idle" to Record\n'
                    '        AXButton "Rename" {Rename}'),
    "click-in-background": ('press: append " click" to Record right:', 'right:'),
    "press-keeps-keyboard": ('press: append " press" to Record',
                             'press: append " press" to Record; remove Name'),
    "disabled-press": ("{Disabled} disabled", "{Disabled}"),
    "slider-steps": ("step 1 ", "step 2 "),
    "focus-at-end": ('"Your name" transform one-line', '"Your name" transform first 2 characters'),
    "break-in-one-line": ('"Your name" transform one-line',
                          '"Your name" submit: append " sent" to Name'),
    "keys-in-background": ('AXTextField "Name" {Name}', 'AXTextField "Name" {Name} disabled'),
    "long-text": ('AXTextArea "Notes" {Notes}', 'AXTextArea "Notes" {Notes} transform upper'),
    "key-window-keyboard": ('"Address" {Address}', '"Address" {Address} disabled'),
    "sheet-becomes-key": ('"Reason" {Reason}', '"Reason" {Reason} disabled'),
    "pop-up-menu": ('"Small" "Medium" "Large"', '"Small" "Medium"'),
    "click-beside-menu": ('description "Size" choices', 'description "Size" disabled choices'),
    "pasted-files": ('"Your name" transform one-line', '"Your name" disabled'),
    "unhide-in-background": ('"Second" {window Second}', '"Second" {window Second} closed'),
}


# The same for the browsers' world.
BROWSERS_OTHERWISE = {
    "browser-names": ("AXLink", "AXButton"),
    "chromium-tree": (" chromium tree after 2s rejects-enabling", " chromium tree after 500s"),
    "chromium-click": ('retitle "pressed 1"', 'retitle "pressed 2"'),
    "composer-lines": (' composer value "first', ' value "first'),
    "chromium-keys": ('"Text" at 120,180 size 300x40', '"Text" at 120,180 size 300x40 disabled'),
}


class SpeakingThroughDriver(unittest.TestCase):
    def test_is_known_of_all_that_do(self):
        probes = load_probes(ROOT)
        asked = {}
        for each in load_assumptions(ROOT):
            if each.probe and probes[each.probe].speaks_through_driver:
                asked.setdefault(each.probe, set()).add(each.id)
        self.assertEqual({"through_driver": set(through_driver.QUESTIONS),
                          "browsers": set(browsers.QUESTIONS)}, asked)


class Browsers(unittest.TestCase):
    def test_are_to_the_simulated_mac_as_it_assumes(self):
        for name in browsers.QUESTIONS:
            with self.subTest(assumption=name):
                verdict, evidence = browsers.ask(name)
                self.assertEqual("confirmed", verdict, evidence)

    def test_that_do_otherwise_refute_it(self):
        self.assertEqual(set(browsers.QUESTIONS), set(BROWSERS_OTHERWISE))
        template = (browsers.HERE / "browsers.world").read_text()
        for name, (old, new) in BROWSERS_OTHERWISE.items():
            with self.subTest(assumption=name), tempfile.TemporaryDirectory() as folder:
                self.assertIn(old, template)
                (Path(folder) / "browsers.world").write_text(template.replace(old, new))
                with mock.patch.object(browsers, "HERE", Path(folder)):
                    verdict, evidence = browsers.ask(name)
                self.assertEqual("refuted", verdict, evidence)


class ThroughDriver(unittest.TestCase):

    def test_confirms_what_the_simulated_mac_assumes(self):
        for name in through_driver.QUESTIONS:
            with self.subTest(assumption=name):
                verdict, evidence = through_driver.ask(name)
                self.assertEqual("confirmed", verdict, evidence)

    def test_refutes_it_where_an_application_does_otherwise(self):
        self.assertEqual(set(through_driver.QUESTIONS), set(OTHERWISE))
        template = (sides.HERE / "worlds" / "fixture.world.in").read_text()
        for name, (old, new) in OTHERWISE.items():
            with self.subTest(assumption=name), tempfile.TemporaryDirectory() as folder:
                self.assertIn(old, template)
                world = Path(folder) / "worlds" / "fixture.world.in"
                world.parent.mkdir()
                world.write_text(template.replace(old, new, 1))
                with mock.patch.object(sides, "HERE", Path(folder)):
                    verdict, evidence = through_driver.ask(name)
                self.assertEqual("refuted", verdict, evidence)

    def test_prints_one_line(self):
        done = subprocess.run([sys.executable, str(ROOT / "tests/mac/through_driver.py"),
                               "slider-steps"], capture_output=True, text=True, timeout=60,
                              check=True)
        self.assertEqual([{"assumption": "slider-steps", "verdict": "confirmed",
                           "evidence": {"7, one up, one down, 11 of 10": [7, 8, 7, 10]}}],
                         [json.loads(line) for line in done.stdout.splitlines()])


def constants(path, pattern):
    """The constants in a source that are named so, by their names."""
    text = (ROOT / path).read_text()
    return {name: int(value, 0) for name, value in re.findall(pattern, text)}


class Forms(unittest.TestCase):
    """What probes post is made as driver makes it."""

    def test_of_records_have_the_same_places(self):
        place = r"constexpr (?:std::size_t|int) (\w+) = (0x\w+);"
        self.assertEqual(constants("input/sky_focus.cpp", place),
                         constants("tests/mac/support/records.h", place))

    def test_of_records_have_the_same_values(self):
        value = r"constexpr std::uint8_t (recordLength|applicationDefined) = (0x\w+);"
        source = "tests/mac/support/records.cpp"
        self.assertEqual({"recordLength": 0xF8, "applicationDefined": 0x0D},
                         constants(source, value))
        self.assertEqual(constants("input/sky_focus.cpp", value), constants(source, value))
        setting = r"record\[offset::(keyFlag)\] = (0x\w+);"
        self.assertEqual({"keyFlag": 0x10}, constants(source, setting))
        self.assertEqual(constants("input/sky_focus.cpp", setting), constants(source, setting))

    def test_of_pointer_events_set_the_same_fields(self):
        fields = constants("platform/quartz.h", r"  (\w+) = (\d+),")
        probed = constants("tests/mac/support/posting.cpp", r"uint32_t (\w+)Field = (\d+);")
        pointer = (ROOT / "input" / "pointer.cpp").read_text()
        used = set(re.findall(r"setPrivateField\(\*?event, quartz::Field::(\w+)", pointer))
        self.assertEqual({name: fields[name] for name in used}, probed)


class UserPicture(unittest.TestCase):
    def test_is_hexadecimal_behind_its_name(self):
        self.assertEqual(("confirmed", {"name": "JPEGPhoto", "characters": 8, "lines": 2,
                                        "begins with": "ffd8ff"}),
                         user_picture.verdict_of("JPEGPhoto:\n ffd8 ffe0\n"))

    def test_may_be_missing(self):
        self.assertEqual(("confirmed", {"picture": "none"}), user_picture.verdict_of(""))

    def test_is_nothing_else(self):
        for output in ("JPEGPhoto: ffd", "JPEGPhoto: picture", "Picture: ffd8"):
            with self.subTest(output=output):
                self.assertEqual("refuted", user_picture.verdict_of(output)[0])


class ChromiumBundles(unittest.TestCase):
    def answer(self, *files):
        with tempfile.TemporaryDirectory() as folder:
            for name in files:
                path = Path(folder) / name
                path.parent.mkdir(parents=True)
                path.touch()
            return chromium_bundles.answer(Path(folder))

    INSIDE = "Contents/Frameworks/Some Framework.framework/Resources/chrome_100_percent.pak"

    def test_have_the_file(self):
        self.assertEqual(("confirmed", {"Google Chrome": True, "Safari": False}),
                         self.answer(f"Google Chrome.app/{self.INSIDE}", "Safari.app/Contents/x"))

    def test_without_the_file_refute_it_and_so_do_others_with_it(self):
        self.assertEqual("refuted", self.answer("Google Chrome.app/Contents/x")[0])
        self.assertEqual("refuted", self.answer(f"Google Chrome.app/{self.INSIDE}",
                                                f"Firefox.app/{self.INSIDE}")[0])

    def test_have_to_be_installed(self):
        self.assertEqual("not shown", self.answer(f"Safari.app/{self.INSIDE}")[0])


if __name__ == "__main__":
    unittest.main()
