"""The command table and the error catalogue, as the generators and the tests read them."""
import json
import re
from pathlib import Path
from typing import NamedTuple

ROOT = Path(__file__).resolve().parent.parent.parent
CONTRACT = ROOT / "packaging" / "contract"
TABLE_SOURCES = ("capture/service.h", "capture/commands.h", "main/dispatcher.cpp")

# One row: {"name", "grammar", fewest, most, failure}; all but the first two may be missing.
ROW = re.compile(
    r'\{\s*"(?P<name>[a-z-]+)",\s*"(?P<grammar>[^"]*)"(?:,\s*(?P<fewest>\d+))?(?:,\s*(?P<most>\d+))?'
    r"(?:,\s*(?P<failure>\w+))?\s*\}")


class Command(NamedTuple):
    name: str
    grammar: str
    fewest: int
    most: int | None
    has_own_failure: bool

    @property
    def usage(self):
        return f"usage: {self.name} {self.grammar}".rstrip()

    @property
    def checks_count(self):
        """Whether a wrong number of arguments is answered with the usage text."""
        return not self.has_own_failure and (self.fewest > 0 or self.most is not None)


def commands():
    """All commands, in the order of the table."""
    found = []
    for source in TABLE_SOURCES:
        for row in ROW.finditer((ROOT / source).read_text()):
            most = row["most"]
            found.append(Command(row["name"], row["grammar"], int(row["fewest"] or 0),
                                 int(most) if most else None, row["failure"] is not None))
    return found


def load(name):
    return json.loads((CONTRACT / name).read_text())


def pattern_of(message):
    """The regular expression of a message with {placeholders}, as JSON Schema wants it."""
    pieces = re.split(r"\{[^}]*\}", message)
    return "^" + r"[\s\S]*".join(escaped(piece) for piece in pieces) + "$"


def escaped(text):
    return re.sub(r"([\\^$.|?*+()\[\]{}])", r"\\\1", text)


def whole_message(entry):
    """The message as a caller sees it, with what it stands in."""
    return entry.get("inside", "{message}").replace("{message}", entry["message"])


def errors():
    return load("errors.json")["errors"]


def commands_of(entry):
    """The names of the commands that an error belongs to."""
    groups = load("errors.json")["groups"]
    names = []
    for name in entry["commands"]:
        if name == "@every":
            names += [command.name for command in commands() if command.name != "capture-service"]
        else:
            names += groups.get(name, [name])
    return names


def errors_of(command):
    """The catalogue's entries for one command."""
    return [entry for entry in errors() if command.name in commands_of(entry)
            and not (entry.get("usage") and not command.checks_count)]
