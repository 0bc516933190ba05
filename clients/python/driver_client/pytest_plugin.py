"""A fixture for pytest: Macs of a test's own, which are checked when it ends."""
from __future__ import annotations

import contextlib
from typing import Any, Callable, Iterator

import pytest

from .testing import SimulatedMac, simulated_mac


@pytest.fixture(name="simulated_mac")
def _simulated_mac() -> Iterator[Callable[..., SimulatedMac]]:
    """Starts a Mac from the text of a world. The test fails when a rule of safe input was broken, or the
    user's state is another than before."""
    with contextlib.ExitStack() as macs:
        def start(world: str, **options: Any) -> SimulatedMac:
            return macs.enter_context(simulated_mac(world, **options))

        yield start
