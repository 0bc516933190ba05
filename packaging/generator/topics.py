"""The tables that `simulated-mac help TOPIC` prints, as they stand in the pages and the manual.

A page has a table between two lines of comment that name its topic: "begin: simulated-mac help
TOPIC" and "end: simulated-mac help TOPIC".
"""
import re
import subprocess

from pages import roff
from table import ROOT

MANUAL = ROOT / "packaging/man/simulated-mac.1"

# The columns whose cells are names that a reader types or sees as they are, and those of lists of names.
NAMES = {"calls": {"CALL", "OUTCOMES"}, "outcomes": {"OUTCOME"},
         "happenings": {"HAPPENING"}, "reactions": {"REACTION"}, "habits": {"HABIT"},
         "releases": {"LINE"}}
LISTS = {"OUTCOMES"}

PLACE = re.compile(r"(?P<begin>^[^\n]*\bbegin: simulated-mac help (?P<topic>[a-z]+)[^\n]*\n)"
                   r"(?P<table>.*?)"
                   r"(?P<end>^[^\n]*\bend: simulated-mac help (?P=topic)\b)", re.M | re.S)


def rows(executable, topic):
    """The headings, and then the rows, each a list of its cells."""
    text = subprocess.run([executable, "help", topic], capture_output=True, text=True,
                          check=True).stdout
    return [re.split(" {2,}", line) for line in text.splitlines()]


def markdown(topic, table):
    headings, *rest = table
    lines = ["| " + " | ".join(heading.capitalize() for heading in headings) + " |",
             "|" + "---|" * len(headings)]
    for row in rest:
        cells = []
        for heading, cell in zip(headings, row, strict=True):
            if heading in NAMES[topic] and cell != "-":
                names = cell.split(", ") if heading in LISTS else [cell]
                cell = ", ".join(f"`{name}`" for name in names)
            cells.append(cell.replace("|", "\\|"))
        lines.append("| " + " | ".join(cells) + " |")
    return "\n".join(["", *lines, "", ""])


def mdoc(table):
    headings, *rest = table
    lines = [".Bl -tag -width Ds"]
    for row in rest:
        lines.append(".It Ic " + roff(row[0]))
        for heading, cell in zip(headings[1:], row[1:], strict=True):
            if cell != "-":
                lines.append(roff(f"{heading.capitalize()}: {cell.replace('`', '')}."))
    return "\n".join([*lines, ".El", ""])


def pages():
    """The pages and manuals that have such a table."""
    found = [*sorted((ROOT / "docs").glob("*.md")), MANUAL]
    return [path for path in found if PLACE.search(path.read_text())]


def as_it_should_be(path, executable):
    """The text of a page with its tables as the program prints them."""
    def place(match):
        table = rows(executable, match["topic"])
        made = mdoc(table) if path == MANUAL else markdown(match["topic"], table)
        return match["begin"] + made + match["end"]

    return PLACE.sub(place, path.read_text())
