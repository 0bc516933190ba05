"""docs/ERRORS.md and the manual page driver(1)."""
import json
import re
import textwrap

import table

LINE_CHARACTERS_MAX = 100

SECTIONS = ("State", "Pictures", "Background pointer", "Background keyboard", "Accessibility",
            "Capture service", "Focus", "The user's input", "Lock guard")


PLATFORMS = {"macos": "on a Mac only", "simulated": "on a simulated Mac only"}


STATUSES = {"signal": "the run ends by that signal"}


def code(text):
    """A message in a table of Markdown."""
    return "`` " + text + " ``" if "`" in text else "`" + text + "`"


def filled(text):
    """The lines of a paragraph; what stands between backticks stays on one."""
    kept = re.sub(r"`[^`]*`", lambda code: code[0].replace(" ", "\0"), text)
    return [line.replace("\0", " ") for line in
            textwrap.wrap(kept, LINE_CHARACTERS_MAX, break_long_words=False, break_on_hyphens=False)]


def by_command():
    """The failures of each group of commands, and of each command."""
    failures = {}
    for entry in table.errors():
        for name in entry["commands"] or ["the command line"]:
            failures.setdefault(name, []).append(f"[{entry['id']}](#{entry['id']})")
    lines = ["## By command", "", "A command has the failures of its row, and those of the groups that it is in.", "",
             "| Group | Commands | Failures |", "|---|---|---|",
             f"| | {'the command line'} | {', '.join(failures['the command line'])} |"]
    for name, members in table.groups().items():
        text = members if isinstance(members, str) else ", ".join(f"`{member}`" for member in members)
        lines.append(f"| {name[1:]} | {text} | {', '.join(failures.get(name, []))} |")
    for command in table.commands():
        if command.name in failures:
            lines.append(f"| | `{command.name}` | {', '.join(failures[command.name])} |")
    return [*lines, ""]


def errors_page():
    lines = [
        "# Errors", "",
        "Most failures of `driver` have one of these texts under `error`. Words in braces are filled in.",
        "[`errors.json`](../packaging/contract/README.md) has the same for machines.",
        "`scripts/generate-contract` makes this page.", "",
        "Status is the exit status of a run of its own. In the capture service a refusal with status",
        "0 stands under `reply`, and every failure with status 1 ends the service.",
        "`\"locked\":true` is part of the replies that are marked so.", "",
        "Some failures have no text: see [the end of this page](#failures-without-a-text).", "",
        "When an application seems to have no windows, elements, menus or titles, a",
        "[permission](ON_A_MAC.md#permissions) may be missing.", ""]
    lines += by_command()
    for entry in table.errors():
        lines += [f'<a id="{entry["id"]}"></a>', "", f"## {code(table.whole_message(entry))}", ""]
        who = [name[1:] if name.startswith("@") else f"`{name}`" for name in entry["commands"]]
        marks = [STATUSES.get(entry["status"], f"status {entry['status']}")]
        if entry.get("locked"):
            marks.append('`"locked":true`')
        if entry.get("platform"):
            marks.append(PLATFORMS[entry["platform"]])
        origin = "From: " + ", ".join(who) if who else "From: the command line"
        marked = ", ".join(marks)
        lines += [*filled(f"Id `{entry['id']}`. {origin}. {marked[0].upper()}{marked[1:]}."), ""]
        lines += [*filled(f"{entry['cause']} *What to do:* {entry['next']}"), ""]
    return "\n".join(lines + without_text()).rstrip() + "\n"


def without_text():
    lines = ["## Failures without a text", "",
             "A press or a write that the application did not accept has `axError`, the platform's code.",
             "`ax-focus`, `ax-slider`, `lock-now` and `keep-awake` say only `\"ok\":false`. The clients give",
             "these failures an id, and have ids of their own.", ""]
    for entry in table.without_text():
        who = ", ".join(f"`{name}`" for name in entry.get("commands", [])) or "the clients"
        lines += [f'<a id="{entry["id"]}"></a>', "",
                  *filled(f"Id `{entry['id']}`. From: {who}. {entry['cause']} *What to do:* {entry['next']}"), ""]
    return lines


def roff(text):
    """Running text for mdoc: sentences on lines of their own, nothing read as a macro."""
    text = text.replace("\\", "\\e").replace("-", "\\-")
    lines = re.sub(r"(?<=[.:]) (?=[A-Z])", "\n", text).split("\n")
    return "\n".join("\\&" + line if line[:1] in ".'" else line for line in lines)


def quoted(text):
    return '"' + text.replace("\\", "\\e").replace('"', '""') + '"'


def command_list():
    described = table.load("commands.json")
    lines = []
    for section in SECTIONS:
        lines += [f".Ss {section}", ".Bl -tag -width Ds"]
        for command in table.commands():
            entry = described[command.name]
            if entry["section"] != section:
                continue
            grammar = " Ar " + quoted(command.grammar) if command.grammar else ""
            lines.append(f".It Ic {command.name}{grammar}")
            summary = entry["summary"]
            lines.append(roff(summary[0].upper() + summary[1:] + "."))
            if "about" in entry:
                lines.append(roff(entry["about"]))
        lines.append(".El")
    return "\n".join(lines)


def error_list():
    lines = [".Bl -tag -width Ds"]
    for entry in table.errors():
        lines.append(".It " + roff(table.whole_message(entry)).replace('"', "\\(dq"))
        lines.append(roff(entry["cause"]))
        lines.append(roff(entry["next"]))
    return "\n".join(lines + [".El"])


def manual():
    frame = (table.ROOT / "packaging/man/driver.1.in").read_text()
    return frame.replace("@COMMANDS@", command_list()).replace("@ERRORS@", error_list())


def catalogue():
    """The catalogue itself, with the groups that the table tells brought up to date."""
    text = (table.CONTRACT / "errors.json").read_text()
    for name, members in table.groups().items():
        line = json.dumps({name: members})[1:-1]
        text = re.sub(rf'^    "{name}": [^\n]*?(,?)$', rf"    {line}\1", text, flags=re.M)
    for entry in table.errors():
        pattern = table.groups_of(table.whole_message(entry))
        parts = table.parts_of(entry["message"])
        made = f'     "pattern": {json.dumps(pattern)}, "parts": {json.dumps(parts)},\n'
        text = re.sub(rf'(^    \{{"id": "{entry["id"]}",\n     "message": [^\n]*\n)(     "pattern":[^\n]*\n)?',
                      lambda found: found[1] + made, text, flags=re.M)
    return text


def files():
    yield "packaging/contract/errors.json", catalogue()
    yield "docs/ERRORS.md", errors_page()
    yield "packaging/man/driver.1", manual()
