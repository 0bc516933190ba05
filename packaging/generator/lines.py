"""JSON Schemas (2020-12) of the lines of simulated-mac, and the page of them."""
import functools

import schemas
import table
from pages import filled

FAILURE = {"title": "MacFailure", "description": "The request cannot be carried out.", "type": "object",
           "properties": {"error": {"description": "The reason.", "type": "string"}, "ok": {"const": False}},
           "required": ["error", "ok"], "additionalProperties": False}

HEAD = """# The lines of `simulated-mac`

Every line is one object of JSON, in well-formed UTF-8, with sorted keys. Their schemas are in
[`packaging/contract/simulated-mac`](../packaging/contract/simulated-mac), and
`scripts/generate-contract` makes them and this page from one list. `serve` prints the name of its
socket instead, `run` prints the output of its command, and `--text` asks for text in place of JSON.
In place of a text, bytes that are not text are `{"hex":"0d00ff"}`.

Every failure is one line, `{"error":"…","ok":false}`, with status 1. `serve` writes it to standard
error.
"""


@functools.cache
def told():
    return table.load("lines.json")


def needed(body):
    """The definitions that a schema uses, with all that those use."""
    found, text = {}, str(body)
    for _ in told()["definitions"]:
        for name, one in told()["definitions"].items():
            if f"'#/$defs/{name}'" in text and name not in found:
                found[name] = one
                text += str(one)
    return found


def schema(name):
    entry = told()["lines"][name]
    body = {"anyOf": entry["lines"] + ([FAILURE] if entry.get("fails", True) else [])}
    whole = {"$schema": schemas.DIALECT, "$id": f"urn:simulated-mac:{name}", "title": entry["title"],
             "description": entry["description"].replace("`", ""), **body}
    definitions = needed(body)
    return schemas.typed({**whole, "$defs": definitions} if definitions else whole)


def kind_of(part):
    """What a value is, in a word or two."""
    if "$ref" in part:
        return part["$ref"].removeprefix("#/$defs/")
    if "const" in part:
        return f"`{part['const']}`".lower()
    if "enum" in part:
        return ", ".join(f"`{one}`" for one in part["enum"])
    if "anyOf" in part:
        return " or ".join(kind_of(one) for one in part["anyOf"])
    if part.get("type") == "array":
        return f"list of {kind_of(part['items'])}" if "items" in part else "list"
    kinds = part.get("type", "anything")
    return kinds if isinstance(kinds, str) else " or ".join(kinds)


def rows(one, prefix=""):
    """(key, kind, meaning) of an object, and of the objects in it."""
    for key, part in one["properties"].items():
        name = f"{prefix}{key}"
        optional = "" if key in one["required"] else ", or missing"
        yield f"`{name}`", kind_of(part) + optional, part.get("description", "")
        inside = part
        while inside.get("type") == "array" and "items" in inside:
            inside, name = inside["items"], f"{name}[]"
        for inner in [inside, *inside.get("anyOf", [])]:
            if "properties" in inner:
                yield from rows(inner, f"{name}.")


def section(heading, one):
    lines = [*filled(f"{heading}{one['description']}"), "", "| Key | Value | Meaning |", "|---|---|---|"]
    return [*lines, *(f"| {key} | {kind} | {meaning} |" for key, kind, meaning in rows(one)), ""]


def page():
    lines = [HEAD]
    for name, entry in told()["lines"].items():
        lines += [f"## {name}", "", *filled(f"{entry['description']} Schema: `{name}.json`."), ""]
        for one in entry["lines"]:
            lines += section("", one)
    lines += ["## Parts of several lines", ""]
    for name, one in told()["definitions"].items():
        if "properties" in one:
            lines += section(f"**{name}**: ", one)
        elif "description" in one:
            lines += [*filled(f"**{name}**: {one['description']}"), ""]
    return "\n".join(lines).rstrip() + "\n"


def files():
    for name in told()["lines"]:
        yield f"packaging/contract/simulated-mac/{name}.json", schemas.written(schema(name))
    yield "docs/LINES.md", page()
