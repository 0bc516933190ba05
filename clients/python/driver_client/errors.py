"""What this package raises of its own."""
from __future__ import annotations

import json
import re
import shlex
from typing import Any, Dict, Optional, Sequence, Tuple

from .contract import FAILURES, REMEDIES

Reply = Dict[str, Any]


class DriverError(Exception):
    """Whatever this package raises of its own."""


class CommandError(DriverError):
    """A failure that driver told: id, parts and remedy are those of its catalogue. It is shown as its text, and
    below that what to do."""

    def __init__(self, command: str, reply: Reply, name: str, parts: Dict[str, str], remedy: str,
                 cause: str = "") -> None:
        other = f"axError {reply.get('axError')}" if name == "not-accepted" else name
        text = f"{command}: {cause or reply.get('error', other)}"
        super().__init__(f"{text}\nWhat to do: {remedy}")
        #: The command and its failure, without the remedy.
        self.text = text
        self.command = command
        self.reply = reply
        #: The failure's stable name; "unknown-failure" for one that this client does not know.
        self.id = name
        #: What the message was filled in with, by name.
        self.parts = parts
        #: What to do.
        self.remedy = remedy


class HungError(CommandError):
    """The application did not answer for twelve seconds: that nothing was found means nothing."""

    def __init__(self, command: str, reply: Reply) -> None:
        seen = reply.get("error", "nothing was found")
        super().__init__(command, reply, "application-hung", {}, REMEDIES["application-hung"],
                         f"the application did not answer for twelve seconds: {seen}")


class TimedOutError(DriverError):
    """The run took longer than it may, and was told to end: it has given back what it had borrowed."""

    def __init__(self, command: str, seconds: float) -> None:
        super().__init__(f"{command}: told to end after {seconds:g} s; look at the target before doing it again")
        self.command = command
        self.seconds = seconds


SHOWN_MAX = 300  # characters of a reply


class WaitedInVainError(TimedOutError):
    """What `until` waited for did not come. Nothing was told to end."""

    def __init__(self, what: Optional[str], seconds: float, times: int, told: Any,
                 last_run: Optional[Tuple[Sequence[str], Reply]]) -> None:
        often = "once" if times == 1 else f"{times} times"
        asked = f"waited {seconds:g} s in vain{f' for {what}' if what else ''}, and asked {often}; "
        if last_run is None:
            found = f"the last answer was {told!r}"
        else:
            words, reply = last_run
            shown = json.dumps(reply, ensure_ascii=False, sort_keys=True, separators=(",", ":"))
            cut = f"{shown[:SHOWN_MAX]}…" if len(shown) > SHOWN_MAX else shown
            found = f"at last {shlex.join(['driver', *words])} replied {cut}"
        DriverError.__init__(self, asked + found)
        self.command = "until"
        self.seconds = seconds


class ServiceEndedError(DriverError):
    """The capture service has ended, and with it all that ran beside it."""

    def __init__(self) -> None:
        super().__init__("the capture service has ended")


class NoReplyError(DriverError):
    """driver could not be started, or ended without a reply."""


class CancelledError(DriverError):
    """The caller has cancelled the run."""


def _parts_in(row: Dict[str, Any], command: str, text: str) -> Optional[Dict[str, str]]:
    if row["commands"] is not None and command not in row["commands"]:
        return None
    found = re.fullmatch(row["pattern"], text)
    return None if found is None else dict(zip(row["parts"], found.groups()))


def failure_of(command: str, reply: Reply) -> CommandError:
    """The failure that a reply without "ok": true tells."""
    text = reply.get("error")
    if not isinstance(text, str):
        name = "not-accepted" if "axError" in reply else "not-done"
        return CommandError(command, reply, name, {}, REMEDIES[name])
    for row in FAILURES:
        parts = _parts_in(row, command, text)
        if parts is not None:
            return CommandError(command, reply, row["id"], parts, row["remedy"])
    return CommandError(command, reply, "unknown-failure", {}, REMEDIES["unknown-failure"])
