"""What the clients have of the contract: types, failures, and a function for every command that can succeed.

Both are made from one description of the commands, so that they are the same in what they do.
"""
import json
import re
import textwrap
from typing import NamedTuple

import arguments
import schemas
import table

SECONDS_MAX = 30
HEADER = "Made by scripts/generate-contract from packaging/contract."


class Function(NamedTuple):
    """A command as a function: the required arguments, and those that may be left out."""
    command: table.Command
    about: str
    required: list
    optional: list
    replies: list
    method: str
    seconds_max: int


def is_done(reply):
    return True in reply["properties"].get("ok", {"const": True}).values()


def functions():
    described = table.load("commands.json")
    for command in table.commands():
        entry = described[command.name]
        told, _ = schemas.replies_of(command)
        done = [one["title"] for one in told if is_done(one)]
        if entry.get("lines") or not done:
            continue
        given = arguments.arguments_of(command)
        yield Function(command, arguments.schema(command)["description"],
                       [one for one in given if one.is_required],
                       [one for one in given if not one.is_required], done,
                       entry.get("method", ""), entry.get("secondsMax", SECONDS_MAX))


def types():
    """(name, schema) of every type: the definitions, and what a command says when it has done it."""
    for name, schema in schemas.definitions().items():
        if schema.get("type") == "object":
            yield table.pascal(name), schema
    for command in table.commands():
        for reply in schemas.replies_of(command)[0]:
            if is_done(reply):
                yield reply["title"], reply
    yield "HeldFocusSuccess", schemas.held_focus_schema()["anyOf"][0]


def failures():
    """The catalogue as clients look failures up in it: those with most text of their own first."""
    def own_text(entry):
        return len(re.sub(r"\{[^}]*\}", "", table.whole_message(entry)))

    everything = len(table.commands()) - 1
    for entry in sorted(table.errors(), key=own_text, reverse=True):
        names = table.commands_of(entry)
        yield {"id": entry["id"], "pattern": entry["pattern"], "parts": entry["parts"],
               "commands": None if len(names) >= everything or not names else names,
               "remedy": entry["next"]}


def remedies():
    """Of the failures that are not known by a text."""
    return {entry["id"]: entry["next"] for entry in table.without_text()}


def languages():
    """Of the guard's texts."""
    return table.load("tools.json")["tools"]["guard_cover"]["arguments"]["language"]["enum"]


def words_of(schema):
    """The words that a value may be, and whether it may be a number beside them."""
    one_of = schema.get("anyOf", [schema])
    words = [word for each in one_of for word in each.get("enum", [])]
    return {"words": words, "number": len(one_of) > 1} if words else {}


def command_rows():
    """What a client knows of each command: its words, how long it may take, whether it acts."""
    for one in functions():
        given = arguments.arguments_of(one.command)
        yield one.command.name, {
            "arguments": [{"name": each.name, "required": each.is_required, "always": each.is_always_there,
                           "repeats": each.repeats, "json": each.is_json,
                           **words_of(each.schema),
                           **({"default": each.schema["default"]} if each.has_default else {})}
                          for each in given],
            "secondsMax": one.seconds_max, "acts": one.command.acts_on_input != "no"}


def camel(name):
    pascal = table.pascal(name)
    return pascal[0].lower() + pascal[1:]


def snake(name):
    return re.sub(r"(?<=[a-z])([A-Z])", lambda found: "_" + found[1].lower(), name).replace("-", "_")


def described_values(part):
    """Constants as a list of one value, as in the published schemas."""
    return schemas.typed(part)


# TypeScript

def ts_type(part):
    if "$ref" in part:
        name = part["$ref"].rsplit("/", 1)[1]
        known = schemas.definitions()[name]
        return table.pascal(name) if known.get("type") == "object" else ts_type(known)
    if "enum" in part:
        return " | ".join(json.dumps(value, ensure_ascii=False) for value in part["enum"])
    if "anyOf" in part:
        return " | ".join(ts_type(one) for one in part["anyOf"])
    kind = part["type"]
    if kind == "array":
        inner = ts_type(part["items"]) if "items" in part else "never"
        return f"({inner})[]" if " " in inner else f"{inner}[]"
    if kind == "object":
        if isinstance(part.get("additionalProperties"), dict):
            return f"Record<string, {ts_type(part['additionalProperties'])}>"
        return "{ " + "; ".join(ts_member(part, key) for key in part["properties"]) + " }"
    return {"integer": "number"}.get(kind, kind)


def ts_member(schema, key):
    mark = "" if key in schema["required"] else "?"
    return f"{key}{mark}: {ts_type(schema['properties'][key])}"


def ts_comment(text, indent=""):
    lines = textwrap.wrap(text, 96 - len(indent))
    if len(lines) == 1:
        return f"{indent}/** {lines[0]} */"
    return "\n".join([f"{indent}/**", *(f"{indent} * {line}" for line in lines), f"{indent} */"])


