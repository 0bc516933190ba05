"""The workflow for hosted Macs and its scripts, with stand-ins of the Mac's tools. What they do on
a Mac only a Mac shows."""
import json
import os
import re
import sqlite3
import unittest
from importlib.machinery import SourceFileLoader
from importlib.util import module_from_spec, spec_from_loader

import yaml
from mac import DRIVER, ROOT, Mac
from runner import SCHEMA, STAND_IN, OnARunner

IMAGES = {"ubuntu-latest", "macos-15", "macos-26", "xcode-27", "${{ matrix.image }}"}
WORKFLOWS = ROOT / ".github" / "workflows"


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
                matrix = job.get("strategy", {}).get("matrix", {})
                with self.subTest(workflow=path.name, job=name):
                    self.assertLessEqual({job["runs-on"], *matrix.get("image", [])}, IMAGES)

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
        for script, *arguments in (("desktop", "true"), ("grant-all", "true"),
                                   ("lock", "lock", "true")):
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


LOADER = SourceFileLoader("timings", str(ROOT / ".github/mac/timings"))
timings = module_from_spec(spec_from_loader(LOADER.name, LOADER))
LOADER.exec_module(timings)


class Timings(OnARunner):
    WORLD = 'app Receiver pid 41\n    window 7 "One" at 10,20 size 300x200\n'

    def test_tell_how_long_driver_takes(self):
        receiver = self.tool("receiver", "#!/bin/sh\necho ready 41 7 8\nread line\necho done\n"
                                         "read end\n")
        with Mac(self.WORLD) as mac:
            done = self.run_script("timings", DRIVER, receiver, self.folder / "timings.md",
                                   **mac.environment)
        self.assertEqual((0, ""), (done.returncode, done.stderr))
        text = re.sub(r"[\d.]+ (ms|s|/s|MiB)|unknown", "N", (self.folder / "timings.md").read_text())
        self.assertEqual([*(f"`{command.split()[0]}`" for command in timings.COMMANDS),
                          "`bg-click`", "`ax-dump` of 1 elements", "messages a second",
                          "its memory"],
                         [line.split(" | ")[0][2:] for line in text.splitlines()[5:]])
        self.assertTrue(all(line.endswith("| N |") for line in text.splitlines()[5:]), text)

    def test_are_of_command_lines_that_are_right(self):
        with Mac(self.WORLD) as mac:
            for command in timings.COMMANDS:
                with self.subTest(command=command):
                    words = command.format(pid=41, x=160, y=120, picture=mac.path("picture.png"))
                    self.assertEqual(0, mac.driver(*words.split()).status)

    def test_are_of_all_commands_that_only_read_and_end(self):
        tools = json.loads((ROOT / "packaging/contract/tools.json").read_text())["tools"]
        reading = {each["command"] for each in tools.values() if each.get("reads")}
        self.assertEqual(reading - {"watch-input"},
                         {command.split()[0] for command in timings.COMMANDS})


class Building(OnARunner):
    def setUp(self):
        super().setUp()
        for name in ("cmake", "codesign", "lipo"):
            self.tool(name, STAND_IN)

    def test_takes_a_project_and_a_folder(self):
        self.assertEqual(0, self.run_script("build", "platform/macos", "build/macos").returncode)
        self.assertEqual(["cmake -S platform/macos -B build/macos -DCMAKE_BUILD_TYPE=Release",
                          "cmake --build build/macos --parallel 3"], self.calls())

    def test_stops_when_a_project_cannot_be_configured(self):
        self.tool("cmake", '#!/bin/sh\necho "cmake $*" >>"$STAND_INS/calls"\nexit 1\n')
        self.assertEqual(1, self.run_script("build", "platform/macos", "build/macos").returncode)
        self.assertEqual(1, len(self.calls()))

    def test_is_followed_by_a_signature(self):
        driver = self.tool("driver", STAND_IN)
        self.assertEqual(0, self.run_script("sign", driver).returncode)
        self.assertEqual([f"codesign --force --sign - --options runtime --entitlements "
                          f"packaging/driver.entitlements {driver}", f"lipo -archs {driver}",
                          "driver permissions"], self.calls())


class Collecting(OnARunner):
    def test_takes_logs_crashes_and_a_picture(self):
        crash = self.home / "Library/Logs/DiagnosticReports/driver.ips"
        crash.parent.mkdir(parents=True)
        crash.write_text("crash")
        self.tells("log", "tccd: said something")
        done = self.run_script("collect")
        self.assertEqual((0, "driver.ips\n"), (done.returncode, done.stdout))
        self.assertEqual("crash", self.result("crashes/driver.ips"))
        self.assertEqual("tccd: said something\n", self.result("system.log"))
        self.assertIn(f"screencapture -x {self.folder}/results/pictures/end.png", self.calls())

    def test_observes_each_second_for_a_minute(self):
        self.tool("sleep", STAND_IN)
        driver = self.tool("driver", '#!/bin/sh\necho "$1"\n')
        self.assertEqual(0, self.run_script("observe", driver).returncode)
        lines = self.result("observed.tsv").splitlines()
        self.assertEqual([f"{second}\tsession\twindows\tcapture-probe" for second in range(1, 61)],
                         lines)
        self.assertEqual(["sleep 1"] * 60, self.calls())


class Trees(OnARunner):
    WORLD = """\
app "Driver Fixture" pid 41 bundle com.zentrove.desk.fixture
    window 7 "Fixture" at 10,20 size 300x200
        AXButton "Press" at 20,40 size 100x24
"""

    def trees(self, fixture):
        program = self.tool("fixture", f"#!/bin/sh\n{fixture}\n")
        self.tool("sleep", STAND_IN)
        with Mac(self.WORLD) as mac:
            return self.run_script("trees", DRIVER, program,
                                   SIMULATED_MAC=mac.environment["SIMULATED_MAC"])

    def test_and_a_picture_are_kept_of_the_fixture(self):
        done = self.trees("echo ready\nexec tail -f /dev/null")
        self.assertEqual((0, ""), (done.returncode, done.stdout))
        trees = {path.stem: json.loads(path.read_text())
                 for path in (self.folder / "results/trees").iterdir()}
        self.assertEqual({"windows", "ax-list", "ax-dump", "ax-menubar", "ax-modal",
                          "ax-popup-items", "capture"}, set(trees))
        self.assertTrue(all(tree["ok"] for tree in trees.values()), trees)
        self.assertEqual(["Fixture", "Press"],
                         [each["label"] for each in trees["ax-dump"]["elements"]])
        self.assertTrue((self.folder / "results/pictures/fixture.png").read_bytes()
                        .startswith(b"\x89PNG"))

    def test_need_a_fixture_that_starts(self):
        done = self.trees("echo no display")
        self.assertEqual((1, "the fixture has not started\n"), (done.returncode, done.stdout))


class Lock(OnARunner):
    def lock(self, what):
        driver = self.tool("driver", STAND_IN)
        return self.run_script("lock", what, driver, OBSERVED_SECONDS="0").returncode

    def test_is_done_by_driver(self):
        self.assertEqual([0, 0], [self.lock("lock"), self.lock("guard")])
        self.assertEqual(["driver lock-now", "driver session", "driver lock-guard",
                          "driver session"],
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
