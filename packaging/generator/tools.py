"""The tools for models, from tools.json and what the contract knows of their commands."""
import json

import arguments
import clients
import schemas
import table

WITHOUT_MARK = ("guard",)


def summary_of(command):
    told = table.load("commands.json")[command.name]["summary"]
    return told[0].upper() + told[1:]


def about_of(command, entry):
    if "title" in entry:
        return f"{entry['title']}. {entry['about']}"
    if "about" in entry:
        return f"{summary_of(command)}. {entry['about']}"
    return arguments.schema(command)["description"]


def is_own(entry):
    """Whether the tool is no run of the command alone: it says by itself what it takes."""
    return "replies" in entry


def input_of(command, entry):
    """The schema of the tool's arguments."""
    given = {"properties": {}, "required": []} if is_own(entry) else arguments.schema(command)
    left_out = entry.get("without", [])
    properties = {name: one for name, one in given["properties"].items() if name not in left_out}
    more = entry.get("arguments", {})
    optional = entry.get("optional", [])
    if "app" in properties:
        more = {**more, "scope": table.load("tools.json")["scope"]}
        optional = [*optional, "scope"]
    required = [name for name in [*given["required"], *more]
                if name not in left_out and name not in optional]
    return {"type": "object", "properties": {**properties, **more}, "required": required,
            "additionalProperties": False}


def replies_of(command, entry):
    """The replies with which the tool has done what it was to do."""
    told = [one for one in schemas.replies_of(command)[0] if clients.is_done(one)]
    if is_own(entry):
        own = table.load("tools.json")["replies"]
        by_title = {one["title"]: one for one in told}
        return [own[name] if name in own else by_title[table.pascal(f"{command.name}-{name}")]
                for name in entry["replies"]]
    beside = entry.get("beside", {})
    return [with_keys(one, beside.get(one["title"].removeprefix(table.pascal(command.name)).lower(), {}))
            for one in told]


def with_keys(reply, keys):
    return {**reply, "properties": {**reply["properties"], **keys},
            "required": [*reply["required"], *keys]}


def output_of(command, entry):
    """The schema of what the tool says: an object, since the protocol wants that said."""
    body = {"type": "object", "anyOf": [*replies_of(command, entry), table.load("tools.json")["failure"]]}
    needed = schemas.definitions_in(body)
    return schemas.typed({**body, "$defs": needed} if needed else body)


def annotations_of(command, name, entry):
    reads = entry.get("reads", False)
    hints = {"title": entry.get("title", summary_of(command)), "readOnlyHint": reads}
    if not reads:
        hints["destructiveHint"] = entry.get("destroys", False)
    # What an application makes of an act may reach anybody.
    hints["openWorldHint"] = not reads and name.split("_")[0] not in WITHOUT_MARK
    return hints


def rows():
    known = {command.name: command for command in table.commands()}
    for name, entry in table.load("tools.json")["tools"].items():
        command = known[entry["command"]]
        yield {"name": name, "command": command.name, "acts": command.acts_on_input != "no",
               "posts": entry.get("posts", False), "description": about_of(command, entry),
               "inputSchema": input_of(command, entry), "outputSchema": output_of(command, entry),
               "annotations": annotations_of(command, name, entry)}


def differences():
    """What the tools and the table of commands do not agree on."""
    told = table.load("tools.json")
    known = {command.name: command for command in table.commands()}
    called = {entry["command"] for entry in told["tools"].values()}
    for name in sorted({one.command.name for one in clients.functions()} - called):
        yield f"{name} is no tool"
    for name, entry in told["tools"].items():
        if entry["command"] not in known:
            yield f"the tool {name} is of {entry['command']}, which does not exist"
            continue
        acts = known[entry["command"]].acts_on_input
        if name.split("_")[0] not in told["groups"]:
            yield f"the tool {name} is in no group"
        if entry.get("reads") and acts != "no":
            yield f"the tool {name} acts, and is said to read"
        if acts == "in_background" and not entry.get("posts"):
            yield f"the tool {name} posts events, and does not say so"


def ts_tools():
    told = table.load("tools.json")
    lines = [f"// {clients.HEADER}", "",
             'import type { Tool } from "@modelcontextprotocol/sdk/types.js";', "",
             "/** A tool: its command, whether that acts on an application, and whether it posts input events. */",
             "export interface ToolRow {",
             "  name: string; command: string; acts: boolean; posts: boolean; description: string;",
             '  inputSchema: Tool["inputSchema"]; outputSchema: Tool["inputSchema"];',
             "  annotations: { title: string; readOnlyHint: boolean; destructiveHint?: boolean; openWorldHint: boolean };",
             "}", "", "/** What the tools of a group are for. */",
             f"export const groups: Record<string, string> = {json.dumps(told['groups'])};", "",
             "export const toolRows: ToolRow[] = ["]
    lines += [f"  {json.dumps(row, ensure_ascii=False)}," for row in rows()]
    return "\n".join([*lines, "];", ""])


def files():
    yield "clients/mcp/src/tools.ts", ts_tools()
