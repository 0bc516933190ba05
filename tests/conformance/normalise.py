"""Makes replies from different Macs comparable.

What differs between two Macs, or between a Mac and a simulated one, although both are right, is
replaced by what it stands for. Everything else is compared as it is. Each entry of REASONS is one
such replacement, with its reason. Beside these there is only what a step itself lists as "without",
with the reason there.
"""

REASONS = {
    "process ids": "the system gives them: the fixture's is 'fixture', the capture service's "
                   "'service', any other 'another process'",
    "window numbers": "the system gives them: a window of the fixture's is called by its title",
    "menus": "an open menu lies where the system puts it: its items have no frames",
    "frames of elements": "controls are drawn larger or smaller by each version of macOS: a frame "
                          "is the slot of layout.json that holds its centre, and stays what it is "
                          "when none does. Frames of windows are compared as they are",
    "title bars": "the close button and its neighbours, their names and their order are the "
                  "system's: elements in a title bar are left out",
    "order of elements": "AppKit orders siblings as it likes: elements are listed in the order of "
                         "layout.json, the buttons of a dialog by the alphabet",
    "the user": "which application is in front, where the pointer is, when the user last did "
                "something, and what the user does while the input is watched, is the user's own",
    "displays": "a Mac has as many as it has: covered ones are counted as 'all'",
    "standard error": "on a Mac the system's frameworks write there as they like; on a simulated "
                      "one nothing may be written",
    "folder": "files are written into a folder of the run's own, which is 'FOLDER'",
    "opening": "a press that opens a menu may be answered only when the menu is closed again: "
               "-25204 counts as pressed, in steps that say 'opens'",
}

PROCESS_KEYS = ("pid", "targetPid", "focusPid")
WINDOW_KEYS = ("window", "windowId", "focusWindow", "id")
FRAME_KEYS = {"x", "y", "width", "height"}
TITLE_BAR_HEIGHT = 40
OPENED = ({"ok": True, "axError": 0}, {"ok": False, "axError": -25204})


class Layout:
    """Where things are in the fixture, in global points."""

    def __init__(self, content):
        self.windows = content["windows"]
        self.slots = content["slots"]
        self._order = {name: number for number, name in enumerate([*self.windows, *self.slots])}

    def point(self, name):
        """The middle of a slot, as two words."""
        x, y, width, height = self.slots[name]
        return [str(x + width // 2), str(y + height // 2)]

    def name_of(self, frame):
        """The window with this frame, or the slot that holds its centre; the frame itself for
        what is in neither."""
        sides = [frame["x"], frame["y"], frame["width"], frame["height"]]
        for name, window in self.windows.items():
            if sides == window:
                return f"window {name}"
        x, y = frame["x"] + frame["width"] / 2, frame["y"] + frame["height"] / 2
        around = [(abs(left + width / 2 - x) + abs(top + height / 2 - y), name)
                  for name, (left, top, width, height) in self.slots.items()
                  if left <= x < left + width and top <= y < top + height]
        return min(around)[1] if around else frame

    def is_in_title_bar(self, frame):
        return any(left <= frame["x"] and frame["x"] + frame["width"] <= left + width and
                   top <= frame["y"] and frame["y"] + frame["height"] <= top + TITLE_BAR_HEIGHT
                   for left, top, width, _ in self.windows.values())

    def place_of(self, element):
        """Where an element that is described by its slot stands among others."""
        name = element.get("frame")
        known = isinstance(name, str)
        return (self._order.get(name.replace("window ", ""), -1) if known else len(self._order),
                element.get("depth", 0), element["role"])


class Normaliser:
    """Replaces what REASONS lists. `titles` gives the fixture's windows that are known to the
    system: their titles by their numbers."""

    def __init__(self, layout, folder, titles):
        self.layout = layout
        self.processes = {}
        self._folder = folder
        self._titles = titles
        self._windows = {}

    def reply(self, command, reply, opens=False):
        """The reply of a command, or a line of it."""
        if opens and {key: reply.get(key) for key in ("ok", "axError")} in OPENED:
            reply = {**reply, "ok": "pressed", "axError": "pressed"}
        if command == "scene":
            return {key: "the user's" if key != "ok" else value for key, value in reply.items()}
        return self._value(None, reply)

    def _value(self, key, value):
        if isinstance(value, dict):
            if key == "frame" and set(value) == FRAME_KEYS:
                return self.layout.name_of(value)
            if key == "frames":
                return {text: self.layout.name_of(frame) for text, frame in value.items()}
            return {name: self._value(name, inner) for name, inner in value.items()
                    if name != "frame" or value.get("role") != "AXMenuItem"}
        if isinstance(value, list):
            return self._list(key, value)
        if isinstance(value, str):
            return value.replace(self._folder, "FOLDER")
        return self._number(key, value)

    def _list(self, key, values):
        if key == "buttons":
            return sorted(values)
        if key not in ("elements", "modals"):
            return [self._value(None, value) for value in values]
        inside = [value for value in values
                  if "frame" not in value or not self.layout.is_in_title_bar(value["frame"])]
        return sorted((self._value(None, value) for value in inside), key=self.layout.place_of)

    def _number(self, key, value):
        if isinstance(value, bool) or not isinstance(value, (int, float)):
            return value
        if key in PROCESS_KEYS:
            return self.processes.get(value, "another process")
        if key in WINDOW_KEYS:
            return self._window(value)
        return {"idleMs": "the user's", "covers": "all"}.get(key, value)

    def _window(self, number):
        # A window keeps the title by which it was met first.
        if number not in self._windows:
            for other, title in self._titles().items():
                self._windows.setdefault(other, title or "untitled")
        return self._windows.get(number, "another window")
