"""What pages show: commands in fenced blocks run on a simulated Mac, and what is shown below a prompt is what they print.
docs/TESTING.md lists the blocks that are left out, or run by another test, with the reason."""
import json
import os
import re
import subprocess
import sys
import tempfile
import unittest
from pathlib import Path
from typing import NamedTuple

import yaml
from mac import DRIVER, ROOT, SIMULATED_MAC, plain_environment

PAGES = [path for folder in ("", "docs/", "worlds/", "packaging/contract/", "clients/*/")
         for path in sorted(ROOT.glob(f"{folder}*.md"))]
SECONDS_MAX = 60
# Prepared for a block, by its first line: the world that is served, or a script that is run before.
WORLDS = {"scripts/record-world Mail > mail.replies         # on the Mac, where Mail runs": "demo/mail.world"}
BEFORE = {
    'simulated-mac wait until Chat shows "You have accepted." within 5s    # as long as it takes, without a poll':
        "driver ax-press-in-document Chat 'Conversation with Ada' Accept",
    "$ env -u CU_CAPTURE_PID driver focus-release 41 7": "export CU_CAPTURE_PID=999999",
    "$ simulated-mac check mail.world": "cp mistaken.world mail.world"}
AFTER = {"export SIMULATED_MAC=$(simulated-mac serve demo/desk.world &)": "simulated-mac stop"}
FAILING = {"$ simulated-mac check mail.world"}
# It goes on until it is ended.
SERVING = {"$ simulated-mac serve --virtual --view demo/desk.world"}
MISTAKEN = """app Mail pid 41 bundle com.example.mail frontmost
    menu File > Close cmd w
    # The window that was meant.
    window 7 "Inbox" at 60,80 sized 700x560
        AXTextArea "Letter" at 320,120 size 400x400
        AXButton "Reply" at 320,600 size 80x28 press: set Letter "Dear Ada,"
        AXStaticText "Letter" at 320,90 size 100x20
"""


class Block(NamedTuple):
    page: str
    line: int
    language: str
    title: str
    text: str

    @property
    def first(self):
        return self.text.split("\n")[0]

    def __str__(self):
        return f"{self.page}:{self.line}"


def blocks_of(page):
    text = page.read_text(encoding="utf-8")
    for match in re.finditer(r"^( *)```([^`\n]*)\n(.*?)^\1```$", text, re.M | re.S):
        language, _, title = match[2].partition(" title=")
        yield Block(str(page.relative_to(ROOT)), text[:match.start()].count("\n") + 2, language, title,
                    re.sub(rf"^{match[1]}", "", match[3], flags=re.M))


def listed():
    """(page, first line) of the blocks that the page of tests says are not run here."""
    section = (ROOT / "docs/TESTING.md").read_text(encoding="utf-8").split("\n## What pages show\n")[1].split("\n## ")[0]
    return [(row[1], row[2]) for row in re.finditer(r"^\| `([^`]+)` \| `([^`]+)` \| [^|]+ \|$", section, re.M)]


def is_listed(block):
    return (block.page, block.title or block.first) in listed()


ALL = [block for page in PAGES for block in blocks_of(page)]
COMMANDS = [block for block in ALL if block.language in ("", "sh") and not is_listed(block)]


def masked(text):
    """Without what is drawn by chance: names of sockets, addresses."""
    return re.sub(r"127\.0\.0\.1:\d+", "127.0.0.1:PORT", re.sub(r"[0-9a-f]{32}", "CHANCE", text))


def abridged(printed, shown):
    """A printed line as it is shown: "…" stands for any part of it."""
    pattern = ".+".join(re.escape(piece) for piece in shown.split("…"))
    return shown if "…" in shown and re.fullmatch(pattern, printed) else printed


def commands_and_output(text):
    """The commands behind prompts, and what is shown to be printed."""
    lines = text.splitlines()
    return [line[2:] for line in lines if line.startswith("$ ")], [line for line in lines if not line.startswith("$ ")]