def ts_contract():
    lines = [f"// {HEADER}", ""]
    for name, schema in types():
        schema = described_values(schema)
        lines += [ts_comment(schema["description"][0].upper() + schema["description"][1:].rstrip(".") + "."),
                  f"export interface {name} {{"]
        for key in schema["properties"]:
            lines.append(f"  {ts_member(schema, key)};")
        lines += ["}", ""]
    lines += ["/** One argument: whether a caller must give it, and a command line must have it; the words, if there",
              " * is a list of them, and whether it may be a number too. */",
              "export interface ArgumentRow { name: string; required: boolean; always: boolean; repeats: boolean; json: boolean; words?: string[]; number?: boolean; default?: unknown }",
              "",
              "/** What is known of a command: its words, how long it may take, whether it acts. */",
              "export interface CommandRow { arguments: ArgumentRow[]; secondsMax: number; acts: boolean }",
              "", "export const commandRows: Record<string, CommandRow> = {"]
    lines += [f"  {json.dumps(name)}: {json.dumps(row)}," for name, row in command_rows()]
    lines += ["};", "",
              "/** A failure: of several whose pattern matches, the first counts. */",
              "export interface FailureRow { id: string; pattern: string; parts: string[]; commands: string[] | null; remedy: string }",
              "", "export const failureRows: FailureRow[] = ["]
    lines += [f"  {json.dumps(row, ensure_ascii=False)}," for row in failures()]
    lines += ["];", "", "/** What to do about failures that are not known by a text, by their ids. */",
              f"export const remedies = {json.dumps(remedies())};", "",
              "/** What the guard's texts may be in. */",
              f"export const guardLanguages = {json.dumps(languages())} as const;", ""]
    return "\n".join(lines)


def ts_argument_type(one):
    return ts_type(one.schema)


def ts_function(name, one, target, skipped=()):
    """A method that hands its arguments to `target`, an expression that takes them as an object."""
    required = [each for each in one.required if each.name not in skipped]
    parameters = [f"{each.name}: {ts_argument_type(each)}" for each in required]
    more = "; ".join(f"{each.name}?: {ts_argument_type(each)}" for each in one.optional)
    options = f"more: {{ {more} }} & RunOptions = {{}}" if more else "more: RunOptions = {}"
    replies = " | ".join(f"contract.{title}" for title in one.replies)
    comment = ts_comment(one.about, "  ")
    head = f"  {name}({', '.join([*parameters, options])}): Promise<{replies}> {{"
    return "\n".join([comment, head, f"    {target([each.name for each in required])}", "  }", ""])


def ts_commands():
    found = list(functions())
    lines = [f"// {HEADER}", "", 'import type * as contract from "./contract.js";',
             'import type { RunOptions } from "./run.js";', "",
             "/** Every command as a function, which gives the reply or throws. */",
             "export abstract class Commands {",
             "  /** Runs a command with its arguments by name, options of the run among them. */",
             "  abstract run<Reply>(command: string, given: Record<string, unknown>): Promise<Reply>;", ""]
    for one in found:
        def call(names, one=one):
            return f"return this.run({json.dumps(one.command.name)}, {{ {', '.join([*names, '...more'])} }});"
        lines.append(ts_function(camel(one.command.name), one, call))
    lines += ["}", "", "/** The commands on one application. */", "export class App {",
              "  constructor(readonly commands: Commands, readonly name: string) {}", ""]
    for one in found:
        if not one.method:
            continue

        def delegate(names, one=one):
            return f"return this.commands.{camel(one.command.name)}({', '.join(['this.name', *names, 'more'])});"
        lines.append(ts_function(one.method, one, delegate, ("app",)))
    return "\n".join(lines).rstrip() + "\n}\n"


# Python

PY_KINDS = {"integer": "int", "number": "float", "string": "str", "boolean": "bool", "null": "None"}


def py_type(part):
    if "$ref" in part:
        name = part["$ref"].rsplit("/", 1)[1]
        known = schemas.definitions()[name]
        return f'"{table.pascal(name)}"' if known.get("type") == "object" else py_type(known)
    if "enum" in part:
        return "Literal[" + ", ".join(repr(value) for value in part["enum"]) + "]"
    if "anyOf" in part:
        return "Union[" + ", ".join(py_type(one) for one in part["anyOf"]) + "]"
    kind = part["type"]
    if kind == "array":
        return f"List[{py_type(part['items']) if 'items' in part else 'object'}]"
    if kind == "object":
        inner = part.get("additionalProperties")
        return f"Dict[str, {py_type(inner) if isinstance(inner, dict) else 'Any'}]"
    return PY_KINDS[kind]


