"""Asks about applications through driver: what the fixture of tests/conformance shows after it was
operated. On Linux the same is asked of a simulated Mac, which must answer as it assumes.

    through_driver.py ASSUMPTION
"""
import json
import os
import sys
from pathlib import Path

sys.dont_write_bytecode = True
ROOT = Path(__file__).resolve().parent.parent.parent
sys.path[:0] = [str(ROOT / "tests" / "conformance"), str(ROOT / "tests" / "contract")]
import sides
from normalise import Layout
from support.answers import print_answer

LAYOUT = Layout(json.loads((ROOT / "tests/conformance/layout.json").read_text()))
FIXTURE = ROOT / "build" / "fixture" / "Driver Fixture.app"


class Fixture:
    """The application, operated through driver."""

    def __init__(self, desk, polls_max):
        self._desk, self._polls_max = desk, polls_max

    def run(self, command, *words, **environment):
        """The reply to a command. `@Name` is the middle of that control."""
        arguments = [part for word in words for part in
                     (LAYOUT.point(word[1:]) if word.startswith("@") else [word])]
        return self._desk.driver(command, sides.APPLICATION, *arguments, **environment).reply

    def front(self):
        return self._desk.driver("scene").reply.get("pid")

    def user_state(self):
        return self._desk.user_state()

    def record(self):
        """The words that the fixture has written down."""
        texts = self.run("ax-texts-at", "@Record").get("texts", [])
        found = [text for text in texts if text.startswith("record:")]
        return found[0].removesuffix(" Record").split()[1:] if found else []

    def focused(self, member):
        return self._of_element(self.run("ax-focused"), member)

    def value(self, place):
        return self._of_element(self.run("ax-at", place), "value")

    @staticmethod
    def _of_element(reply, member):
        return (reply.get("element") or {}).get(member)

    def settled(self, ask, wanted):
        """What `ask` gives: what is wanted, or the last after patience."""
        for _ in range(self._polls_max):
            if (seen := ask()) == wanted:
                return seen
            self._desk.wait_a_moment()
        return ask()


def idle_clicks(fixture):
    """Clicks where nothing is change nothing that pictures show."""
    changed = [fixture.run("bg-click", "@Margin").get("changed") for _ in range(10)]
    return changed == [False] * 10, {"changed": changed}


def click_in_background(fixture):
    before = fixture.user_state()
    reply = fixture.run("bg-click", "@Pad")
    record = fixture.settled(fixture.record, ["click"])
    stays = before == fixture.user_state()
    return (record == ["click"] and stays,
            {"reply": reply, "record": record, "user's state stays": stays})


def press_keeps_keyboard(fixture):
    fixture.run("ax-focus", "Name", "-1", "-1")
    fixture.run("ax-press-exact", "Press")
    record = fixture.settled(fixture.record, ["press"])
    label = fixture.focused("label")
    return record == ["press"] and label == "Name", {"record": record, "keyboard is in": label}


def disabled_press(fixture):
    reply = fixture.run("ax-press", "@Disabled")
    fixture.run("ax-press-exact", "Press")
    record = fixture.settled(fixture.record, ["press"])
    return (reply.get("axError") == -25204 and record == ["press"],
            {"reply": reply, "record": record})


def slider_steps(fixture):
    values = [fixture.run("ax-slider", "Volume", *words).get("value")
              for words in (("7",), ("increment",), ("decrement",), ("11",))]
    return values == [7, 8, 7, 10], {"7, one up, one down, 11 of 10": values}


def focus_at_end(fixture):
    fixture.run("ax-set-value", "@Name", "Ada")
    fixture.run("ax-focus", "Name", "-1", "-1")
    carets = fixture.settled(lambda: fixture.focused("caret"), 3), fixture.focused("selected")
    return carets == (3, 0), {"caret": carets[0], "selected": carets[1]}


def line_break_in_one_line(fixture):
    """It submits: the text stays without a break, and the rest follows what became of it."""
    fixture.run("ax-focus", "Name", "-1", "-1")
    fixture.run("bg-type", "a")
    fixture.run("bg-key", "return")
    wanted = "a"
    value = fixture.settled(lambda: fixture.value("@Name"), wanted)
    return value == wanted, {"value after a and return": value}


def keys_in_background(fixture):
    before = fixture.user_state()
    fixture.run("ax-focus", "Name", "-1", "-1")
    fixture.run("bg-type", "Ada")
    value = fixture.settled(lambda: fixture.focused("value"), "Ada")
    return (value == "Ada" and before == fixture.user_state(),
            {"value": value, "user's state stays": before == fixture.user_state()})


