"""The time in which applications are waited for: this machine's, or that of a simulated Mac."""
from __future__ import annotations

import time


class Clock:
    """Seconds since any one moment, and waiting."""

    def now(self) -> float:
        return time.monotonic()

    def sleep(self, seconds: float) -> None:
        time.sleep(seconds)