class Folder:
    """A folder like that of the sources, and a Mac that is served, for one block."""

    def __init__(self, world):
        self.kept = tempfile.TemporaryDirectory(prefix="shown-")
        self.path = Path(self.kept.name)
        for name in ("demo", "worlds", "scripts", "clients"):
            (self.path / name).symlink_to(ROOT / name)
        (self.path / "build").mkdir()
        (self.path / "build/release").symlink_to(Path(DRIVER).parent)
        (self.path / "desk.world").symlink_to(ROOT / "demo/desk.world")
        (self.path / "mistaken.world").write_text(MISTAKEN)
        programs = self.path / "programs"
        programs.mkdir()
        for name, target in (("driver", DRIVER), ("simulated-mac", SIMULATED_MAC), ("python3", sys.executable)):
            (programs / name).symlink_to(target)
        for name in ("programs/your-agent", "agent-tests"):
            (self.path / name).write_text("#!/bin/sh\nexec driver scene\n")
            (self.path / name).chmod(0o755)
        for page in ("AGENTS_ON_LINUX", "WORLDS"):
            for block in blocks_of(ROOT / f"docs/{page}.md"):
                if block.title:
                    (self.path / block.title).write_text(block.text)
        self.server = subprocess.Popen([SIMULATED_MAC, "serve", "--virtual", "--until-closed", ROOT / world],
                                       stdin=subprocess.PIPE, stdout=subprocess.PIPE, text=True)
        self.environment = {**plain_environment(), "SIMULATED_MAC": self.server.stdout.readline().strip(), "SEED": "7",
                            "PYTHONPATH": str(ROOT / "clients/python"), "PYTHONDONTWRITEBYTECODE": "1",
                            "PATH": f"{programs}:{os.environ['PATH']}"}

    def __enter__(self):
        return self

    def __exit__(self, *_):
        self.server.communicate(timeout=SECONDS_MAX)
        self.kept.cleanup()

    def run(self, script):
        return subprocess.run(["sh", "-euc", script], cwd=self.path, env=self.environment, timeout=SECONDS_MAX,
                              stdin=subprocess.DEVNULL, stdout=subprocess.PIPE, stderr=subprocess.STDOUT, text=True,
                              check=False)

    def lines_of(self, command, count):
        """The first lines of a command that goes on; it is ended then."""
        process = subprocess.Popen(["sh", "-euc", f"exec {command}"], cwd=self.path, env=self.environment,
                                   stdin=subprocess.DEVNULL, stdout=subprocess.PIPE, stderr=subprocess.STDOUT, text=True)
        lines = [process.stdout.readline().rstrip("\n") for _ in range(count)]
        process.terminate()
        process.communicate(timeout=SECONDS_MAX)
        return lines


class Shown(unittest.TestCase):
    def test_is_listed_only_where_it_stands(self):
        here = {(block.page, block.title or block.first) for block in ALL}
        self.assertGreater(len(listed()), 5)
        self.assertEqual([], [row for row in listed() if row not in here])

    def test_is_prepared_only_for_blocks_that_are_run(self):
        prepared = {*WORLDS, *BEFORE, *AFTER, *FAILING, *SERVING}
        self.assertEqual(set(), prepared - {block.first for block in COMMANDS})

    def test_of_other_languages_is_well_formed(self):
        readers = {"json": json.loads, "yaml": yaml.safe_load, "python": lambda text: compile(text, "page", "exec")}
        for block in ALL:
            if block.language in readers:
                with self.subTest(block=str(block)):
                    self.assertIsNotNone(readers[block.language](block.text))
        # Worlds are read by world_documents, programs in JavaScript are run by their client's tests.
        self.assertEqual({"", "sh", "world", "js", *readers}, {block.language for block in ALL})

    def test_runs(self):
        self.assertGreater(len(COMMANDS), 10)
        for block in COMMANDS:
            if not block.text.startswith("$ "):
                with self.subTest(block=str(block)), Folder(WORLDS.get(block.first, "demo/desk.world")) as folder:
                    lines = [line for line in block.text.splitlines() if not line.endswith("# macOS")]
                    done = folder.run("\n".join([BEFORE.get(block.first, ":"), *lines, AFTER.get(block.first, ":")]))
                    self.assertEqual(0, done.returncode, done.stdout)

    def test_prints_what_is_shown(self):
        shown = [block for block in COMMANDS if block.text.startswith("$ ")]
        self.assertGreater(len(shown), 3)
        for block in shown:
            commands, output = commands_and_output(block.text)
            with self.subTest(block=str(block)), Folder("demo/desk.world") as folder:
                if block.first in SERVING:
                    printed = folder.lines_of(commands[0], len(output))
                else:
                    done = folder.run("\n".join([BEFORE.get(block.first, ":"), *commands]))
                    self.assertEqual(int(block.first in FAILING), done.returncode, done.stdout)
                    printed = done.stdout.splitlines()
                printed = [abridged(*pair) for pair in zip(printed, output)] + printed[len(output):]
                self.assertEqual(masked("\n".join(output)), masked("\n".join(printed)))

    def test_may_leave_out_what_three_dots_stand_for(self):
        self.assertEqual("a … c", abridged("a b c", "a … c"))
        self.assertEqual("a b d", abridged("a b d", "a … c"))
        self.assertEqual("a b c", abridged("a b c", "a c"))


if __name__ == "__main__":
    unittest.main()
