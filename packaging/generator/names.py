"""What each command is called in the clients, as docs/COMMANDS.md says it between two lines of comment."""
import re

import clients
import table

PAGE = "docs/COMMANDS.md"
PLACE = re.compile(r"(?P<begin>^<!-- begin: names in the clients[^\n]*\n)(?P<table>.*?)"
                   r"(?P<end>^<!-- end: names in the clients)", re.M | re.S)

# A command that lives on is started: not all are called as the command is.
STARTED = {"capture-service": "start-capture-service"}


def tools():
    """The tools of each command."""
    found = {}
    for name, entry in table.load("tools.json")["tools"].items():
        found.setdefault(entry["command"], []).append(name)
    return found


def rows():
    """(command, name in Python, in TypeScript, method of an application, tools), for those that can succeed."""
    called = {one.command.name: one for one in clients.functions()}
    by_command = tools()
    for command in table.commands():
        if command.name not in called and not command.lives_on:
            continue
        name = STARTED.get(command.name, command.name)
        method = called[command.name].method if command.name in called else ""
        yield (command.name, clients.snake(name), clients.camel(name), method, by_command.get(command.name, []))


def methods(method):
    """The method's name in Python, and in TypeScript where that is another."""
    names = dict.fromkeys([clients.snake(method), method])
    return " / ".join(f"`{name}`" for name in names if name)


def markdown():
    lines = ["| Command | Python | TypeScript | Of an application | MCP tool |", "|---|---|---|---|---|"]
    for command, python, typescript, method, named in rows():
        cells = [f"`{command}`", f"`{python}`", f"`{typescript}`", methods(method),
                 ", ".join(f"`{name}`" for name in named)]
        lines.append("| " + " | ".join(cells) + " |")
    return "\n".join(["", *lines, "", ""])


def files():
    text = (table.ROOT / PAGE).read_text()
    yield PAGE, PLACE.sub(lambda match: match["begin"] + markdown() + match["end"], text)
