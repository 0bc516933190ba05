"""The workflow for hosted Macs and its scripts, with stand-ins of the Mac's tools. What they do on a
Mac only a Mac shows."""
import json
import os
import plistlib
import re
import sqlite3
import subprocess
import sys
import tempfile
import unittest
from datetime import datetime
from pathlib import Path

import yaml
from mac import DRIVER, ROOT, Mac

FOLDER = ROOT / ".github" / "mac"
WORKFLOWS = ROOT / ".github" / "workflows"
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
SERVICES = ["kTCCServiceAccessibility", "kTCCServiceListenEvent", "kTCCServicePostEvent",
            "kTCCServiceScreenCapture"]
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
                     "system_profiler", "defaults", "sysadminctl", "plutil", "lsof", "pgrep", "kill",
                     "screencapture", "log", "stat", "touch"):
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


class Workflow(unittest.TestCase):
    """What mac.yml says, as its jobs would run it."""

    def setUp(self):
        self.jobs = yaml.safe_load((WORKFLOWS / "mac.yml").read_text())["jobs"]

    def commands(self, job):
        return [line for step in self.jobs[job]["steps"] if "run" in step
                for line in step["run"].splitlines()]

    def test_runs_scripts_that_are_there(self):
        for job in self.jobs:
            for command in self.commands(job):
                for name in re.findall(r"(?:\.github/mac|scripts)/[a-z-]+", command):
                    with self.subTest(job=job, script=name):
                        self.assertTrue(os.access(ROOT / name, os.X_OK))

    def test_looks_first_whether_this_is_a_hosted_mac(self):
        for job in self.jobs:
            with self.subTest(job=job):
                self.assertEqual(".github/mac/guard", self.commands(job)[0])

    def test_lets_no_step_hide_the_later_ones(self):
        for job in self.jobs:
            first, *middle, last = self.commands(job)
            with self.subTest(job=job):
                self.assertEqual((".github/mac/guard", ".github/mac/finish"), (first, last))
                self.assertEqual([], [each for each in middle if not
                                      each.startswith((".github/mac/step ", "nohup "))])

    def test_gives_each_step_a_name_of_its_own(self):
        for job in self.jobs:
            names = re.findall(r"mac/step ([a-z-]+) \d+ ", "\n".join(self.commands(job)))
            self.assertEqual(len(self.commands(job)) - 2 - (job == "lock"), len(set(names)))

    def test_locks_the_screen_in_jobs_of_their_own(self):
        self.assertEqual(["lock"], [job for job in self.jobs
                                    if "mac/lock " in "\n".join(self.commands(job))])
        self.assertNotIn("--lock", "\n".join(self.commands("facts")))

    def test_names_images_that_there_are(self):
        for path in WORKFLOWS.glob("*.yml"):
            jobs = yaml.safe_load(path.read_text())["jobs"]
            for name, job in jobs.items():
                images = {job["runs-on"], *job.get("strategy", {}).get("matrix", {}).get("image", [])}
                with self.subTest(workflow=path.name, job=name):
                    self.assertLessEqual(images, {"ubuntu-latest", "macos-15", "macos-26", "xcode-27",
                                                  "${{ matrix.image }}"})

    def test_keeps_what_it_found_even_when_it_fails(self):
        for job in self.jobs:
            uploads = [step for step in self.jobs[job]["steps"]
                       if step.get("uses", "").startswith("actions/upload-artifact")]
            self.assertEqual("always()", uploads[-1]["if"])
            self.assertEqual("results", uploads[-1]["with"]["path"])
            names = [step["with"]["name"] for step in uploads]
            self.assertTrue(all("matrix.image" in name for name in names))
            self.assertEqual(len(names), len(set(names)))


