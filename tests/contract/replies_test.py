"""Every reply of the built driver is as its schema says."""
import json
import re
import unittest

from mac import ROOT, Mac, Talk
from validation import Validation

import table

DESK = ROOT / "demo" / "desk.world"
WORLDS = sorted((ROOT / "tests" / "worlds").glob("*.world"))
NOTES = "app Editor pid 40 frontmost\napp Notes pid 41\n    window 7 \"Inbox\" at 100,80 size 800x600\n"

# Runs on a Mac of their own each: the world, what is said to the Mac before, the command line.
PLAIN = [
    ["permissions"], ["scene"], ["session"], ["windows", "Notes"], ["windows", "Nobody"],
    ["windows", "pid:41"], ["capture", "Notes", "{picture}"], ["capture", "Nobody", "{picture}"],
    ["capture", "Notes", "/nowhere/at/all.png"], ["capture-probe"], ["capture-probe", "Notes"],
    ["bg-click", "Notes", "120", "180"], ["bg-click", "Notes", "120", "214", "left", "2"],
    ["bg-click", "Notes", "120", "180", "middle"], ["bg-click", "Notes", "120", "180", "left", "3"],
    ["bg-click", "Notes", "ten", "180"], ["bg-click", "Notes", "1400", "880"],
    ["bg-click", "Nobody", "1", "1"], ["bg-scroll", "Notes", "480", "350", "0", "-3"],
    ["bg-scroll", "Notes", "480", "350", "0", "1e10"], ["bg-move", "Notes", "340", "574"],
    ["bg-drag", "Notes", "100", "180", "300", "400"],
    ["bg-drag", "Browser", "620", "256", "700", "300"], ["bg-focus-hold", "Notes"],
    ["focus-release", "41", "7"], ["focus-release", "41"], ["focus-release", "0", "7"],
    ["bg-key", "Notes", "cmd+shift+s"], ["bg-key", "Notes", "cmd"], ["bg-key", "Notes", "cmd+wat"],
    ["bg-key", "Nobody", "a"], ["bg-type", "Notes", "two\nlines"],
    ["bg-paste-files", "Notes", "/Users/ada/a.txt"], ["bg-paste-files", "Notes", b"/\xff"],
    ["ax-list", "Notes"], ["ax-dump", "Chat"], ["ax-menubar", "Notes"], ["ax-modal", "Notes"],
    ["ax-find-text", "Chat", "invitation", "nowhere"], ["ax-find-text", "Chat", "a", "a"],
    ["ax-texts-at", "Chat", "1030", "650"], ["ax-at", "Chat", "1040", "680"],
    ["ax-at", "Chat", "-500", "-500"], ["ax-match", "Chat", "accept", "-1", "-1"],
    ["ax-press-match", "Chat", "accept", "-1", "-1"], ["ax-match", "Chat", "wat", "-1", "-1"],
    ["ax-press-match", "Chat", "wat", "-1", "-1"], ["ax-press", "Chat", "1040", "680"],
    ["ax-press", "Chat", "1400", "880"], ["ax-press", "Chat", "x", "y"],
    ["ax-press-exact", "Chat", "Accept"], ["ax-press-exact", "Chat", "Like", "last"],
    ["ax-press-exact", "Chat", "Like"], ["ax-press-exact", "Chat", "Nowhere"],
    ["ax-press-exact", "Chat", "Send", "only", "Toolbar"], ["ax-press-exact", "Chat", "Send", "only", ""],
    ["ax-press-exact", "Nobody", "Send"], ["ax-press-child", "Chat", "Grace", "Archive"],
    ["ax-press-child", "Chat", "Grace", "last"], ["ax-press-child", "Chat", "Ada", "Delete"],
    ["ax-press-child", "Chat", "Nobody", "last"], ["ax-press-child", "Chat", "Ada", "last", "AXCell"],
    ["ax-press-in-document", "Chat", "Conversation with Ada", "Accept"],
    ["ax-press-in-document", "Chat", "Conversation with Ada", "Like"],
    ["ax-press-in-document", "Chat", "Conversation with Grace", "Accept"],
    ["ax-insert", "Notes", "Body", "-1", "-1", "end", "Thanks 🙂."],
    ["ax-insert", "Notes", "Search", "-1", "-1", "replace", "bread"],
    ["ax-insert", "Notes", "Body", "-1", "-1", "replace", "x"],
    ["ax-insert", "Chat", "Password", "-1", "-1", "replace", "secret"],
    ["ax-insert", "Chat", "Nowhere", "-1", "-1", "end", "text"],
    ["ax-focus", "Notes", "Body", "-1", "-1"], ["ax-focus", "Notes", "wat", "-1", "-1"],
    ["ax-focused", "Notes"], ["ax-focused", "Browser"],
    ["ax-set-value", "Notes", "320", "200", "text"], ["ax-set-value", "Notes", "1400", "880", "text"],
    ["ax-menu", "Notes", "note", "archive"], ["ax-menu", "Notes", "note", "print"],
    ["ax-menu", "Notes", "note", "lock"], ["ax-slider", "Notes", "Text size"],
    ["ax-slider", "Notes", "Text size", "20"], ["ax-slider", "Notes", "Text size", "increment"],
    ["ax-slider", "Notes", "Text size", "large"], ["ax-slider", "Notes", "wat"],
    ["ax-modal-press", "Notes", "wat", "OK"], ["ax-popup-items", "Notes"], ["reveal", "Notes"],
    ["reveal", "Nobody"], ["lock-serve"], ["lock-arm"], ["lock-disarm"], ["lock-status"],
    ["lock-query"], ["lock-unlock", "now"], ["lock-now"], ["watch-input", "Nobody"],
]

