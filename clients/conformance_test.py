"""The scenarios of tests/conformance, played through each client: the stored replies are what driver says alone.

A client does not tell with which status a run has ended, and so that is not compared. What a client cannot be made to
say, since it gives a command the arguments that it needs, is played without it, and counted.
"""
import json
import os
import subprocess
import sys
import unittest
from pathlib import Path
from unittest import mock

sys.dont_write_bytecode = True
HERE = Path(__file__).resolve().parent
ROOT = HERE.parent
sys.path[:0] = [str(ROOT / "tests/conformance"), str(ROOT / "tests/contract"), str(HERE / "python")]

import conformance  # noqa: E402
import sides  # noqa: E402
from driver_client.contract import COMMANDS  # noqa: E402
from mac import DRIVER, SECONDS_MAX, plain_environment  # noqa: E402
from normalise import Layout  # noqa: E402

CLIENTS = {"typescript": ["node", HERE / "typescript/test/conformance_client.mjs"],
           "python": [sys.executable, HERE / "python/tests/conformance_client.py"]}
# Steps that no client can be made to say: too few words, words that an argument does not have, commands that are
# always refused, and a signal to what keeps going.
WITHOUT = ["ax-press", "ax-slider", "bg-click", "bg-drag", "bg-focus-hold", "focus-release", "bg-wink", "",
           "watch-input", "capture-service", "capture-service", "capture-service", "keep-awake"]


def arguments_of(words):
    """The arguments by name; None for what no client says so."""
    command, *rest = words or [""]
    if command not in COMMANDS:
        return None
    schema = json.loads((ROOT / f"packaging/contract/arguments/{command}.json").read_text())
    given = {}
    for row in COMMANDS[command]["arguments"]:
        if not rest:
            if row["required"]:
                return None
            break
        if row["repeats"]:
            given[row["name"]], rest = rest, []
        else:
            word = rest.pop(0)
            described = schema["properties"][row["name"]]
            value = json.loads(word) if row["json"] else value_of(described, word)
            if isinstance(value, str) and value not in row.get("words", [value]):
                return None
            given[row["name"]] = value
    return None if rest else given


def value_of(schema, word):
    """A number where one is meant, and the word is one."""
    kinds = {one.get("type") for one in [schema, *schema.get("anyOf", [])]}
    if not kinds & {"number", "integer"}:
        return word
    try:
        return int(word)
    except ValueError:
        pass
    try:
        return float(word)
    except ValueError:
        return word


class Client:
    """A process that runs commands through a client, each in the environment that it is given."""

    def __init__(self, program):
        environment = {**plain_environment(), "PYTHONPATH": str(HERE / "python")}
        self.process = subprocess.Popen([str(word) for word in program], env=environment,
                                        stdin=subprocess.PIPE, stdout=subprocess.PIPE, text=True)

    def told(self, **deed):
        self.process.stdin.write(json.dumps(deed) + "\n")
        self.process.stdin.flush()
        answer = json.loads(self.process.stdout.readline())
        if "error" in answer:
            raise OSError(answer["error"])
        return answer["gives"]

    def end(self):
        self.process.communicate(timeout=SECONDS_MAX)


class Reply:
    """What a client gives, as the run of driver that it was."""

    errors = ""
    status = 0

    def __init__(self, reply):
        self.reply = reply
        self.lines = [json.dumps(reply)]


class Talk:
    """A conversation through a client."""

    def __init__(self, client, words, environment):
        self._client = client
        self._first = client.told(do="talk", command=words[0], words=words[1:], environment=environment)
        self.process = mock.Mock(poll=lambda: 0, terminate=lambda: None)

    def line(self):
        return self._first

    def ask(self, **request):
        return self._client.told(do="ask", request=request)

    def end(self):
        return self._client.told(do="end"), 0


class ClientDesk(sides.SimulatedDesk):
    """A simulated Mac that is operated through a client."""

    def __init__(self, layout, options, client, without):
        super().__init__(layout, options)
        self._client = client
        self._client_environment = {**self.environment, "PATH": f"{Path(DRIVER).parent}:{os.environ['PATH']}"}
        self._without = without

    def driver(self, *words, **environment):
        given = arguments_of(words)
        if given is None:
            self._without.append(words[0] if words else "")
            return super().driver(*words, **environment)
        options = {"scope": environment.get("CU_WINDOW"), "capturePid": environment.get("CU_CAPTURE_PID")}
        given_options = {name: value for name, value in options.items() if value is not None}
        return Reply(self._client.told(do="run", command=words[0], given=given,
                                       environment=self._client_environment, **given_options))

    def talk(self, words, end):
        if end != "input":
            self._without.append(words[0])
            return super().talk(words, end)
        return Talk(self._client, words, self._client_environment)


class ThroughClient(sides.Simulated):
    """A Mac of its own for each scenario, operated through one client."""

    def __init__(self, layout, client):
        super().__init__(layout)
        self._client = client
        self.without = []

    def start(self, options):
        return ClientDesk(self._layout, options, self._client, self.without)


def compared(entries):
    return [{key: value for key, value in entry.items() if key != "status"} for entry in entries]


class Conformance(unittest.TestCase):
    maxDiff = None

    def test_is_the_same_through_each_client(self):
        layout = Layout(conformance.read(conformance.HERE / "layout.json"))
        scenarios = conformance.read(conformance.HERE / "scenarios.json")
        stored = conformance.Stored(conformance.HERE / "replies")
        for name, program in CLIENTS.items():
            client = Client(program)
            side = ThroughClient(layout, client)
            for scenario in scenarios:
                with self.subTest(client=name, scenario=scenario["name"]):
                    expected = stored.entries(scenario["name"])
                    entries, faults = conformance.play(side, layout, scenario, expected)
                    self.assertEqual((compared(expected), []), (compared(entries), faults))
            client.end()
            self.assertEqual(sorted(WITHOUT), sorted(side.without), name)


if __name__ == "__main__":
    os.chdir(ROOT)
    unittest.main()
