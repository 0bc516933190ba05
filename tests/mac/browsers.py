"""Asks about browsers through driver: a page of its own is opened in the background, in a profile
of its own where the browser has such, and is read and operated. On Linux a simulated Mac is asked,
with the world beside this file.

    browsers.py ASSUMPTION
"""
import os
import signal
import subprocess
import sys
import tempfile
import time
from pathlib import Path

sys.dont_write_bytecode = True
HERE = Path(__file__).resolve().parent
sys.path.insert(0, str(HERE.parent / "contract"))
from mac import Mac, plain_environment, run_driver
from support.answers import print_answer

CHROME = "com.google.Chrome"
SAFARI = "com.apple.Safari"
NAMES = {CHROME: "Google Chrome", SAFARI: "Safari"}
PAGE = """<!DOCTYPE html><meta charset="utf-8"><title>Probe</title>
<p><a href="#here">Link</a></p>
<p><textarea aria-label="Text" style="width: 300px; height: 40px"></textarea></p>
<div contenteditable role="textbox" aria-label="Composer"><p>first</p><p>second</p></div>
<p><button style="width: 300px; height: 100px"
  onclick="document.title = 'pressed ' + event.detail">Press</button></p>
"""
POLLS_MAX = 60
POLL_SECONDS = 0.5


class Trouble(Exception):
    """Why nothing could be asked."""


class Desk:
    """What both sides have alike."""

    def run(self, command, *words):
        return self.driver(command, *words).reply

    def elements(self, browser):
        return self.run("ax-dump", browser).get("elements", [])

    def element(self, browser, role, label):
        found = [each for each in self.elements(browser)
                 if (each.get("role"), each.get("label")) == (role, label)]
        return found[0] if found else {}

    def titles(self, browser):
        return [window.get("title") or "" for window in
                self.run("windows", browser).get("windows", [])]

    def awaited(self, ask):
        """The first answer that is true, or the last one."""
        for _ in range(POLLS_MAX):
            answer = ask()
            if answer:
                break
            self.pause()
        return answer


class SimulatedDesk(Mac, Desk):
    def __init__(self):
        super().__init__(HERE / "browsers.world")

    def open(self, browser):
        """It is open."""

    def pause(self):
        self.tell("advance", f"{int(POLL_SECONDS * 1000)}ms")


class MacDesk(Desk):
    def __init__(self):
        self._folder = tempfile.TemporaryDirectory(prefix="browsers-")
        self._page = Path(self._folder.name) / "page.html"
        self._page.write_text(PAGE)
        self._opened = []

    def __enter__(self):
        return self

    def __exit__(self, *_):
        for pid in self._opened:
            os.kill(pid, signal.SIGTERM)
        self._folder.cleanup()

    def driver(self, *words):
        return run_driver(words, plain_environment())

    def open(self, browser):
        if self.run("windows", browser).get("running"):
            raise Trouble(f"{NAMES[browser]} runs already")
        own = ["-n", "-a", NAMES[browser], "--args", f"--user-data-dir={self._folder.name}/profile",
               "--no-first-run", "--no-default-browser-check", self._page.as_uri()]
        words = own if browser == CHROME else ["-a", NAMES[browser], str(self._page)]
        if subprocess.run(["open", "-g", *words], check=False).returncode != 0:
            raise Trouble(f"{NAMES[browser]} cannot be opened")
        shown = self.awaited(lambda: any("Probe" in title for title in self.titles(browser)))
        reply = self.run("windows", browser)
        if reply.get("running"):
            self._opened.append(reply["pid"])
        if not shown:
            raise Trouble(f"{NAMES[browser]} does not show the page: {reply}")

    def pause(self):
        time.sleep(POLL_SECONDS)


def page_of(desk, browser):
    """The roles in a browser, once its page is among them."""
    desk.awaited(lambda: desk.element(browser, "AXLink", "Link"))
    return sorted({each["role"] for each in desk.elements(browser) if each.get("role")})


def names(desk):
    roles = {}
    for browser in NAMES:
        desk.open(browser)
        roles[NAMES[browser]] = page_of(desk, browser)
    return all({"AXWebArea", "AXLink"} <= set(found) for found in roles.values()), roles


def tree(desk):
    desk.open(CHROME)
    first = len(desk.elements(CHROME))
    link = desk.awaited(lambda: desk.element(CHROME, "AXLink", "Link"))
    count = len(desk.elements(CHROME))
    return bool(link) and count > first, {"elements at the first look": first,
                                          "when the page is there": count}


def click(desk):
    desk.open(CHROME)
    front = desk.run("scene").get("pid")
    frame = (desk.awaited(lambda: desk.element(CHROME, "AXButton", "Press")) or {}).get("frame")
    if not frame:
        raise Trouble("the page's button is not there")
    reply = desk.run("bg-click", CHROME, str(frame["x"] + frame["width"] / 2),
                     str(frame["y"] + frame["height"] / 2))
    pressed = desk.awaited(lambda: [title for title in desk.titles(CHROME) if "pressed" in title])
    stays = front == desk.run("scene").get("pid")
    holds = len(pressed) == 1 and "pressed 1" in pressed[0] and stays
    return holds, {"reply": reply, "title": pressed, "front application stays": stays}


def keys(desk):
    desk.open(CHROME)
    front = desk.run("scene").get("pid")
    desk.awaited(lambda: desk.element(CHROME, "AXTextArea", "Text"))
    focus = desk.run("ax-focus", CHROME, "Text", "-1", "-1")
    reply = desk.run("bg-type", CHROME, "typed")
    desk.awaited(lambda: desk.element(CHROME, "AXTextArea", "Text").get("value") == "typed")
    value = desk.element(CHROME, "AXTextArea", "Text").get("value")
    stays = front == desk.run("scene").get("pid")
    return value == "typed" and stays, {"focus": focus.get("ok"), "reply": reply, "value": value,
                                        "front application stays": stays}


def composer(desk):
    """Each line of the composer is an element."""
    desk.open(CHROME)
    desk.awaited(lambda: desk.element(CHROME, "AXLink", "Link"))
    lines = [text for each in desk.elements(CHROME) if each.get("role") == "AXStaticText"
             if (text := each.get("value") or each.get("label")) in ("first", "second")]
    return lines == ["first", "second"], {"static texts": lines}


QUESTIONS = {"browser-names": names, "chromium-tree": tree, "chromium-click": click,
             "chromium-keys": keys, "composer-lines": composer}


def ask(assumption):
    """Verdict and evidence."""
    try:
        with MacDesk() if sys.platform == "darwin" else SimulatedDesk() as desk:
            holds, evidence = QUESTIONS[assumption](desk)
    except Trouble as trouble:
        return "not shown", {"why": str(trouble)}
    return "confirmed" if holds else "refuted", evidence


if __name__ == "__main__":
    print_answer(ask)
