"""The agent in Python at its three tasks: undisturbed, under faults, and with a user who comes in between."""
import contextlib
import os
import sys
import unittest
from pathlib import Path

sys.dont_write_bytecode = True
HERE = Path(__file__).resolve().parent
ROOT = HERE.parent.parent
sys.path[:0] = [str(HERE), str(HERE.parent / "python")]

from agent import TASKS, Desk  # noqa: E402
from driver_client import CommandError  # noqa: E402
from driver_client.testing import SimulatedMac  # noqa: E402

PROGRAMS = {"driver": os.environ.get("DRIVER_EXECUTABLE", str(ROOT / "build/release/driver")),
            "simulated_mac": os.environ.get("SIMULATED_MAC_EXECUTABLE", str(ROOT / "build/release/simulated-mac"))}
FILE = "/Users/ada/minutes.pdf"
APPLICATIONS = {"mail": "Mail", "chat": "Chat", "settings": "Settings"}


def processes_on(simulated):
    """The processes that use a Mac, but for this one."""
    wanted = f"SIMULATED_MAC={simulated.socket}".encode()
    for folder in Path("/proc").iterdir():
        if folder.name.isdigit() and int(folder.name) != os.getpid():
            with contextlib.suppress(OSError):
                if wanted in (folder / "environ").read_bytes().split(b"\0"):
                    yield folder.name


class Agent(unittest.TestCase):
    maxDiff = None

    @contextlib.contextmanager
    def on_mac(self, world, **after):
        """A Mac and a desk at it; then nothing is left, no rule was broken, and the user's state is as it was."""
        simulated = SimulatedMac((ROOT / f"demo/{world}.world").read_text(encoding="utf-8"), **PROGRAMS)
        try:
            before = simulated.state()
            desk = Desk(simulated.mac, simulated.path("lock"), simulated.mac.until)
            try:
                yield simulated, desk
            finally:
                desk.end()
            self.assertEqual([], list(processes_on(simulated)))
            self.assertEqual([], simulated.violations())
            self.assertEqual({**before, **after}, simulated.state())
        finally:
            simulated.end()

    def fails(self, failure, world, desk):
        with self.assertRaises(CommandError) as refused:
            TASKS[world](desk, FILE)
        self.assertEqual(failure, refused.exception.id)

    def test_does_its_tasks(self):
        for world, task in TASKS.items():
            with self.subTest(world), self.on_mac(world) as (_, desk):
                task(desk, FILE)

    def test_stops_when_the_mac_is_locked_in_the_middle(self):
        for world in TASKS:
            with self.subTest(world), self.on_mac(world, locked=True) as (simulated, desk):
                simulated.tell("fault", "private.post", "3", "before", "lock")
                self.fails("locked-meanwhile", world, desk)

    def test_stops_when_the_user_stops_the_sharing(self):
        for world in TASKS:
            with self.subTest(world), self.on_mac(world) as (simulated, desk):
                simulated.tell("fault", "private.post", "3", "before", "stop", "sharing", APPLICATIONS[world])
                self.fails("capture-service-gone", world, desk)

    def test_says_that_the_application_hangs(self):
        for world in TASKS:
            with self.subTest(world), self.on_mac(world) as (simulated, desk):
                simulated.tell("hang", APPLICATIONS[world])
                self.fails("application-hung", world, desk)

    def test_waits_while_the_user_is_in_another_window_of_the_application(self):
        with self.on_mac("mail", pointer={"x": 120, "y": 137}) as (simulated, desk):
            happened = []

            class Interrupted:
                """The user comes as soon as something is to be pasted, and leaves when that was looked for twice."""
                until = staticmethod(desk.until)

                @staticmethod
                def open(name, scope=None):
                    app = desk.open(name, scope)
                    paste, windows = app.paste_files, app.windows

                    def paste_files(paths):
                        happened.append("paste")
                        if len(happened) == 1:
                            simulated.tell("user", "click", "120,137")
                        return paste(paths)

                    def look():
                        if happened:
                            happened.append("look")
                        if len(happened) == 3:
                            simulated.tell("front", "Browser")
                        return windows()

                    app.paste_files, app.windows = paste_files, look
                    return app

            TASKS["mail"](Interrupted, FILE)
            self.assertEqual(["paste", "look", "look", "paste"], happened)


if __name__ == "__main__":
    unittest.main()
