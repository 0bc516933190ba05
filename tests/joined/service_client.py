"""Drives a whole session of the capture service over its pipes, as an agent does.

service_client.py DRIVER LOCK
"""

import json
import os
import subprocess
import sys


class Service:
    def __init__(self, driver, lock):
        self.process = subprocess.Popen(
            [driver, "capture-service", lock], stdin=subprocess.PIPE, stdout=subprocess.PIPE
        )
        self.pid = self.reply()["pid"]

    def reply(self):
        return json.loads(self.process.stdout.readline())

    def ask(self, **request):
        self.process.stdin.write(json.dumps(request).encode() + b"\n")
        self.process.stdin.flush()
        return self.reply()

    def end(self):
        self.process.stdin.close()
        rest = self.process.stdout.read()
        return self.process.wait(), rest


def expect(found, wanted):
    if found != wanted:
        sys.exit(f"expected {wanted}, found {found}")


def main():
    driver, lock = sys.argv[1:]
    service = Service(driver, lock)

    def sharing(target, window):
        return {
            "ok": True,
            "pid": service.pid,
            "sharing": True,
            "targetPid": target,
            "windowId": window,
        }

    expect(service.ask(op="open", session="notes", app="Notes"), sharing(41, 7))
    expect(service.ask(op="open", session="mail", app="Mail", window="Drafts"), sharing(42, 8))
    expect(
        service.ask(op="command", session="notes", args=["bg-focus-hold", "Notes"]),
        {"ok": True, "reply": {"ok": True, "focusPid": 41, "focusWindow": 7}},
    )
    expect(
        service.ask(op="command", session="notes", args=["bg-click", "Notes", "130", "95"]),
        {"ok": True, "reply": {"ok": True, "via": "background", "changed": True, "window": 7}},
    )
    expect(service.ask(op="refresh", session="mail"), sharing(42, 8))

    environment_of_runs = {"CU_CAPTURE_PID": str(service.pid), "CU_FOCUS_PID": "41"}
    run = subprocess.run(
        [driver, "bg-move", "Notes", "140", "95"],
        env={**os.environ, **environment_of_runs},
        capture_output=True,
        check=True,
    )
    expect(json.loads(run.stdout)["ok"], True)

    expect(service.ask(op="close", session="mail"), {"ok": True})
    expect(service.end(), (0, b""))
    print("the whole session went as expected")


main()
