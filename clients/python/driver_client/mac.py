"""A Mac that is operated: every command as a function, and what keeps going."""
from __future__ import annotations

import contextlib
import contextvars
import dataclasses
import os
import threading
from typing import (TYPE_CHECKING, Any, Callable, Dict, Iterator, List, Mapping, Optional, Sequence, Set, Tuple, Type,
                    TypeVar)

from .cancellation import Cancellation
from .clock import Clock
from .commands import App, Commands
from .contract import COMMANDS, GuardLanguage
from .errors import HungError, Reply, WaitedInVainError, failure_of
from .lines import ENDED_WITH_INPUT, InputWatch, KeepAwake, Lines, LockGuard, guard_environment
from .run import command_line, run_once, seconds_max
from .turns import Turns

if TYPE_CHECKING:
    from .service import CaptureService

# pytest shows a failure where the test calls this module, not in it.
__tracebackhide__ = True

# Two messages that a hung application does not answer: docs/WORST_CASE.md.
HUNG_SECONDS = 12.0
# Those that put right what a capture service has left: they run also when it has gone.
PUTTING_RIGHT = ("focus-release", "lock-now")

# What pastes go in turn under: no application has this name.
CLIPBOARD = ""

Result = TypeVar("Result")
Kind = TypeVar("Kind", bound=Lines)


class Asking:
    """What an `until` has asked so far, and the last run of driver that this took."""

    def __init__(self) -> None:
        self.times = 0
        self.last_run: Optional[Tuple[Sequence[str], Reply]] = None

    @contextlib.contextmanager
    def once(self) -> Iterator[None]:
        self.times += 1
        token = ASKING.set(self)
        try:
            yield
        finally:
            ASKING.reset(token)

    def in_vain(self, what: Optional[str], timeout: float, told: Any) -> WaitedInVainError:
        return WaitedInVainError(what, timeout, self.times, told, self.last_run)


# The one that the present task asks for.
ASKING: "contextvars.ContextVar[Optional[Asking]]" = contextvars.ContextVar("asking", default=None)


class Runs:
    """The runs that go on beside a service."""

    def __init__(self) -> None:
        self._changed = threading.Condition()
        self._ids: Set[int] = set()

    def __enter__(self) -> None:
        with self._changed:
            self._ids.add(threading.get_ident())

    def __exit__(self, *_: Any) -> None:
        with self._changed:
            self._ids.discard(threading.get_ident())
            self._changed.notify_all()

    def wait(self) -> None:
        with self._changed:
            self._changed.wait_for(lambda: not self._ids)


@dataclasses.dataclass(frozen=True)
class Options:
    #: The executable, looked for in the PATH.
    driver: str = "driver"
    #: The environment of runs; this process's without it.
    environment: Optional[Mapping[str, str]] = None
    clock: Clock = dataclasses.field(default_factory=Clock)
    #: The window scope of all runs.
    scope: Optional[str] = None
    #: The capture service without which nothing goes on, and the process whose focus it holds.
    capture_pid: Optional[int] = None
    focus_pid: Optional[int] = None
    #: Ends all runs.
    cancellation: Cancellation = dataclasses.field(default_factory=Cancellation)
    runs: Runs = dataclasses.field(default_factory=Runs)


def _is_empty(reply: Reply) -> bool:
    """Whether a reply tells of nothing: no elements, no texts, no counts above 0, no element."""
    values = [value for key, value in reply.items() if key != "ok"]
    return all(value is None or value == [] or
               (isinstance(value, dict) and all(each == 0 for each in value.values())) for value in values)


def _waits_for_application(command: str) -> bool:
    return command.startswith("ax-") or command in ("reveal", "bg-key", "bg-type", "bg-paste-files")


