"""Child processes that end with this one, in a way that lets them give back what they have borrowed."""
from __future__ import annotations

import atexit
import os
import signal
import subprocess
import threading
import weakref
from typing import Any, Dict, Optional, Sequence, Set

from .errors import NoReplyError

# How long a child that was told to end may take: driver itself needs 0.55 s at most.
END_SECONDS_MAX = 3.0

_SIGNALS = (signal.SIGTERM, signal.SIGHUP)  # SIGINT raises KeyboardInterrupt, which ends a run too
_lock = threading.RLock()
_children: Set["subprocess.Popen[Any]"] = set()
_told_children: "weakref.WeakSet[subprocess.Popen[Any]]" = weakref.WeakSet()
_listening: Set[int] = set()
_told: Optional[int] = None


def _tell_to_end(child: "subprocess.Popen[Any]") -> None:
    """Once, whoever asks: at a second signal driver ends at once, and gives nothing back."""
    with _lock:
        if child in _told_children:
            return
        _told_children.add(child)
    child.terminate()


def end_child(child: "subprocess.Popen[Any]") -> None:
    """Ends a child so that it gives back what it has borrowed, and returns when it has ended."""
    _tell_to_end(child)
    try:
        child.wait(END_SECONDS_MAX)
    except subprocess.TimeoutExpired:
        child.kill()
        child.wait()


def _tell_all() -> None:
    for child in list(_children):
        _tell_to_end(child)


def _note_signal(number: int, _frame: Any) -> None:
    global _told
    is_second = _told is not None
    _told = number
    if is_second or not _children:
        signal.signal(number, signal.SIG_DFL)
        os.kill(os.getpid(), number)
    for child in list(_children):
        threading.Thread(target=end_child, args=(child,), daemon=True).start()


def _listen() -> None:
    if threading.current_thread() is not threading.main_thread():
        return
    for number in _SIGNALS:
        if signal.getsignal(number) == signal.SIG_DFL:
            signal.signal(number, _note_signal)
            _listening.add(number)


def _stop_listening() -> None:
    # Handlers are the main thread's alone: one that stays has the ordinary effect without children.
    if threading.current_thread() is not threading.main_thread():
        return
    for number in _listening:
        signal.signal(number, signal.SIG_DFL)
    _listening.clear()


def start_child(file: str, words: Sequence[str], environment: Dict[str, str], stdin: int) -> "subprocess.Popen[Any]":
    """Starts a child that ends with this process, however that ends but by SIGKILL."""
    with _lock:
        if not _children:
            _listen()
        try:
            child = subprocess.Popen([file, *words], stdin=stdin, stdout=subprocess.PIPE,
                                     stderr=subprocess.PIPE, env=environment)
        except OSError as error:
            if not _children:
                _stop_listening()
            raise NoReplyError(str(error)) from error
        _children.add(child)
        return child


def forget(child: "subprocess.Popen[Any]") -> None:
    """The child has ended. After the last one a signal that came meanwhile has its effect."""
    with _lock:
        _children.discard(child)
        if _children:
            return
        _stop_listening()
        if _told is not None:
            os.kill(os.getpid(), _told)


atexit.register(_tell_all)
