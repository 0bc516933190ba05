#!/usr/bin/env python3
"""What a call through each client adds to driver's own run, and the time to the first list of tools.

clients_benchmark.py BUILD_FOLDER [ROUNDS]; clients and server must have been built, as scripts/benchmark does.
Prints the quickest and the middle one of the rounds, in milliseconds.
"""
import json
import statistics
import subprocess
import sys
import time
from pathlib import Path

ROOT = Path(__file__).resolve().parent.parent
sys.path.insert(0, str(ROOT / "clients" / "python"))

from driver_client import Mac  # noqa: E402
from driver_client.testing import SimulatedMac  # noqa: E402

WORLD = ROOT / "demo" / "desk.world"


def milliseconds(way):
    begin = time.perf_counter()
    way()
    return (time.perf_counter() - begin) * 1000


def measured_in_python(driver, simulated_mac, rounds):
    simulated = SimulatedMac(WORLD.read_text(), driver=driver, simulated_mac=simulated_mac)
    try:
        mac = Mac(driver=driver, environment=simulated.environment)

        def alone():
            json.loads(subprocess.run([driver, "session"], env=simulated.environment, check=True,
                                      capture_output=True).stdout)

        times = [(milliseconds(alone), milliseconds(mac.session)) for _ in range(rounds)]
    finally:
        simulated.end()
    return {"alone": [one for one, _ in times], "through": [both for _, both in times]}


def measured_in_node(driver, simulated_mac, rounds):
    server = ROOT / "clients" / "mcp" / "bin" / "driver-mcp.js"
    words = ["node", ROOT / "benchmarks" / "client_calls.mjs", driver, simulated_mac, WORLD, server, str(rounds)]
    return json.loads(subprocess.run(words, check=True, capture_output=True, text=True).stdout)


def show(what, times):
    print(f"{what:<42}{min(times):8.1f}{statistics.median(times):8.1f}")


def main():
    build = Path(sys.argv[1]).resolve()
    rounds = int(sys.argv[2]) if len(sys.argv) > 2 else 100
    executables = [str(build / name) for name in ("driver", "simulated-mac")]
    print(f"{'milliseconds':<42}{'least':>8}{'median':>8}")
    for language, measured in (("Python", measured_in_python), ("TypeScript", measured_in_node)):
        times = measured(*executables, rounds)
        show(f"{language}: a process and its reply", times["alone"])
        show(f"{language}: the same through the client", times["through"])
        if "tools" in times:
            show("server for models: first list of tools", times["tools"])


if __name__ == "__main__":
    main()
