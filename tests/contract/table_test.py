"""The published table is the one that the built driver goes by, and nothing has drifted from it."""
import json
import re
import subprocess
import sys
import unittest

from mac import ROOT, Mac
from validation import FOLDER, validator

import table

EMPTY = "app Editor pid 40 frontmost\n"


class Table(unittest.TestCase):
    def test_has_the_usage_text_of_every_command_that_checks_its_arguments(self):
        checked = [command for command in table.commands() if command.checks_count]
        self.assertGreater(len(checked), 30)
        with Mac(EMPTY) as mac:
            for command in checked:
                run = mac.driver(command.name)
                self.assertEqual(({"ok": False, "error": command.usage}, 1), (run.reply, run.status))
                fewer = mac.driver(command.name, *["x"] * (command.fewest - 1))
                self.assertEqual(command.usage, fewer.reply["error"])
                if command.most is not None:
                    more = mac.driver(command.name, *["x"] * (command.most + 1))
                    self.assertEqual(command.usage, more.reply["error"])

    def test_has_no_command_that_driver_does_not_know(self):
        # These would act on the Mac, or wait.
        unasked = {"lock-guard", "keep-awake"}
        with Mac(EMPTY) as mac:
            for command in table.commands():
                if command.name in unasked:
                    continue
                run = mac.driver(command.name)
                self.assertNotEqual(f"unknown command: {command.name}", run.reply.get("error"))

    def test_has_each_name_once(self):
        names = [command.name for command in table.commands()]
        self.assertEqual(len(names), len(set(names)))

    def test_has_every_command_described_and_no_other(self):
        self.assertEqual(sorted(command.name for command in table.commands()),
                         sorted(table.load("commands.json")))

    def test_tells_which_commands_a_locked_screen_refuses(self):
        unasked = {"lock-guard", "keep-awake", "capture-service"}
        refusal = "the Mac is locked or not on console; background input is unavailable"
        with Mac(EMPTY) as mac:
            mac.tell("lock")
            for command in table.commands():
                if command.name in unasked:
                    continue
                with self.subTest(command=command.name):
                    refused = mac.driver(command.name).reply.get("error") == refusal
                    self.assertEqual(command.acts_on_input != "no", refused)

    def test_is_what_the_generated_files_were_made_from(self):
        check = subprocess.run([sys.executable, ROOT / "scripts/generate-contract", "--check"],
                               capture_output=True, text=True, check=False)
        self.assertEqual(0, check.returncode, check.stdout + check.stderr)

    def test_is_in_the_command_reference(self):
        pages = [(ROOT / "docs" / page).read_text() for page in ("COMMANDS.md", "PROTOCOL.md")]
        gone = {f"lock-{word}" for word in ("serve", "arm", "disarm", "status", "query", "unlock")}
        for command in table.commands():
            if command.name in gone:
                continue
            with self.subTest(command=command.name):
                mention = re.compile(rf"(`|driver ){re.escape(command.name)}[` ]")
                self.assertTrue(any(mention.search(page) for page in pages))

    def test_has_schemas_that_are_schemas(self):
        names = {path.stem for path in FOLDER.glob("*.json")}
        self.assertLessEqual({command.name for command in table.commands()}, names)
        for name in names:
            validator(name)

    def test_has_schemas_that_refuse_what_no_command_writes(self):
        for command in table.commands():
            check = validator(command.name)
            for wrong in ({}, {"ok": True, "surprise": 1}, {"ok": False, "error": 7}, [],
                          {"ok": True, "error": "no element"}):
                with self.subTest(command=command.name, reply=json.dumps(wrong)):
                    self.assertFalse(check.is_valid(wrong))
        self.assertFalse(validator("ax-press").is_valid({"ok": False, "error": "no elements"}))
        acted = {"ok": True, "axError": -25204, "pressed": "File"}
        self.assertFalse(validator("ax-menu").is_valid(acted))
        self.assertTrue(validator("ax-menu").is_valid({**acted, "ok": False}))


if __name__ == "__main__":
    unittest.main()
