"""JSON Schemas (2020-12) of what driver writes, and of what the capture service reads."""
import functools
import json

import arguments
import table

DIALECT = "https://json-schema.org/draft/2020-12/schema"


@functools.cache
def definitions():
    """Every definition by its name, with all that it says itself."""
    told = table.load("definitions.json")
    return {name: extended(told, one) for name, one in told.items() if name != "elementParts"}


def extended(told, one):
    """A definition together with the one that it extends: generators follow no inheritance."""
    if "extends" not in one:
        return one
    base = told[one["extends"]]
    whole = {"description": one["description"], "type": "object",
             "properties": {**base["properties"], **one.get("properties", {})},
             "required": base["required"] + one.get("required", []),
             "dependentRequired": {**base["dependentRequired"], **one.get("dependentRequired", {})}}
    return {**whole, "additionalProperties": False}


def definitions_in(part):
    """The definitions that a part of a schema needs, with all that those need."""
    known = definitions()
    needed = set()
    open_parts = [part]
    while open_parts:
        text = json.dumps(open_parts.pop())
        for name in known:
            if f'"#/$defs/{name}"' in text and name not in needed:
                needed.add(name)
                open_parts.append(known[name])
    return {name: known[name] for name in known if name in needed}


def closed_object(title, description, properties, optional=()):
    return {"title": title, "description": description, "type": "object", "properties": properties,
            "required": [key for key in properties if key not in optional],
            "additionalProperties": False}


def successes(name, reply):
    """The schemas of one reply as commands.json describes it: two where the application, or the
    system, may refuse what was asked."""
    title = table.pascal(name) + table.pascal(reply["name"])
    properties = reply["properties"]
    optional = reply.get("optional", [])
    if not reply.get("acted") and not reply.get("refusable"):
        return [closed_object(title, reply["description"], properties, optional)]
    done = {"ok": {"const": True}}
    not_done = {"ok": {"const": False}}
    if reply.get("acted"):
        done["axError"] = {"const": 0}
        not_done["axError"] = {"description": "The platform's code.", "type": "integer",
                               "not": {"const": 0}}
    return [closed_object(title, reply["description"], {**done, **properties}, optional),
            closed_object(title.removesuffix("Success") + "Refused", "not " + reply["description"],
                          {**not_done, **properties}, optional)]


EXTRA_KEYS = {
    "row": {"$ref": "#/$defs/element"}, "element": {"$ref": "#/$defs/element"},
    "controls": {"$ref": "#/$defs/texts"}, "refused": {"const": True},
    "method": {"enum": ["selected", "value", "none"]}, "before": {"type": "string"},
    "sharing": {"const": False},
    "typed": {"description": "UTF-16 units that had been posted; a line break is one.",
              "type": "integer", "minimum": 0}}


def refusal(entry, command):
    """The schema of one failure of a command, titled with its id."""
    message = command.usage if entry.get("usage") else table.whole_message(entry)
    title = table.pascal(entry["id"])
    if entry.get("usage"):
        title = table.pascal(command.name) + title
        if command.name == "capture-service":
            message = "usage: {grammar}"  # its own, or that of a shared command
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
    return closed_object(title, entry["cause"], properties)


TYPES = {bool: "boolean", int: "integer", str: "string"}


def typed(part):
    """The same with every constant as a list of one value and with its type: some generators know
    no "const", and take a list without a type for texts."""
    if isinstance(part, list):
        return [typed(one) for one in part]
    if not isinstance(part, dict):
        return part
    one = {key: typed(value) for key, value in part.items()}
    if "const" in one:
        one["enum"] = [one.pop("const")]
    if isinstance(one.get("enum"), list) and "type" not in one:
        return {"type": TYPES[type(one["enum"][0])], **one}
    return one


def schema_of(name, title, description, alternatives):
    body = {"anyOf": alternatives}
    needed = definitions_in(body)
    schema = {"$schema": DIALECT, "$id": f"urn:driver:{name}", "title": title,
              "description": description, **body}
    return typed({**schema, "$defs": needed} if needed else schema)


def beside(command, alternative, keys):
    """The schema of a reply that may have these keys besides: one of this command alone."""
    prefix = table.pascal(command.name)
    title = prefix + alternative["title"].removeprefix(prefix)
    return {**alternative, "title": title, "properties": {**alternative["properties"], **keys}}