class Mac(Commands):
    """Options by name: driver, environment, clock, scope, capture_pid, focus_pid, cancellation."""

    def __init__(self, **options: Any) -> None:
        self._options = Options(**options)
        self._turns = Turns()
        self._names: Dict[str, str] = {}

    def having(self, **options: Any) -> "Mac":
        """The same Mac with other options; acts on one application go in turn across both."""
        other = Mac()
        other._options = dataclasses.replace(self._options, **options)
        other._turns = self._turns
        other._names = self._names
        return other

    @property
    def clock(self) -> Clock:
        return self._options.clock

    def app(self, name: str, *, scope: Optional[str] = None) -> App:
        """The commands on one application: `pid:` and a process id, a bundle identifier, or a name."""
        return App(self if scope is None else self.having(scope=scope), name)

    def run(self, command: str, given: Dict[str, Any], *, timeout: Optional[float] = None,
            scope: Optional[str] = None, cancellation: Optional[Cancellation] = None) -> Any:
        """Runs a command with its arguments by name: for `timeout` seconds at most, in the scope, until
        it is cancelled."""
        words = command_line(command, given)
        limit = seconds_max(command, given) if timeout is None else timeout
        cancellations = [self._options.cancellation, *([] if cancellation is None else [cancellation])]
        return self.in_turn(command, given.get("app"), lambda: self._timed(
            command, words, self.environment(command, scope), limit, cancellations))

    def in_turn(self, command: str, app: Optional[str], work: Callable[[], Result]) -> Result:
        """Does what acts on an application when nothing else acts on it, and pastes when nothing else does."""
        if app is None or not COMMANDS.get(command, {"acts": True})["acts"]:
            return work()
        with self._turns.take(self._identity_of(app)):
            if command != "bg-paste-files":
                return work()
            # All pastes share the user's clipboard, which each of two at once would take for the other's files.
            with self._turns.take(CLIPBOARD):
                return work()

    def until(self, ask: Callable[[], Result], *, timeout: float = 10, every: float = 0.2,
              what: Optional[str] = None) -> Result:
        """Waits until what is asked for is so: asks at once, then again and again, and gives what is told.
        When it waits in vain, the error says for `what`, and what the last run of driver replied."""
        clock = self._options.clock
        end = clock.now() + timeout
        asking = Asking()
        while True:
            with asking.once():
                told = ask()
            if told:
                return told
            if clock.now() + every > end:
                raise asking.in_vain(what, timeout, told)
            clock.sleep(every)

    def start_capture_service(self, lock: str) -> "CaptureService":
        """Starts a capture service with a lock file of the caller's own."""
        from .service import CaptureService  # it needs this module itself
        return CaptureService(self, lock)

    def lock_guard(self, *, grace_seconds: Optional[float] = None, operating: bool = False,
                   face: Optional[str] = None, name: Optional[str] = None,
                   language: Optional[GuardLanguage] = None) -> LockGuard:
        """Covers the unlocked Mac until somebody comes back; the first line says on how many displays."""
        return self.talk(LockGuard, "lock-guard", [],
                         guard_environment(grace_seconds, operating, face, name, language))

    def keep_awake(self) -> KeepAwake:
        """Keeps the display awake until its end, which comes with this process at the latest."""
        return KeepAwake("keep-awake", "/bin/sh", ["-c", ENDED_WITH_INPUT, self._options.driver, "keep-awake"],
                         self.environment("keep-awake"))

    def watch_input(self, app: Optional[str] = None) -> InputWatch:
        """The user's own input, and with an application whether it touches that."""
        return self.talk(InputWatch, "watch-input", [] if app is None else [app])

    def talk(self, kind: Type[Kind], command: str, words: Sequence[str],
             environment: Optional[Dict[str, str]] = None) -> Kind:
        """Starts a command that keeps going."""
        return kind(command, self._options.driver, [command, *words],
                    {**self.environment(command), **(environment or {})})

    def environment(self, command: str, scope: Optional[str] = None) -> Dict[str, str]:
        """The environment of a run of the command."""
        options = self._options
        pid = None if command in PUTTING_RIGHT else options.capture_pid
        own: Dict[str, Any] = {"CU_WINDOW": options.scope if scope is None else scope,
                               "CU_CAPTURE_PID": pid, "CU_FOCUS_PID": options.focus_pid}
        given = os.environ if options.environment is None else options.environment
        rest = {name: value for name, value in given.items() if name not in own}
        return {**rest, **{name: str(value) for name, value in own.items() if value is not None}}

    def _timed(self, command: str, words: List[str], environment: Dict[str, str], limit: float,
               cancellations: Sequence[Cancellation]) -> Reply:
        before = self._options.clock.now()
        with self._options.runs:
            reply = run_once(self._options.driver, words, environment, limit, cancellations)
        asking = ASKING.get()
        if asking is not None:
            asking.last_run = (words, reply)
        is_silent = reply.get("ok") is not True or _is_empty(reply)
        if is_silent and _waits_for_application(command):
            if self._options.clock.now() - before >= HUNG_SECONDS:
                raise HungError(command, reply)
        if reply.get("ok") is not True:
            raise failure_of(command, reply)
        return reply

    def _identity_of(self, app: str) -> str:
        # An application has several names; acts wait for each other under its bundle identifier.
        if app not in self._names:
            reply = run_once(self._options.driver, ["windows", app], self.environment("focus-release"),
                             seconds_max("windows", {}), [])
            if reply.get("running") is not True:
                return app
            self._names[app] = str(reply["bundleId"] or reply["name"] or app)
        return self._names[app]
