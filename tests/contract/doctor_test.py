"""The doctor names each fault, and only it, and where to grant what is missing."""
import contextlib
import ctypes.util
import importlib.machinery
import importlib.util
import io
import re
import subprocess
import sys
import unittest
from unittest import mock

from mac import DRIVER, ROOT, Mac

APPS = """
app Editor pid 40 frontmost
    window 6 "Draft" at 50,60 size 600x400
app Notes pid 41
    window 7 "Inbox" at 100,80 size 800x600
"""
SCREEN = "The permission Screen Recording is missing"
ACCESSIBILITY = "The permission Accessibility is missing"


def loaded_doctor():
    """The script as a module."""
    loader = importlib.machinery.SourceFileLoader("doctor", str(ROOT / "scripts/doctor"))
    module = importlib.util.module_from_spec(importlib.util.spec_from_loader("doctor", loader))
    loader.exec_module(module)
    return module


def examine(world, *say, driver=DRIVER, **environment):
    with Mac(world) as mac:
        for words in say:
            mac.tell(*words)
        before = mac.tell("state", "--user")
        done = subprocess.run([str(ROOT / "scripts/doctor"), driver], capture_output=True, text=True,
                              env={**mac.environment, **environment}, timeout=60, check=False)
        changed = before != mac.tell("state", "--user")
        posted = [line for line in mac.tell("trace", "--text").splitlines() if ".post" in line]
        violations = mac.tell("violations")
    return done, changed, posted, violations


class Doctor(unittest.TestCase):
    def expect(self, world, *beginnings, say=()):
        """Just these faults are named, in this order, and nothing is done to the Mac."""
        done, changed, posted, violations = examine(world, *say)
        named = [line.split(". ", 1)[1] for line in done.stdout.splitlines() if line[0].isdigit()]
        self.assertEqual(len(beginnings), len(named), done.stdout + done.stderr)
        for beginning, line in zip(beginnings, named):
            self.assertTrue(line.startswith(beginning), line)
        self.assertEqual("", done.stderr)
        self.assertEqual(1 if beginnings else 0, done.returncode)
        self.assertFalse(changed)
        self.assertEqual([], posted)
        self.assertEqual('{"ok":true,"violations":[]}\n', violations)
        return done.stdout

    def test_finds_nothing_on_a_healthy_mac(self):
        self.assertEqual("Nothing is missing: the session is usable, both permissions are granted, "
                         "screens can be captured. Functions of the system are not looked for on a "
                         "simulated Mac.\n", self.expect(APPS))

    def test_says_where_accessibility_is_granted(self):
        text = self.expect("deny accessibility\n" + APPS, ACCESSIBILITY)
        self.assertIn("System Settings > Privacy & Security > Accessibility", text)
        self.assertIn('input vanishes although replies say "ok"', text)

    def test_says_where_screen_recording_is_granted(self):
        text = self.expect("deny screen-recording\n" + APPS, SCREEN)
        self.assertIn("System Settings > Privacy & Security > Screen & System Audio Recording", text)
        self.assertIn("Windows have no titles, so CU_WINDOW finds none.", text)

    def test_names_both_permissions(self):
        self.expect("deny accessibility\ndeny screen-recording\n" + APPS, ACCESSIBILITY, SCREEN)

    def test_brings_up_no_question_of_the_system(self):
        for denied, is_asked in ("deny screen-recording\n", False), ("", True):
            with Mac(denied + APPS) as mac:
                subprocess.run([str(ROOT / "scripts/doctor"), DRIVER], capture_output=True,
                               env=mac.environment, timeout=60, check=False)
                self.assertEqual(is_asked, "share.content" in mac.tell("trace", "--text"))

    def test_names_a_locked_screen(self):
        self.expect("session locked\n" + APPS, "The screen is locked.")
        self.expect(APPS, "The screen is locked.", say=[["lock"]])

    def test_names_another_user_in_front(self):
        self.expect(APPS, "Another user is in front", say=[["leave", "console"]])

    def test_names_a_mac_without_displays(self):
        self.expect(APPS, "There is no display.", say=[["remove", "displays"]])

    def test_tells_why_the_screen_cannot_be_captured(self):
        self.expect(APPS, "The screen cannot be captured: ",
                    say=[["fault", "share.content", "1+", "thrown"]])

    def test_names_missing_private_functions(self):
        for name in ("GetFrontProcess", "GetProcessPID"):
            self.expect(f"missing {name}\n" + APPS, "Background input does not work")
        for name in ("SLEventPostToPid", "SLEventSetIntegerValueField", "SkyLight"):
            self.expect(f"missing {name}\n" + APPS, "Background clicks and scrolls do not work")

    def test_posts_no_event_that_the_trace_would_not_show(self):
        with Mac(APPS) as mac:
            mac.driver("bg-click", "Notes", "130", "95")
            self.assertIn(".post", mac.tell("trace", "--text"))

    def test_names_a_scene_without_an_application_in_front(self):
        self.expect(APPS.replace(" frontmost", ""), "No application is in front.")

    def test_ignores_what_an_agent_has_set(self):
        done, *_ = examine(APPS, CU_CAPTURE_PID="999", CU_WINDOW="nowhere")
        self.assertEqual(0, done.returncode, done.stdout)

    def test_says_that_driver_cannot_be_started(self):
        done, *_ = examine(APPS, driver="/nowhere/driver")
        self.assertEqual((2, ""), (done.returncode, done.stderr))
        self.assertIn("/nowhere/driver cannot be started", done.stdout)

    def test_says_that_there_is_no_mac_to_join(self):
        done, *_ = examine(APPS, SIMULATED_MAC="@nowhere")
        self.assertEqual((2, ""), (done.returncode, done.stderr))


