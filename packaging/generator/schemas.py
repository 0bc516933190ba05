"""JSON Schemas (2020-12) of what driver writes, and of what the capture service reads."""
import json

import table

DIALECT = "https://json-schema.org/draft/2020-12/schema"


def definitions_in(part, known):
    """The definitions that a part of a schema needs, with all that those need."""
    needed = {}
    open_parts = [part]
    while open_parts:
        text = json.dumps(open_parts.pop())
        for name in known:
            if f'"#/$defs/{name}"' in text and name not in needed:
                needed[name] = known[name]
                open_parts.append(known[name])
    return {name: needed[name] for name in known if name in needed}


def success(reply):
    """The schema of one reply as commands.json describes it."""
    optional = reply.get("optional", [])
    acted = reply.get("acted", False)
    schema = {"title": reply["title"], "type": "object", "properties": reply["properties"],
              "required": [key for key in reply["properties"] if key not in optional]}
    if acted:
        schema = {"title": schema.pop("title"), "$ref": "#/$defs/acted", **schema}
    schema["unevaluatedProperties" if acted else "additionalProperties"] = False
    return schema


EXTRA_KEYS = {
    "row": {"$ref": "#/$defs/element"}, "element": {"$ref": "#/$defs/element"},
    "controls": {"$ref": "#/$defs/texts"}, "refused": {"const": True},
    "method": {"enum": ["selected", "value", "none"]}, "before": {"type": "string"},
    "sharing": {"const": False},
    "typed": {"description": "UTF-16 units that had been posted; a line break is one.",
              "type": "integer", "minimum": 0}}


def refusal(entry, command):
    """The schema of one failure of a command."""
    message = command.usage if entry.get("usage") else table.whole_message(entry)
    if entry.get("usage") and command.name == "capture-service":
        message = "usage: {command and its arguments}"  # its own, or that of a shared command
    error = {"const": message}
    if "{" in message:
        error = {"type": "string", "pattern": table.pattern_of(message)}
    if entry.get("open"):
        error = {"type": "string"}
    properties = {"ok": {"const": False}, "error": error}
    if entry.get("locked"):
        properties["locked"] = {"const": True}
    for key in entry.get("with", []):
        properties[key] = EXTRA_KEYS[key]
    return {"title": entry["message"], "type": "object", "properties": properties,
            "required": list(properties), "additionalProperties": False}


def schema_of(name, title, alternatives):
    body = {"anyOf": alternatives}
    definitions = definitions_in(body, table.load("definitions.json"))
    schema = {"$schema": DIALECT, "$id": f"urn:driver:{name}", "title": title, **body}
    return {**schema, "$defs": definitions} if definitions else schema


def beside(alternative, keys):
    """The schema of a reply that may have these keys besides."""
    return {**alternative, "properties": {**alternative["properties"], **keys}}


def command_schema(command, described):
    entry = described[command.name]
    replies = described[entry["same"]]["replies"] if "same" in entry else entry["replies"]
    alternatives = [success(reply) for reply in replies]
    alternatives += [refusal(error, command) for error in table.errors_of(command)]
    if "beside" in entry:
        alternatives = [beside(one, entry["beside"]) for one in alternatives]
    line = "a line" if entry.get("lines") else "the reply"
    return schema_of(command.name, f"{line} of driver {command.name}", alternatives)


def request_schema():
    """What the capture service is asked."""
    text = {"type": "string"}
    texts = {"type": "array", "items": text}
    session = {"description": "A name of the client's choice.", **text}
    app = {"description": "A bundle identifier, a name, or pid: and a process id.", **text}
    shared = [command.name for command in table.commands() if command.is_shared]
    arguments = {**texts, "minItems": 2, "prefixItems": [{"enum": shared}, app]}

    def request(title, op, **more):
        return {"title": title, "type": "object",
                "properties": {"op": op, "session": session, **more},
                "required": ["op", "session"] + [key for key in more if key != "window"]}

    known = ["open", "close", "command"]
    return schema_of("capture-service-request", "a request to the capture service", [
        request("open: share the main window of an application", {"const": "open"}, app=app,
                window={"description": "The window scope.", **text}),
        request("close: end the session", {"const": "close"}),
        request("command: run a command in the shared window", {"const": "command"},
                args=arguments),
        request("anything else: follow the main window", {"type": "string", "not": {"enum": known}})])


def held_focus_schema():
    keys = {"ok": {"const": True}, "focusPid": {"$ref": "#/$defs/pid"},
            "focusWindow": {"$ref": "#/$defs/windowNumber"}}
    held = {"title": "focus is held", "properties": keys}
    return schema_of("held-focus", "the reply to bg-focus-hold in a capture session",
                     [success(held)])


def no_command_schema():
    none = table.Command("", "", 0, None, False, "no", False, False)
    alternatives = [refusal(error, none) for error in table.errors()
                    if not error["commands"] or error.get("precondition")
                    or error["status"] == "signal"]
    return schema_of("no-command", "the reply of driver without a command that exists",
                     alternatives)


def written(schema):
    """The schema as text, a line for each alternative and each definition."""
    def line(part):
        return json.dumps(part, ensure_ascii=False)

    parts = [f"  {line(key)}: {line(schema[key])}" for key in ("$schema", "$id", "title")]
    alternatives = ",\n".join(f"    {line(one)}" for one in schema["anyOf"])
    parts.append('  "anyOf": [\n' + alternatives + "\n  ]")
    if "$defs" in schema:
        definitions = ",\n".join(f"    {line(key)}: {line(one)}"
                                 for key, one in schema["$defs"].items())
        parts.append('  "$defs": {\n' + definitions + "\n  }")
    return "{\n" + ",\n".join(parts) + "\n}\n"


def files():
    """(path, text) of every schema."""
    described = table.load("commands.json")
    schemas = {command.name: command_schema(command, described) for command in table.commands()}
    schemas["capture-service-request"] = request_schema()
    schemas["held-focus"] = held_focus_schema()
    schemas["no-command"] = no_command_schema()
    for name, schema in schemas.items():
        yield f"packaging/contract/schemas/{name}.json", written(schema)