def replies_of(command):
    """The alternatives of a command's replies or lines: what it says of itself, then the failures."""
    described = table.load("commands.json")
    entry = described[command.name]
    replies = described[entry["same"]]["replies"] if "same" in entry else entry["replies"]
    told = [one for reply in replies for one in successes(command.name, reply)]
    failed = [refusal(error, command) for error in table.errors_of(command)]
    if "beside" in entry:
        told, failed = ([beside(command, one, entry["beside"]) for one in part]
                        for part in (told, failed))
    return told, failed


def command_schema(command):
    told, failed = replies_of(command)
    lives_on = table.load("commands.json")[command.name].get("lines")
    title = table.pascal(command.name) + ("Line" if lives_on else "Reply")
    line = "A line" if lives_on else "The reply"
    return schema_of(command.name, title, f"{line} of driver {command.name}.", told + failed)


def request_schema():
    """What the capture service is asked."""
    text = {"type": "string"}
    session = {"description": "A name of the client's choice.", **text}
    app = table.load("arguments.json")["app"]
    shared = ", ".join(command.name for command in table.commands() if command.is_shared)
    words = {"description": f"A command line: one of {shared}; the application as open had it; and "
                            "the command's other arguments.",
             "type": "array", "items": text, "minItems": 2}

    def request(title, description, op, optional=(), **more):
        properties = {"op": op, "session": session, **more}
        return {"title": title, "description": description, "type": "object",
                "properties": properties,
                "required": [key for key in properties if key not in optional]}

    known = ["open", "close", "command"]
    return schema_of("capture-service-request", "CaptureServiceRequest",
                     "A request to the capture service.", [
        request("OpenRequest", "Share the main window of an application.", {"const": "open"},
                ["window"], app=app, window={"description": "The window scope.", **text}),
        request("CloseRequest", "End the session.", {"const": "close"}),
        request("CommandRequest", "Run a command in the shared window.", {"const": "command"},
                args=words),
        request("RefreshRequest", "Anything else follows the main window.",
                {"type": "string", "not": {"enum": known}})])


def held_focus_schema():
    keys = {"ok": {"const": True}, "focusPid": {"$ref": "#/$defs/pid"},
            "focusWindow": {"$ref": "#/$defs/windowNumber"}}
    held = {"name": "success", "description": "focus is held", "properties": keys}
    return schema_of("held-focus", "HeldFocusReply",
                     "The reply to bg-focus-hold in a capture session.",
                     successes("held-focus", held))


def no_command_schema():
    none = table.Command("", "", 0, None, False, "no", False, False)
    alternatives = [refusal(error, none) for error in table.errors()
                    if not error["commands"] or error.get("precondition")
                    or error["status"] == "signal"]
    return schema_of("no-command", "NoCommandReply",
                     "The reply of driver without a command that exists.", alternatives)


def arguments_schema(command):
    return {"$schema": DIALECT, "$id": f"urn:driver:{command.name}:arguments",
            **arguments.schema(command)}


def written(schema):
    """The schema as text, a line for each alternative, each definition and each argument."""
    def line(part):
        return json.dumps(part, ensure_ascii=False)

    def lines(key):
        inside = schema[key]
        if isinstance(inside, list):
            return "[\n" + ",\n".join(f"    {line(one)}" for one in inside) + "\n  ]"
        return ("{\n" + ",\n".join(f"    {line(name)}: {line(one)}" for name, one in inside.items())
                + "\n  }")

    long = ("anyOf", "$defs", "properties")
    parts = [f"  {line(key)}: {lines(key) if key in long and schema[key] else line(schema[key])}"
             for key in schema]
    return "{\n" + ",\n".join(parts) + "\n}\n"


def files():
    """(path, text) of every schema."""
    schemas = {command.name: command_schema(command) for command in table.commands()}
    schemas["capture-service-request"] = request_schema()
    schemas["held-focus"] = held_focus_schema()
    schemas["no-command"] = no_command_schema()
    for name, schema in schemas.items():
        yield f"packaging/contract/schemas/{name}.json", written(schema)
    for command in table.commands():
        yield f"packaging/contract/arguments/{command.name}.json", written(arguments_schema(command))
