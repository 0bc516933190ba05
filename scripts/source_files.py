"""The C++ and Objective-C++ sources of the project, those that Git does not yet know included."""
import subprocess
from pathlib import Path

ROOT = Path(__file__).resolve().parent.parent


def sources():
    """Their paths below ROOT, sorted as Git lists them."""
    listed = subprocess.run(
        ["git", "ls-files", "--cached", "--others", "--exclude-standard", "*.h", "*.cpp", "*.mm"],
        cwd=ROOT, capture_output=True, text=True, check=True).stdout.split()
    return [Path(name) for name in listed if (ROOT / name).exists()]
