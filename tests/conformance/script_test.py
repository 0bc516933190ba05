"""What scripts/conformance does before it plays anything."""
import os
import runpy
import subprocess
import sys
import unittest
from pathlib import Path
from unittest import mock

from conformance_test import InFolder, mac


class Script(InFolder):
    """What scripts/conformance builds, and what it refuses before."""

    def refusal(self, *arguments):
        """Its last line; cmake must not be called."""
        self.program("cmake", 'echo "cmake was called" >&2')
        done = subprocess.run(
            [sys.executable, str(mac.ROOT / "scripts/conformance"), *map(str, arguments)],
            capture_output=True, text=True, timeout=60, check=False,
            env={**{key: value for key, value in os.environ.items()
                    if key != "SIMULATED_MAC_EXECUTABLE"},
                 "PATH": f"{self.folder}:{os.environ['PATH']}"})
        self.assertEqual((2, ""), (done.returncode, done.stdout), done.stderr)
        self.assertNotIn("cmake was called", done.stderr)
        self.assertNotIn("Traceback", done.stderr)
        return done.stderr.splitlines()[-1]

    def test_unknown_scenarios_and_options(self):
        self.assertEqual("conformance: error: no such scenario: wat", self.refusal("presses", "wat"))
        for option in ("--locks", "--updat"):
            self.assertEqual(f"conformance: error: unrecognized arguments: {option}",
                             self.refusal(option))

    def test_a_driver_that_is_none(self):
        self.assertEqual("conformance: error: argument --driver: expected one argument",
                         self.refusal("presses", "--driver"))
        text = self.folder / "text"
        text.touch()
        for path in ("/nowhere/driver", self.folder, text):
            self.assertEqual(f"conformance: error: --driver: {path} is no executable",
                             self.refusal("--driver", path))

    def test_a_folder_that_is_configured_is_built_as_it_is(self):
        self.program("cmake", f'echo "$*" >>"{self.folder}/calls"')
        build = runpy.run_path(str(mac.ROOT / "scripts/conformance"))["build"]
        with mock.patch.dict(os.environ, {"PATH": f"{self.folder}:{os.environ['PATH']}"}):
            build(Path("source"), self.folder)
            (self.folder / "CMakeCache.txt").touch()
            build(Path("source"), self.folder)
        self.assertEqual([f"-S source -B {self.folder} -DCMAKE_BUILD_TYPE=Release",
                          f"--build {self.folder}", f"--build {self.folder}"],
                         (self.folder / "calls").read_text().splitlines())

    @unittest.skipIf(sys.platform == "darwin", "there the Mac is no simulated one")
    def test_a_driver_without_a_simulated_mac(self):
        driver = self.program("driver", "")
        self.assertEqual(
            f"conformance: error: --driver: there is no {self.folder.resolve()}/simulated-mac",
            self.refusal("--driver", driver))


if __name__ == "__main__":
    unittest.main()
