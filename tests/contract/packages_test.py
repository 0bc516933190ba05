"""What is installed and packaged, and that version, identifier and first line are the same everywhere."""
import json
import os
import plistlib
import re
import shutil
import subprocess
import tempfile
import unittest
from pathlib import Path

from links import broken_links
from mac import DRIVER, ROOT

BUILD = Path(os.environ.get("BUILD_FOLDER", ROOT / "build/release"))
VERSION = (ROOT / "VERSION").read_text().strip()
# ICU's data alone have 30 MB.
EXECUTABLE_BYTES_MAX = 8_000_000
COMPONENTS = {
    "driver": {"bin/driver", "share/driver/doctor", "share/man/man1/driver.1",
               "share/man/man7/driver-service.7", "share/bash-completion/completions/driver",
               "share/zsh/site-functions/_driver", "share/fish/vendor_completions.d/driver.fish",
               "share/driver/contract/errors.json"},
    "simulated-mac": {"bin/simulated-mac", "bin/simulated-mac-view", "share/man/man1/simulated-mac.1",
                      "share/bash-completion/completions/simulated-mac",
                      "share/zsh/site-functions/_simulated-mac",
                      "share/fish/vendor_completions.d/simulated-mac.fish",
                      "share/driver/contract/simulated-mac/journal.json",
                      "share/driver/examples/agent.py", "share/driver/examples/agent.sh",
                      "share/driver/examples/agent_test.py", "share/driver/examples/test.sh",
                      *(f"share/driver/worlds/{world.name}" for world in (ROOT / "demo").glob("*.world")),
                      "share/driver/worlds/mail-client.world", "share/driver/worlds/README.md",
                      "libexec/simulated-mac/libvirtual_sleep.so"},
    "docs": {"share/doc/driver/README.md", "share/doc/driver/SECURITY.md",
             "share/doc/driver/docs/COMMANDS.md", "share/doc/driver/docs/ERRORS.md",
             "share/doc/driver/packaging/contract/README.md"}}


def done(*command, **options):
    run = subprocess.run([str(word) for word in command], capture_output=True, text=True, timeout=250,
                         check=False, **options)
    if run.returncode != 0:
        raise AssertionError(f"{command}: status {run.returncode}\n{run.stdout}{run.stderr}")
    return run.stdout


def files_in(folder):
    return {str(path.relative_to(folder)) for path in Path(folder).rglob("*") if path.is_file()}


class Temporary(unittest.TestCase):
    def setUp(self):
        folder = tempfile.TemporaryDirectory(prefix="packages-")
        self.addCleanup(folder.cleanup)
        self.folder = Path(folder.name)


class Installation(Temporary):
    def test_is_by_components_that_have_no_file_in_common(self):
        seen = set()
        for component, wanted in COMPONENTS.items():
            prefix = self.folder / component
            done("cmake", "--install", BUILD, "--prefix", prefix, "--component", component)
            found = files_in(prefix)
            self.assertLessEqual(wanted, found)
            self.assertFalse(seen & found)
            seen |= found
        schemas = {path.name for path in (ROOT / "packaging/contract/schemas").glob("*.json")}
        self.assertLessEqual({f"share/driver/contract/schemas/{name}" for name in schemas}, seen)

    def test_has_documents_whose_links_lead_somewhere(self):
        done("cmake", "--install", BUILD, "--prefix", self.folder, "--component", "docs")
        documents = list(self.folder.rglob("*.md"))
        sources = [*(ROOT / "docs").rglob("*.md"), *ROOT.glob("*.md")]
        self.assertGreater(len(documents), len(sources))
        self.assertEqual([], list(broken_links(documents)))


def packaged(installed):
    """The files of the package for what is installed by hand."""
    for name in installed:
        name = name.replace("zsh/site-functions", "zsh/vendor-completions")
        yield f"usr/{name}.gz" if "/man/" in name else f"usr/{name}"


