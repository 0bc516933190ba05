"""Which planted mistakes soak finds by itself: the table, and what is tried of it."""
import re

from source_files import ROOT

PATH = ROOT / "tests/soak/found_mistakes.txt"

HEAD = """\
Which planted mistakes soak finds by itself. scripts/planted-mistakes --by-soak writes this: the mistake, and
in which case it showed, counted from seed 1 on, or "not in" so many. The reasons why not are written by hand.
Mistakes in sources that soak does not contain come first, by their folders.
"""

UNKNOWN = "not looked into"

# Mistakes in sources whose paths begin so are beyond soak.
BEYOND = {
    "platform/macos/": "soak has no adapters for macOS; their own tests have",
    "simulator/companion/": "soak has no programs around the simulated Mac: no server, record, report, import or check",
    "simulator/view/": "soak has no view",
}

# One that is found early may be found somewhat later when the generator changes.
LEAST_CASES = 300

KEYS = ("bg-key", "bg-type", "bg-paste-files")
POINTER = ("bg-click", "bg-scroll", "bg-move", "bg-drag")
LIVING = ("capture-service", "lock-guard", "watch-input", "keep-awake")

# Which commands run what the sources hold whose paths begin so. Cases without one of them need not be played
# to find a mistake there. What is not here may be run by any command.
RUN_BY = {
    "accessibility/menu": ("ax-menu", "ax-menubar", "ax-popup-items"),
    "accessibility/modal": ("ax-modal", "ax-modal-press"),
    "accessibility/press_child": ("ax-press-child",),
    "accessibility/press_exact": ("ax-press-exact",),
    "accessibility/reveal": ("reveal",),
    "accessibility/slider": ("ax-slider",),
    "accessibility/text_entry": ("ax-insert", "ax-set-value"),
    "capture/service": ("capture-service",),
    "capture/background": ("capture-service",),
    "capture/choice": ("capture", "capture-service"),
    "guard/display_hold": ("keep-awake", "lock-guard"),
    "guard/screen_lock": ("lock-now", "lock-guard"),
    "guard/": ("lock-guard",),
    "input/background_text": ("bg-type",),
    "input/input_report": ("watch-input",),
    "input/key": KEYS,
    "input/paste": ("bg-paste-files",),
    "input/pointer": (*POINTER, "capture-service"),
    "input/target_window": (*POINTER, "capture-service"),
    "input/watcher": ("watch-input",),
    "input/working_tap": ("watch-input", "lock-guard"),
}


def commands_that_run(file):
    """Empty when any may."""
    begun = [begin for begin in RUN_BY if file.startswith(begin)]
    return RUN_BY[max(begun, key=len)] if begun else ()


def folder_beyond(file):
    """The beginning by which a source is beyond soak; None when it is not."""
    return next((begin for begin in BEYOND if file.startswith(begin)), None)


class SoakTable:
    """What is known of mistakes by their names: ("in", cases) or ("not in", cases, reason)."""

    def __init__(self):
        self.known = {}
        text = PATH.read_text() if PATH.exists() else ""
        for name, cases in re.findall(r"^(\S+): in (\d+)$", text, re.M):
            self.known[name] = ("in", int(cases))
        for name, cases, reason in re.findall(r"^(\S+): not in (\d+), (.*)$", text, re.M):
            self.known[name] = ("not in", int(cases), reason)

    def note(self, name, found, cases):
        if found is not None:
            self.known[name] = ("in", found)
        else:
            old = self.known.get(name)
            reason = old[2] if old is not None and old[0] == "not in" else UNKNOWN
            self.known[name] = ("not in", cases, reason)

    def write(self, mistakes):
        """In the order of the mistakes; what is no more goes."""
        lines = []
        for begin, reason in BEYOND.items():
            count = sum(folder_beyond(each["file"]) == begin for each in mistakes)
            lines.append(f"{begin}: {count} mistakes, {reason}")
        lines.append("")
        for name in (each["name"] for each in mistakes if folder_beyond(each["file"]) is None):
            entry = self.known.get(name)
            if entry is not None:
                lines.append(f"{name}: {entry[0]} " + ", ".join(str(part) for part in entry[1:]))
        PATH.write_text(HEAD + "\n" + "\n".join(lines) + "\n")

    def gaps(self, mistakes):
        """The names of those that are neither found nor explained."""
        return [each["name"] for each in mistakes
                if folder_beyond(each["file"]) is None and self.known.get(each["name"], (UNKNOWN,))[-1] == UNKNOWN]

    def cases_allowed(self, name):
        """Ten times as many as it took; None for one that was not found, or not tried."""
        entry = self.known.get(name)
        return max(10 * entry[1], LEAST_CASES) if entry is not None and entry[0] == "in" else None