class Guard(OnARunner):
    def test_lets_hosted_macs_pass(self):
        self.assertEqual(0, self.run_script("guard").returncode)

    def test_stops_elsewhere(self):
        for environment in ({"RUNNER_ENVIRONMENT": ""}, {"RUNNER_ENVIRONMENT": "self-hosted"}):
            self.assertEqual("this is no hosted runner: nothing is changed here\n",
                             self.run_script("guard", **environment).stderr)
        self.tells("uname", "Linux")
        self.assertEqual("this is no Mac\n", self.run_script("guard").stderr)

    def test_stops_what_changes_something(self):
        for script, *arguments in (("desktop", "true"), ("grant-all", "true"), ("lock", "lock", "true")):
            with self.subTest(script=script):
                done = self.run_script(script, *arguments, RUNNER_ENVIRONMENT="")
                self.assertNotEqual(0, done.returncode)
                self.assertEqual([], [call for call in self.calls() if call.startswith("sudo")])


class Step(OnARunner):
    def run_step(self, seconds, *command):
        return self.run_script("step", "name", seconds, *command)

    def recorded(self):
        return [line.split("\t")[:2] for line in self.result("steps.tsv").splitlines()]

    def test_keeps_what_a_command_prints(self):
        done = self.run_step(20, "sh", "-c", "echo said; echo cried >&2")
        self.assertEqual((0, "said\ncried\n"), (done.returncode, done.stdout))
        self.assertEqual("said\ncried\n", self.result("logs/name.log"))
        self.assertEqual([["name", "0"]], self.recorded())

    def test_succeeds_when_its_command_fails_hangs_or_dies(self):
        for seconds, *command in ((20, "sh", "-c", "exit 3"), (1, "sleep", "60"),
                                  (20, "sh", "-c", "kill -9 $$"), (20, "/nowhere")):
            self.assertEqual(0, self.run_step(seconds, *command).returncode)
        self.assertEqual([["name", status] for status in ("3", "124", "137", "1")],
                         self.recorded())

    def test_leaves_nothing_running(self):
        self.assertEqual(0, self.run_step(20, "sh", "-c", "sleep 600 &").returncode)

    def finish(self, *lines):
        results = self.folder / "results"
        (results / "facts").mkdir(parents=True, exist_ok=True)
        (results / "steps.tsv").write_text("".join(f"{line}\n" for line in lines))
        (results / "facts" / "answers.md").write_text("# What this Mac says\n")
        return self.run_script("finish", GITHUB_STEP_SUMMARY=str(self.folder / "page"))

    def test_is_summed_up_at_the_end(self):
        self.tells("sysctl", "VirtualMac2,1")
        self.assertEqual(0, self.finish("report\t0\t3").returncode)
        self.assertEqual("# 15.7.7, VirtualMac2,1\n\n| Step | Status | Seconds |\n|---|---|---|\n"
                         "| report | 0 | 3 |\n\n# What this Mac says\n",
                         (self.folder / "page").read_text())

    def test_that_failed_fails_the_job_at_the_end(self):
        self.assertEqual(1, self.finish("report\t0\t3", "facts\t1\t9").returncode)


class Report(OnARunner):
    def test_says_what_it_can_and_goes_on(self):
        database = self.home / "Library/Application Support/com.apple.TCC/TCC.db"
        database.parent.mkdir(parents=True)
        with sqlite3.connect(database) as open_database:
            open_database.execute(SCHEMA.format(more=""))
            open_database.execute("INSERT INTO access (service, client, client_type, auth_value, "
                                  "auth_reason, auth_version) VALUES "
                                  "('kTCCServicePostEvent', '/bin/bash', 1, 2, 0, 1)")
        self.tells("csrutil", "System Integrity Protection status: disabled.")
        (self.folder / "bin" / "xcodebuild").write_text("#!/bin/sh\nexit 5\n")
        done = self.run_script("report")
        self.assertEqual(0, done.returncode, done.stderr)
        for line in ("== xcodebuild -version\n(status 5)\n",
                     "== csrutil status\nSystem Integrity Protection status: disabled.\n",
                     "columns: service client client_type auth_value auth_reason",
                     "kTCCServicePostEvent|/bin/bash|1|2\n", "== this shell and what started it\n"):
            self.assertIn(line, done.stdout)


