"""One run of driver: its command line, its time-out, its reply."""
from __future__ import annotations

import json
import math
import subprocess
import threading
from typing import Any, Dict, List, Sequence

from .cancellation import Cancellation
from .children import end_child, forget, start_child
from .contract import COMMANDS
from .errors import NoReplyError, Reply, TimedOutError


# pytest shows a failure where the test calls this module, not in it.
__tracebackhide__ = True


def _number(value: Any) -> str:
    return str(int(value)) if isinstance(value, float) and value.is_integer() else str(value)


def _is_number(value: Any) -> bool:
    return isinstance(value, (int, float)) and not isinstance(value, bool)


def check_word(name: str, words: Sequence[str], value: Any, or_number: bool = False) -> None:
    """Refuses a value that is none of the words."""
    if value in words or (or_number and _is_number(value)):
        return
    listed = ", ".join([*(["a number"] if or_number else []), *words])
    raise TypeError(f"{name} is one of {listed}, not {value!r}")


def _words(row: Dict[str, Any], value: Any) -> List[str]:
    if "words" in row:
        check_word(row["name"], row["words"], value, row["number"])
    if (row["json"] or row["repeats"]) and isinstance(value, str):
        raise TypeError(f"{row['name']} is a list of texts, not one text")  # and would be taken for its letters
    if row["json"]:
        return [json.dumps(list(value), ensure_ascii=False, separators=(",", ":"))]
    if row["repeats"]:
        return [str(one) for one in value]
    return [_number(value)]


def _is_given(row: Dict[str, Any], value: Any) -> bool:
    if row["always"] or value is None:
        return bool(row["always"])
    return "default" not in row or (list(value) if row["json"] else value) != row["default"]


def command_line(command: str, given: Dict[str, Any]) -> List[str]:
    """The command line: in the order of the contract; what is left out in front of others by its default."""
    rows = COMMANDS[command]["arguments"]
    unknown = sorted(set(given) - {row["name"] for row in rows})
    if unknown:
        raise TypeError(f"{command} has no argument {', '.join(unknown)}")
    last = max((place for place, row in enumerate(rows, 1) if _is_given(row, given.get(row["name"]))), default=0)
    words = [command]
    for row in rows[:last]:
        value = given.get(row["name"])
        if value is None and "default" not in row:
            raise TypeError(f"{command} needs {row['name']}")
        words += _words(row, row["default"] if value is None else value)
    return words


def _typing_seconds(text: str) -> float:
    """What a text takes to be typed, beside what every command is allowed: docs/WORST_CASE.md."""
    lines = text.split("\n")
    units = [len(line.encode("utf-16-le", "surrogatepass")) // 2 for line in lines]
    return 0.024 * sum(math.ceil(count / 20) for count in units) + 0.098 * (len(lines) - 1)


def seconds_max(command: str, given: Dict[str, Any]) -> float:
    seconds = float(COMMANDS[command]["secondsMax"])
    return seconds + (_typing_seconds(str(given["text"])) if command == "bg-type" else 0)


def reply_in(command: str, line: str, errors: str) -> Reply:
    try:
        reply: Reply = json.loads(line)
        return reply
    except ValueError:
        said = f": {errors.strip()}" if errors.strip() else ""
        raise NoReplyError(f"{command}: no reply{said}") from None


def run_once(file: str, words: Sequence[str], environment: Dict[str, str], timeout: float,
             cancellations: Sequence[Cancellation]) -> Reply:
    """Runs a command line to its end and gives its reply, whatever that says."""
    for one in cancellations:
        one.raise_if_cancelled()
    child = start_child(file, words, environment, subprocess.DEVNULL)

    def end() -> None:
        threading.Thread(target=end_child, args=(child,), daemon=True).start()

    is_late = False
    for one in cancellations:
        one.add(end)
    try:
        try:
            output, errors = child.communicate(timeout=timeout)
        except subprocess.TimeoutExpired:
            is_late = True
            end_child(child)
            output, errors = child.communicate()
        for one in cancellations:
            one.raise_if_cancelled()
    except BaseException:
        end_child(child)
        raise
    finally:
        for one in cancellations:
            one.remove(end)
        forget(child)
    reply = reply_in(words[0], output.decode(errors="replace"), errors.decode(errors="replace"))
    if is_late and reply.get("ok") is not True:
        raise TimedOutError(words[0], timeout)
    return reply