def long_text(fixture):
    family = "\U0001F468\u200D\U0001F469\u200D\U0001F467\u200D\U0001F466"
    text = "The quick brown fox " + family + " jumps over e\u0301 \U0001F1E9\U0001F1EA."
    fixture.run("ax-focus", "Notes", "-1", "-1")
    fixture.run("bg-type", text)
    value = fixture.settled(lambda: fixture.focused("value"), text)
    return value == text, {"typed": text, "value": value}


def window_that_becomes_key(fixture):
    fixture.run("bg-type", "London", CU_WINDOW="Second")
    value = fixture.settled(lambda: fixture.value("@Address"), "London")
    return value == "London", {"value of its first field": value}


def sheet_becomes_key(fixture):
    fixture.run("ax-press-exact", "Discard…")
    fixture.run("ax-focus", "Reason", "-1", "-1")
    fixture.run("bg-type", "none")
    value = fixture.settled(lambda: fixture.focused("value"), "none")
    return value == "none", {"value in the sheet": value}


def pop_up(fixture):
    closed = fixture.run("ax-popup-items").get("items")
    fixture.run("ax-press", "@Size")
    count = fixture.settled(lambda: len(fixture.run("ax-popup-items").get("items", [])), 3)
    fixture.run("ax-press-exact", "Large")
    value = fixture.settled(lambda: fixture.value("@Size"), "Large")
    return ((closed, count, value) == ([], 3, "Large"),
            {"items while closed": closed, "while open": count, "value after a choice": value})


def click_beside_menu(fixture):
    fixture.run("ax-press", "@Size")
    count = fixture.settled(lambda: len(fixture.run("ax-popup-items").get("items", [])), 3)
    reply = fixture.run("bg-click", "@Pad")
    items = fixture.settled(lambda: fixture.run("ax-popup-items").get("items"), [])
    record = fixture.record()
    return ((count, items, record) == (3, [], []),
            {"items while open": count, "reply": reply, "items afterwards": items,
             "record": record})


def pasted_files(fixture):
    if sys.platform == "darwin" and not os.environ.get("MAC_FACTS_HOSTED"):
        raise sides.Trouble("it would take the clipboard")
    fixture.run("ax-focus", "Name", "-1", "-1")
    reply = fixture.run("bg-paste-files", "/private/a file")
    value = fixture.settled(lambda: fixture.value("@Name"), "/private/a file")
    return value == "/private/a file", {"reply": reply, "value": value}


def unhide(fixture):
    front = fixture.front()
    reply = fixture.run("reveal")
    count = fixture.settled(lambda: len(fixture.run("windows").get("windows", [])), 2)
    return (count == 2 and front == fixture.front(),
            {"reply": reply, "windows": count, "front application stays": front == fixture.front()})


QUESTIONS = {
    "idle-clicks": idle_clicks,
    "click-in-background": click_in_background,
    "press-keeps-keyboard": press_keeps_keyboard,
    "disabled-press": disabled_press,
    "slider-steps": slider_steps,
    "focus-at-end": focus_at_end,
    "break-in-one-line": line_break_in_one_line,
    "keys-in-background": keys_in_background,
    "long-text": long_text,
    "key-window-keyboard": window_that_becomes_key,
    "sheet-becomes-key": sheet_becomes_key,
    "pop-up-menu": pop_up,
    "unhide-in-background": unhide,
    "click-beside-menu": click_beside_menu,
    "pasted-files": pasted_files,
}
STARTED_WITH = {"unhide-in-background": ["hidden"]}


def side():
    """This Mac, or a simulated one. Trouble when nothing could be asked."""
    if sys.platform != "darwin":
        return sides.Simulated(LAYOUT)
    mac = sides.RealMac(os.environ.get("MAC_FACTS_FIXTURE", FIXTURE))
    mac.check()
    return mac


def ask(assumption):
    """Verdict and evidence."""
    try:
        here = side()
        with here.start(STARTED_WITH.get(assumption, [])) as desk:
            holds, evidence = QUESTIONS[assumption](Fixture(desk, here.polls_max))
    except sides.Trouble as trouble:
        return "not shown", {"why": str(trouble)}
    return "confirmed" if holds else "refuted", evidence


if __name__ == "__main__":
    print_answer(ask)