class Desktop(OnARunner):
    def test_is_cleared_and_large_enough(self):
        self.tool("mode", STAND_IN)
        self.tells("pgrep", "71")
        done = self.run_script("desktop", self.folder / "bin" / "mode")
        self.assertEqual(0, done.returncode, done.stderr)
        calls = self.calls()
        self.assertIn("mode 1280 800", calls)
        self.assertIn("sudo touch /var/db/.AppleSetupDone", calls)
        self.assertEqual(2, calls.count("kill 71"))

    def test_that_stays_too_small_is_told(self):
        mode = self.tool("mode", "#!/bin/sh\nexit 1\n")
        self.assertEqual(1, self.run_script("desktop", mode).returncode)


class Grant(OnARunner):
    """Databases of permissions as the releases have them."""

    def setUp(self):
        super().setUp()
        self.program = self.folder / "bin" / "driver"
        self.program.write_text("")
        self.system = self.database("root/Library/Application Support/com.apple.TCC/TCC.db")
        self.user = self.database("home/Library/Application Support/com.apple.TCC/TCC.db")
        self.approvals = self.home / ("Library/Group Containers/group.com.apple.replayd/"
                                      "ScreenCaptureApprovals.plist")

    def database(self, name, more=""):
        path = self.folder / name
        path.parent.mkdir(parents=True, exist_ok=True)
        with sqlite3.connect(path) as database:
            database.execute(SCHEMA.format(more=more))
        return path

    def add(self, path, service, client, value, reason):
        with sqlite3.connect(path) as database:
            database.execute("INSERT INTO access (service, client, client_type, auth_value, "
                             "auth_reason, auth_version, last_modified) VALUES (?, ?, 1, ?, ?, 1, 7)",
                             (service, client, value, reason))

    def rows(self, path):
        with sqlite3.connect(path) as database:
            return database.execute("SELECT service, client, auth_value, auth_reason FROM access "
                                    "ORDER BY service, client").fetchall()

    def grant(self, *programs, **environment):
        return self.run_script("grant", "--root", self.folder / "root", "--home", self.home, "--uid",
                               os.getuid(), *(programs or [self.program]), **environment)

    def test_adds_what_is_missing_on_each_release(self):
        for release in ("14.8.1", "15.7.7", "26.5.2"):
            with self.subTest(release=release):
                self.tells("sw_vers", release)
                done = self.grant()
                self.assertEqual((0, ""), (done.returncode, done.stderr))
                expected = [(service, str(self.program), 2, 3) for service in SERVICES]
                self.assertEqual([expected, expected], [self.rows(self.system), self.rows(self.user)])
                self.assertEqual(release[:2] != "14", self.approvals.exists())

    def test_leaves_what_is_there_and_makes_rows_alike(self):
        self.add(self.system, SERVICES[0], "/bin/bash", 2, 4)
        self.add(self.system, SERVICES[0], str(self.program), 0, 2)
        self.assertEqual(0, self.grant().returncode)
        self.assertEqual([(SERVICES[0], "/bin/bash", 2, 4), (SERVICES[0], str(self.program), 2, 4)],
                         self.rows(self.system)[:2])
        before = self.rows(self.system)
        self.assertNotIn("TCC.db: ", self.grant().stdout)
        self.assertEqual(before, self.rows(self.system))

    def test_takes_the_real_path(self):
        link = self.folder / "link"
        link.symlink_to(self.program)
        self.grant(link, self.program)
        self.assertEqual([str(self.program)] * 4, [row[1] for row in self.rows(self.user)])

    def test_finds_the_database_that_the_system_has_open(self):
        elsewhere = self.database("private/Data/com.apple.TCC/TCC.db")
        self.tells("lsof", f"p5\nn/Library/Application Support/com.apple.TCC/TCC.db\nn{elsewhere}")
        self.assertEqual(0, self.grant().returncode)
        self.assertEqual(([], 4), (self.rows(self.user), len(self.rows(elsewhere))))

    def test_says_where_a_release_has_moved_them(self):
        self.user.unlink()
        done = self.grant()
        self.assertEqual(1, done.returncode)
        self.assertIn("this release keeps the user's permissions elsewhere", done.stdout)
        self.assertEqual(4, len(self.rows(self.system)))
        self.assertFalse(self.user.exists())

    def test_says_when_there_are_several(self):
        self.tells("lsof", "n/one/TCC.db\nn/two/TCC.db")
        done = self.grant()
        self.assertEqual(1, done.returncode)
        self.assertIn("tccd has several databases open: /one/TCC.db, /two/TCC.db", done.stdout)

    def test_says_what_it_does_not_know(self):
        self.user.unlink()
        self.database(str(self.user.relative_to(self.folder)), ", oath TEXT NOT NULL")
        done = self.grant()
        self.assertEqual(1, done.returncode)
        self.assertIn("its table of permissions has oath, of which nothing is known", done.stdout)
        self.assertEqual([], self.rows(self.user))

    def test_adds_approvals_of_the_kind_that_is_there(self):
        self.approvals.parent.mkdir(parents=True)
        agent = {"/agent": datetime(2030, 1, 1)}
        self.approvals.write_bytes(plistlib.dumps(agent))
        self.grant()
        self.assertEqual({**agent, str(self.program): datetime(2099, 1, 1)},
                         plistlib.loads(self.approvals.read_bytes()))

    def test_adds_approvals_where_there_are_none(self):
        self.grant()
        entry = plistlib.loads(self.approvals.read_bytes())[str(self.program)]
        self.assertEqual((datetime(2099, 1, 1), 1),
                         (entry["kScreenCaptureApprovalLastAlerted"],
                          entry["kScreenCaptureAlertableUsageCount"]))

    def test_has_the_system_read_them_again(self):
        self.tells("pgrep", "71")
        self.grant()
        self.assertEqual(["kill -TERM 71", "kill -KILL 71"],
                         [call for call in self.calls() if call.startswith("kill")])

    def test_is_refused_elsewhere(self):
        done = self.grant(RUNNER_ENVIRONMENT="")
        self.assertEqual(2, done.returncode)
        self.assertIn("permissions are changed on hosted runners alone", done.stderr)
        self.assertEqual([], self.rows(self.system))