@unittest.skipUnless(shutil.which("dpkg-deb") and shutil.which("cpack"), "this is no Debian")
class DebianPackage(unittest.TestCase):
    @classmethod
    def setUpClass(cls):
        folder = tempfile.TemporaryDirectory(prefix="packages-")
        cls.addClassCleanup(folder.cleanup)
        cls.folder = Path(folder.name)
        done("cpack", "-G", "DEB", "--config", BUILD / "CPackConfig.cmake", "-B", cls.folder)
        machine = done("dpkg", "--print-architecture").strip()
        cls.package = cls.folder / f"simulated-mac_{VERSION}_{machine}.deb"

    def test_installs_runs_and_leaves_nothing_behind(self):
        fields = done("dpkg-deb", "-f", self.package, "Package", "Version", "Depends")
        self.assertIn("Package: simulated-mac", fields)
        self.assertIn(f"Version: {VERSION}", fields)
        self.assertIn("libcairo2", fields)
        self.assertNotIn("libicu", fields, "what is used of it is in the programs")

        root = self.folder / "root"
        (root / "var/lib/dpkg/info").mkdir(parents=True)
        (root / "var/lib/dpkg/updates").mkdir()
        (root / "var/lib/dpkg/status").touch()
        # There is nothing else in this root, so what the package needs is that of the machine.
        dpkg = ["dpkg", f"--root={root}", "--force-depends", "--force-not-root", "--log=/dev/null"]
        done(*dpkg, "--install", self.package)
        for wanted in COMPONENTS.values():
            self.assertLessEqual(set(packaged(wanted)), files_in(root))
        line = done(root / "usr/bin/simulated-mac", "run", "--virtual",
                    root / "usr/share/driver/worlds/desk.world", "--",
                    root / "usr/bin/driver", "bg-click", "Notes", "340", "574")
        self.assertEqual('{"changed":true,"ok":true,"via":"background","window":7}\n', line)
        for program in ("driver", "simulated-mac"):
            self.assertLess((root / "usr/bin" / program).stat().st_size, EXECUTABLE_BYTES_MAX)
        done(*dpkg, "--purge", "simulated-mac")
        self.assertEqual(set(), files_in(root / "usr") if (root / "usr").exists() else set())

    def test_has_examples_that_are_those_of_the_page(self):
        done("dpkg-deb", "--extract", self.package, self.folder / "files")
        page = (ROOT / "docs/AGENTS_ON_LINUX.md").read_text()
        examples = self.folder / "files/usr/share/driver/examples"
        found = {path.name: path.read_text() for path in examples.iterdir()}
        self.assertEqual(dict(re.findall(r"^```\w+ title=(\S+)\n(.*?)^```$", page, re.M | re.S)), found)

    def test_says_that_no_licence_has_been_chosen(self):
        done("dpkg-deb", "--extract", self.package, self.folder / "notices")
        text = (self.folder / "notices/usr/share/doc/simulated-mac/copyright").read_text()
        self.assertIn("No licence has been chosen yet", text)
        self.assertIn("Unicode, Inc.", text)
        self.assertIn("No licence has been chosen yet", (ROOT / "README.md").read_text())

    @unittest.skipUnless(shutil.which("lintian"), "there is no lintian here")
    def test_is_as_debian_asks(self):
        self.assertEqual("", done("lintian", "--allow-root", "--fail-on", "error,warning", self.package))


class Identity(unittest.TestCase):
    product = (ROOT / "main/product.h").read_text()
    prefix = re.search(r'productIdentifier = "(.*)"', product)[1]

    def test_has_one_version(self):
        formula = (ROOT / "packaging/homebrew/driver.rb").read_text()
        self.assertEqual(VERSION, re.search(r'version "(.*)"', formula)[1])
        self.assertIn(f"driver-{VERSION}.tar.gz", formula)
        clients = ROOT / "clients"
        for name in ("typescript", "mcp"):
            self.assertEqual(VERSION, json.loads((clients / name / "package.json").read_text())["version"])
        tools = json.loads((clients / "mcp/package.json").read_text())["devDependencies"]
        self.assertEqual(VERSION, tools["driver-client"])
        project = (clients / "python/pyproject.toml").read_text()
        self.assertEqual(VERSION, re.search(r'^version = "(.*)"$', project, re.M)[1])
        newest = re.search(r"^## ([0-9.]+)", (ROOT / "CHANGELOG.md").read_text(), re.M)
        self.assertEqual(VERSION, newest[1])

    def test_has_one_identifier(self):
        listed = []
        for path in [*(ROOT / "packaging").rglob("*"), *(ROOT / "cmake").glob("*"),
                     ROOT / "scripts/sign", ROOT / "scripts/package-macos"]:
            if path.is_file() and self.prefix in path.read_text(errors="replace"):
                listed.append(str(path))
        self.assertEqual([], listed, "only main/product.h writes it down")

    def test_is_in_the_property_list(self):
        with tempfile.TemporaryDirectory() as folder:
            listing = Path(folder) / "CMakeLists.txt"
            listing.write_text("\n".join([
                "cmake_minimum_required(VERSION 3.25)", "project(identity NONE)",
                f'include("{ROOT}/cmake/identity.cmake")',
                f'configure_file("{ROOT}/packaging/Info.plist.in" "{folder}/Info.plist" @ONLY)']))
            done("cmake", "-S", folder, "-B", f"{folder}/build")
            plist = plistlib.loads((Path(folder) / "Info.plist").read_bytes())
        self.assertEqual(f"{self.prefix}.driver", plist["CFBundleIdentifier"])
        self.assertEqual(VERSION, plist["CFBundleVersion"])
        self.assertEqual(VERSION, plist["CFBundleShortVersionString"])
        self.assertEqual("14.0", plist["LSMinimumSystemVersion"])
        self.assertIs(True, plist["LSUIElement"], "the guard would have a place in the Dock")
        self.assertIs(True, plist["NSHighResolutionCapable"])

    def test_needs_no_entitlements(self):
        path = ROOT / "packaging/driver.entitlements"
        self.assertEqual({}, plistlib.loads(path.read_bytes()))


