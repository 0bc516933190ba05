"""The manual page driver-service(7): docs/PROTOCOL.md, as mdoc."""
import re

import table
from pages import roff

PAGE = "docs/PROTOCOL.md"


def running(text):
    """A paragraph or a cell: code is bold, a link is its text."""
    text = re.sub(r"\[([^\]]*)\]\([^)]*\)", r"\1", text)
    text = roff(re.sub(r"`([^`]*)`", "\1\\1\2", text))
    return text.replace("\1", "\\fB").replace("\2", "\\fR")


def cells(row):
    return [cell.strip() for cell in re.split(r"(?<!\\)\|", row.strip("|"))]


def listed(rows):
    """A table as a list: its first column, and then the others by their headings."""
    headings, _, *rest = map(cells, rows)
    lines = [".Bl -tag -width Ds"]
    for first, *others in rest:
        lines.append(".It " + running(first).replace('"', "\\(dq"))
        pairs = zip(headings[1:], others, strict=True)
        lines += [running(f"{heading}: {cell}.") for heading, cell in pairs if cell]
    return [*lines, ".El"]


def literal(lines):
    escaped = (line.replace("\\", "\\e").replace("-", "\\-") for line in lines)
    return [".Bd -literal -offset indent", *escaped, ".Ed"]


def mdoc(text):
    """The macros of a page of headings, paragraphs, tables and fenced blocks."""
    lines = []
    for block in re.findall(r"^```.*?^```$|(?:^(?!```)[^\n]+\n?)+", text, re.M | re.S):
        rows = block.strip("\n").split("\n")
        if block.startswith("## "):
            lines.append(f".Ss {block[3:].strip()}")
        elif block.startswith("```"):
            lines += literal(rows[1:-1])
        elif block.startswith("|"):
            lines += listed(rows)
        elif not block.startswith("# "):
            is_first = not lines or lines[-1].startswith(".Ss")
            lines += [*([] if is_first else [".Pp"]), running(" ".join(rows))]
    return "\n".join(lines)


def files():
    frame = (table.ROOT / "packaging/man/driver-service.7.in").read_text()
    yield "packaging/man/driver-service.7", frame.replace("@PROTOCOL@", mdoc((table.ROOT / PAGE).read_text()))
