"""What is assumed of a Mac: each assumption has a probe or a reason, probes are run whatever others
do, and what Macs answer comes into the table and its pages."""
import contextlib
import io
import json
import os
import sys
import tempfile
import unittest
from importlib.machinery import SourceFileLoader
from importlib.util import module_from_spec, spec_from_loader
from pathlib import Path
from unittest import mock

sys.dont_write_bytecode = True
ROOT = Path(__file__).resolve().parent.parent.parent
SCRIPTS = ROOT / "scripts"
sys.path.insert(0, str(SCRIPTS))
LOADER = SourceFileLoader("mac_facts", str(SCRIPTS / "mac-facts"))
facts = module_from_spec(spec_from_loader(LOADER.name, LOADER))
LOADER.exec_module(facts)
import mac_probes
from mac_answers import Unusable, apply, table
from mac_assumptions import problems_with_assumptions

TABLE = """\
# What is assumed.
[[assumption]]
id = "calls-answer"
names = []
assumed = "Calls answer."
probe = "calls"
simulated = ["simulator/calls.cpp"]

# Of others.
[[assumption]]
id = "calls-return"
names = []
assumed = "Calls return."
probe = "calls"

[[assumption]]
id = "looks-good"
names = []
assumed = "It looks good."
person = "it has to be looked at"
"""
PROBES = '[probe.calls]\nabout = "calls"\nseconds = 20\n'
RULES = """\
| Calls answer at once. | assumed (`calls-answer`) |
| Nobody calls. | by design |
"""
MAC = """\
- **calls-answer**: `Call` (`call.cpp`)  \n  Assumed: Calls answer.  \n
- **calls-return**  \n  Assumed: Calls return.  \n
"""
PROBE = """
import json, os, signal, sys, time
assert sys.argv[1] in ("calls-answer", "calls-return")
name = sys.argv[1]
{action}
print("a remark")
print(json.dumps({{"assumption": name, "verdict": "confirmed", "evidence": {{"answers": 2}}}}))
"""
NAMES = ("calls-answer", "calls-return")


class Person(io.StringIO):
    """Somebody who sits at the terminal and types these lines."""

    def isatty(self):
        return True


HERE = {"version": "15.5", "hardware": "Mac14,2", "date": "2026-11-30"}


def answer(assumption, verdict, **changes):
    return {"assumption": assumption, "verdict": verdict, "evidence": {"seen": 1}, **HERE,
            **changes}


class InProject(unittest.TestCase):
    """A project with three assumptions and a probe."""

    def setUp(self):
        folder = tempfile.TemporaryDirectory()
        self.addCleanup(folder.cleanup)
        self.root = Path(folder.name)
        self.write("platform/macos/symbols.toml", TABLE)
        self.write("tests/mac/probes.toml", PROBES)
        self.write("docs/SIMULATOR.md", RULES)
        self.write("docs/MAC.md", MAC)
        self.write("simulator/calls.cpp", "")
        self.probe("calls")

    def write(self, name, text):
        path = self.root / name
        path.parent.mkdir(parents=True, exist_ok=True)
        path.write_text(text)
        return path

    def read(self, name):
        return (self.root / name).read_text()

    def probe(self, name, action=""):
        self.write(f"tests/mac/{name}.py", PROBE.format(action=action))

    def change(self, name, old, new):
        self.assertIn(old, self.read(name))
        self.write(name, self.read(name).replace(old, new))

    def run_facts(self, *arguments, on_a_mac=True, environment=None, person=None):
        """Status, output and answers of a run of the script in this project."""
        output, errors = io.StringIO(), io.StringIO()
        options = [*arguments, "--output", str(self.root / "output")]
        with mock.patch.multiple(facts, ROOT=self.root, ON_A_MAC=on_a_mac,
                                 this_machine=lambda: HERE, build_for_driver=lambda _: None), \
                mock.patch.object(mac_probes, "ON_A_MAC", on_a_mac), \
                mock.patch.dict(os.environ, environment or {}), \
                mock.patch.object(sys, "stdin", person or io.StringIO()), \
                contextlib.redirect_stdout(output), contextlib.redirect_stderr(errors):
            try:
                status = facts.main(options)
            except SystemExit as end:
                return end.code, errors.getvalue(), []
        path = self.root / "output" / "answers.jsonl"
        lines = path.read_text().splitlines() if path.exists() else []
        return status, output.getvalue(), [json.loads(line) for line in lines]


