"""A hosted Mac's folder of tools, as stand-ins, for the tests of .github/mac."""
import os
import subprocess
import sys
import tempfile
import unittest
from pathlib import Path

from mac import ROOT

FOLDER = ROOT / ".github" / "mac"
# As published of macOS 14, 15 and 26.
SCHEMA = """CREATE TABLE access (service TEXT NOT NULL, client TEXT NOT NULL,
client_type INTEGER NOT NULL, auth_value INTEGER NOT NULL, auth_reason INTEGER NOT NULL,
auth_version INTEGER NOT NULL, csreq BLOB, policy_id INTEGER,
indirect_object_identifier_type INTEGER,
indirect_object_identifier TEXT NOT NULL DEFAULT 'UNUSED', indirect_object_code_identity BLOB,
flags INTEGER, last_modified INTEGER NOT NULL DEFAULT (CAST(strftime('%s','now') AS INTEGER)),
pid INTEGER, pid_version INTEGER, boot_uuid TEXT NOT NULL DEFAULT 'UNUSED',
last_reminded INTEGER NOT NULL DEFAULT 0{more},
PRIMARY KEY (service, client, client_type, indirect_object_identifier))"""
HOSTED = {"RUNNER_ENVIRONMENT": "github-hosted"}
# Each records that it was called; what it prints stands beside it in `answers`.
STAND_IN = """#!/bin/sh
echo "$(basename "$0") $*" >>"$STAND_INS/calls"
cat "$STAND_INS/answers/$(basename "$0")" 2>/dev/null
exit 0
"""
SUDO = '#!/bin/sh\necho "sudo $*" >>"$STAND_INS/calls"\nexec env "$@"\n'
SQLITE = f"""#!{sys.executable}
import sqlite3, sys
for row in sqlite3.connect(sys.argv[1]).execute(sys.argv[2]):
    print("|".join(map(str, row)))
"""


class OnARunner(unittest.TestCase):
    """A folder with stand-ins of what a hosted Mac has."""

    def setUp(self):
        folder = tempfile.TemporaryDirectory(prefix="workflow-")
        self.addCleanup(folder.cleanup)
        self.folder = Path(folder.name)
        self.home = self.folder / "home"
        for name in ("bin", "answers", "home"):
            (self.folder / name).mkdir()
        for name in ("uname", "sw_vers", "sysctl", "xcodebuild", "xcrun", "csrutil", "launchctl",
                     "system_profiler", "defaults", "sysadminctl", "plutil", "lsof", "pgrep",
                     "kill", "screencapture", "log", "stat", "touch"):
            self.tool(name, STAND_IN)
        self.tool("sudo", SUDO)
        self.tool("sqlite3", SQLITE)
        self.tells("uname", "Darwin")
        self.tells("sw_vers", "15.7.7")

    def tool(self, name, text):
        path = self.folder / "bin" / name
        path.write_text(text)
        path.chmod(0o755)
        return path

    def tells(self, name, answer):
        (self.folder / "answers" / name).write_text(f"{answer}\n")

    def calls(self):
        path = self.folder / "calls"
        return path.read_text().splitlines() if path.exists() else []

    def run_script(self, name, *arguments, **environment):
        return subprocess.run(
            [str(FOLDER / name), *map(str, arguments)], capture_output=True, text=True, timeout=60,
            cwd=ROOT, check=False,
            env={"PATH": f"{self.folder}/bin:{os.environ['PATH']}", "HOME": str(self.home),
                 "STAND_INS": str(self.folder), "RESULTS": str(self.folder / "results"),
                 **HOSTED, **environment})

    def result(self, name):
        return (self.folder / "results" / name).read_text()
