"""The doctor names each fault, and only it, and where to grant what is missing."""
import subprocess
import unittest

from mac import DRIVER, ROOT, Mac

APPS = """
app Editor pid 40 frontmost
    window 6 "Draft" at 50,60 size 600x400
app Notes pid 41
    window 7 "Inbox" at 100,80 size 800x600
"""
SCREEN = "The permission Screen Recording is missing"
ACCESSIBILITY = "The permission Accessibility is missing"


def examine(world, *say, driver=DRIVER, **environment):
    with Mac(world) as mac:
        for words in say:
            mac.tell(*words)
        before = mac.tell("state")
        done = subprocess.run([str(ROOT / "scripts/doctor"), driver], capture_output=True, text=True,
                              env={**mac.environment, **environment}, timeout=60, check=False)
        changed = before != mac.tell("state")
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
        self.assertIn("Nothing is missing", self.expect(APPS))

    def test_says_where_accessibility_is_granted(self):
        text = self.expect("deny accessibility\n" + APPS, ACCESSIBILITY)
        self.assertIn("System Settings > Privacy & Security > Accessibility", text)

    def test_says_where_screen_recording_is_granted(self):
        text = self.expect("deny screen-recording\n" + APPS, SCREEN)
        self.assertIn("System Settings > Privacy & Security > Screen & System Audio Recording", text)

    def test_names_both_permissions(self):
        self.expect("deny accessibility\ndeny screen-recording\n" + APPS, ACCESSIBILITY, SCREEN)

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


if __name__ == "__main__":
    unittest.main()