class Assumptions(InProject):
    def expect(self, *problems):
        self.assertEqual(list(problems), problems_with_assumptions(self.root))

    def test_of_the_project_have_a_probe_or_a_reason(self):
        self.assertEqual([], problems_with_assumptions(ROOT))

    def test_with_a_probe_or_a_reason_are_in_order(self):
        self.expect()

    def test_have_a_probe_or_a_reason(self):
        self.change("platform/macos/symbols.toml", 'person = "it has to be looked at"\n', "")
        self.expect("looks-good: either a probe asks, or a reason says why a person is needed")

    def test_have_not_both(self):
        self.change("platform/macos/symbols.toml", "person =", 'probe = "calls"\nperson =')
        self.expect("looks-good: either a probe asks, or a reason says why a person is needed")

    def test_have_names_of_their_own(self):
        self.change("platform/macos/symbols.toml", '"calls-return"', '"looks-good"')
        self.expect("two assumptions are called looks-good",
                    "tests/mac/calls.py does not know looks-good")
        self.change("platform/macos/symbols.toml", 'id = "looks-good"\n', "")
        self.expect("an assumption has no id: Calls return.",
                    "an assumption has no id: It looks good.")

    def test_name_probes_that_are_there(self):
        self.change("platform/macos/symbols.toml", '"calls"\n\n[[', '"letters"\n\n[[')
        self.expect("calls-return: there is no probe letters")
        (self.root / "tests/mac/calls.py").unlink()
        self.expect("calls-return: there is no probe letters",
                    "tests/mac has no source of the probe calls")

    def test_are_told_apart_by_their_probe(self):
        self.change("tests/mac/calls.py", '"calls-return"', '"calls-fail"')
        self.expect("tests/mac/calls.py does not know calls-return")

    def test_use_every_probe(self):
        self.write("tests/mac/probes.toml", PROBES + PROBES.replace("calls]", "letters]"))
        self.probe("letters")
        self.expect("no assumption names the probe letters")

    def test_have_the_names_by_which_the_simulated_mac_assumes_them(self):
        self.change("docs/SIMULATOR.md", "`calls-answer`", "`calls-fail`")
        self.expect("docs/SIMULATOR.md names calls-fail, which is no assumption",
                    "calls-answer: its rule in docs/SIMULATOR.md and its file in the simulated Mac "
                    "belong together")

    def test_have_a_name_where_the_simulated_mac_assumes_something(self):
        self.change("docs/SIMULATOR.md", "by design |", "confirmed; the rest is assumed |")
        self.expect("docs/SIMULATOR.md names no assumption for: Nobody calls.")

    def test_are_told_from_what_is_known(self):
        self.change("docs/SIMULATOR.md", "by design |", "so it seems |")
        self.expect("docs/SIMULATOR.md does not say how sure this is: Nobody calls.")

    def test_name_files_of_the_simulated_mac_that_are_there(self):
        (self.root / "simulator/calls.cpp").unlink()
        self.expect("calls-answer: there is no simulator/calls.cpp")


