"""The scenarios notice what they are there for: replies that differ, are missing or unused."""
import contextlib
import io
import json
import os
import re
import shutil
import subprocess
import sys
import tempfile
import unittest
from pathlib import Path
from unittest import mock

HERE = Path(__file__).resolve().parent
sys.path[:0] = [str(HERE), str(HERE.parent / "contract")]
import mac
import conformance
from normalise import REASONS, Layout, Normaliser
from player import Player, picture_fits
from sides import world

LAYOUT = Layout(json.loads((HERE / "layout.json").read_text()))
SCENARIOS = json.loads((HERE / "scenarios.json").read_text())


def run(*arguments, side="simulated"):
    """Status and output of a run."""
    output = io.StringIO()
    with contextlib.redirect_stdout(output):
        status = conformance.run(conformance.parsed([*arguments, "--side", side]))
    return status, output.getvalue()


class InFolder(unittest.TestCase):
    def setUp(self):
        folder = tempfile.TemporaryDirectory(prefix="conformance-test-")
        self.addCleanup(folder.cleanup)
        self.folder = Path(folder.name)

    def program(self, name, text):
        path = self.folder / name
        path.parent.mkdir(parents=True, exist_ok=True)
        path.write_text("#!/bin/sh\n" + text)
        path.chmod(0o755)
        return path


class StoredReplies(InFolder):
    def setUp(self):
        super().setUp()
        self.replies = self.folder / "replies"
        shutil.copytree(HERE / "replies", self.replies)
        self.options = ["--replies", str(self.replies)]
        self.presses = self.replies / "presses.json"

    def write_scenarios(self, *scenarios):
        path = self.folder / "scenarios.json"
        path.write_text(json.dumps(scenarios))
        self.options += ["--scenarios", str(path)]

    def test_that_are_given_again_are_no_fault(self):
        status, output = run("presses", *self.options)
        self.assertEqual(0, status)
        self.assertEqual(["presses                              8 replies  as stored",
                          "1 scenarios, 8 replies, 0 faults",
                          "simulated side only: nothing here has run on a Mac"],
                         output.splitlines())

    def test_that_differ_are_shown_beside_the_new_ones(self):
        stored = self.presses.read_text()
        self.presses.write_text(stored.replace("record: press press lower", "record: press lower"))
        status, output = run("presses", *self.options)
        self.assertEqual(1, status)
        self.assertIn("presses                              8 replies  differs\n", output)
        for sign, text in (("-", "press lower"), ("+", "press press lower")):
            reply = f'{{"ok": true, "texts": ["record: {text} Record"]}}'
            self.assertIn(f'    {sign}    "reply": {reply}\n', output)
        self.assertIn('         "step": "ax-texts-at FIXTURE @Record",\n', output)
        self.assertIn("1 scenarios, 8 replies, 1 faults\n", output)

    def test_that_are_missing_are_a_fault(self):
        self.presses.unlink()
        status, output = run("presses", *self.options)
        self.assertEqual(1, status)
        self.assertIn("    no replies are stored in presses.json; now:\n", output)
        self.assertFalse(self.presses.exists())

    def test_of_no_scenario_are_a_fault(self):
        (self.replies / "gone.json").write_text("[]\n")
        status, output = run("presses", *self.options)
        self.assertEqual(1, status)
        self.assertIn("gone.json: stored replies of no scenario\n", output)

    def test_of_other_steps_are_a_fault(self):
        scenario = next(scenario for scenario in SCENARIOS if scenario["name"] == "presses")
        others = [other for other in SCENARIOS if other != scenario]
        for steps in (scenario["steps"][:-1], [*scenario["steps"], "session"],
                      ["ax-press FIXTURE  @Press", *scenario["steps"][1:]]):
            with self.subTest(steps=steps):
                self.write_scenarios({**scenario, "steps": steps}, *others)
                self.assertEqual(1, run("presses", *self.options)[0])

    def test_are_written_anew_on_request(self):
        stored = self.presses.read_text()
        self.presses.write_text(stored.replace("lower", "higher"))
        (self.replies / "gone.json").write_text("[]\n")
        (self.replies / "menus.json").unlink()
        status, output = run("presses", "menus", "--update", *self.options)
        self.assertEqual(0, status)
        self.assertIn("    +++ presses: now\n", output)
        self.assertIn("    +++ menus: now\n", output)
        self.assertEqual(stored, self.presses.read_text())
        self.assertEqual(0, run("presses", "menus", *self.options)[0])
        self.assertEqual({path.name for path in (HERE / "replies").iterdir()},
                         {path.name for path in self.replies.iterdir()})

    def test_do_not_hide_that_the_users_state_has_changed(self):
        self.write_scenarios({"name": "locking", "steps": ["lock-now", "session"]})
        for path in self.replies.iterdir():
            path.unlink()
        (self.replies / "locking.json").write_text(
            json.dumps([{"step": "lock-now", "status": 0, "reply": {"ok": True}},
                        {"step": "session", "status": 0,
                         "reply": {"locked": True, "ok": True, "onConsole": True}}]))
        for more in ([], ["--update"]):
            status, output = run(*more, *self.options)
            self.assertEqual(1, status)
            self.assertIn("    the user's state has changed: ", output)

    def test_need_a_driver_that_replies(self):
        with mock.patch("mac.DRIVER", "/bin/true"):
            status, output = run("presses", "--update", *self.options)
        self.assertEqual(1, status)
        self.assertIn("    it could not be played to its end: ", output)
        self.assertEqual((HERE / "replies" / "presses.json").read_text(), self.presses.read_text())

    def test_need_a_driver_that_ends_and_says_one_object(self):
        for text, expected in (("sleep 9", "TimeoutExpired"), ("echo 7", "it could not be played"),
                               ('echo \'{"ok":true,"pid":41}\'; echo 7', "it could not be played")):
            program = self.program("driver", f"{text}\n")
            with mock.patch("mac.DRIVER", str(program)), mock.patch("mac.SECONDS_MAX", 1):
                status, output = run("presses", *self.options)
            self.assertEqual(1, status)
            self.assertIn(expected, output)


