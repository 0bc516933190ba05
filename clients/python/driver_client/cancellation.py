"""Cancelling what goes on in another thread."""
from __future__ import annotations

import threading
from typing import Callable, List, Optional


class Cancellation:
    """Handed to calls; cancel() ends them: their runs give back what they have borrowed."""

    def __init__(self) -> None:
        self._lock = threading.Lock()
        self._reason: Optional[BaseException] = None
        self._callbacks: List[Callable[[], None]] = []

    def cancel(self, reason: BaseException) -> None:
        """The calls raise the reason. Only the first one counts."""
        with self._lock:
            if self._reason is not None:
                return
            self._reason = reason
            callbacks = list(self._callbacks)
        for callback in callbacks:
            callback()

    def raise_if_cancelled(self) -> None:
        if self._reason is not None:
            raise self._reason

    def add(self, callback: Callable[[], None]) -> None:
        """Lets something happen with the cancelling; at once when that has come."""
        with self._lock:
            self._callbacks.append(callback)
            is_late = self._reason is not None
        if is_late:
            callback()

    def remove(self, callback: Callable[[], None]) -> None:
        with self._lock:
            self._callbacks.remove(callback)
