"""Runs that keep going: their lines as they come, and their standard input."""
from __future__ import annotations

import contextlib
import queue
import subprocess
import threading
from typing import Any, Dict, Iterator, List, Optional, Sequence, get_args

from .cancellation import Cancellation
from .children import end_child, forget, start_child
from .contract import GuardLanguage
from .errors import NoReplyError, Reply, failure_of
from .run import check_word, reply_in

# Runs its words until they end, or standard input does, and with it whoever holds the other end of that.
ENDED_WITH_INPUT = """
exec 3<&0
"$0" "$@" 3<&- & child=$!
(read -r _ <&3; kill "$child") >/dev/null 2>&1 & reader=$!
trap "kill $child" TERM INT HUP
wait "$child"; wait "$child"; kill "$reader" 2>/dev/null
"""


class Lines(Iterator[Reply]):
    """Its lines one by one. As a context it is ended where the block ends."""

    def __init__(self, command: str, file: str, words: Sequence[str], environment: Dict[str, str]) -> None:
        self.command = command
        self._errors = ""
        self._lines: "queue.Queue[Optional[bytes]]" = queue.Queue()
        self._child = start_child(file, words, environment, subprocess.PIPE)
        self._listener = threading.Thread(target=self._listen, daemon=True)
        self._complaints = threading.Thread(target=self._read_errors, daemon=True)
        self._complaints.start()
        self._listener.start()

    def _listen(self) -> None:
        assert self._child.stdout is not None
        for line in self._child.stdout:
            self._lines.put(line)
        self._complaints.join()
        self._child.wait()
        forget(self._child)
        for stream in (self._child.stdin, self._child.stdout, self._child.stderr):
            if stream is not None:
                with contextlib.suppress(BrokenPipeError):
                    stream.close()
        self._lines.put(None)

    def _read_errors(self) -> None:
        assert self._child.stderr is not None
        self._errors = self._child.stderr.read().decode(errors="replace")

    def _take(self) -> Optional[Reply]:
        line = self._lines.get()
        if line is None:
            self._lines.put(None)  # for whoever asks again
            return None
        return reply_in(self.command, line.decode(), self._errors)

    def __next__(self) -> Reply:
        """The next line. Raises a line that is a failure."""
        reply = self._take()
        if reply is None:
            raise StopIteration
        if reply.get("ok") is False:
            raise failure_of(self.command, reply)
        return reply

    def line(self) -> Reply:
        """The next line, which has to come."""
        reply = next(self, None)
        if reply is None:
            raise NoReplyError(f"{self.command} has ended. {self._errors}".strip())
        return reply

    def say(self, line: str) -> None:
        assert self._child.stdin is not None
        with contextlib.suppress(BrokenPipeError, ValueError):  # it has gone; what it said last is read
            self._child.stdin.write(line.encode() + b"\n")
            self._child.stdin.flush()

    def end(self) -> List[Reply]:
        """Closes its standard input, reads what it still says, and gives that when it has ended."""
        assert self._child.stdin is not None
        with contextlib.suppress(BrokenPipeError):
            self._child.stdin.close()
        rest: List[Reply] = []
        while True:
            reply = self._take()
            if reply is None:
                self.wait()
                return rest
            rest.append(reply)

    def tell(self) -> None:
        """Ends it by SIGTERM."""
        end_child(self._child)
        self.wait()

    def wait(self) -> None:
        """Returns when it has ended, however that came."""
        self._listener.join()

    def __enter__(self) -> Any:
        return self

    def __exit__(self, *_: Any) -> None:
        self.end()


def next_or_cancelled(lines: Lines, cancellation: Cancellation) -> Optional[Reply]:
    """The next line, or None at the end; a cancelling ends the run."""
    cancellation.add(lines.tell)
    try:
        line = next(lines, None)
        cancellation.raise_if_cancelled()
        return line
    finally:
        cancellation.remove(lines.tell)


class LockGuard(Lines):
    """The covered Mac. Its end, and this process's, lock the screen."""

    def operating(self) -> None:
        self.say("operating")

    def minding(self) -> None:
        self.say("minding")

    def lock(self) -> Optional[Reply]:
        """Ends the guard, which locks. "relocked" false of the last line: the system would not."""
        rest = self.end()
        return rest[-1] if rest else None


class KeepAwake(Lines):
    """The display, kept awake until `end`."""


class InputWatch(Lines):
    """The user's own input: a first line, then one for each input."""


def guard_environment(grace_seconds: Optional[float], operating: bool, face: Optional[str],
                      name: Optional[str], language: Optional[GuardLanguage]) -> Dict[str, str]:
    """What the cover says and how long the user may come back without a lock."""
    if language is not None:
        check_word("language", get_args(GuardLanguage), language)
    told = {"ZENTROVE_COVER_GRACE": None if grace_seconds is None else str(grace_seconds),
            "ZENTROVE_COVER_OPERATING": "1" if operating else None, "ZENTROVE_COVER_FACE": face,
            "ZENTROVE_COVER_NAME": name, "ZENTROVE_DESK_LANG": language}
    return {key: value for key, value in told.items() if value is not None}
