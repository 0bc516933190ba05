"""The clients as packages: built, installed into an empty folder, and tried there."""
import json
import os
import shutil
import subprocess
import sys
import tempfile
import unittest
from pathlib import Path

sys.dont_write_bytecode = True
HERE = Path(__file__).resolve().parent
ROOT = HERE.parent
VERSION = (ROOT / "VERSION").read_text(encoding="utf-8").strip()
PROGRAMS = Path(os.environ.get("DRIVER_EXECUTABLE", ROOT / "build/release/driver")).parent
SIMULATED_MAC = os.environ.get("SIMULATED_MAC_EXECUTABLE", PROGRAMS / "simulated-mac")
WORLD = ROOT / "demo/desk.world"
ENVIRONMENT = {**os.environ, "PATH": f"{PROGRAMS}:{os.environ['PATH']}", "WORLD": str(WORLD)}

SCRIPT = """
import { readFileSync } from "node:fs";
import { Mac } from "driver-client";
import { withSimulatedMac } from "driver-client/testing";
const world = readFileSync(process.env.WORLD, "utf8");
console.log(await withSimulatedMac(world, async ({ mac }) => mac instanceof Mac && (await mac.scene()).bundleId));
"""

REQUESTS = "".join(json.dumps({"jsonrpc": "2.0", **one}) + "\n" for one in (
    {"id": 0, "method": "initialize", "params": {
        "protocolVersion": "2025-06-18", "capabilities": {}, "clientInfo": {"name": "test", "version": "1"}}},
    {"method": "notifications/initialized"},
    {"id": 1, "method": "tools/call", "params": {"name": "see_scene", "arguments": {}}}))

PROGRAM = """
import os
import driver_client
from driver_client.testing import simulated_mac
with open(os.environ["WORLD"], encoding="utf-8") as world, simulated_mac(world.read()) as simulated:
    print(os.path.dirname(driver_client.__file__), simulated.mac.scene()["bundleId"])
"""


def done(*words, cwd, **environment):
    run = subprocess.run([str(word) for word in words], cwd=cwd, env={**ENVIRONMENT, **environment},
                         capture_output=True, text=True, check=False)
    if run.returncode != 0:
        raise AssertionError(f"{words}: status {run.returncode}\n{run.stdout}{run.stderr}")
    return run.stdout


class Packages(unittest.TestCase):
    def setUp(self):
        folder = tempfile.TemporaryDirectory(prefix="clients-")
        self.addCleanup(folder.cleanup)
        self.folder = Path(folder.name)

    @unittest.skipUnless(shutil.which("npm"), "there is no npm here")
    def test_of_npm_works_in_an_empty_folder(self):
        done("npm", "pack", "--ignore-scripts", "--pack-destination", self.folder, cwd=HERE / "typescript")
        package = self.folder / f"driver-client-{VERSION}.tgz"
        done("npm", "install", "--offline", "--no-audit", "--no-fund", package, cwd=self.folder)
        (self.folder / "agent.mjs").write_text(SCRIPT, encoding="utf-8")
        self.assertEqual("com.example.browser\n", done("node", "agent.mjs", cwd=self.folder))
        installed = [path.name for path in (self.folder / "node_modules").iterdir() if path.name[0] != "."]
        self.assertEqual(["driver-client"], installed)

    @unittest.skipUnless(shutil.which("npm"), "there is no npm here")
    def test_of_the_server_is_all_that_it_needs(self):
        done("npm", "pack", "--ignore-scripts", "--pack-destination", self.folder, cwd=HERE / "mcp")
        package = self.folder / f"driver-mcp-{VERSION}.tgz"
        done("npm", "install", "--offline", "--no-audit", "--no-fund", package, cwd=self.folder)
        installed = [path.name for path in (self.folder / "node_modules").iterdir() if path.name[0] != "."]
        self.assertEqual(["driver-mcp"], installed)
        files = sorted(path.name for path in (self.folder / "node_modules/driver-mcp").rglob("*") if path.is_file())
        self.assertEqual(["LICENCES", "README.md", "driver-mcp.js", "package.json"], files)
        command = [SIMULATED_MAC, "run", "--virtual", WORLD, "--", "node_modules/.bin/driver-mcp"]
        with subprocess.Popen(command, cwd=self.folder, env=ENVIRONMENT, text=True,
                              stdin=subprocess.PIPE, stdout=subprocess.PIPE) as server:
            server.stdin.write(REQUESTS)
            server.stdin.flush()
            server.stdout.readline()
            told = json.loads(server.stdout.readline())["result"]
            self.assertEqual(("", None), server.communicate())
        self.assertEqual("com.example.browser", told["structuredContent"]["bundleId"])
        self.assertEqual(0, server.returncode)

    def test_of_python_works_in_an_empty_folder(self):
        source = self.folder / "source"
        shutil.copytree(HERE / "python", source)
        pip = (sys.executable, "-m", "pip", "--disable-pip-version-check")
        done(*pip, "wheel", "--no-deps", "--no-index", "--no-build-isolation", "-w", self.folder, source,
             cwd=self.folder)
        wheel = self.folder / f"driver_client-{VERSION}-py3-none-any.whl"
        there = self.folder / "there"
        done(*pip, "install", "--no-deps", "--no-index", "--target", there, wheel, cwd=self.folder)
        said = done(sys.executable, "-c", PROGRAM, cwd=self.folder, PYTHONPATH=str(there))
        self.assertEqual(f"{there / 'driver_client'} com.example.browser\n", said)
        self.assertTrue((there / "driver_client/py.typed").exists())
        entries = (there / f"driver_client-{VERSION}.dist-info/entry_points.txt").read_text(encoding="utf-8")
        self.assertIn("driver_client = driver_client.pytest_plugin", entries)


if __name__ == "__main__":
    unittest.main()
