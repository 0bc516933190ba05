"""Hundreds of Macs run side by side on one machine: none sees another one, and none leaves anything behind."""
import json
import os
import re
import resource
import shutil
import signal
import subprocess
import tempfile
import unittest
from pathlib import Path

import yaml
from mac import DRIVER, ROOT, SIMULATED_MAC

MACS = int(os.environ.get("MANY_MACS", "200"))
KILLED_MACS = 50
WORLD = ROOT / "demo/desk.world"
# A job: acts, waits until all Macs have got as far, acts again.
JOB = """
echo "$SIMULATED_MAC"
"$DRIVER" bg-click Notes 340 574
read -r _
"$DRIVER" ax-insert Notes Body -1 -1 end "$NUMBER"
"$DRIVER" ax-find-text Notes "$NUMBER"
"$COMPANION" violations
"""
CLICKED = '{"changed":true,"ok":true,"via":"background","window":7}\n'


def sockets():
    """The names of the sockets of simulated Macs on this machine."""
    lines = Path("/proc/net/unix").read_text().splitlines()
    return {line.split()[-1] for line in lines if "@simulated-mac-" in line}


class ManyMacs(unittest.TestCase):
    def setUp(self):
        folder = tempfile.TemporaryDirectory(prefix="many-")
        self.addCleanup(folder.cleanup)
        self.folder = Path(folder.name)
        reading, self.gate = os.pipe()
        self.addCleanup(os.close, reading)
        self.runs = []
        self.addCleanup(self.end)
        hard = resource.getrlimit(resource.RLIMIT_NOFILE)[1]
        resource.setrlimit(resource.RLIMIT_NOFILE, (hard, hard))
        self.reading = reading

    def start_all(self, count):
        self.runs.extend(self.start(self.reading, f"job{number:06}") for number in range(count))

    def start(self, gate, number):
        """One Mac with its job. All of them have the same folder, and the same for their temporary files."""
        environment = {**os.environ, "DRIVER": str(DRIVER), "COMPANION": str(SIMULATED_MAC),
                       "NUMBER": number, "TMPDIR": str(self.folder), "HOME": str(self.folder)}
        return subprocess.Popen(
            [SIMULATED_MAC, "run", "--virtual", WORLD, "--", "sh", "-c", JOB], cwd=self.folder, stdin=gate,
            stdout=subprocess.PIPE, stderr=subprocess.STDOUT, text=True, env=environment)

    def end(self):
        for run in self.runs:
            run.kill()
            run.communicate()

    def names(self):
        """The name of each Mac, once its job has acted: then all of them are there at once."""
        names = []
        for run in self.runs:
            names.append(run.stdout.readline().strip())
            self.assertEqual(CLICKED, run.stdout.readline())
        return names

    def test_work_apart_from_each_other_and_leave_nothing(self):
        self.start_all(MACS)
        names = set(self.names())
        self.assertEqual(MACS, len(names), "each has a name of its own")
        self.assertLessEqual(names, sockets(), "all of them run at once")
        os.write(self.gate, b"\n" * MACS)
        os.close(self.gate)
        for number, run in enumerate(self.runs):
            lines = run.communicate(timeout=250)[0].splitlines()
            self.assertEqual((0, 3), (run.returncode, len(lines)), lines)
            inserted, found, violations = (json.loads(line) for line in lines)
            self.assertTrue(inserted["ok"], inserted)
            self.assertEqual({f"job{number:06}": 1}, found["counts"])
            self.assertEqual([], violations["violations"])
        self.assertFalse(names & sockets())
        self.assertEqual([], list(self.folder.iterdir()))

    def test_that_are_killed_leave_nothing(self):
        self.start_all(KILLED_MACS)
        names = set(self.names())
        for run in self.runs:
            run.send_signal(signal.SIGKILL)
        for run in self.runs:
            run.communicate(timeout=60)
        os.close(self.gate)
        self.assertFalse(names & sockets())
        self.assertEqual([], list(self.folder.iterdir()))


class Examples(unittest.TestCase):
    """Those of docs/MANY_MACS.md."""

    page = (ROOT / "docs/MANY_MACS.md").read_text()
    blocks = dict(re.findall(r"^```\w+ title=(\S+)\n(.*?)^```$", page, re.M | re.S))

    @unittest.skipUnless(shutil.which("parallel"), "GNU parallel is not installed")
    def test_for_parallel_runs_one_mac_for_each_seed(self):
        with tempfile.TemporaryDirectory(prefix="many-") as name:
            folder = Path(name)
            (folder / "many.sh").write_text(self.blocks["many.sh"])
            (folder / "desk.world").write_text(WORLD.read_text())
            tests = folder / "agent-tests"
            tests.write_text(f'#!/bin/sh\nexec "{DRIVER}" bg-click Notes 340 574\n')
            tests.chmod(0o755)
            programs = folder / "programs"
            programs.mkdir()
            (programs / "simulated-mac").symlink_to(SIMULATED_MAC)
            done = subprocess.run(
                ["sh", "many.sh", "1", "8"], cwd=folder, capture_output=True, text=True, timeout=100, check=False,
                env={**os.environ, "HOME": name, "PATH": f"{programs}:{os.environ['PATH']}"})
            self.assertEqual(0, done.returncode, done.stderr)
            printed = {path.name: path.read_text() for path in (folder / "records").iterdir()
                       if path.suffix == ""}
            self.assertEqual({str(seed): CLICKED for seed in range(1, 9)}, printed)
            self.assertEqual(9, len((folder / "many.log").read_text().splitlines()))

    def test_for_others_are_well_formed(self):
        self.assertEqual({"many.sh", "many.yml", "job.yaml", "many.py"}, set(self.blocks))
        compile(self.blocks["many.py"], "many.py", "exec")
        workflow = yaml.safe_load(self.blocks["many.yml"])
        self.assertEqual(list(range(10)), workflow["jobs"]["macs"]["strategy"]["matrix"]["block"])
        pod = yaml.safe_load(self.blocks["job.yaml"])["spec"]["template"]["spec"]
        for script in (workflow["jobs"]["macs"]["steps"][-1]["run"].replace("${{ matrix.block }}", "7"),
                       pod["containers"][0]["args"][0]):
            done = subprocess.run(["sh", "-n"], input=script, text=True, check=False)
            self.assertEqual(0, done.returncode)
            self.assertIn("simulated-mac run --virtual --seed", script)


if __name__ == "__main__":
    unittest.main()
