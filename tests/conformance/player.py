"""Plays a scenario on one side, and gives what was said in it."""
import json
import shlex
import signal
import struct
import threading

from mac import SECONDS_MAX
from normalise import Normaliser
from sides import APPLICATION, APPLICATION_NAME

# Commands that change nothing: they may be asked again.
READING = {"ax-list", "ax-dump", "ax-find-text", "ax-texts-at", "ax-at", "ax-match", "ax-focused",
           "ax-modal", "ax-popup-items", "ax-menubar", "windows", "scene", "session", "permissions"}
SIGNALS = {"TERM": signal.SIGTERM, "KILL": signal.SIGKILL}
PNG_SIGNATURE = b"\x89PNG\r\n\x1a\n"


def picture_size(path):
    """Width and height of a picture in PNG, in pixels."""
    with open(path, "rb") as file:
        head = file.read(24)
    if head[:8] != PNG_SIGNATURE or head[12:16] != b"IHDR":
        raise ValueError(f"{path} is no picture")
    return struct.unpack(">II", head[16:24])


def picture_fits(path, rect):
    """Whether the picture shows exactly the area, in a whole number of pixels for a point."""
    width, height = picture_size(path)
    scale = width / rect["width"]
    return scale in (1, 2, 3) and height == rect["height"] * scale


class Player:
    """One scenario on one side. `expected` are the stored entries, or None: what reads is asked
    again until it says what is stored, as often as the side's patience lasts."""

    def __init__(self, side, desk, layout, expected):
        self._side = side
        self._desk = desk
        self._layout = layout
        self._expected = expected
        self._normaliser = Normaliser(layout, desk.folder.name, desk.titles)
        self._normaliser.processes[desk.windows()["pid"]] = "fixture"
        self._entries = []

    def play(self, scenario):
        """The entries: a step, the status where a run has ended, and the reply."""
        for step in scenario["steps"]:
            if isinstance(step, str):
                step = {"run": step}
            if "talk" in step:
                self._talk(step)
            else:
                self._run(step)
        return self._entries

    def _words(self, line):
        """A command line with what stands for something of this Mac in its place."""
        words = []
        for word in shlex.split(line):
            if word.startswith("@"):
                words += self._layout.point(word[1:])
            elif word.startswith("#"):
                words.append(str(self._number(word[1:])))
            else:
                words.append(self._filled(word))
        return words

    def _number(self, name):
        """The number of the process, or of the window, that replies call by this name."""
        pairs = [*self._desk.titles().items(), *self._normaliser.processes.items()]
        return {known: number for number, known in pairs}[name]

    def _filled(self, text):
        for name, value in (("FIXTURE-PID", f"pid:{self._number('fixture')}"),
                            ("FIXTURE-NAME", APPLICATION_NAME), ("FIXTURE", APPLICATION),
                            ("FOLDER", self._desk.folder.name)):
            text = text.replace(name, value)
        return text

    def _run(self, step, **environment):
        words = self._words(step["run"])
        environment.update(step.get("environment", {}))
        is_reading = bool(words) and words[0] in READING
        stored = self._stored()
        entry = self._entry(step, words, self._desk.driver(*words, **environment))
        for _ in range(self._side.polls_max if is_reading else 0):
            if entry == stored:
                break
            self._desk.wait_a_moment()
            entry = self._entry(step, words, self._desk.driver(*words, **environment))
        self._entries.append(entry)

    def _stored(self):
        place = len(self._entries)
        known = self._expected is not None and place < len(self._expected)
        return self._expected[place] if known else None

    def _entry(self, step, words, run):
        entry = {"step": step["run"], "status": run.status}
        if "environment" in step:
            entry["environment"] = step["environment"]
        command = words[0] if words else ""
        try:
            if not isinstance(run.reply, dict):
                raise ValueError("the reply is no object")
            reply = self._normaliser.reply(command, run.reply, step.get("opens", False))
            entry["reply"] = {key: "not compared" if key in step.get("without", {}) else value
                              for key, value in reply.items()}
            if command == "capture" and run.reply.get("rect"):
                entry["pictureFits"] = picture_fits(words[2], run.reply["rect"])
        except (ValueError, IndexError, OSError) as error:
            entry["fault"] = f"{error}; it wrote {run.lines}"
        if len(run.lines) != 1:
            entry["lines"] = len(run.lines)
        if run.errors and self._side.is_quiet:
            entry["errors"] = run.errors
        return entry

    def _talk(self, step):
        words = self._words(step["talk"])
        talk = self._desk.talk(words, step["end"])
        # One that says nothing must not hold up the rest. SIGTERM lets a service give back focus.
        limit = threading.Timer(SECONDS_MAX, talk.process.terminate)
        limit.start()
        try:
            self._converse(step, words[0], talk)
        finally:
            limit.cancel()
            if talk.process.poll() is None:
                talk.process.terminate()
                talk.process.communicate(timeout=SECONDS_MAX)

    def _converse(self, step, command, talk):
        first = talk.line()
        beside = {}
        if command == "capture-service":
            self._normaliser.processes[first["pid"]] = "service"
            beside["CU_CAPTURE_PID"] = str(first["pid"])
        self._heard(step["talk"], command, first)
        for said in step.get("say", []):
            if "run" in said:
                self._run(said, **beside)
            else:
                self._heard(json.dumps(said), command, talk.ask(**self._request(said)))
        if step["end"] in SIGNALS:
            talk.process.send_signal(SIGNALS[step["end"]])
            talk.process.wait(timeout=SECONDS_MAX)
        rest, status = talk.end()
        lines = [self._normaliser.reply(command, line) for line in rest if "input" not in line]
        self._entries.append({"step": f"end: {step['end']}", "status": status, "reply": lines})

    def _request(self, said):
        """A request with what stands for something of this Mac in its place."""
        request = {key: self._filled(value) for key, value in said.items() if key != "args"}
        if "args" in said:
            request["args"] = self._words(shlex.join(said["args"]))
        return request

    def _heard(self, step, command, reply):
        self._entries.append({"step": step, "reply": self._normaliser.reply(command, reply)})
