"""A simulated Mac, and runs of the driver on it, for the tests in this folder."""
import json
import os
import re
import subprocess
import sys
import tempfile
from pathlib import Path

sys.dont_write_bytecode = True
ROOT = Path(__file__).resolve().parent.parent.parent
sys.path.insert(0, str(ROOT / "packaging" / "generator"))

DRIVER = os.environ.get("DRIVER_EXECUTABLE", str(ROOT / "build/release/driver"))
SIMULATED_MAC = os.environ.get("SIMULATED_MAC_EXECUTABLE", str(ROOT / "build/release/simulated-mac"))
REPLIES = os.environ.get("DRIVER_TEST_REPLIES")
SECONDS_MAX = 120


class KeptReplies:
    """The lines of all runs of this process, written down for suite_test.py where that is asked for."""

    def __init__(self, path):
        self.file = open(path, "w", encoding="utf-8") if path else None

    def keep(self, arguments, lines):
        command = str(arguments[0]) if arguments else ""
        if self.file is None or not re.fullmatch(r"[a-z-]*", command):
            return
        for line in lines:
            self.file.write(f"{command}\t{line}\n")
        self.file.flush()


replies = KeptReplies(REPLIES)


class Run:
    """What a run of the driver wrote, and how it ended."""

    def __init__(self, finished):
        self.status = finished.returncode
        self.lines = finished.stdout.decode().splitlines()
        self.errors = finished.stderr.decode()

    @property
    def reply(self):
        return json.loads(self.lines[-1])


def plain_environment():
    """The environment without what an agent has set for its runs."""
    return {key: value for key, value in os.environ.items()
            if not key.startswith(("CU_", "ZENTROVE_"))}


def run_driver(arguments, environment):
    run = Run(subprocess.run([DRIVER, *arguments], stdin=subprocess.DEVNULL, capture_output=True,
                             timeout=SECONDS_MAX, env=environment, check=False))
    replies.keep(arguments, run.lines)
    return run


class Talk:
    """A run that keeps going and is spoken with, line by line."""

    def __init__(self, mac, arguments, environment=None):
        self.arguments = arguments
        self.process = subprocess.Popen(
            [DRIVER, *arguments], stdin=subprocess.PIPE, stdout=subprocess.PIPE,
            env={**mac.environment, **(environment or {})})

    def say(self, line):
        self.process.stdin.write(line.encode() + b"\n")
        self.process.stdin.flush()

    def line(self):
        line = self.process.stdout.readline()
        replies.keep(self.arguments, line.decode().splitlines())
        return json.loads(line)

    def ask(self, **request):
        self.say(json.dumps(request))
        return self.line()

    def end(self):
        """Closes its standard input; gives the lines that were left, and the status."""
        rest, _ = self.process.communicate(timeout=SECONDS_MAX)
        replies.keep(self.arguments, rest.decode().splitlines())
        return [json.loads(line) for line in rest.splitlines()], self.process.returncode


class Mac:
    """A Mac of its own, in virtual time, that ends with the test."""

    def __init__(self, world):
        self.folder = tempfile.TemporaryDirectory(prefix="contract-")
        path = Path(self.folder.name) / "world"
        path.write_bytes(world.read_bytes() if isinstance(world, Path) else world.encode())
        self.server = subprocess.Popen(
            [SIMULATED_MAC, "serve", "--virtual", "--until-closed", str(path)],
            stdin=subprocess.PIPE, stdout=subprocess.PIPE)
        socket = self.server.stdout.readline().decode().strip()
        self.environment = {**plain_environment(), "SIMULATED_MAC": socket}

    def __enter__(self):
        return self

    def __exit__(self, *_):
        self.server.stdin.close()
        self.server.stdout.close()
        self.server.wait(timeout=SECONDS_MAX)
        self.folder.cleanup()

    def path(self, name):
        return str(Path(self.folder.name) / name)

    def driver(self, *arguments, **environment):
        return run_driver(arguments, {**self.environment, **environment})

    def tell(self, *words):
        """A request to the Mac itself."""
        return subprocess.run([SIMULATED_MAC, *words], capture_output=True, timeout=SECONDS_MAX,
                              env=self.environment, check=True).stdout.decode(errors="replace")