class Scenarios(unittest.TestCase):
    def test_say_what_they_show(self):
        for scenario in SCENARIOS:
            self.assertTrue(scenario["about"].endswith("."), scenario["name"])
        self.assertEqual(len(SCENARIOS), len({scenario["name"] for scenario in SCENARIOS}))

    def test_operate_slots_that_application_and_world_have_alike(self):
        sources = "".join(path.read_text() for path in (HERE / "fixture").glob("*.mm"))
        template = "".join(path.read_text() for path in (HERE / "worlds").glob("*.in"))
        for slot in set(LAYOUT.slots) - {"Margin"}:
            self.assertIn("{" + slot + "}", template)
            if slot != "Open":  # which the system places
                self.assertIn(f'@"{slot}"', sources)
        for window in LAYOUT.windows:
            self.assertIn("{window " + window + "}", template)
            self.assertIn(f'frameOfWindow(@"{window}")', sources)

    def test_choose_menu_items_that_application_and_world_have_alike(self):
        source = (HERE / "fixture" / "menus.mm").read_text()
        template = (HERE / "worlds" / "fixture.world.in").read_text()
        # Keys and words begin with a small letter.
        titles = set(re.findall(r'@"([A-Z][^"]*)"', source))
        described = set()
        items = re.compile(r"^    menu (?!Apple)(.*?)(?= cmd| disabled| press:|$)", re.M)
        for line in items.findall(template):
            described |= {title.strip('"') for title in line.split(" > ")}
        self.assertEqual(titles, described - {"-"})


class Normalisations(unittest.TestCase):
    def test_are_all_listed_with_their_reasons(self):
        status, output = run("--normalisations")
        self.assertEqual(0, status)
        lines = output.splitlines()
        left_out = [(scenario["name"], key) for scenario in SCENARIOS for step in scenario["steps"]
                    if isinstance(step, dict) for key in step.get("without", {})]
        self.assertEqual(len(REASONS) + len(left_out), len(lines))
        for (name, key), line in zip(left_out, lines[len(REASONS):]):
            self.assertRegex(line, rf'^{name}, .*: not "{key}": \w+')


