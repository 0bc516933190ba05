"""The command table and the error catalogue, as the generators and the tests read them."""
import functools
import json
import os
import re
import subprocess
import sys
from pathlib import Path
from typing import NamedTuple

ROOT = Path(__file__).resolve().parent.parent.parent
CONTRACT = ROOT / "packaging" / "contract"
BUILD = Path(os.environ.get("BUILD_FOLDER", ROOT / "build" / "release"))


class Command(NamedTuple):
    """One row, as the built program tells it."""
    name: str
    grammar: str
    fewest: int
    most: int | None
    has_own_failure: bool
    acts_on_input: str
    lives_on: bool
    is_shared: bool

    @property
    def usage(self):
        return f"usage: {self.name} {self.grammar}".rstrip()

    @property
    def checks_count(self):
        """Whether a wrong number of arguments is answered with the usage text."""
        return not self.has_own_failure and (self.fewest > 0 or self.most is not None)


@functools.cache
def commands():
    """All commands, in the order of the table."""
    program = BUILD / "command-table"
    if not program.exists():
        sys.exit(f"{program} is not built: cmake --preset release && "
                 "cmake --build --preset release --target command-table")
    lines = subprocess.run([program], capture_output=True, text=True, check=True).stdout
    return [Command(**json.loads(line)) for line in lines.splitlines()]


def load(name):
    return json.loads((CONTRACT / name).read_text())


def pattern_of(message):
    """The regular expression of a message with {placeholders}, as JSON Schema wants it."""
    pieces = re.split(r"\{[^}]*\}", message)
    return "^" + r"[\s\S]*".join(escaped(piece) for piece in pieces) + "$"


def groups_of(message):
    """The same with a group for each placeholder."""
    return pattern_of(message).replace(r"[\s\S]*", r"([\s\S]*)")


def parts_of(message):
    """The names of the placeholders, in order."""
    return re.findall(r"\{([^}]*)\}", message)


def pascal(words):
    """ax-press-exact as AxPressExact."""
    return "".join(word[0].upper() + word[1:] for word in re.split(r"[ -]", words))


def escaped(text):
    return re.sub(r"([\\^$.|?*+()\[\]{}])", r"\\\1", text)


def whole_message(entry):
    """The message as a caller sees it, with what it stands in."""
    return entry.get("inside", "{message}").replace("{message}", entry["message"])


@functools.cache
def errors():
    return load("errors.json")["errors"]


def without_text():
    """The failures that no text of driver names: the platform's, and those that clients tell by themselves."""
    told = load("errors.json")
    return told["without_text"] + told["clients"]


@functools.cache
def groups():
    """The catalogue's groups of commands. Some are what the table says, whatever the file has."""
    told = load("errors.json")["groups"]
    everything = commands()
    told["@once"] = [one.name for one in everything if not one.lives_on]
    told["@background"] = [one.name for one in everything if one.acts_on_input == "in_background"]
    told["@acting"] = [one.name for one in everything if one.acts_on_input == "yes"]
    told["@accessibility"] = [one.name for one in everything if one.name.startswith("ax-")]
    return told


def commands_of(entry):
    """The names of the commands that an error belongs to."""
    members = groups()
    names = []
    for name in entry["commands"]:
        if name == "@every":
            names += [command.name for command in commands() if command.name != "capture-service"]
        else:
            names += members.get(name, [name])
    return names


def errors_of(command):
    """The catalogue's entries for one command."""
    return [entry for entry in errors() if command.name in commands_of(entry)
            and not (entry.get("usage") and not command.checks_count)]
