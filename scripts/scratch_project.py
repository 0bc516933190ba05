"""Copies of the project's sources in which one thing at a time is made wrong, with build folders of their
own, so that only what that touches is built anew."""
import os
import re
import shutil
import subprocess
from pathlib import Path

from source_files import ROOT
from variants import Commands, Variant, ran

ADAPTERS = "platform/macos/"

# What is wrong may keep a simulated Mac going for ever.
PATIENCE_SECONDS = 600

# Executables of tests that run others.
FROM_OUTSIDE = {"joined_tests"}


def failure_in(suite, tests="*", patience=PATIENCE_SECONDS):
    """The first of the suite's tests that fails, and the rules that were seen broken; None when all
    pass."""
    try:
        run = subprocess.run([suite, "--gtest_fail_fast", "--gtest_brief=1", "--gtest_filter=" + tests],
                             capture_output=True, text=True, errors="replace", timeout=patience)
    except subprocess.TimeoutExpired:
        return f"{suite.name} does not end"
    return failure_told_by(run)


def failure_told_by(run):
    """The test that failed first in a run of a suite, and the rules that were seen broken; None when all
    passed."""
    if run.returncode == 0:
        return None
    failed = re.search(r"\[  FAILED  \] ([^\s,]+)", run.stdout)
    rules = sorted(set(re.findall(r"\b([IP]\d+): ", run.stdout)))
    return " ".join([failed[1] if failed else f"{Path(run.args[0]).name} ended early: {run.returncode}", *rules])


def jobs_of_builds():
    return os.environ.get("CMAKE_BUILD_PARALLEL_LEVEL", str(os.cpu_count()))


class Project:
    """What is built of a copy: executables of tests, the quickest first, and those that have only tests
    that somebody names."""

    def __init__(self, source, project, build, folder, suites, named_suites, options):
        self.source, self.project, self.folder, self.suites = source, project, folder, suites
        self.named_suites, self.path, self.options = named_suites, build, options
        self.commands = None

    def configure(self):
        subprocess.run(["cmake", "-G", "Ninja", "-S", self.source / self.project, "-B", self.path, *self.options],
                       check=True, stdout=subprocess.DEVNULL)
        self.commands = Commands(self.path)

    def path_of(self, target):
        """Below the build folder."""
        return f"{self.folder}/{target}" if self.folder else target

    def build(self, target):
        """Builds an executable and gives its path. Throws DoesNotBuild."""
        ran(["cmake", "--build", self.path, "--parallel", jobs_of_builds(), "--target", target], self.path)
        return self.path / self.path_of(target)


def first_failure(project, tests="*", patience=PATIENCE_SECONDS):
    """The first of the tests that fails in a project, or in a changed one; None when all pass. Each suite is
    built when its turn comes: that needs time, and the first one mostly tells."""
    for suite in project.suites if tests == "*" else (*project.suites, *project.named_suites):
        failure = failure_in(project.build(suite), tests, patience)
        if failure is not None:
            return failure
    return None


def must_be_alone(file, suite):
    """Whether an executable with another text in the file is built in the project itself, since many sources
    read the file, or since it runs other executables."""
    return file.endswith(".h") or suite in FROM_OUTSIDE


class Changed:
    """A project whose executables have been built, with another text in one file, while it is entered."""

    def __init__(self, project, file, text):
        self.project, self.file, self.text = project, file, text
        self.suites, self.named_suites = project.suites, project.named_suites
        self.variant, self.original = Variant(project.commands, project.source, file, text), None

    def __enter__(self):
        self.variant.__enter__()
        return self

    def build(self, suite):
        if must_be_alone(self.file, suite):
            self.change_in_place()
            return self.project.build(suite)
        return self.variant.build(self.project.path_of(suite))

    def change_in_place(self):
        if self.original is None:
            path = self.project.source / self.file
            self.original = path.read_text()
            path.write_text(self.text)

    def __exit__(self, *_):
        self.variant.__exit__()
        if self.original is not None:
            (self.project.source / self.file).write_text(self.original)


def launcher():
    return ["-DCMAKE_CXX_COMPILER_LAUNCHER=ccache"] if shutil.which("ccache") else []


class Scratch:
    """A copy, by its number, and its two projects."""

    def __init__(self, number=1):
        self.source = ROOT / "build" / "scratch" / str(number) / "source"
        build = self.source.parent
        # The executables whose tests run the driver inside themselves, optimised, but for the tests:
        # they run far more often than they are built. What is changed is compiled by itself.
        self.core = Project(
            self.source, "", build / "build", "tests",
            ("unit_tests", "command_tests", "cost_tests", "service_tests", "tree_tests", "sweep_tests"),
            ("soak_tests", "joined_tests"),
            ["-DCMAKE_BUILD_TYPE=Release", "-DCMAKE_CXX_FLAGS_RELEASE=-O2 -DNDEBUG -w",
             "-DDRIVER_APART=core;simulated;simulator", *launcher()])
        self.adapters = Project(
            self.source, ADAPTERS + "standins", build / "adapters", "",
            ("macos_loop_tests", "macos_adapter_tests", "macos_adapter_thread_tests"), (),
            ["-DCMAKE_CXX_COMPILER=" + (shutil.which("clang++-14") or "clang++"), *launcher()])

    def project_of(self, file):
        return self.adapters if file.startswith(ADAPTERS) else self.core

    def copy_sources(self):
        listed = subprocess.run(["git", "ls-files", "--cached", "--others", "--exclude-standard"],
                                cwd=ROOT, capture_output=True, text=True, check=True).stdout.split("\n")
        there = {path for path in self.source.rglob("*") if path.is_file()}
        for path in there - {self.source / name for name in listed if (ROOT / name).is_file()}:
            path.unlink()
        for name in filter(None, listed):
            source, target = ROOT / name, self.source / name
            if not source.is_file():
                continue
            content = source.read_bytes()
            if target.exists() and target.read_bytes() == content:
                continue
            target.parent.mkdir(parents=True, exist_ok=True)
            target.write_bytes(content)

    def changed(self, file, text):
        """The project with another text in one of the copy's files, while it is entered."""
        return Changed(self.project_of(file), file, text)