class Replies(unittest.TestCase):
    def setUp(self):
        self.normaliser = Normaliser(LAYOUT, "/private/x", lambda: {31: "Fixture", 32: ""})
        self.normaliser.processes[400] = "fixture"

    def test_are_made_comparable(self):
        press = {"x": 146, "y": 183, "width": 108, "height": 20}
        cases = [
            ("process ids", {"pid": 400, "targetPid": 7},
             {"pid": "fixture", "targetPid": "another process"}),
            ("window numbers", {"window": 31, "id": 32, "windowId": 5},
             {"window": "Fixture", "id": "untitled", "windowId": "another window"}),
            ("drawn smaller than its slot", {"element": {"frame": press}},
             {"element": {"frame": "Press"}}),
            ("in no slot", {"element": {"frame": {**press, "y": 700}}},
             {"element": {"frame": {**press, "y": 700}}}),
            ("a window", {"element": {"frame": {"x": 120, "y": 100, "width": 640, "height": 520}}},
             {"element": {"frame": "window Fixture"}}),
            ("in the sheet, not below it", {"element": {
                "frame": {"x": 300, "y": 184, "width": 280, "height": 24}}},
             {"element": {"frame": "Reason"}}),
            ("found texts", {"frames": {"a": press}}, {"frames": {"a": "Press"}}),
            ("frames of windows", {"windows": [{"x": 1, "y": 2, "width": 3, "height": 4}]},
             {"windows": [{"x": 1, "y": 2, "width": 3, "height": 4}]}),
            ("paths", {"error": "cannot write /private/x/a.png"},
             {"error": "cannot write FOLDER/a.png"}),
            ("times and displays", {"idleMs": 12.5, "covers": 2},
             {"idleMs": "the user's", "covers": "all"}),
            ("numbers that say something", {"matches": 3, "value": 5.0, "ok": True},
             {"matches": 3, "value": 5.0, "ok": True}),
            ("buttons", {"modals": [{"role": "AXSheet", "buttons": ["b", "a"]}]},
             {"modals": [{"role": "AXSheet", "buttons": ["a", "b"]}]}),
        ]
        for name, reply, expected in cases:
            with self.subTest(name):
                self.assertEqual(expected, self.normaliser.reply("any", reply))

    def test_list_elements_in_the_order_of_the_layout_and_none_of_the_title_bar(self):
        frame = lambda slot: dict(zip(("x", "y", "width", "height"), LAYOUT.slots[slot]))
        close = {"role": "AXButton", "frame": {"x": 128, "y": 108, "width": 14, "height": 14}}
        elements = [{"role": "AXButton", "frame": frame("Rename")}, close,
                    {"role": "AXButton", "frame": frame("Press")}, {"role": "AXGroup"}]
        self.assertEqual({"elements": [{"role": "AXButton", "frame": "Press"},
                                       {"role": "AXButton", "frame": "Rename"},
                                       {"role": "AXGroup"}]},
                         self.normaliser.reply("ax-list", {"elements": elements}))

    def test_of_a_press_that_opens_may_be_late(self):
        late, refused = ({"ok": False, "axError": code} for code in (-25204, -25205))
        opened = {"ok": "pressed", "axError": "pressed"}
        for reply in (late, {"ok": True, "axError": 0}):
            self.assertEqual(opened, self.normaliser.reply("ax-press", reply, opens=True))
        self.assertEqual(refused, self.normaliser.reply("ax-press", refused, opens=True))
        self.assertEqual(late, self.normaliser.reply("ax-press", late))

    def test_with_pictures_are_held_against_them(self):
        with tempfile.NamedTemporaryFile() as file:
            sizes = (1280).to_bytes(4, "big") + (1040).to_bytes(4, "big")
            file.write(b"\x89PNG\r\n\x1a\n\0\0\0\rIHDR" + sizes)
            file.flush()
            self.assertTrue(picture_fits(file.name, {"width": 640, "height": 520}))
            self.assertFalse(picture_fits(file.name, {"width": 640, "height": 500}))
            self.assertFalse(picture_fits(file.name, {"width": 1000, "height": 812.5}))
            with self.assertRaises(ValueError):
                picture_fits(__file__, {"width": 640, "height": 520})


class StubDesk:
    """Answers what it was told to, in turn."""

    folder = mock.Mock()
    folder.name = "/private/x"

    def __init__(self, *replies):
        self.replies = list(replies)

    def wait_a_moment(self):
        pass

    def windows(self):
        return {"pid": 400}

    def titles(self):
        return {}

    def driver(self, *_, **__):
        reply = self.replies.pop(0)
        return mac.Run(subprocess.CompletedProcess([], 0, json.dumps(reply).encode() + b"\n", b""))


