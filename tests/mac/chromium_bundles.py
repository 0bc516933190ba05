"""Looks into the applications that are installed for the file by which driver knows Chromium.

    chromium_bundles.py ASSUMPTION
"""
import sys
from pathlib import Path

sys.dont_write_bytecode = True
from support.answers import print_answer

FOLDER = Path("/Applications")
FILE = "Resources/chrome_100_percent.pak"
# Browsers that are made of Chromium, and some that are not.
CHROMIUM = ("Google Chrome", "Microsoft Edge", "Brave Browser", "Chromium", "Visual Studio Code")
OTHERS = ("Safari", "Firefox")


def has_file(bundle):
    """As driver looks: in any of the frameworks."""
    frameworks = bundle / "Contents" / "Frameworks"
    return any((framework / FILE).exists() for framework in frameworks.glob("*.framework"))


def answer(folder):
    found = {name: has_file(folder / f"{name}.app") for name in CHROMIUM + OTHERS
             if (folder / f"{name}.app").exists()}
    if not any(name in found for name in CHROMIUM):
        return "not shown", {"why": "no browser made of Chromium is installed", **found}
    holds = all(is_there == (name in CHROMIUM) for name, is_there in found.items())
    return ("confirmed" if holds else "refuted"), found


if __name__ == "__main__":
    print_answer(lambda _: answer(FOLDER))
