"""Reads the user's picture as the guard does. The picture is not told, only its form.

    user_picture.py ASSUMPTION
"""
import os
import pwd
import re
import subprocess
import sys

sys.dont_write_bytecode = True
from support.answers import print_answer

TOOL = "/usr/bin/dscl"
SECONDS_MAX = 10


def verdict_of(output):
    """What the tool printed: the attribute's name, a colon and hexadecimal digits, or nothing."""
    if not output.strip():
        return "confirmed", {"picture": "none"}
    name, _, rest = output.partition(":")
    digits = "".join(rest.split())
    is_hexadecimal = re.fullmatch(r"[0-9a-fA-F]+", digits) is not None and len(digits) % 2 == 0
    evidence = {"name": name[:40], "characters": len(digits), "lines": len(output.splitlines()),
                "begins with": digits[:6] if is_hexadecimal else "other characters"}
    return ("confirmed" if name == "JPEGPhoto" and is_hexadecimal else "refuted"), evidence


def ask(_):
    """Verdict and evidence."""
    try:
        name = pwd.getpwuid(os.getuid()).pw_name
        done = subprocess.run([TOOL, ".", "-read", f"/Users/{name}", "JPEGPhoto"],
                              capture_output=True, text=True, timeout=SECONDS_MAX, check=False)
        verdict, evidence = verdict_of(done.stdout)
        evidence["status"] = done.returncode
    except OSError as error:
        verdict, evidence = "not shown", {"why": str(error)}
    return verdict, evidence


if __name__ == "__main__":
    print_answer(ask)
