"""The fixture: Macs of a test's own, from worlds, and what is said when a world or a test is wrong."""
import asyncio
import contextlib
import io
import os
import re
import subprocess
import sys
import tempfile
import unittest
from inspect import currentframe
from pathlib import Path

from support import DESK, DRIVER, HERE, ROOT, SIMULATED_MAC, on_mac, start_mac

from driver_client import AsyncMac, CommandError, DriverError, WaitedInVainError
from driver_client.testing import SimulatedMac, SimulatedMacWarning


class Fixtures(unittest.TestCase):
    def test_fail_a_test_in_which_the_users_state_has_changed(self):
        with self.assertRaises(DriverError) as raised, on_mac() as simulated:
            simulated.tell("lock")
            simulated.tell("user", "move", "10,20")
        self.assertEqual("the user's state is not as before: locked was false and is true; pointer.x was 980.0 and is "
                         "10.0; pointer.y was 420.0 and is 20.0\n"
                         "What to do: if the test or its world changes it, call settle() after that.", str(raised.exception))
        with self.assertRaises(DriverError):
            start_mac("nonsense")
        with self.assertRaises(DriverError), on_mac() as simulated:
            simulated.tell("nonsense")

    def test_show_what_is_wrong_with_a_world(self):
        for world, file in (("app A pid 41\nap B\n", "world"), (self.file("two.world", "app A pid 41\nap B\n"), None)):
            with self.assertRaises(DriverError) as raised:
                start_mac(world)
            self.assertRegex(str(raised.exception), rf"^no simulated Mac: {file or world}:2:1: error: unknown word 'ap'; "
                                                    r"expected .*; did you mean 'app'\?\nap B\n\^~$")
        missing = Path("/nowhere/some.world")
        with self.assertRaisesRegex(DriverError, f"^no simulated Mac: .*{missing}.*: No such file or directory$"):
            start_mac(missing)
        with self.assertRaisesRegex(DriverError, "^no simulated Mac: .*/nowhere/simulated-mac"):
            SimulatedMac(DESK, simulated_mac="/nowhere/simulated-mac")

    def test_take_a_file_with_what_it_includes(self):
        self.file("part.world", "app Part pid 77\n")
        with on_mac(self.file("whole.world", 'include "part.world"\napp A pid 41 frontmost\n')) as simulated:
            self.assertTrue(simulated.mac.windows("Part")["running"])

    def test_say_what_a_world_is(self):
        path = self.file("some.world", DESK)
        for world, text in (
                (str(path), f"'{path}' is taken for the text of a world; for the file say pathlib.Path('{path}')"),
                (b"app A", "a world is its text, or the path of its file as a pathlib.Path, not bytes")):
            with self.assertRaises(TypeError) as raised:
                start_mac(world)
            self.assertEqual(text, str(raised.exception))

    def test_take_a_text_that_cannot_be_a_files_name(self):
        with on_mac(f'app "{"N" * 5000}" pid 41 frontmost') as simulated:
            self.assertTrue(simulated.mac.windows("N" * 5000)["running"])
        with self.assertRaisesRegex(DriverError, "^no simulated Mac: world:1:1: error: unknown word '\0'"):
            start_mac("\0")

    def test_warn_of_what_is_hardly_meant_where_they_are_called(self):
        world = 'app A pid 41 frontmost\n    window 7 "A" at 0,0 size 9x9\n        AXButon "B"\n'
        warning = ("world:3:9: warning: macOS knows no role 'AXButon'; did you mean 'AXButton'?\n"
                   '        AXButon "B"\n        ^~~~~~~')
        with self.assertWarns(SimulatedMacWarning) as warned, on_mac(world):
            pass
        self.assertEqual((warning, __file__), (str(warned.warning), warned.filename))
        with contextlib.redirect_stdout(io.StringIO()) as told, self.assertWarns(SimulatedMacWarning):
            with self.assertRaises(AssertionError), on_mac(world):
                raise AssertionError
        self.assertEqual(f"{warning}\n", told.getvalue())

    def test_hand_on_what_the_mac_hints_at(self):
        with self.assertWarnsRegex(SimulatedMacWarning, "virtual time hardly passed while the same was asked 25 times"):
            with on_mac() as simulated:
                for _ in range(50):
                    simulated.state()

    def file(self, name, text):
        """The path of a file in the folder of the test."""
        if not hasattr(self, "folder"):
            folder = tempfile.TemporaryDirectory()
            self.addCleanup(folder.cleanup)
            self.folder = Path(folder.name)
        (self.folder / name).write_text(text, encoding="utf-8")
        return self.folder / name

    def of_pytest(self, tests):
        """What pytest prints of these tests, which may use WORLD and PROGRAMS; its pages go with the test."""
        head = f"""
WORLD = open({str(ROOT / "demo/desk.world")!r}, encoding="utf-8").read()
PROGRAMS = {{"driver": {DRIVER!r}, "simulated_mac": {SIMULATED_MAC!r}}}
"""
        file = self.file("some_test.py", head + tests)
        done = subprocess.run(
            [sys.executable, "-m", "pytest", "-q", "-p", "driver_client.pytest_plugin", "-p", "no:cacheprovider",
             "--basetemp", file.parent / "made", file.name], cwd=file.parent, capture_output=True,
            text=True, env={**os.environ, "PYTHONPATH": str(HERE.parent)}, check=False)
        if "No module named pytest" in done.stderr:
            self.skipTest("there is no pytest here")
        self.assertNotIn("/driver_client/", done.stdout)
        return done.stdout

    def test_of_pytest_give_macs_and_check_them(self):
        told = self.of_pytest("""
def test_that_passes(simulated_mac):
    assert simulated_mac(WORLD, **PROGRAMS).mac.session()["ok"]

def test_that_leaves_a_locked_mac(simulated_mac):
    simulated_mac(WORLD, **PROGRAMS).tell("lock")

def test_that_fails(simulated_mac):
    simulated_mac(WORLD, **PROGRAMS).mac.app("Chat").press("Nowhere")
""")
        self.assertRegex(told, r"\n2 failed, 1 passed in")
        self.assertIn("_\nthe user's state is not as before: locked was false and is true\n"
                      "What to do: if the test or its world changes it, call settle() after that.\n-", told)
        pages = re.findall(r"^what happened on the simulated Mac: (.*)$", told, re.M)
        self.assertEqual(2, len(pages), told)
        shown = ["DriverError: the user's state is not as before: locked was false and is true",
                 'CommandError: ax-press-exact: no element labelled \\"Nowhere\\" (some_test.py:12)']
        for page, failure in zip(pages, shown):
            self.assertTrue(f'"text":"{failure}' in Path(page).read_text(encoding="utf-8"), failure)

    def test_of_pytest_fail_a_test_once_that_was_locked_out(self):
        told = self.of_pytest("""
def test_that_is_locked_out(simulated_mac):
    simulated = simulated_mac(WORLD, **PROGRAMS)
    simulated.tell("lock")
    simulated.mac.app("Notes").click(340, 574)
""")
        self.assertRegex(told, r"\n1 failed in")
        self.assertEqual(1, told.count("what happened on the simulated Mac: "), told)

    def test_of_pytest_show_what_befell_the_preparation_of_a_test(self):
        told = self.of_pytest("""
import pytest

@pytest.fixture
def chat(simulated_mac):
    app = simulated_mac(WORLD, **PROGRAMS).mac.app("Chat")
    app.press("Nowhere")
    return app

def test_that_is_not_reached(chat):
    pass
""")
        self.assertRegex(told, r"\n1 error in")
        self.assertEqual(1, told.count("what happened on the simulated Mac: "), told)

    def test_of_pytest_end_all_macs_although_one_ends_with_an_error(self):
        told = self.of_pytest("""
import pytest
from driver_client import DriverError

macs = []

@pytest.mark.filterwarnings("error")
def test_that_asks_and_asks(simulated_mac):
    macs.extend(simulated_mac(WORLD, **PROGRAMS) for _ in range(3))
    for _ in range(50):
        macs[1].mac.session()

def test_that_comes_after():
    for mac in macs:
        with pytest.raises(DriverError):
            mac.tell("state")
""")
        self.assertRegex(told, r"\n2 passed, 1 error in", told)

    def test_of_pytest_show_the_warnings_of_a_world(self):
        told = self.of_pytest("""
def test_that_fails(simulated_mac):
    simulated_mac("app A pid 41 frontmost\\n    window 7 \\"A\\" at 0,0 size 9x9\\n        AXButon \\"B\\"\\n", **PROGRAMS)
    assert False
""")
        warning = "world:3:9: warning: macOS knows no role 'AXButon'"
        self.assertRegex(told, rf"(?s)- Simulated Mac -+\n{warning}.*\nwhat happened on .*\n"
                               rf"=+ warnings summary =+\nsome_test.py::test_that_fails\n.*/some_test.py:6: "
                               rf"SimulatedMacWarning: {warning}")

    def test_say_in_the_journal_why_a_block_failed(self):
        with tempfile.TemporaryDirectory() as folder:
            page = Path(folder) / "report.html"
            with contextlib.redirect_stdout(io.StringIO()), self.assertRaises(AssertionError):
                with on_mac(report=page):
                    raise AssertionError("no answer\nexpected one")
            line = currentframe().f_lineno - 1
            text = f'"text":"AssertionError: no answer (fixture_test.py:{line})\\nexpected one"'
            self.assertTrue(text in page.read_text(encoding="utf-8"), text)

    def test_wait_in_vain_and_say_what_was_there(self):
        with on_mac() as simulated, self.assertRaises(DriverError) as raised:
            simulated.tell("wait", "until", "Chat", "window", "Ada", "gone")
            simulated.tell("wait", "until", "Chat", "window", "Grace", "within", "1s")
        self.assertEqual("simulated-mac wait until Chat window Grace within 1s: waited 1000.0 ms in vain: Chat window "
                         'Grace; at last it had the windows "Ada — Chat"', str(raised.exception))

    def test_wait_in_vain_and_say_for_what(self):
        with on_mac() as simulated:
            mac = simulated.mac
            with self.assertRaises(WaitedInVainError) as raised:
                mac.until(lambda: mac.app("Chat").find_text(["Never"])["counts"]["Never"], timeout=1, what="the answer")
            self.assertEqual("waited 1 s in vain for the answer, and asked 6 times; at last driver ax-find-text Chat Never "
                             'replied {"counts":{"Never":0},"frames":{},"ok":true}', str(raised.exception))
            with self.assertRaises(WaitedInVainError) as raised:
                mac.until(lambda: None, timeout=0.2)
            self.assertEqual("waited 0.2 s in vain, and asked 2 times; the last answer was None", str(raised.exception))

            async def ask():
                await asyncio.gather(other.session(), other.scene())
                return False

            other = AsyncMac(mac)
            with self.assertRaisesRegex(WaitedInVainError, "^waited 0 s in vain, and asked once; at last driver s"):
                asyncio.run(other.until(ask, timeout=0))

    def test_write_a_report_when_a_block_fails(self):
        with tempfile.TemporaryDirectory() as folder:
            page = Path(folder) / "report.html"
            with contextlib.redirect_stdout(io.StringIO()) as told, self.assertRaises(CommandError):
                with on_mac(report=page) as simulated:
                    simulated.mac.app("Chat").press("Nowhere")
            self.assertEqual(f"what happened on the simulated Mac: {page}\n", told.getvalue())
            self.assertIn("no element labelled", page.read_text(encoding="utf-8"))
            nowhere = Path(folder) / "nowhere" / "report.html"
            with on_mac() as simulated, self.assertRaisesRegex(DriverError, "no report: "):
                simulated.report(nowhere)
            with contextlib.redirect_stdout(io.StringIO()) as told, self.assertRaises(CommandError):
                with on_mac(report=nowhere) as simulated:
                    simulated.mac.app("Chat").press("Nowhere")
            self.assertIn("no report: ", told.getvalue())


if __name__ == "__main__":
    unittest.main()