# A world, words to the Mac, an environment, command lines.
SPECIAL = [
    (DESK, [["lock"]], {}, [["bg-click", "Notes", "120", "180"], ["ax-press", "Notes", "1", "1"]]),
    (DESK, [], {"CU_CAPTURE_PID": "999"}, [["session"], ["bg-type", "Notes", "x"]]),
    (DESK, [], {"CU_WINDOW": "elsewhere"}, [["bg-click", "Browser", "620", "256"]]),
    (DESK, [["fault", "windowserver.session", "2", "before", "lock"]], {},
     [["bg-click", "Notes", "120", "180"]]),
    (DESK, [["fault", "windowserver.session", "2", "before", "lock"]], {}, [["bg-key", "Notes", "a"]]),
    (DESK, [["fault", "private.post", "5", "before", "lock"]], {},
     [["bg-click", "Notes", "340", "574"]]),
    (DESK, [["fault", "private.post-record", "1+", "error", "-50"]], {},
     [["bg-click", "Notes", "340", "574"], ["bg-key", "Notes", "a"]]),
    (DESK, [["fault", "private.post-record", "2+", "error", "-50"]], {}, [["bg-key", "Notes", "a"]]),
    (DESK, [["fault", "pasteboard.write-files", "1", "refused"]], {},
     [["bg-paste-files", "Notes", "/a"]]),
    (DESK, [["fault", "private.front-process", "1+", "error", "-50"],
            ["fault", "workspace.frontmost", "1+", "absent"]], {}, [["bg-key", "Notes", "a"]]),
    (DESK, [["remove", "displays"]], {}, [["capture-probe"], ["capture", "Notes", "{picture}"]]),
    (DESK, [["fault", "private.lock-screen", "1", "error", "-600"]], {}, [["lock-now"]]),
    (DESK, [["fault", "ax.perform", "1", "error", "-25204"]], {}, [["ax-press", "Chat", "1040", "680"]]),
    (DESK, [["fault", "share.content", "1+", "thrown"]], {},
     [["capture", "Notes", "{picture}"], ["capture-probe"]]),
    (DESK, [], {}, [["ax-press-exact", "Notes", "Delete…"],
                    ["ax-modal", "Notes"], ["ax-modal-press", "Notes", "Delete this note?", "No"],
                    ["ax-modal-press", "Notes", "Delete this note?", "OK"]]),
    ("deny accessibility\n" + NOTES, [], {},
     [["permissions"], ["watch-input"], ["lock-guard"], ["ax-list", "Notes"]]),
    ("deny screen-recording\n" + NOTES, [], {},
     [["permissions"], ["capture", "Notes", "{picture}"], ["capture-probe"]]),
    ("missing SkyLight\n" + NOTES, [], {},
     [["bg-click", "Notes", "130", "95"], ["bg-move", "Notes", "130", "95"], ["bg-key", "Notes", "a"]]),
    ("missing CGEventSetWindowLocation\n" + NOTES, [], {},
     [["bg-click", "Notes", "130", "95"], ["bg-scroll", "Notes", "130", "95", "0", "1"]]),
    ("directory \"\"\n" + NOTES, [], {}, [["bg-paste-files", "Notes", "a.txt"]]),
    ("app Editor pid 40 frontmost\napp Notes pid 41\n", [], {},
     [["bg-key", "Notes", "a"], ["capture", "Notes", "{picture}"]]),
    ("app Notes pid 41 frontmost\n    window 7 \"Inbox\" at 100,80 size 800x600\n"
     "    window 8 \"Other\" at 100,80 size 800x600 focused\n", [], {"CU_WINDOW": "Inbox"},
     [["bg-key", "Notes", "a"], ["ax-focus", "Notes", "x", "-1", "-1"]]),
    ("app Notes pid 41 frontmost no-focused-window\n"
     "    window 7 \"Inbox\" at 100,80 size 800x600\n", [], {}, [["bg-key", "Notes", "a"]]),
    ("app Editor pid 40 frontmost\napp Notes pid 41\n    menu File > Save cmd s\n"
     "    window 7 \"Inbox\" at 100,80 size 800x600\n",
     [["fault", "ax.perform", "1", "error", "-25204"]], {}, [["bg-key", "Notes", "cmd+s"]]),
    ("app Editor pid 40 frontmost\napp Notes pid 41\n    window 7 \"Inbox\" at 100,80 size 800x600\n"
     "        AXRow \"Far\" at 5000,5000 size 100x20\n"
     "            AXButton \"Go\" at 5000,5000 size 40x20\n", [], {},
     [["ax-press-child", "Notes", "Far", "Go"]]),
    (ROOT / "tests/worlds/settings.world", [], {},
     [["reveal", "Player"], ["ax-popup-items", "Settings"], ["ax-slider", "Settings", "Balance"],
      ["ax-press-exact", "Settings", "More"], ["ax-popup-items", "Settings"]]),
]