class Timings(OnARunner):
    def test_tell_how_long_driver_takes(self):
        receiver = self.tool("receiver", "#!/bin/sh\necho ready 41 7 8\nread line\necho done\nread end\n")
        with Mac('app Receiver pid 41\n    window 7 "One" at 10,20 size 300x200\n') as mac:
            done = self.run_script("timings", DRIVER, receiver, self.folder / "timings.md",
                                   **mac.environment)
        self.assertEqual((0, ""), (done.returncode, done.stderr))
        text = re.sub(r"[\d.]+ (ms|s|MiB)|unknown", "N", (self.folder / "timings.md").read_text())
        self.assertEqual(["`permissions`", "`session`", "`scene`", "`windows`", "`ax-menubar`",
                          "`ax-modal`", "`ax-dump` of 1 elements", "its memory", "`bg-click`"],
                         [line.split(" | ")[0][2:] for line in text.splitlines()[5:]])


class Lock(OnARunner):
    def lock(self, what):
        driver = self.tool("driver", STAND_IN)
        return self.run_script("lock", what, driver, OBSERVED_SECONDS="0").returncode

    def test_is_done_by_driver(self):
        self.assertEqual([0, 0], [self.lock("lock"), self.lock("guard")])
        self.assertEqual(["driver lock-now", "driver session", "driver lock-guard", "driver session"],
                         [call for call in self.calls() if call.startswith("driver")])

    def test_is_of_a_known_kind(self):
        self.assertEqual(2, self.lock("door"))


class Programs(OnARunner):
    def test_are_driver_and_the_shell_of_the_steps(self):
        self.assertEqual("/some/driver\n/bin/bash\n",
                         self.run_script("programs", "/some/driver").stdout)

    def test_have_what_driver_then_says(self):
        driver = self.tool("driver", STAND_IN)
        sudo = self.tool("sudo", '#!/bin/sh\necho "sudo $*" >>"$STAND_INS/calls"\n')
        for granted, status in ((True, 0), (False, 1)):
            self.tells("driver", json.dumps({"accessibility": True, "ok": True,
                                             "screenRecording": granted}, separators=(",", ":")))
            self.assertEqual(status, self.run_script("grant-all", driver).returncode)
        self.assertTrue(sudo.exists())
        self.assertIn(f"--uid {os.getuid()} {driver} /bin/bash",
                      next(call for call in self.calls() if call.startswith("sudo")))


if __name__ == "__main__":
    unittest.main()