class Probes(InProject):
    def verdicts(self, *arguments, **options):
        status, output, answers = self.run_facts(*arguments, **options)
        return status, output, [(each["assumption"], each["verdict"], each["evidence"])
                                for each in answers]

    def test_are_asked_about_each_assumption(self):
        status, output, answers = self.run_facts()
        self.assertEqual([answer(name, "confirmed", evidence={"answers": 2}, probe="calls")
                          for name in ("calls-answer", "calls-return")], answers)
        self.assertEqual(0, status)
        self.assertIn("looks-good                   a person is needed: it has to be looked at\n",
                      output)
        self.assertIn("2 confirmed, 0 refuted, 0 not shown", self.read("output/answers.md"))

    def expect_failure(self, action, why):
        """The first assumption has no answer, for this reason, and the second has."""
        self.probe("calls", f'if name == "calls-answer": {action}')
        self.assertEqual((1, [("calls-answer", "not shown", {"why": why}),
                              ("calls-return", "confirmed", {"answers": 2})]),
                         self.verdicts()[::2])

    def test_that_crash_hide_no_others(self):
        self.expect_failure("print('dying', file=sys.stderr, flush=True), "
                            "os.kill(os.getpid(), signal.SIGABRT)",
                            "it ended with SIGABRT: dying")

    def test_that_fail_hide_no_others(self):
        self.expect_failure("sys.exit('no display')", "it ended with status 1: no display")

    def test_that_hang_hide_no_others(self):
        self.change("tests/mac/probes.toml", "seconds = 20", "seconds = 1")
        self.expect_failure("time.sleep(60)", "no answer within 1 seconds")

    def test_that_say_something_else_hide_no_others(self):
        self.expect_failure("print('{}', flush=True), os._exit(0)", "it gave no answer: {}")

    def test_that_say_no_verdict_hide_no_others(self):
        self.expect_failure("name = 'another'", 'it gave no answer: a remark {"assumption": '
                            '"another", "verdict": "confirmed", "evidence": {"answers": 2}}')

    def test_that_have_answered_are_not_lost_when_the_run_is_ended(self):
        with mock.patch.object(facts.Runner, "answer", side_effect=[
                ("confirmed", {"answers": 2}), KeyboardInterrupt]), \
                self.assertRaises(KeyboardInterrupt):
            self.run_facts()
        self.assertEqual(1, len(self.read("output/answers.jsonl").splitlines()))
        self.assertIn("| `calls-answer` | confirmed |", self.read("output/answers.md"))

    def test_leave_no_process_behind(self):
        self.expect_nothing_left("", 0)

    def test_that_hang_leave_no_process_behind(self):
        self.change("tests/mac/probes.toml", "seconds = 20", "seconds = 1")
        self.expect_nothing_left("time.sleep(600)", 1)

    def expect_nothing_left(self, end, status):
        """A probe has started another process when it comes to this end."""
        left = self.root / "left"
        os.mkfifo(left)
        self.probe("calls", "import subprocess\n"
                   f"subprocess.Popen(['sh', '-c', 'exec 3<>{left}; echo; read line <&3'],\n"
                   f"                 stdout=subprocess.PIPE).stdout.readline()\n{end}")
        self.assertEqual(status, self.run_facts("--only", "calls-answer")[0])
        reading = os.open(left, os.O_RDONLY | os.O_NONBLOCK)
        self.addCleanup(os.close, reading)
        os.set_blocking(reading, True)
        # Its end comes when nobody has it open for writing any more.
        self.assertEqual(b"", os.read(reading, 1))

    def test_run_alone_when_asked_for(self):
        _, output, answers = self.verdicts("--only", "calls-return")
        self.assertEqual([("calls-return", "confirmed", {"answers": 2})], answers)
        self.assertNotIn("looks-good", output)

    def test_of_unknown_names_are_refused(self):
        status, errors, _ = self.run_facts("--only", "calls-fail")
        self.assertEqual(2, status)
        self.assertIn("nothing is assumed by the name of calls-fail", errors)

    def test_are_not_there_where_a_person_is_needed(self):
        status, errors, _ = self.run_facts("--only", "looks-good")
        self.assertEqual(2, status)
        self.assertIn("since a person is needed: it has to be looked at", errors)

    def test_that_can_be_seen_need_consent(self):
        self.change("tests/mac/probes.toml", "seconds", 'seen = "A window comes."\nseconds')
        why = {"why": "it can be seen, and nobody has agreed"}
        status, output, answers = self.verdicts()
        self.assertEqual((0, [(name, "not shown", why) for name in NAMES]), (status, answers))
        self.assertIn("You are asked before each of these:\n  calls: A window comes.\n", output)
        for typed, verdict in (("y\n", "confirmed"), ("\n", "not shown"), ("", "not shown")):
            person = Person(typed)
            _, output, answers = self.verdicts(person=person)
            self.assertEqual([verdict] * 2, [each[1] for each in answers])
            # One question for all that a probe is asked about.
            self.assertEqual(1, output.count("A window comes. Run it? [y/N]"))
        hosted = {"RUNNER_ENVIRONMENT": "github-hosted"}
        self.assertEqual(["confirmed", "confirmed"],
                         [each[1] for each in self.verdicts("--hosted", environment=hosted)[2]])

    def test_for_hosted_macs_do_not_run_elsewhere(self):
        self.change("tests/mac/probes.toml", "seconds",
                    'hosted = "It takes the clipboard."\nseconds')
        why = {"why": "only on a hosted Mac: It takes the clipboard."}
        self.assertEqual([why, why], [each[2] for each in self.verdicts()[2]])

    def test_lock_the_screen_last_and_only_when_asked_for(self):
        self.change("tests/mac/probes.toml", "seconds = 20", "seconds = 20\nlocks = true")
        self.write("tests/mac/probes.toml",
                   self.read("tests/mac/probes.toml") + PROBES.replace("calls]", "letters]"))
        self.probe("letters")
        self.change("platform/macos/symbols.toml", '"calls"\n\n[[', '"letters"\n\n[[')
        self.assertEqual(["calls-return"], [each[0] for each in self.verdicts()[2]])
        self.assertEqual(["calls-return", "calls-answer"],
                         [each[0] for each in self.verdicts("--lock")[2]])

    def test_without_a_mac_are_those_that_speak_through_driver(self):
        why = {"why": "only a Mac can be asked"}
        self.assertEqual((0, [(name, "not shown", why) for name in NAMES]),
                         self.verdicts(on_a_mac=False)[::2])
        self.change("tests/mac/probes.toml", "seconds", "speaks_through_driver = true\nseconds")
        self.assertEqual(["confirmed", "confirmed"],
                         [each[1] for each in self.verdicts(on_a_mac=False)[2]])

    def test_that_do_not_build_hide_no_others(self):
        (self.root / "tests/mac/calls.py").rename(self.root / "tests/mac/calls.cpp")
        self.write("bin/cmake", "#!/bin/sh\necho no compiler\nexit 1\n").chmod(0o755)
        status, _, answers = self.verdicts(environment={"PATH": f"{self.root}/bin"})
        self.assertEqual((1, [{"why": "it does not build: no compiler"}] * 2),
                         (status, [each[2] for each in answers]))

    def test_ask_nobody_on_hosted_runners_alone(self):
        status, errors, _ = self.run_facts("--hosted", environment={"RUNNER_ENVIRONMENT": ""})
        self.assertEqual(2, status)
        self.assertIn("--hosted asks nobody, and this is no hosted runner", errors)


