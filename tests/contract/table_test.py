"""The published table is the one that the built driver goes by, and nothing has drifted from it."""
import json
import re
import subprocess
import sys
import unittest

from mac import ROOT, Mac
from validation import ARGUMENTS, FOLDER, validator

import arguments
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

    def test_has_arguments_of_every_command_described(self):
        names = {command.name for command in table.commands()}
        self.assertEqual(names, {path.stem for path in ARGUMENTS.glob("*.json")})
        for command in table.commands():
            given = arguments.arguments_of(command)
            with self.subTest(command=command.name):
                # What may be left out, and a command line must have, has a default.
                fewest = max(command.fewest, sum(one.is_required for one in given))
                self.assertTrue(all(one.is_required or one.has_default for one in given[:fewest]))
                self.assertFalse(any(one.is_required for one in given[fewest:]))
                self.assertTrue(all(one.schema["description"].endswith(".") for one in given))

    @staticmethod
    def sample(schema):
        is_number = schema.get("type") in ("number", "integer")
        return "50" if is_number else schema.get("enum", ["Editor"])[0]

    def test_has_numbers_where_driver_wants_them(self):
        wanted = "missing numeric arg "
        # Those that take other words too, say so in another way, or take any word for 1.
        others = {("ax-slider", "value"), ("focus-release", "pid"), ("focus-release", "window"),
                  ("bg-click", "count")}
        count = 0
        with Mac(EMPTY + '    window 7 "Text" at 0,30 size 800x600\n') as mac:
            for command in table.commands():
                given = arguments.arguments_of(command)
                samples = [self.sample(one.schema) for one in given]
                for place, one in enumerate(given):
                    if samples[place] != "50" or (command.name, one.name) in others:
                        continue
                    words = [*samples[:place], "word", *samples[place + 1:]]
                    with self.subTest(command=command.name, argument=one.name):
                        error = mac.driver(command.name, *words).reply.get("error")
                        self.assertEqual(f"{wanted}{place + 2}", error)
                    count += 1
        self.assertEqual(28, count)


if __name__ == "__main__":
    unittest.main()
