"""Lets those that name the same thing go one after the other, in the order in which they came."""
from __future__ import annotations

import contextlib
import threading
from typing import Dict, Iterator


class Turns:
    def __init__(self) -> None:
        self._lock = threading.Lock()
        self._last: Dict[str, threading.Event] = {}

    @contextlib.contextmanager
    def take(self, name: str) -> Iterator[None]:
        mine = threading.Event()
        with self._lock:
            before = self._last.get(name)
            self._last[name] = mine
        try:
            if before is not None:
                before.wait()
            yield
        finally:
            self._give(name, before, mine)

    def _give(self, name: str, before: "threading.Event | None", mine: threading.Event) -> None:
        if before is not None and not before.is_set():  # the waiting was broken off
            threading.Thread(target=self._give_after, args=(before, name, mine), daemon=True).start()
            return
        mine.set()
        with self._lock:
            if self._last.get(name) is mine:
                del self._last[name]

    def _give_after(self, before: threading.Event, name: str, mine: threading.Event) -> None:
        before.wait()
        self._give(name, None, mine)
