"""What the tests of this folder have in common."""
import os
import sys
from pathlib import Path

sys.dont_write_bytecode = True
HERE = Path(__file__).resolve().parent
ROOT = HERE.parent.parent.parent
sys.path.insert(0, str(HERE.parent))

from driver_client.testing import SimulatedMac, simulated_mac  # noqa: E402

BUILD = Path(os.environ.get("BUILD_FOLDER", ROOT / "build" / "release"))
DRIVER = os.environ.get("DRIVER_EXECUTABLE", str(BUILD / "driver"))
SIMULATED_MAC = os.environ.get("SIMULATED_MAC_EXECUTABLE", str(BUILD / "simulated-mac"))
DESK = (ROOT / "demo/desk.world").read_text(encoding="utf-8")


def on_mac(world=DESK, **options):
    return simulated_mac(world, driver=DRIVER, simulated_mac=SIMULATED_MAC, **options)


def start_mac(world=DESK, **options):
    return SimulatedMac(world, driver=DRIVER, simulated_mac=SIMULATED_MAC, **options)