class Patience(unittest.TestCase):
    """On a Mac an application shows what was done to it when it comes to that."""

    def play(self, step, *replies):
        desk = StubDesk(*replies)
        side = mock.Mock(polls_max=2)
        stored = [{"step": step, "status": 0, "reply": {"ok": True, "menus": ["File"]}}]
        entries = Player(side, desk, LAYOUT, stored).play({"steps": [step]})
        return [entry["reply"] for entry in entries], len(desk.replies)

    def test_asks_again_what_changes_nothing(self):
        early, late = {"ok": True, "menus": []}, {"ok": True, "menus": ["File"]}
        self.assertEqual(([late], 1), self.play("ax-menubar FIXTURE", early, early, late, early))

    def test_ends(self):
        early = {"ok": True, "menus": []}
        self.assertEqual(([early], 1),
                         self.play("ax-menubar FIXTURE", early, early, early, early))

    def test_never_does_a_thing_twice(self):
        refused = {"ok": False, "error": "no element"}
        self.assertEqual(([refused], 1), self.play("ax-press FIXTURE 1 1", refused, refused))


class OnAMac(InFolder):
    """The Mac's side, with a simulated Mac in place of the real one: a program that does nothing
    stands for the fixture, which the world has already."""

    def setUp(self):
        super().setUp()
        desk = mac.Mac(world(LAYOUT, []))
        self.addCleanup(desk.__exit__)
        self.desk = desk
        self.started = self.folder / "started"
        driver = self.program("driver", f"""
            if [ "$1" = windows ] && [ ! -e "{self.started}" ]; then
              echo '{{"ok":true,"running":false,"windows":[]}}'
            else
              exec "{mac.DRIVER}" "$@"
            fi""")
        self.fixture("touch", "echo ready")
        patch = mock.patch("mac.DRIVER", str(driver))
        patch.start()
        self.addCleanup(patch.stop)
        patch = mock.patch.dict(os.environ, {"SIMULATED_MAC": desk.environment["SIMULATED_MAC"]})
        patch.start()
        self.addCleanup(patch.stop)

    def fixture(self, start, say):
        self.program("Driver Fixture.app/Contents/MacOS/Driver Fixture",
                     f'{start} "{self.started}"\n{say}\nexec sleep 60\n')

    def play(self, *arguments):
        return run(*arguments, "--fixture", str(self.folder / "Driver Fixture.app"), side="mac")

    def test_what_the_system_writes_to_standard_error_is_no_fault(self):
        chatter = self.program("chatter", f'echo "a framework says" >&2\nexec "{mac.DRIVER}" "$@"')
        with mock.patch("mac.DRIVER", str(chatter)):
            with mock.patch("sides.RealMac.check"):
                self.assertEqual(0, self.play("presses")[0])
            status, output = run("presses")
        self.assertEqual(1, status)
        self.assertIn('    +    "errors": "a framework says\\n"', output)

    def test_the_same_is_said_as_on_a_simulated_one(self):
        status, output = self.play("presses")
        self.assertEqual(["Leave mouse and keyboard alone until this has ended.",
                          "presses                              8 replies  as stored",
                          "1 scenarios, 8 replies, 0 faults", "run on this Mac"],
                         output.splitlines())
        self.assertEqual(0, status)

    def test_nothing_locks_the_screen_unasked(self):
        status, output = self.play("guard", "lock")
        self.assertEqual(0, status)
        self.assertEqual(2, output.count("not played: it locks the screen, see --lock"))
        self.assertIn('"locked":false', self.desk.driver("session").lines[0])

    def test_a_fixture_that_does_not_start_is_a_fault(self):
        self.fixture("touch", "echo trouble")
        status, output = self.play("presses")
        self.assertEqual(1, status)
        self.assertIn("Driver Fixture has not started", output)

    def test_a_fixture_that_runs_already_is_left_alone(self):
        self.started.touch()
        self.assertEqual((2, "Driver Fixture runs already: quit it first\n"), self.play())

    def test_a_locked_screen_is_said_first(self):
        self.desk.tell("lock")
        self.assertEqual((2, "the screen must be unlocked, and this user in front\n"), self.play())

    def test_a_missing_permission_is_said_first(self):
        with mac.Mac("deny screen-recording\n" + world(LAYOUT, [])) as desk:
            with mock.patch.dict(os.environ, {"SIMULATED_MAC": desk.environment["SIMULATED_MAC"]}):
                self.assertEqual(
                    (2, "permission missing: screenRecording; scripts/doctor says more\n"),
                    self.play())


if __name__ == "__main__":
    unittest.main()
