"""A Mac of a test's own, made from a world."""
from __future__ import annotations

import contextlib
import json
import os
import shlex
import subprocess
import sys
import tempfile
import traceback
import warnings
from pathlib import Path
from typing import Any, Iterator, List, Optional, Tuple

from .children import end_child, forget, start_child
from .clock import Clock
from .errors import SHOWN_MAX, DriverError, Reply
from .mac import Mac


# pytest shows a failure where the test calls this module, not in it.
__tracebackhide__ = True

HERE = Path(__file__).parent


class SimulatedMacWarning(UserWarning):
    """Something in a world that is hardly meant, or a hint of a Mac to whoever writes the test."""


def failure_text(error: BaseException) -> str:
    """An error for people: what it is, and which line of whose code it comes from."""
    frames = [frame for frame in traceback.extract_tb(error.__traceback__)
              if Path(frame.filename).parent != HERE]
    place = f" ({Path(frames[-1].filename).name}:{frames[-1].lineno})" if frames else ""
    said = str(error) or (frames[-1].line if frames else "") or ""
    first, *rest = f"{type(error).__name__}: {said}".removesuffix(": ").split("\n")
    return "\n".join([first + place, *rest])


def differences(before: Any, after: Any, name: str = "") -> Iterator[str]:
    """Where two states differ, each with what was there and what is."""
    if before == after:
        return
    if isinstance(before, dict) and isinstance(after, dict):
        for key in sorted({*before, *after}):
            inner = f"{name}.{key}" if name else key
            yield from differences(before.get(key), after.get(key), inner)
    else:
        yield f"{name} was {_shown(before)} and is {_shown(after)}"


def _shown(value: Any) -> str:
    text = json.dumps(value, ensure_ascii=False, sort_keys=True)
    return text if len(text) <= SHOWN_MAX else f"{text[:SHOWN_MAX]}…"


def _place_of_caller() -> Tuple[str, int]:
    """The file and the line that called this package."""
    frame = sys._getframe()
    while frame.f_back is not None and (Path(frame.f_code.co_filename).parent == HERE
                                        or frame.f_code.co_filename == contextlib.__file__):
        frame = frame.f_back
    return frame.f_code.co_filename, frame.f_lineno


def _is_file(text: str) -> bool:
    try:
        return Path(text).is_file()
    except (OSError, ValueError):  # it cannot be a file's name
        return False


def _written(world: "os.PathLike[str] | str", folder: str) -> Tuple[str, str]:
    """The folder and the name of a world's file, which is made for a text."""
    if isinstance(world, os.PathLike):
        return os.getcwd(), os.fspath(world)
    if not isinstance(world, str):
        raise TypeError("a world is its text, or the path of its file as a pathlib.Path, not "
                        f"{type(world).__name__}")
    if _is_file(world):
        raise TypeError(f"{world!r} is taken for the text of a world; for the file say pathlib.Path({world!r})")
    (Path(folder) / "world").write_text(world, encoding="utf-8")
    return folder, "world"


def _error_in(line: bytes) -> str:
    """The error in a line of simulated-mac; what is no such line as it is."""
    text = line.decode(errors="replace").strip()
    try:
        return str(json.loads(text)["error"])
    except (ValueError, TypeError, KeyError):
        return text


class _VirtualClock(Clock):
    def __init__(self, simulated: "SimulatedMac") -> None:
        self._simulated = simulated

    def now(self) -> float:
        return self._advance(0)

    def sleep(self, seconds: float) -> None:
        self._advance(seconds)

    def _advance(self, seconds: float) -> float:
        told = self._simulated.tell("advance", f"{round(seconds * 1_000_000)}us")[0]
        return float(told["now"]) / 1000


