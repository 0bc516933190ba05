"""Every line that simulated-mac prints is as its schema says, in whatever state the Mac is."""
import json
import subprocess
import unittest
from pathlib import Path

from jsonschema import Draft202012Validator

from mac import DRIVER, ROOT, SIMULATED_MAC, Mac, Talk, plain_environment

SCHEMAS = ROOT / "packaging/contract/simulated-mac"

WORLD = """
display 1 1440x900 scale 2
pasteboard item "public.utf8-plain-text" "one" "com.example.bytes" "\\xff" promises "com.example.promised"
app Browser pid 40 bundle com.example.browser chromium frontmost
    window 5 "Start" at 0,30 size 600x500
        AXTextField "Address" at 10,40 size 300x20 focused
app Notes pid 41
    window 7 "Inbox" at 100,80 size 800x600
        AXButton "Send" at 120,90 size 60x20 press: open sheet "Sure?"
        AXTextArea "Body" at 120,130 size 700x400 value "hello " late 50ms
        AXSlider "Size" at 120,540 size 100x20 range 0..10 step 0.5 failing AXHelp -25200
        AXRow "Line" at 120,600 size 700x20 repeat 5
    window 8 "Closed" at 100,80 size 80x60 off-screen
at 5s lock
"""


def validators():
    found = {}
    for path in sorted(SCHEMAS.glob("*.json")):
        schema = json.loads(path.read_text())
        Draft202012Validator.check_schema(schema)
        found[path.stem] = Draft202012Validator(schema)
    return found


class Lines(unittest.TestCase):
    @classmethod
    def setUpClass(cls):
        cls.validators = validators()
        cls.used = set()

    def check(self, name, text):
        """Each line is as the schema of that name says."""
        lines = text.splitlines()
        self.assertTrue(lines, name)
        for line in lines:
            with self.subTest(schema=name, line=line[:200]):
                value = json.loads(line)
                self.assertEqual(line, json.dumps(value, ensure_ascii=False, sort_keys=True, separators=(",", ":")))
                self.assertEqual([], [error.message for error in self.validators[name].iter_errors(value)])
        self.used.add(name)
        return [json.loads(line) for line in lines]

    def refused(self, mac, *words):
        done = subprocess.run([SIMULATED_MAC, *words], capture_output=True, env=mac.environment, check=False)
        self.assertEqual(1, done.returncode)
        return done.stdout.decode()

    def test_are_as_their_schemas_say(self):
        with Mac(WORLD) as mac:
            self.live(mac)
            self.check("trace", mac.tell("trace"))
            self.check("tree", mac.tell("tree"))
            self.check("value", mac.tell("value", "Notes", "Body"))
            self.check("value", self.refused(mac, "value", "Notes", "Nobody"))
            self.check("violations", mac.tell("violations"))
            self.check("wait", mac.tell("wait", "1ms"))
            self.check("wait", self.refused(mac, "wait", "until", "Notes", "shows", "nothing of that kind"))
            self.check("clock", mac.tell("clock"))
            self.check("clock", mac.tell("clock", "step"))
            self.check("clock", mac.tell("clock", "run", "0.5"))
            self.check("clock", self.refused(mac, "clock", "sideways"))
            self.viewed(mac)
            self.check("written", mac.tell("screenshot", mac.path("screen.png")))
            self.check("written", mac.tell("snapshot", mac.path("snapshot.world")))
            kinds = {entry["kind"] for entry in self.check("journal", mac.tell("journal"))}
            self.assertLessEqual({"event", "focus", "write", "landing", "action", "happening", "process", "reply",
                                  "request", "fault", "capture", "sharing", "cover", "input", "awake", "wait", "failure"}, kinds)
            self.assertIn(mac.environment["SIMULATED_MAC"],
                          [line["socket"] for line in self.check("list", mac.tell("list"))])
            self.check("done", mac.tell("stop"))
        self.recorded()
        self.checked()
        self.assertEqual(set(self.validators), self.used)

    def live(self, mac):
        """A life with whatever lines tell of."""
        self.check("state", mac.tell("state"))
        self.check("user-state", mac.tell("state", "--user"))
        mac.driver("bg-click", "Notes", "150", "100", CU_WINDOW="Inbox")
        mac.driver("ax-insert", "Notes", "Body", "-1", "-1", "end", "you\n")
        mac.driver("ax-press-exact", "Notes", "Send")
        self.check("fault", mac.tell("fault", "windowserver.session", "1", "before", "user", "key", "a"))
        mac.driver("bg-type", "Notes", "text")
        self.check("done", mac.tell("failed", "no answer\nexpected one"))
        self.check("done", mac.tell("user", "press", "shift"))
        service = Talk(mac, ["capture-service", mac.path("lock")])
        service.line()
        service.ask(op="open", session="n", app="Notes")
        service.ask(op="command", session="n", args=["bg-focus-hold", "Notes"])
        guard = Talk(mac, ["lock-guard", "Zentrove"])
        guard.line()
        held = self.check("state", mac.tell("state"))[0]
        for key in ("covers", "taps", "sharing", "focus", "processes", "clipboard"):
            self.assertTrue(held[key], key)
        mac.tell("user", "key", "a")
        service.process.kill()
        service.end()
        self.check("advance", mac.tell("advance", "6s"))
        self.assertFalse(self.check("state", mac.tell("state"))[0]["focus"][0]["by"]["alive"])
        guard.end()

    def checked(self):
        """What is wrong with worlds, and with a file that is not there."""
        with Mac(WORLD) as mac:
            self.check("check", mac.tell("check", "--json", mac.path("world")))
            Path(mac.path("bad")).write_bytes(b"app A pid 1\n  AXButon \"\xff\" vlaue 1\ninclude \"none\"\n")
            problems = self.check("check", self.refused(mac, "check", "--json", mac.path("bad")))[0]["problems"]
            self.assertEqual(["warning", "error", "error"], [each["severity"] for each in problems])
            self.check("check", self.refused(mac, "check", "--json", mac.path("nothing")))
    def viewed(self, mac):
        """A view tells where it is, and ends with the Mac or by itself."""
        with subprocess.Popen([SIMULATED_MAC, "view"], stdout=subprocess.PIPE, text=True, env=mac.environment) as view:
            url = self.check("view", view.stdout.read())[0]["url"]
            self.check("view", self.refused(mac, "view", url.split(":")[2].split("/")[0]))
            view.terminate()

    def recorded(self):
        """What a record holds besides the journal."""
        with Mac(WORLD) as mac:
            folder = mac.path("record")
            subprocess.run([SIMULATED_MAC, "run", "--virtual", "--seed", "7", "--record", folder, mac.path("world"), "--",
                            DRIVER, "bg-click", "Notes", "150", "100"],
                           check=True, capture_output=True, env=plain_environment())
            with open(f"{folder}/record.jsonl", encoding="utf-8") as file:
                lines = file.read().splitlines()
            own = [line for line in lines if json.loads(line)["kind"] in ("record", "picture", "end")]
            self.assertGreater(len(own), 3)
            self.check("record", "\n".join(own))
            self.check("journal", "\n".join(line for line in lines if line not in own))
            self.check("written", mac.tell("report", folder, "-o", mac.path("report.html")))


if __name__ == "__main__":
    unittest.main()
