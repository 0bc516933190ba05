"""A fixture for pytest: Macs of a test's own, which are checked when it has passed. Of a test that fails, what happened
on them is written to pages beside its temporary files."""
from __future__ import annotations

import os
from contextlib import ExitStack
from pathlib import Path
from typing import Any, Callable, Iterator, List, NamedTuple, Optional, TypeVar, Union, cast

import pytest

from .errors import DriverError
from .testing import SimulatedMac, told_of_failure

# pytest shows a failure where the test calls this module, not in it.
__tracebackhide__ = True


class Started(NamedTuple):
    """A Mac of a test, and where the page is written when that fails."""
    mac: SimulatedMac
    page: "os.PathLike[str] | str"


PROBLEM = pytest.StashKey[DriverError]()
STARTED = pytest.StashKey[List[Started]]()

Hook = TypeVar("Hook", bound=Callable[..., None])
after_others = cast(Callable[[Hook], Hook], pytest.hookimpl(trylast=True))


def _problem_of(macs: List[Started]) -> Optional[DriverError]:
    try:
        for one in macs:
            one.mac.check()
    except DriverError as error:
        return error
    return None


@after_others
def pytest_runtest_call(item: pytest.Item) -> None:
    """Comes after the test itself, if that has passed: one that has failed is not judged twice."""
    problem = _problem_of(item.stash.get(STARTED, []))
    if problem is not None:
        item.stash[PROBLEM] = problem
        # It is all there is to know: no line of the test is to blame.
        pytest.fail(str(problem), pytrace=False)


def pytest_exception_interact(node: Union[pytest.Item, pytest.Collector], call: Any, report: Any) -> None:
    """Says below the failure of a test, or of what it needs, what happened on its Macs: they still run."""
    if getattr(report, "when", None) not in ("setup", "call"):
        return
    failure = node.stash.get(PROBLEM, call.excinfo.value)
    for one in node.stash.get(STARTED, []):
        told = "\n".join(told_of_failure(one.mac, failure, one.page))
        report.sections.append(("Simulated Mac", told))


@pytest.fixture(name="simulated_mac")
def _simulated_mac(request: pytest.FixtureRequest, tmp_path: Path) -> Iterator[Callable[..., SimulatedMac]]:
    """Starts a Mac from the text of a world, or from the path of its file. The test fails when a rule of safe
    input was broken, or the user's state is another than before."""
    started = request.node.stash.setdefault(STARTED, [])
    # One that ends with an error does not keep the others from their ends.
    ends = ExitStack()
    ends.callback(started.clear)

    def start(world: "os.PathLike[str] | str", *, report: "os.PathLike[str] | str | None" = None,
              **options: Any) -> SimulatedMac:
        page = tmp_path / f"report-{len(started) + 1}.html" if report is None else report
        mac = SimulatedMac(world, **options)
        ends.callback(mac.end)
        started.append(Started(mac, page))
        return mac

    with ends:
        yield start
