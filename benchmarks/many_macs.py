#!/usr/bin/env python3
"""What simulated Macs cost by the hundred: memory and start of one, how many run side by side, and how much they get done.

many_macs.py BUILD_FOLDER [MACS]; prints the table of docs/MANY_MACS.md.
"""
import json
import os
import statistics
import subprocess
import sys
import time
from pathlib import Path

ROOT = Path(__file__).resolve().parent.parent
WORLD = ROOT / "demo" / "desk.world"
ROUNDS = 50
REAL_AT_ONCE = 50
# What an agent does: it looks, clicks, writes and looks again.
SESSION = """
"$DRIVER" ax-list Notes
"$DRIVER" bg-click Notes 340 574
"$DRIVER" ax-insert Notes Body -1 -1 end "Done."
"$DRIVER" ax-find-text Notes "Done."
"""
COMMANDS_PER_SESSION = SESSION.strip().count("\n") + 1


class Macs:
    """Runs of `simulated-mac run`, each with a job in the shell."""

    def __init__(self, build):
        self.companion = build / "simulated-mac"
        self.environment = {**os.environ, "DRIVER": str(build / "driver"), "COMPANION": str(self.companion)}

    def start(self, job, real=False, **options):
        time_words = [] if real else ["--virtual"]
        return subprocess.Popen([self.companion, "run", *time_words, WORLD, "--", "sh", "-c", job],
                                env=self.environment, stdout=subprocess.PIPE, text=True, **options)

    def seconds(self, job):
        begin = time.perf_counter()
        run = self.start(job)
        run.communicate()
        if run.returncode != 0:
            sys.exit(f"{job}: status {run.returncode}")
        return time.perf_counter() - begin


def memory_of(pid):
    """In MiB: what the process has to itself, and its part of what it shares."""
    for line in Path(f"/proc/{pid}/smaps_rollup").read_text().splitlines():
        if line.startswith("Pss:"):
            return int(line.split()[1]) / 1024
    raise RuntimeError("the kernel does not say what a process takes")


def side_by_side(macs, count):
    """Seconds until `count` Macs have begun their jobs, the MiB that each has then, seconds until all have ended."""
    reading, gate = os.pipe()
    begin = time.perf_counter()
    runs = [macs.start("echo ready; read -r _; true", stdin=reading) for _ in range(count)]
    for run in runs:
        run.stdout.readline()
    started = time.perf_counter() - begin
    memory = statistics.median(memory_of(run.pid) for run in runs)
    begin = time.perf_counter()
    os.write(gate, b"\n" * count)
    for run in runs:
        run.communicate()
    return started, memory, time.perf_counter() - begin


def sessions_a_second(macs, jobs, count, real=False):
    """Whole sessions with a Mac of their own, `jobs` at a time, as a queue of tests runs them."""
    begin = time.perf_counter()
    running, left = [], count
    while running or left:
        while left and len(running) < jobs:
            running.append(macs.start(SESSION, real=real, stdin=subprocess.DEVNULL))
            left -= 1
        if running.pop(0).communicate()[0].count('"ok":true') != COMMANDS_PER_SESSION:
            sys.exit("a session has failed")
    return count / (time.perf_counter() - begin)


def virtual_seconds(macs):
    """What a session takes on the clock of its Mac."""
    output = macs.start(SESSION + '"$COMPANION" state').communicate()[0]
    return json.loads(output.splitlines()[-1])["now"] / 1000


def main():
    macs = Macs(Path(sys.argv[1]).resolve())
    count = int(sys.argv[2]) if len(sys.argv) > 2 else 500
    cores = len(os.sched_getaffinity(0))

    starts = [macs.seconds("true") * 1000 for _ in range(ROUNDS)]
    started, memory, ended = side_by_side(macs, count)
    sessions = sessions_a_second(macs, cores, ROUNDS * 4)
    in_real_time = sessions_a_second(macs, REAL_AT_ONCE, REAL_AT_ONCE * 2, real=True)
    virtual = sessions * virtual_seconds(macs)
    day = macs.seconds('"$COMPANION" advance 86400s')
    rows = (("one Mac, from its start to its end",
             f"{statistics.median(starts):.0f} ms, at best {min(starts):.0f}"),
            (f"memory of each of {count} Macs that wait", f"{memory:.1f} MiB"),
            (f"{count} Macs at once: all have started", f"{started:.1f} s"),
            (f"{count} Macs at once: all have ended", f"{ended:.1f} s"),
            (f"sessions of {COMMANDS_PER_SESSION} commands, each on a Mac of its own", f"{sessions:.0f} a second"),
            ("the clocks of their Macs together, in virtual time", f"{virtual:.0f} s a second"),
            (f"the same sessions in real time, {REAL_AT_ONCE} at once", f"{in_real_time:.0f} a second"),
            ("a day in which nothing happens, in virtual time", f"{day * 1000:.0f} ms"))
    print(f"| On {cores} cores | |\n|---|---|")
    for row in rows:
        print("| " + " | ".join(row) + " |")


if __name__ == "__main__":
    main()