def py_class(name, schema):
    schema = described_values(schema)
    about = schema["description"][0].upper() + schema["description"][1:].rstrip(".") + "."
    optional = [key for key in schema["properties"] if key not in schema["required"]]
    required = [key for key in schema["properties"] if key in schema["required"]]
    keys = {key: py_type(schema["properties"][key]) for key in schema["properties"]}
    lines = []
    base = "TypedDict"
    if optional and required:
        base = f"_{name}Required"
        lines += [f"class {base}(TypedDict):", *(f"    {key}: {keys[key]}" for key in required), "", ""]
        required = optional
    elif optional:
        required = optional
    total = ", total=False" if optional else ""
    lines += [f"class {name}({base}{total}):", f'    """{about}"""'] if len(about) < 90 else [
        f"class {name}({base}{total}):", '    """' + "\n    ".join(textwrap.wrap(about, 90)), '    """']
    return lines + [f"    {key}: {keys[key]}" for key in required] + ["", ""]


def py_contract():
    lines = [f"# {HEADER}", "from __future__ import annotations", "",
             "from typing import Any, Dict, List, Literal, TypedDict, Union", "", ""]
    for name, schema in types():
        lines += py_class(name, schema)
    lines += ["# What is known of each command: its words, how long it may take, whether it acts.",
              "COMMANDS: Dict[str, Dict[str, Any]] = {"]
    lines += [f"    {name!r}: {row!r}," for name, row in command_rows()]
    lines += ["}", "", "# Failures: of several whose pattern matches, the first counts.",
              "FAILURES: List[Dict[str, Any]] = ["]
    lines += [f"    {row!r}," for row in failures()]
    lines += ["]", "", "# What to do about failures that are not known by a text, by their ids.",
              f"REMEDIES: Dict[str, str] = {remedies()!r}", "",
              "# What the guard's texts may be in.",
              f"GuardLanguage = Literal[{', '.join(repr(one) for one in languages())}]", ""]
    return "\n".join(lines)


def py_default(one):
    value = one.schema.get("default")
    return "()" if value == [] else repr(value)


def py_parameter(one):
    kind = py_type(one.schema).replace("List[", "Sequence[")
    if one.is_required:
        return f"{snake(one.name)}: {kind}"
    if not one.has_default:
        kind = f"Optional[{kind}]"
    return f"{snake(one.name)}: {kind} = {py_default(one)}"


def py_function(name, one, body, is_async, skipped=()):
    required = [each for each in one.required if each.name not in skipped]
    names = [py_parameter(each) for each in required]
    more = [py_parameter(each) for each in one.optional]
    replies = ", ".join(f"contract.{title}" for title in one.replies)
    result = f"Union[{replies}]" if len(one.replies) > 1 else replies
    parameters = ", ".join(["self", *names, "*", *more, "**options: Any"] if more else
                           ["self", *names, "**options: Any"])
    head = f"    {'async ' if is_async else ''}def {name}({parameters}) -> {result}:"
    about = "\n        ".join(textwrap.wrap(one.about, 88))
    close = '"""' if len(one.about) < 85 else '\n        """'
    return [head, f'        """{about}{close}', f"        reply: {result} = {body(required, one.optional)}",
            "        return reply", ""]


def py_commands():
    found = list(functions())
    lines = [f"# {HEADER}", "from __future__ import annotations", "",
             "from typing import Any, Awaitable, Callable, List, Literal, Optional, Sequence, Union", "",
             "from . import contract", "",
             "# pytest shows a failure where the test calls this module, not in it.", "__tracebackhide__ = True", "", ""]
    for prefix, is_async, wait in (("", False, ""), ("Async", True, "await ")):
        lines += [f"class {prefix}Commands:",
                  '    """Every command as a function, which gives the reply or raises."""', "",
                  "    #: Runs a command with its arguments by name.",
                  f"    run: Callable[..., {'Awaitable[Any]' if is_async else 'Any'}]", ""]
        for one in found:
            def call(required, optional, one=one, wait=wait):
                given = ", ".join(f'"{each.name}": {snake(each.name)}' for each in [*required, *optional])
                return f'{wait}self.run("{one.command.name}", {{{given}}}, **options)'
            lines += py_function(snake(one.command.name), one, call, is_async)
        lines += ["", f"class {prefix}App:", '    """The commands on one application."""', "",
                  f"    def __init__(self, commands: {prefix}Commands, name: str) -> None:",
                  "        self.commands = commands", "        self.name = name", ""]
        for one in found:
            if not one.method:
                continue

            def delegate(required, optional, one=one, wait=wait):
                given = ["self.name", *(snake(each.name) for each in required),
                         *(f"{snake(each.name)}={snake(each.name)}" for each in optional), "**options"]
                return f"{wait}self.commands.{snake(one.command.name)}({', '.join(given)})"
            lines += py_function(snake(one.method), one, delegate, is_async, ("app",))
        lines.append("")
    return "\n".join(lines).rstrip() + "\n"


def files():
    yield "clients/typescript/src/contract.ts", ts_contract()
    yield "clients/typescript/src/commands.ts", ts_commands()
    yield "clients/python/driver_client/contract.py", py_contract()
    yield "clients/python/driver_client/commands.py", py_commands()