class Answers(InProject):
    def apply(self, *answers):
        path = self.write("answers.jsonl", "".join(json.dumps(each) + "\n" for each in answers))
        return apply(self.root, [path])

    def test_that_confirm_stand_in_the_table_and_the_pages(self):
        self.assertEqual([], self.apply(answer("calls-answer", "confirmed")))
        self.assertEqual(TABLE.replace('cpp"]\n', 'cpp"]\n[[assumption.answer]]\n'
                                       'verdict = "confirmed"\nversion = "15.5"\n'
                                       'hardware = "Mac14,2"\ndate = "2026-11-30"\n'
                                       'evidence = "seen: 1"\n'),
                         self.read("platform/macos/symbols.toml"))
        self.assertEqual(RULES.replace("calls-answer`", "calls-answer`: confirmed on 15.5"),
                         self.read("docs/SIMULATOR.md"))
        self.assertEqual(MAC.replace("Calls answer.  \n", "Calls answer.  \n  A Mac has answered: "
                                     "confirmed on macOS 15.5 (Mac14,2, 2026-11-30): seen: 1  \n"),
                         self.read("docs/MAC.md"))
        self.assertEqual([], problems_with_assumptions(self.root))

    def test_that_refute_name_the_rules_that_they_contradict(self):
        lines = self.apply(answer("calls-answer", "refuted", version="26.5"),
                           answer("calls-answer", "refuted"),
                           answer("calls-return", "refuted"))
        self.assertEqual(["calls-answer: refuted on 15.5, 26.5",
                          "  docs/SIMULATOR.md: Calls answer at once.", "  simulator/calls.cpp",
                          "calls-return: refuted on 15.5",
                          "  no rule of the simulated Mac rests on it; the adapters do"], lines)
        self.assertIn("(`calls-answer`: refuted on 15.5; refuted on 26.5)",
                      self.read("docs/SIMULATOR.md"))

    def test_take_the_place_of_older_ones_of_the_same_mac(self):
        self.apply(answer("calls-answer", "refuted"))
        self.apply(answer("calls-answer", "confirmed", date="2026-12-01"))
        self.assertIn("(`calls-answer`: confirmed on 15.5)", self.read("docs/SIMULATOR.md"))
        self.assertNotIn("refuted", self.read("docs/MAC.md"))

    def test_that_show_nothing_leave_what_was_shown(self):
        self.apply(answer("calls-answer", "confirmed"))
        self.apply(answer("calls-answer", "not shown", date="2026-12-01"))
        self.assertIn("(`calls-answer`: confirmed on 15.5)", self.read("docs/SIMULATOR.md"))

    def test_are_applied_twice_to_the_same_effect(self):
        names = ("platform/macos/symbols.toml", "docs/SIMULATOR.md", "docs/MAC.md")
        once = self.apply(answer("calls-answer", "refuted")), [self.read(name) for name in names]
        self.assertEqual(once, (self.apply(answer("calls-answer", "refuted")),
                                [self.read(name) for name in names]))

    def test_of_a_simulated_mac_are_refused(self):
        with self.assertRaisesRegex(Unusable, "a simulated Mac settles nothing"):
            self.apply(answer("calls-answer", "confirmed", version="simulated"))

    def test_to_unknown_questions_are_refused_and_nothing_is_written(self):
        with self.assertRaisesRegex(Unusable, "nothing is assumed by the name of calls-fail"):
            self.apply(answer("calls-answer", "confirmed"), answer("calls-fail", "confirmed"))
        self.assertEqual(TABLE, self.read("platform/macos/symbols.toml"))

    def test_that_are_none_are_refused(self):
        for line in ("{", "[]", "{}", json.dumps(answer("calls-answer", "perhaps"))):
            with self.subTest(line=line), self.assertRaisesRegex(Unusable, "no answer of a Mac"):
                apply(self.root, [self.write("answers.jsonl", line)])

    def test_are_shown_in_a_table_what_is_refuted_first(self):
        text = table([answer("calls-answer", "confirmed", evidence={"a|b": "two\nlines"}),
                      answer("calls-return", "refuted")])
        self.assertEqual(["| `calls-return` | refuted | seen: 1 | 15.5 | Mac14,2 |",
                          "| `calls-answer` | confirmed | a/b: two lines | 15.5 | Mac14,2 |"],
                         text.splitlines()[-2:])


if __name__ == "__main__":
    unittest.main()
