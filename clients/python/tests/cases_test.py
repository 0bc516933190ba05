"""The table of cases that the clients have in common, played with the plain and with the awaited functions."""
import asyncio
import inspect
import json
import re
import unittest

from support import ROOT, on_mac

from driver_client import App, AsyncApp, AsyncMac, CommandError, DriverError, Mac
from driver_client.contract import COMMANDS

CASES = json.loads((ROOT / "clients/cases.json").read_text(encoding="utf-8"))
STARTERS = {"watch-input": "watch_input", "lock-guard": "lock_guard", "keep-awake": "keep_awake"}


def snake(name):
    return re.sub(r"(?<=[a-z])([A-Z])", lambda found: "_" + found[1].lower(), name).replace("-", "_")


def by_name(given):
    return {snake(name): value for name, value in (given or {}).items()}


async def value_of(told):
    return await told if inspect.isawaitable(told) else told


class Player:
    """Plays the steps of a case with a Mac or an AsyncMac."""

    def __init__(self, simulated, mac):
        self.simulated = simulated
        self.mac = mac
        self.sessions = {}

    def call(self, mac, step):
        given = by_name({**step.get("given", {}), **({"scope": step["scope"]} if "scope" in step else {})})
        if "method" not in step:
            return getattr(mac, snake(step["command"]))(**given)
        app = mac.app(step["app"]) if "app" in step else self.sessions[step["session"]].app
        return getattr(app, snake(step["method"]))(**given)

    async def in_service(self, step):
        what = step["service"]
        if what == "start":
            self.service = await value_of(self.mac.start_capture_service(self.simulated.path("lock")))
            return None
        if what == "open":
            session = await value_of(self.service.open(step["app"], scope=step.get("scope")))
            self.sessions[step["session"]] = session
            return session.shared
        if what == "beside":
            return await value_of(self.call(self.service.mac, step))
        if what == "end":
            return await value_of(self.service.end())
        return await value_of(getattr(self.sessions[step["session"]], what)(**by_name(step.get("given"))))

    def until(self, step):
        def is_so(reply):
            for key in step["key"]:
                reply = reply[key]
            return reply == step["is"]

        async def ask():
            return is_so(await self.call(self.mac, step["until"]))

        asks = ask if isinstance(self.mac, AsyncMac) else lambda: is_so(self.call(self.mac, step["until"]))
        more = {"timeout": step["timeoutMs"] / 1000} if "timeoutMs" in step else {}
        return self.mac.until(asks, **more)

    async def next_line(self):
        if isinstance(self.mac, AsyncMac):
            async for line in self.lines:
                return line
            return "end"
        return next(self.lines, "end")

    async def play(self, step):
        if "tell" in step:
            self.simulated.tell(*step["tell"])
        elif "service" in step:
            return await self.in_service(step)
        elif "until" in step:
            return await value_of(self.until(step))
        elif "start" in step:
            self.lines = getattr(self.mac, STARTERS[step["start"]])(**by_name(step.get("given")))
        elif "line" in step:
            return await self.next_line()
        elif "say" in step:
            self.lines.say(step["say"])
        elif "end" in step:
            return await value_of(self.lines.end())
        else:
            mac = self.mac.having(capture_pid=step["capturePid"]) if "capturePid" in step else self.mac
            return await value_of(self.call(mac, step))
        return None

    async def told(self, step):
        """What a step gives, or how it fails, as the table has it."""
        try:
            gives = await self.play(step)
        except DriverError as error:
            own = {}
            if isinstance(error, CommandError):
                own = {"id": error.id, "parts": error.parts, "reply": error.reply}
            return {"fails": {"as": type(error).__name__, **own}}
        return {} if gives is None else {"gives": gives}


class Cases(unittest.TestCase):
    maxDiff = None

    async def play(self, case, is_async):
        world = case.get("before", "") + (ROOT / case["world"]).read_text(encoding="utf-8") + case.get("after", "")
        with on_mac(world) as simulated:
            player = Player(simulated, AsyncMac(simulated.mac) if is_async else simulated.mac)
            for step in case["steps"]:
                wanted = {key: step[key] for key in ("gives", "fails") if key in step}
                self.assertEqual(wanted, await player.told(step), step)
            if case.get("settles"):
                simulated.settle()

    def test_of_the_plain_functions(self):
        for case in CASES:
            with self.subTest(case=case["name"]):
                asyncio.run(self.play(case, False))

    def test_of_the_awaited_functions(self):
        for case in CASES:
            with self.subTest(case=case["name"]):
                asyncio.run(self.play(case, True))

    def test_call_every_function(self):
        steps = [step.get("until", step) for case in CASES for step in case["steps"]]
        self.assertEqual(set(COMMANDS), {step["command"] for step in steps if "command" in step})
        methods = {snake(step["method"]) for step in steps if "method" in step}
        for kind in (App, AsyncApp):
            self.assertEqual(methods, {name for name in vars(kind) if not name.startswith("_")})

    def test_have_the_names_that_the_page_of_commands_says(self):
        page = (ROOT / "docs/COMMANDS.md").read_text(encoding="utf-8")
        rows = [[cell.strip("` ").split("`")[0] for cell in line.split("|")[1:-1]]
                for line in page.split("begin: names in the clients")[1].split("<!-- end")[0].splitlines()[4:]]
        rows = [row for row in rows if row]
        self.assertLess(set(COMMANDS), {row[0] for row in rows})
        for _, name, _, method, _ in rows:
            for kind in (Mac, AsyncMac):
                self.assertTrue(callable(getattr(kind, name)), name)
        methods = {row[3] for row in rows if row[3]}
        self.assertEqual(methods, {name for name in vars(App) if not name.startswith("_")})


if __name__ == "__main__":
    unittest.main()
