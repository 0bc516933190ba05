"""The agents in docs/AGENTS_ON_LINUX.md work as the page says, and stop when something goes wrong."""
import os
import re
import subprocess
import sys
import tempfile
import unittest
from pathlib import Path

from mac import DRIVER, ROOT, SIMULATED_MAC

PAGE = (ROOT / "docs/AGENTS_ON_LINUX.md").read_text()
BLOCKS = dict(re.findall(r"^```\w+ title=(\S+)\n(.*?)^```$", PAGE, re.M | re.S))
AGENTS = (["python3", "agent.py"], ["sh", "agent.sh"])
WORLD = (ROOT / "demo/desk.world").read_text()


class Agents(unittest.TestCase):
    def setUp(self):
        folder = tempfile.TemporaryDirectory(prefix="agents-")
        self.addCleanup(folder.cleanup)
        self.folder = Path(folder.name)
        for name, text in BLOCKS.items():
            (self.folder / name).write_text(text)
        programs = self.folder / "bin"
        programs.mkdir()
        (programs / "driver").symlink_to(DRIVER)
        (programs / "simulated-mac").symlink_to(SIMULATED_MAC)
        (programs / "python3").symlink_to(sys.executable)
        self.environment = {**os.environ, "PATH": f"{programs}:{os.environ['PATH']}"}

    def run_on_mac(self, *command, world=WORLD):
        (self.folder / "world").write_text(world)
        return subprocess.run(["simulated-mac", "run", "--virtual", "world", "--", *command],
                              cwd=self.folder, env=self.environment, capture_output=True, text=True,
                              timeout=100, check=False)

    def test_have_twenty_lines_each(self):
        self.assertEqual({"agent.py", "agent.sh", "agent_test.py", "test.sh"}, set(BLOCKS))
        for name in ("agent.py", "agent.sh"):
            lines = [line for line in BLOCKS[name].splitlines() if line]
            self.assertLessEqual(len(lines), 20, name)

    def test_pass_their_test(self):
        for agent in AGENTS:
            done = self.run_on_mac("sh", "test.sh", *agent)
            self.assertEqual(0, done.returncode, done.stdout + done.stderr)
            self.assertEqual("accepted\npassed\n", done.stdout)
            self.assertIn("nothing to do", done.stderr)

    def test_with_a_client_pass_theirs(self):
        (self.folder / "world").write_text(WORLD)
        done = subprocess.run(
            [sys.executable, "-m", "pytest", "-q", "-p", "driver_client.pytest_plugin", "-p",
             "no:cacheprovider", "agent_test.py"], cwd=self.folder, capture_output=True, text=True,
            env={**self.environment, "PYTHONPATH": str(ROOT / "clients/python")}, check=False)
        if "No module named pytest" in done.stderr:
            self.skipTest("there is no pytest here")
        self.assertIn("3 passed in", done.stdout, done.stderr)

    def test_stop_when_something_goes_wrong_and_say_why(self):
        troubles = [
            ("simulated-mac lock", "the Mac is locked or not on console"),
            ("simulated-mac quit Chat", "app not running: Chat"),
            ("simulated-mac hang Chat", "nothing to do"),
            ("simulated-mac fault ax.perform 1 error -25204", "-25204")]
        for agent in AGENTS:
            for trouble, reason in troubles:
                done = self.run_on_mac("sh", "-c", f"{trouble} >&2; exec {' '.join(agent)}")
                with self.subTest(agent=agent, trouble=trouble):
                    self.assertEqual(1, done.returncode)
                    self.assertEqual("", done.stdout)
                    self.assertIn(reason, done.stderr)

    def test_fail_their_test_when_they_do_nothing_or_too_much(self):
        for agent in ("true", "driver ax-insert Chat Message -1 -1 message 'See you on Tuesday.'"):
            done = self.run_on_mac("sh", "test.sh", "sh", "-c", agent)
            self.assertNotEqual(0, done.returncode)
            self.assertNotIn("passed", done.stdout)

    def test_find_every_way_to_go_wrong_that_the_page_names(self):
        rows = re.findall(r"`simulated-mac ([^`]*)`", PAGE.split("## What can go wrong")[1])
        self.assertGreaterEqual(len(rows), 7)
        for words in rows:
            if words.startswith("stop sharing"):
                continue  # of what is shared
            done = self.run_on_mac("sh", "-c", f"simulated-mac {words}")
            self.assertEqual(0, done.returncode, words + done.stdout)


if __name__ == "__main__":
    unittest.main()
