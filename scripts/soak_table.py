"""Which planted mistakes soak finds by itself: the table, and how it is tried."""
import os
import re
import subprocess

from scratch_project import PATIENCE_SECONDS
from source_files import ROOT

PATH = ROOT / "tests/soak/found_mistakes.txt"

HEAD = """\
Which planted mistakes soak finds by itself. scripts/planted-mistakes --by-soak writes this: the mistake, and
how many cases from seed 1 on it took, or "not in" so many. The reasons why not are written by hand.
"""

UNKNOWN = "not looked into"

# One that is found early may be found somewhat later when the generator changes.
LEAST_CASES = 300


class SoakTable:
    """What is known of mistakes by their names: ("in", cases) or ("not in", cases, reason)."""

    def __init__(self):
        self.known = {}
        text = PATH.read_text() if PATH.exists() else ""
        for name, cases in re.findall(r"^(\S+): in (\d+)$", text, re.M):
            self.known[name] = ("in", int(cases))
        for name, cases, reason in re.findall(r"^(\S+): not in (\d+), (.*)$", text, re.M):
            self.known[name] = ("not in", int(cases), reason)

    def note(self, name, found, cases):
        if found is not None:
            self.known[name] = ("in", found)
        else:
            old = self.known.get(name)
            reason = old[2] if old is not None and old[0] == "not in" else UNKNOWN
            self.known[name] = ("not in", cases, reason)

    def write(self, names):
        """In the order of the names; what is no more goes."""
        lines = []
        for name in names:
            entry = self.known.get(name)
            if entry is not None:
                lines.append(f"{name}: {entry[0]} " + ", ".join(str(part) for part in entry[1:]))
        PATH.write_text(HEAD + "\n" + "\n".join(lines) + "\n")

    def cases_allowed(self, name):
        """Ten times as many as it took; None for one that was not found, or not tried."""
        entry = self.known.get(name)
        return max(10 * entry[1], LEAST_CASES) if entry is not None and entry[0] == "in" else None


def found_by(soak, cases):
    """How many cases it takes until one fails; None when none of so many does."""
    try:
        run = subprocess.run([soak, "--runs", str(cases), "--jobs", str(os.cpu_count()), "--first"],
                             capture_output=True, text=True, errors="replace", timeout=PATIENCE_SECONDS)
    except subprocess.TimeoutExpired:
        return None
    seeds = re.findall(r"^seed (\d+): (.*)$", run.stdout, re.M)
    if not seeds:
        return None
    seed, complaint = min((int(seed), complaint) for seed, complaint in seeds)
    print(f"    {complaint[:150]}")
    return seed
