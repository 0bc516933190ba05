"""The arguments of every command: what its grammar says, named and described by the contract.

The grammar, which the built program tells, has each argument's place, whether it may be left out, its
words and whether it repeats. `commands.json` gives it a name, and `arguments.json` what it means.
"""
import re
from typing import NamedTuple

import table

# Words of the grammars that stand for something else.
STAND_FOR_OTHERS = ("bundleId", "name", "number", "child text", "dx", "dy", "x2", "y2")
PIECE = re.compile(r"\[[^\]]*\]|<[^>]*>(?:\.\.\.)?")


class Argument(NamedTuple):
    """One argument by name. What a caller may leave out and a command line may not has a default."""
    name: str
    schema: dict
    is_required: bool
    is_always_there: bool
    repeats: bool
    is_json: bool

    @property
    def has_default(self):
        return "default" in self.schema


def pieces_of(grammar):
    return PIECE.findall(grammar)


def words_of(piece):
    """The words of a piece that stand for themselves."""
    inner = piece.strip("[].").strip("<>")
    words = [word.strip("<>") for word in inner.split("|")]
    return [word for word in words if word not in STAND_FOR_OTHERS] if len(words) > 1 else []


def schema_of(described, words):
    """What a value may be: a number or one of the words, one of the words, or as it is described."""
    meaning = {key: value for key, value in described.items() if key in ("description", "default")}
    if described["type"] == "number" and words:
        return {**meaning, "anyOf": [{"type": "number"}, {"type": "string", "enum": words}]}
    if words and words != ["last"]:  # beside "last" the grammar takes any text
        return {**described, "enum": words}
    return described


def argument(entry, piece, must_be_there):
    known = table.load("arguments.json")
    name, described = next(iter(entry.items())) if isinstance(entry, dict) else (entry, entry)
    schema = schema_of(known[described], words_of(piece))
    return Argument(name, schema, must_be_there and "default" not in schema, must_be_there,
                    "..." in piece, "JSON" in piece)


def arguments_of(command):
    """The arguments of a command in the order of its command line; without those that it ignores."""
    names = table.load("commands.json")[command.name].get("arguments", [])
    pieces = pieces_of(command.grammar)
    if len(names) != len(pieces):
        raise ValueError(f"{command.name}: {len(pieces)} arguments, {len(names)} names")
    found = {}
    for place, (entry, piece) in enumerate(zip(names, pieces)):
        if entry is None:
            continue
        one = argument(entry, piece, place < command.fewest or piece.startswith("<"))
        before = found.get(one.name)
        if before:  # "<text> [text...]" is one list
            one = one._replace(is_required=True, is_always_there=True)
        found[one.name] = one
    return list(found.values())


def schema(command):
    """The JSON Schema of a command's arguments, as an object in the order of the command line."""
    given = arguments_of(command)
    entry = table.load("commands.json")[command.name]
    about = entry["summary"][0].upper() + entry["summary"][1:] + "."
    if "about" in entry:
        about += " " + entry["about"]
    return {"title": table.pascal(command.name) + "Arguments", "description": about,
            "type": "object", "properties": {one.name: one.schema for one in given},
            "required": [one.name for one in given if one.is_required],
            "additionalProperties": False}
