"""A fixture for pytest: Macs of a test's own, which are checked when it ends. Of a test that fails, what happened on them
is written to pages beside its temporary files."""
from __future__ import annotations

import contextlib
from pathlib import Path
from typing import Any, Callable, Iterator, List, Optional, Union

import pytest

from .errors import DriverError
from .testing import SimulatedMac, simulated_mac

# pytest shows a failure where the test calls this module, not in it.
__tracebackhide__ = True

FAILURE = pytest.StashKey[BaseException]()


def pytest_exception_interact(node: Union[pytest.Item, pytest.Collector], call: Any, report: Any) -> None:
    """Lets the fixture know that the test has failed, and why."""
    if getattr(report, "when", None) == "call":
        node.stash[FAILURE] = call.excinfo.value


@pytest.fixture(name="simulated_mac")
def _simulated_mac(request: pytest.FixtureRequest, tmp_path: Path) -> Iterator[Callable[..., SimulatedMac]]:
    """Starts a Mac from the text of a world. The test fails when a rule of safe input was broken, or the
    user's state is another than before."""
    pages: List[Path] = []
    macs: List[SimulatedMac] = []
    problem: Optional[str] = None
    try:
        with contextlib.ExitStack() as stack:
            def start(world: str, **options: Any) -> SimulatedMac:
                pages.append(tmp_path / f"report-{len(pages) + 1}.html")
                macs.append(stack.enter_context(simulated_mac(world, **{"report": pages[-1], **options})))
                return macs[-1]

            yield start
            failure = request.node.stash.get(FAILURE, None)
            if failure is not None:
                for mac, page in zip(macs, pages):
                    mac.note_failure(failure)
                    print(f"what happened on the simulated Mac: {mac.report(page)}")
    except DriverError as error:
        problem = str(error)
    if problem is not None:
        # It is all there is to know: no line of the test is to blame.
        pytest.fail(problem, pytrace=False)
