"""The two sides on which the scenarios run: a simulated Mac, and the Mac that one sits at."""
import json
import re
import select
import shutil
import subprocess
import tempfile
import time
from pathlib import Path

from mac import SECONDS_MAX, Mac, Talk, plain_environment, run_driver

HERE = Path(__file__).resolve().parent
APPLICATION = "com.zentrove.desk.fixture"
APPLICATION_NAME = "Driver Fixture"
START_SECONDS_MAX = 20
UNLOCK_SECONDS_MAX = 600
POLL_SECONDS = 0.1
WINDOWS_AT_START = 2


class Trouble(Exception):
    """Why the scenarios cannot run."""


class Desk:
    """A Mac on which the fixture runs: what both sides have alike."""

    def windows(self):
        """What the system tells of the fixture and its windows, front to back."""
        return self.driver("windows", APPLICATION).reply

    def talk(self, words, _end):
        """A run that keeps going until it is ended in this way."""
        return Talk(self, words)

    def titles(self):
        return {window["id"]: window["title"] for window in self.windows().get("windows", [])}


def world(layout, options):
    """The fixture as a world, started with the options."""
    words = {"hidden": "hidden" if "hidden" in options else "",
             "focused": "" if "panel" in options else "focused"}
    for name, (x, y, width, height) in layout.slots.items():
        words[name] = f"at {x},{y} size {width}x{height}"
    for name, (x, y, width, height) in layout.windows.items():
        words[f"window {name}"] = f"at {x},{y} size {width}x{height}"
    template = (HERE / "worlds" / "fixture.world.in").read_text()
    if "panel" in options:
        template += (HERE / "worlds" / "panel.world.in").read_text()
    lines = [line for line in template.splitlines() if not line.startswith("#")]
    return re.sub(r"\{([^}]*)\}", lambda match: words[match[1]], "\n".join(lines))


class SimulatedDesk(Mac, Desk):
    """The fixture as a world, in virtual time."""

    def __init__(self, layout, options):
        super().__init__(world(layout, options))

    def wait_a_moment(self):
        self.tell("advance", f"{POLL_SECONDS * 1000:.0f}ms")

    def user_state(self):
        """All that is the user's own, which no scenario may change."""
        return self.tell("state", "--user")

    def broken_rules(self):
        """The rules of safe input that were broken."""
        return json.loads(self.tell("violations"))["violations"]


class Simulated:
    """A simulated Mac of its own for each scenario."""

    summary = "simulated side only: nothing here has run on a Mac"
    # The login window shows some time after a lock: nothing else takes its time.
    polls_max = 5
    # Nobody but driver writes to its standard error.
    is_quiet = True

    def __init__(self, layout):
        self._layout = layout

    def start(self, options):
        return SimulatedDesk(self._layout, options)


class MacDesk(Desk):
    """The fixture as a process on this Mac, started in the background."""

    def __init__(self, bundle, options):
        self.folder = tempfile.TemporaryDirectory(prefix="conformance-")
        self.environment = plain_environment()
        program = bundle / "Contents" / "MacOS" / APPLICATION_NAME
        words = [f"--{option}" for option in options]
        self._process = subprocess.Popen([str(program), *words], stdin=subprocess.DEVNULL,
                                         stdout=subprocess.PIPE)
        try:
            self._await_start(0 if "hidden" in options else WINDOWS_AT_START)
        except Trouble:
            self.__exit__()
            raise

    def _await_start(self, windows):
        readable, _, _ = select.select([self._process.stdout], [], [], START_SECONDS_MAX)
        if not readable or self._process.stdout.readline() != b"ready\n":
            raise Trouble(f"{APPLICATION_NAME} has not started")
        deadline = time.monotonic() + START_SECONDS_MAX
        while len(self.windows().get("windows", [])) < windows:
            if time.monotonic() >= deadline:
                raise Trouble(f"{APPLICATION_NAME} has not shown its windows: {self.windows()}")
            time.sleep(POLL_SECONDS)

    def __enter__(self):
        return self

    def __exit__(self, *_):
        self._process.terminate()
        self._process.communicate(timeout=SECONDS_MAX)
        self.folder.cleanup()

    def driver(self, *arguments, **environment):
        return run_driver(arguments, {**self.environment, **environment})

    def wait_a_moment(self):
        time.sleep(POLL_SECONDS)

    def user_state(self):
        """The application in front, and the text on the clipboard. The pointer is left out: it
        moves when the user moves it."""
        clipboard = None
        if shutil.which("pbpaste"):
            clipboard = subprocess.run(["pbpaste"], capture_output=True, timeout=SECONDS_MAX,
                                       check=False).stdout
        return self.driver("scene").reply["pid"], clipboard

    def broken_rules(self):
        """Nobody watches on a Mac."""
        return []


class RealMac:
    """This Mac. The fixture is started anew for each scenario."""

    summary = "run on this Mac"
    # An application shows what was done to it when it comes to that.
    polls_max = 50
    is_quiet = False

    def __init__(self, bundle):
        self._bundle = Path(bundle)

    def start(self, options):
        self._await_unlocked()
        return MacDesk(self._bundle, options)

    @staticmethod
    def _ask(*words):
        return run_driver(words, plain_environment()).reply

    def _await_unlocked(self):
        """A scenario that locks the screen is followed by others."""
        deadline = time.monotonic() + UNLOCK_SECONDS_MAX
        while self._ask("session")["locked"]:
            if time.monotonic() >= deadline:
                raise Trouble("the screen is locked")
            time.sleep(POLL_SECONDS)

    def check(self):
        """Raises Trouble when scenarios could not run here."""
        granted = self._ask("permissions")
        missing = [name for name in ("accessibility", "screenRecording") if not granted[name]]
        if missing:
            raise Trouble(f"permission missing: {', '.join(missing)}; scripts/doctor says more")
        session = self._ask("session")
        if session["locked"] or not session["onConsole"]:
            raise Trouble("the screen must be unlocked, and this user in front")
        if self._ask("windows", APPLICATION)["running"]:
            raise Trouble(f"{APPLICATION_NAME} runs already: quit it first")