class Functions(unittest.TestCase):
    """What the doctor itself looks for on a Mac, here in the libraries of this machine."""

    C = ctypes.util.find_library("c")
    NOWHERE = "/nowhere/library"

    def setUp(self):
        self.doctor = loaded_doctor()

    def faults(self, functions):
        return list(self.doctor.function_faults([("It does not work", functions, "Wait.")]))

    def test_that_are_there_are_no_fault(self):
        self.assertEqual([], self.faults({"malloc": [self.C], "free": [self.NOWHERE, self.C]}))

    def test_that_are_missing_are_named(self):
        self.assertEqual(
            [("It does not work: no_such_function and nor_this cannot be found.", "Wait.")],
            self.faults({"no_such_function": [self.C], "malloc": [self.C], "nor_this": [self.C]}))

    def test_of_a_missing_library_are_named(self):
        self.assertEqual([("It does not work: malloc cannot be found.", "Wait.")],
                         self.faults({"malloc": [self.NOWHERE]}))

    def test_are_those_that_driver_looks_up(self):
        sky = (ROOT / "input/sky.cpp").read_text()
        lock = (ROOT / "guard/screen_lock.cpp").read_text()
        rows = [*self.doctor.BACKGROUND_FUNCTIONS, *self.doctor.LOCK_FUNCTIONS]
        listed = {name: paths[0] for _, functions, _ in rows for name, paths in functions.items()}
        self.assertEqual(
            set(re.findall(r'(?:library|skyLight|appServices)\(?\)?, "(\w+)"|name = "(\w+)"',
                           sky + lock)),
            {("", name) if name == "CGEventSetWindowLocation" else (name, "") for name in listed})
        self.assertEqual(set(re.findall(r'"(/System/[^"]*)"', sky + lock)), set(listed.values()))

    def on_a_mac(self, world, *missing, forbidden=()):
        """What is printed on a Mac that has all functions but the missing ones, and forbids what
        these ask for."""
        output = io.StringIO()
        with Mac(world) as mac, contextlib.redirect_stdout(output), \
                mock.patch.multiple(self.doctor, ON_A_MAC=True,
                                    has_function=lambda _, name: name not in missing,
                                    says_no=lambda _, name: name in forbidden), \
                mock.patch.dict("os.environ", mac.environment), \
                mock.patch.object(sys, "argv", ["doctor", DRIVER]):
            status = self.doctor.main()
        return status, output.getvalue()

    def test_are_looked_for_on_a_mac(self):
        self.assertEqual(
            (0, "Nothing is missing: the session is usable, both permissions are granted, screens "
                "can be captured, and all functions of the system that driver looks up are there."
                "\n"), self.on_a_mac(APPS))

    def test_say_no_by_false_alone(self):
        self.assertTrue(self.doctor.says_no(self.C, "sched_yield"))  # it gives 0
        self.assertFalse(self.doctor.says_no(self.C, "__ctype_get_mb_cur_max"))  # 1 at least
        self.assertFalse(self.doctor.says_no(self.C, "no_such_function"))
        self.assertFalse(self.doctor.says_no(self.NOWHERE, "sched_yield"))

    def test_that_forbid_events_are_faults_when_accessibility_is_granted(self):
        forbidden = "CGPreflightPostEventAccess", "CGPreflightListenEventAccess"
        status, output = self.on_a_mac(APPS, forbidden=forbidden)
        self.assertEqual(1, status)
        self.assertEqual(
            ["1. The system does not let driver post events, although Accessibility is granted: "
             "clicks and keys vanish.",
             "2. The system does not let driver listen to events, although Accessibility is granted: "
             "watch-input and lock-guard may not see the user's keys."],
            [line for line in output.splitlines() if line[0].isdigit()])
        _, output = self.on_a_mac("deny accessibility\n" + APPS, forbidden=forbidden)
        self.assertEqual(["1. " + ACCESSIBILITY],
                         [line.split(":")[0] for line in output.splitlines() if line[0].isdigit()])

    def test_that_are_missing_on_a_mac_are_faults(self):
        status, output = self.on_a_mac("missing SLEventPostToPid\n" + APPS, "SLEventPostToPid",
                                       "GetProcessForPID", "SACLockScreenImmediate")
        self.assertEqual(1, status)
        self.assertEqual(
            ["1. Background clicks, moves and scrolls do not work: SLEventPostToPid cannot be "
             "found.",
             "2. Background focus and background keyboard do not work: GetProcessForPID cannot be "
             "found.",
             "3. lock-now and the lock of lock-guard do not work: SACLockScreenImmediate cannot be "
             "found."],
            [line for line in output.splitlines() if line[0].isdigit()])


if __name__ == "__main__":
    unittest.main()
