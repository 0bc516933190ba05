"""Mistakes in the adapters for macOS: each is compiled by itself into the adapters' tests, which run against stand-ins
of the system's frameworks."""
import shutil
from pathlib import Path

from scratch_project import ADAPTERS, Project, failure_in, launcher
from source_files import ROOT
from variants import Variant

# The tests take seconds.
PATIENCE_SECONDS = 60

SUITES = ("macos_loop_tests", "macos_adapter_tests", "macos_adapter_thread_tests")


def adapter_files():
    """Their sources; their tests and the stand-ins are none."""
    folder = ROOT / ADAPTERS
    return sorted(path.relative_to(ROOT) for kind in ("*.cpp", "*.mm") for path in folder.glob(kind)
                  if not path.stem.endswith("_test"))


class AdapterGround:
    """The tests without mistakes, built below build/mutants, which have to pass."""

    def __init__(self, suites):
        self.suites = suites
        self.project = Project(
            ROOT, ADAPTERS + "standins", ROOT / "build/mutants/adapters", "", suites, (),
            ["-DCMAKE_CXX_COMPILER=" + (shutil.which("clang++-14") or "clang++"), *launcher()])
        self.project.configure()
        for suite in suites:
            failure = failure_in(self.project.build(suite))
            if failure is not None:
                raise SystemExit(f"the tests fail without any mistake: {failure}")

    def suites_with(self, source):
        return [suite for suite in self.suites if any(each["file"] == str(source) and f"/{suite}.dir/" in each["command"]
                                                 for each in self.project.commands.compilations)]

    def is_quick(self, number):
        return True

    def stages(self):
        return [self.suites]

    def killer_of(self, number, mutant, suites):
        """The test that fails; None when none does. Throws DoesNotBuild."""
        source, text = ROOT / mutant.file, mutant.mutation.applied((ROOT / mutant.file).read_text())
        with Variant(self.project.commands, ROOT, mutant.file, text) as variant:
            for suite in self.suites_with(source):
                failure = failure_in(variant.build(suite), patience=PATIENCE_SECONDS)
                if failure is not None:
                    return failure
        return None

    def is_reached(self, number):
        return True