class Formula(unittest.TestCase):
    @unittest.skipUnless(shutil.which("ruby"), "there is no ruby here")
    def test_is_well_formed_and_passes_its_own_test(self):
        formula = ROOT / "packaging/homebrew/driver.rb"
        self.assertEqual("Syntax OK\n", done("ruby", "-wc", formula))
        lines = done("ruby", Path(__file__).with_name("formula_standin.rb"), formula, DRIVER).splitlines()
        self.assertEqual("tested", lines[-1])
        self.assertEqual(["system cmake -S platform/macos -B build -DCMAKE_INSTALL_PREFIX=/prefix",
                          "system cmake --build build", "system cmake --install build"],
                         [line for line in lines if line.startswith("system ")])

    def test_expects_what_bare_driver_writes(self):
        formula = (ROOT / "packaging/homebrew/driver.rb").read_text()
        line = re.search(r'line = "(.*)"$', formula, re.M)[1].encode().decode("unicode_escape")
        status = re.search(r'shell_output\(bin/"driver", (\d)\)', formula)[1]
        run = subprocess.run([DRIVER], capture_output=True, text=True, check=False)
        self.assertEqual((line, int(status), ""), (run.stdout, run.returncode, run.stderr))


class Image(unittest.TestCase):
    """Building it takes a registry of images; the workflow "release" does so."""

    def test_copies_and_runs_what_is_there(self):
        text = (ROOT / "Containerfile").read_text()
        self.assertIn("COPY packaging/image/install ", text)
        self.assertIn("RUN /source/scripts/package-linux ", text)
        done("sh", "-n", ROOT / "packaging/image/install")
        done("bash", "-n", ROOT / "scripts/package-linux")
        for name in ("packaging/image/install", "scripts/package-linux"):
            self.assertTrue(os.access(ROOT / name, os.X_OK), name)


class Scripts(unittest.TestCase):
    def test_for_a_mac_are_well_formed_and_do_nothing_elsewhere(self):
        for name in ("sign", "package-macos"):
            script = ROOT / "scripts" / name
            done("bash", "-n", script)
            if os.uname().sysname != "Darwin":
                run = subprocess.run([script], capture_output=True, text=True, check=False)
                self.assertEqual(1, run.returncode)
                self.assertRegex(run.stderr, "needs a Mac")

    @unittest.skipUnless(os.access("/usr/bin/openssl", os.X_OK), "there is no openssl")
    def test_for_signing_leaves_no_key_behind_when_the_keychain_takes_none(self):
        run, calls, left = self.sign(valid="", listed="", importing=7)
        self.assertEqual(7, run.returncode, run.stderr)
        self.assertIn("import", calls)
        self.assertEqual([], left)

    def test_for_signing_makes_no_second_identity(self):
        own = '  1) 01AB "Zentrove Desk Development" (CSSMERR_TP_NOT_TRUSTED)'
        run, calls, _ = self.sign(valid="     0 valid identities found", listed=own, importing=0)
        self.assertEqual(1, run.returncode)
        self.assertIn("set Trust > Code Signing to Always Trust", run.stderr)
        self.assertEqual(["find-identity", "find-identity"], calls)

    def test_for_signing_takes_the_identity_that_is_there(self):
        own = '  1) 01AB "Zentrove Desk Development"'
        run, calls, left = self.sign(valid=own, listed=own, importing=7)
        self.assertEqual((0, ["find-identity", "codesign", "codesign", "codesign"], []),
                         (run.returncode, calls, left))

    def sign(self, *, valid, listed, importing):
        """scripts/sign with stand-ins of the Mac's tools: its run, the calls, the files left."""
        with tempfile.TemporaryDirectory() as name:
            folder = Path(name)
            tools, files, log = folder / "tools", folder / "files", folder / "log"
            tools.mkdir()
            files.mkdir()
            for tool, text in (
                    ("uname", "echo Darwin"),
                    ("codesign", f'echo codesign >>"{log}"'),
                    ("security", f"""echo "$1" >>"{log}"
                        case "$*" in
                          'find-identity -v'*) echo '{valid}' ;;
                          find-identity*) echo '{listed}' ;;
                          import*) exit {importing} ;;
                        esac""")):
                (tools / tool).write_text(f"#!/bin/sh\n{text}\n")
                (tools / tool).chmod(0o755)
            run = subprocess.run(
                [ROOT / "scripts/sign", tools / "codesign"], capture_output=True, text=True,
                check=False, env={**os.environ, "TMPDIR": str(files), "IDENTITY": "",
                                  "PATH": f"{tools}:{os.environ['PATH']}"})
            return run, log.read_text().splitlines(), list(files.iterdir())

    def test_that_the_workflows_run_exist(self):
        workflow = (ROOT / ".github/workflows/ci.yml").read_text()
        release = (ROOT / ".github/workflows/release.yml").read_text()
        names = set(re.findall(r"scripts/[a-z-]+", workflow + release))
        self.assertGreaterEqual(len(names), 4)
        for name in names:
            self.assertTrue(os.access(ROOT / name, os.X_OK), name)
        presets = re.search(r"preset: \[(.*)\]", workflow)[1].split(", ")
        known = (ROOT / "CMakePresets.json").read_text()
        for preset in presets:
            self.assertIn(f'{{"name": "{preset}", "configurePreset"', known)


if __name__ == "__main__":
    unittest.main()