def in_world(world, say, environment, command_lines):
    """Runs each command line in turn; gives (command, run) of each."""
    with Mac(world) as mac:
        for words in say:
            mac.tell(*words)
        for arguments in command_lines:
            words = [mac.path("p.png") if word == "{picture}" else word for word in arguments]
            yield arguments[0], mac.driver(*words, **environment)


class Replies(unittest.TestCase):
    seen = Validation()

    def check(self, command, run):
        self.assertEqual("", run.errors)
        for line in run.lines:
            with self.subTest(line=f"driver {command}: {line[:300]}"):
                self.assertEqual([], self.seen.faults(command, json.loads(line)))
        reply = run.reply
        entry = self.entry_of(command, reply)
        if entry is not None:
            with self.subTest(line=f"driver {command}: {run.lines[-1]}"):
                self.assertEqual(entry["status"], run.status)

    @staticmethod
    def entry_of(command, reply):
        if "error" not in reply or command not in {one.name for one in table.commands()}:
            return None
        for entry in table.errors():
            named = command in table.commands_of(entry) and not entry.get("open")
            if named and re.search(table.pattern_of(table.whole_message(entry)), reply["error"]):
                return entry
        return None

    def test_of_every_command(self):
        for arguments in PLAIN:
            for command, run in in_world(DESK, [], {}, [arguments]):
                self.check(command, run)
        called = {arguments[0] for arguments in PLAIN}
        spoken_with = {"capture-service", "lock-guard", "keep-awake"}
        names = {command.name for command in table.commands()}
        self.assertEqual(names - spoken_with, called)

    def test_of_macs_with_something_amiss(self):
        for world, say, environment, command_lines in SPECIAL:
            for command, run in in_world(world, say, environment, command_lines):
                self.check(command, run)

    def test_of_the_larger_worlds(self):
        for world in WORLDS:
            with Mac(world) as mac:
                for pid in range(40, 46):
                    app = f"pid:{pid}"
                    for command in ("windows", "ax-list", "ax-dump", "ax-modal", "ax-menubar",
                                    "ax-popup-items", "ax-focused"):
                        self.check(command, mac.driver(command, app))
                    self.check("capture", mac.driver("capture", app, mac.path("p.png")))

    def test_without_a_command_that_exists(self):
        with Mac(DESK) as mac:
            for words in ([], ["Scene"], ["--help"]):
                run = mac.driver(*words)
                self.assertEqual([], self.seen.faults("no-command", run.reply))
                self.assertEqual(1, run.status)

    def test_of_a_capture_session(self):
        with Mac(DESK) as mac:
            service = Talk(mac, ["capture-service", mac.path("lock")])
            first = service.line()
            second = mac.driver("capture-service", mac.path("lock"))
            requests = [
                {"op": "open", "session": "n", "app": "Notes"},
                {"op": "open", "session": "w", "app": "Browser", "window": "Weather"},
                {"op": "look", "session": "n"},
                {"op": "command", "session": "n", "args": ["bg-focus-hold", "Notes"]},
                {"op": "command", "session": "n", "args": ["bg-click", "Notes", "340", "574"]},
                {"op": "command", "session": "n", "args": ["bg-click", "Notes", "1400", "880"]},
                {"op": "close", "session": "w"}, {"op": "close", "session": "w"}]
            lines = [first]
            for request in requests:
                self.assertEqual([], self.seen.faults("capture-service-request", request))
                lines.append(service.ask(**request))
            self.assertEqual(([], 1), service.end())
            for line in lines:
                self.assertEqual([], self.seen.faults("capture-service", line))
            self.assertEqual([], self.seen.faults("held-focus", lines[4]["reply"]))
            for line in lines[5:7]:
                self.assertEqual([], self.seen.faults("bg-click", line["reply"]))
            self.check("capture-service", second)

    def test_of_capture_services_that_fail(self):
        n = {"op": "open", "session": "n", "app": "Notes"}
        hold = {"op": "command", "session": "n", "args": ["bg-focus-hold", "Notes"]}
        cases = [
            (DESK, [], [{"op": "open"}]), (DESK, [], [{"op": "open", "session": "n"}]),
            (DESK, [], [n, n]), (DESK, [], [{**n, "app": "Nobody"}]),
            (DESK, [], [{**n, "window": "nowhere"}]), (DESK, [["lock"]], [n]),
            (DESK, [], [n, {**hold, "args": ["bg-key", "Notes", "a"]}]),
            (DESK, [], [n, {**hold, "args": ["bg-click", "Notes", "1", "1", "third"]}]),
            (DESK, [["fault", "private.post-record", "1+", "error", "-50"]], [n, hold])]
        for world, say, requests in cases:
            with Mac(world) as mac:
                for words in say:
                    mac.tell(*words)
                service = Talk(mac, ["capture-service", mac.path("lock")])
                lines = [service.line()] + [service.ask(**request) for request in requests]
                self.assertEqual(([], 1), service.end())
                for line in lines:
                    self.assertEqual([], self.seen.faults("capture-service", line))
                self.assertFalse(lines[-1]["ok"])

    def test_of_a_sharing_that_is_stopped(self):
        with Mac(DESK) as mac:
            service = Talk(mac, ["capture-service", mac.path("lock")])
            service.line()
            service.ask(op="open", session="n", app="Notes")
            mac.tell("stop", "sharing", "Notes")
            lines, status = service.end()
            self.assertEqual(1, status)
            self.assertEqual([], self.seen.faults("capture-service", lines[-1]))
            self.assertIs(False, lines[-1]["sharing"])

    def test_of_the_watcher(self):
        for arguments in (["watch-input"], ["watch-input", "Browser"]):
            with Mac(DESK) as mac:
                watcher = Talk(mac, arguments)
                lines = [watcher.line()]
                for words in (["key", "a"], ["click", "900,300"], ["key", "return"]):
                    mac.tell("user", *words)
                    mac.tell("advance", "300ms")
                rest, status = watcher.end()
                self.assertEqual(0, status)
                self.assertGreaterEqual(len(rest), 3)
                for line in lines + rest:
                    self.assertEqual([], self.seen.faults("watch-input", line))

    def test_of_the_guard(self):
        endings = [("", {}, "run"), ("at 5s user key a\n", {}, "user"),
                   ("at 5s user key a\n", {"ZENTROVE_COVER_GRACE": "30"}, "grace")]
        for script, environment, by in endings:
            with Mac(DESK.read_text() + script) as mac:
                guard = Talk(mac, ["lock-guard"], environment)
                first = guard.line()
                self.assertEqual(2, first["covers"])
                if script:
                    mac.tell("advance", "6s")
                    lines = [guard.line()]
                    _, status = guard.end()
                else:
                    guard.say("operating")
                    lines, status = guard.end()
                self.assertEqual((0, by), (status, lines[-1]["by"]))
                for line in [first] + lines:
                    self.assertEqual([], self.seen.faults("lock-guard", line))

    def test_of_a_display_that_is_kept_awake(self):
        with Mac(DESK) as mac:
            awake = Talk(mac, ["keep-awake"])
            self.assertEqual([], self.seen.faults("keep-awake", awake.line()))
            awake.process.terminate()
            awake.process.communicate()


if __name__ == "__main__":
    unittest.main()
