"""Whatever single call to the system fails, the reply is as the schema of the command says."""
import json
import subprocess
import unittest

from mac import ROOT, SIMULATED_MAC, Mac
from validation import Validation

DESK = ROOT / "demo" / "desk.world"
OUTCOMES = (["absent"], ["empty"], ["wrong"], ["refused"], ["thrown"], ["error", "-25204"],
            ["error", "-50"], ["before", "lock"], ["before", "quit", "Notes"])
COMMANDS = [
    ["permissions"], ["scene"], ["session"], ["windows", "Notes"], ["capture", "Notes", "{picture}"],
    ["capture-probe"], ["bg-click", "Notes", "120", "180"], ["bg-scroll", "Notes", "480", "350", "0", "1"],
    ["bg-key", "Notes", "cmd+s"], ["bg-type", "Notes", "x"], ["bg-paste-files", "Notes", "/a"],
    ["ax-list", "Notes"], ["ax-dump", "Notes"], ["ax-find-text", "Notes", "a"], ["ax-at", "Notes", "320", "200"],
    ["ax-texts-at", "Notes", "320", "200"], ["ax-press", "Notes", "320", "570"],
    ["ax-press-exact", "Notes", "Sign"], ["ax-press-match", "Notes", "sign", "-1", "-1"],
    ["ax-press-child", "Notes", "Meeting", "last"], ["ax-press-in-document", "Notes", "x", "y"],
    ["ax-insert", "Notes", "Body", "-1", "-1", "end", "x"], ["ax-focus", "Notes", "Body", "-1", "-1"],
    ["ax-focused", "Notes"], ["ax-set-value", "Notes", "320", "200", "x"], ["ax-menubar", "Notes"],
    ["ax-menu", "Notes", "note", "archive"], ["ax-slider", "Notes", "Text size", "20"],
    ["ax-popup-items", "Notes"], ["ax-modal", "Notes"], ["ax-modal-press", "Notes", "x", "y"],
    ["reveal", "Notes"], ["lock-now"], ["focus-release", "41", "7"]]


def arms(mac, *words):
    """Whether the fault is one that the call may have."""
    return subprocess.run([SIMULATED_MAC, "fault", *words], capture_output=True,
                          env=mac.environment, check=False).returncode == 0


class Faults(unittest.TestCase):
    seen = Validation()
    inadmissible = set()

    def run_with(self, command, fault):
        if tuple(fault) in self.inadmissible:
            return []
        with Mac(DESK) as mac:
            if fault and not arms(mac, *fault):
                self.inadmissible.add(tuple(fault))
                return []
            run = mac.driver(*[mac.path("p") if word == "{picture}" else word for word in command])
            where = f"driver {' '.join(command)}, fault {' '.join(fault)}: {run.lines}"
            self.assertEqual((1, ""), (len(run.lines), run.errors), where)
            self.assertEqual([], self.seen.faults(command[0], json.loads(run.lines[0])), where)
            return [json.loads(line)["call"] for line in mac.tell("trace").splitlines()]

    def test_of_one_call_leave_a_reply_that_validates(self):
        for command in COMMANDS:
            calls = sorted(set(self.run_with(command, [])))
            for call in calls:
                if call.startswith(("streams.", "process.", "loop.", "text.")):
                    continue
                for outcome in OUTCOMES:
                    self.run_with(command, [call, "1", *outcome])
        print(f"{self.seen.count} replies validated, {len(self.seen.errors)} failures")
        self.assertGreater(self.seen.count, 500)


if __name__ == "__main__":
    unittest.main()