class SimulatedMac:
    """Started from the text of a world, or from the path of its file; in virtual time, in which no wait takes
    any, or in real time."""

    def __init__(self, world: "os.PathLike[str] | str", *, driver: str = "driver",
                 simulated_mac: str = "simulated-mac", real_time: bool = False) -> None:
        self._folder = tempfile.TemporaryDirectory(prefix="simulated-mac-")
        self._program = simulated_mac
        self._place = _place_of_caller()
        #: What in the world is hardly meant, as `simulated-mac check` shows it; empty when there is nothing.
        self.warnings = ""
        try:
            file = self._checked(world)
        except BaseException:
            self._folder.cleanup()
            raise
        time = [] if real_time else ["--virtual"]
        words = ["serve", *time, "--record", self.path("record"), "--until-closed", file]
        self._server = start_child(simulated_mac, words, dict(os.environ), subprocess.PIPE)
        assert self._server.stdout is not None and self._server.stderr is not None
        #: What SIMULATED_MAC is for processes on this Mac.
        self.socket = self._server.stdout.read().decode().strip()
        if not self.socket.startswith("@"):
            problem = _error_in(self._server.stderr.read())
            self.end()
            raise DriverError(f"no simulated Mac: {problem}")
        self.environment = {**os.environ, "SIMULATED_MAC": self.socket}
        clock = Clock() if real_time else _VirtualClock(self)
        self.mac = Mac(driver=driver, environment=self.environment, clock=clock)
        self._before: Optional[Reply] = None
        self.settle()

    def _checked(self, world: "os.PathLike[str] | str") -> str:
        """The path of the world's file. Raises for one that cannot be read, and warns of what is hardly meant."""
        folder, name = _written(world, self._folder.name)
        try:
            done = subprocess.run([self._program, "check", name], cwd=folder, capture_output=True, check=False,
                                  stdin=subprocess.DEVNULL)
        except OSError as error:
            raise DriverError(f"no simulated Mac: {error}") from error
        # Its last line counts the problems; when there is no world to look at, it is all there is.
        *lines, last = done.stdout.strip().split(b"\n")
        problems = b"\n".join(lines).decode(errors="replace")
        if done.returncode != 0:
            raise DriverError(f"no simulated Mac: {problems or _error_in(last)}")
        self.warnings = problems
        self._warn(problems)
        return str(Path(folder) / name)

    def _warn(self, text: str) -> None:
        if text:
            warnings.warn_explicit(text, SimulatedMacWarning, *self._place)

    def path(self, name: str) -> str:
        """A path in a folder that goes with the Mac."""
        return str(Path(self._folder.name) / name)

    def tell(self, *words: str) -> List[Reply]:
        """Tells or asks the Mac: `tell("lock")`, `tell("user", "key", "a")`. Gives the lines of its answer."""
        done = subprocess.run([self._program, *words], env=self.environment, capture_output=True, check=False)
        replies: List[Reply] = [json.loads(line) for line in done.stdout.splitlines()]
        if replies and replies[0].get("ok") is False:
            raise DriverError(f"{shlex.join(['simulated-mac', *words])}: {replies[0]['error']}")
        return replies

    def state(self) -> Reply:
        """What is the user's own: front application, keyboard, pointer, clipboard, session."""
        return self.tell("state", "--user")[0]

    def violations(self) -> List[Any]:
        """The rules of safe input that were broken."""
        broken: List[Any] = self.tell("violations")[0]["violations"]
        return broken

    def check(self) -> None:
        """Fails when a rule of safe input was broken, or the user's state is another than at the start."""
        violations = self.violations()
        if violations:
            raise DriverError(f"rules of safe input were broken: {'; '.join(violations)}")
        changed = list(differences(self._before, self.state()))
        if changed:
            raise DriverError(f"the user's state is not as before: {'; '.join(changed)}\n"
                              "What to do: if the test or its world changes it, call settle() after that.")

    def note_failure(self, error: BaseException) -> None:
        """Writes into the journal that the test has failed, and why: a report begins with it."""
        # A Mac that has gone is not what has failed.
        with contextlib.suppress(DriverError, OSError):
            self.tell("failed", failure_text(error))

    def report(self, path: "os.PathLike[str] | str") -> str:
        """Writes a page that shows all that has happened so far, for a browser. Gives its path."""
        made = subprocess.run([self._program, "report", self.path("record"), "-o", str(path)], capture_output=True,
                              check=False)
        if made.returncode != 0:
            raise DriverError(f"no report: {made.stdout.decode(errors='replace').strip()}")
        return str(path)

    def settle(self) -> None:
        """Takes the user's present state for the one to be kept: after the user has acted."""
        self._before = self.state()

    def end(self) -> None:
        end_child(self._server)
        forget(self._server)
        hint = self._server.stderr.read() if self._server.stderr is not None else b""
        for stream in (self._server.stdin, self._server.stdout, self._server.stderr):
            if stream is not None:
                stream.close()
        self._folder.cleanup()
        self._warn(hint.decode(errors="replace").strip())


def told_of_failure(simulated: SimulatedMac, error: BaseException,
                    page: "os.PathLike[str] | str | None") -> Iterator[str]:
    """Lets a report begin with why the test has failed, and gives the lines that help to understand that."""
    simulated.note_failure(error)
    if simulated.warnings:
        yield simulated.warnings
    if page is None:
        return
    try:
        yield f"what happened on the simulated Mac: {simulated.report(page)}"
    except DriverError as trouble:  # is not what has failed
        yield str(trouble)


@contextlib.contextmanager
def simulated_mac(world: "os.PathLike[str] | str", *, report: "os.PathLike[str] | str | None" = None,
                  **options: Any) -> Iterator[SimulatedMac]:
    """A Mac for a block; checks afterwards that the user has noticed nothing. When the block or the check
    fails, what happened is written to the page `report`."""
    simulated = SimulatedMac(world, **options)
    try:
        yield simulated
        simulated.check()
    except BaseException as error:
        for line in told_of_failure(simulated, error, report):
            print(line)
        raise
    finally:
        simulated.end()
