"""The tests of the preset "release", with many mistakes compiled into the sources of some libraries (schemata.py).
What the preset has built is taken as it is; the rest is below build/mutants, where Ninja builds it."""
import json
import re
import shlex
import shutil
import subprocess
import tempfile
from pathlib import Path

from schemata import Schema
from source_files import ROOT
from variants import Commands, DoesNotBuild, ran

PRESET = ROOT / "build/release"
FOLDER = ROOT / "build/mutants"
HEADER = "tests/mutants/mutant.h"
FLAGS = f"-w -Wno-narrowing -include {HEADER}"

RULES = f"""rule compile
  command = cd {PRESET} && $compile -MD -MF $out.d -o $out -c $in
  depfile = $out.d
  deps = gcc
rule archive
  command = rm -f $out && ar rcsT $out $in
rule link
  command = cd {PRESET} && $link
"""

# What the compiler says of one expression, whatever it said of others before.
OF_TYPES = re.compile("not convert|invalid initialization|different types|no match for|call to non-|invalid operands|"
                      "cannot bind|discards qualifiers|lvalue required")


def compilations(library):
    """The source below ROOT and the command, without its input and output, of each source of a library."""
    for each in Commands(PRESET).compilations:
        words = shlex.split(each["command"])
        output, path = words[words.index("-o") + 1], Path(each["file"])
        if f"/{library}.dir/" not in "/" + output or path.name.startswith("cmake_pch"):
            continue
        command = re.sub(" -O[23] ", " -O1 ", each["command"].split(" -o ")[0])
        # The sources of a folder are one unit for the preset.
        included = re.findall(r'^#include "(.*)"$', path.read_text(), re.M) if "Unity" in path.parts else [path]
        for source in included:
            yield Path(source).relative_to(ROOT), command


class Build:
    """Executables of tests with mistakes in libraries; mistakes are numbered from 1."""

    def __init__(self, libraries, suites, numbered, jobs):
        self.libraries, self.suites, self.numbered = libraries, suites, numbered
        self.ninja = ["ninja", "-C", FOLDER, "-j", str(jobs)]
        self.commands = {library: dict(compilations(library)) for library in libraries}
        self.links = Commands(PRESET)
        self.schemata, self.left_out = {}, set()

    # --- the sources

    def numbered_in(self, file):
        return [number for number, each in self.numbered.items() if each.file == str(file)]

    def write_source(self, file):
        numbers, text = self.numbered_in(file), (ROOT / file).read_text()
        schema = Schema(text, {number: self.numbered[number].mutation for number in numbers
                               if number not in self.left_out})
        self.left_out |= set(numbers) - schema.compiled_in
        self.schemata[file] = schema
        write(FOLDER / "source" / file, schema.text)
        self.left_out_file(file).write_text(json.dumps(
            {"of": text, "left out": [place for place, each in enumerate(numbers) if each in self.left_out]}))

    def left_out_file(self, file):
        return FOLDER / "source" / (str(file) + ".json")

    def remember_left_out(self, file):
        """What the compiler complained of the last time, unless the source is another one since."""
        path, numbers = self.left_out_file(file), self.numbered_in(file)
        known = json.loads(path.read_text()) if path.exists() else {}
        if numbers and known.get("of") == (ROOT / file).read_text():
            self.left_out |= {numbers[place] for place in known["left out"]}

    def object_of(self, file):
        return FOLDER / "objects" / file.with_suffix(".o")

    # --- what Ninja builds

    def link_of(self, suite, archives, folder):
        """The preset's command for an executable, with other archives, and in another folder."""
        command = self.links.link_of(path_of(suite))
        own = [FOLDER / "objects/mutant.o"]
        if suite.endswith("_tests"):
            own.append(FOLDER / "objects/listener.o")
        command = command.replace(f" -o {path_of(suite)} ", f" {' '.join(map(str, own))} -o {folder / suite} ")
        for library, archive in archives.items():
            command = re.sub(rf" \S*\blib{library}\.a(?= )", f" {archive}", command)
        return command.replace("-fuse-ld=gold", "-fuse-ld=lld") if shutil.which("ld.lld") else command

    def archives(self):
        return {library: FOLDER / f"lib{library}.a" for library in self.libraries}

    def write_rules(self):
        lines, archives = [RULES], self.archives()
        for library, commands in self.commands.items():
            for file, command in commands.items():
                lines.append(f"build {self.object_of(file)}: compile {FOLDER / 'source' / file}\n"
                             f"  compile = {command} {FLAGS}")
            objects = " ".join(str(self.object_of(file)) for file in commands)
            lines.append(f"build {archives[library]}: archive {objects}")
        for name in ("mutant", "listener"):
            lines.append(f"build {FOLDER}/objects/{name}.o: compile {ROOT}/tests/mutants/{name}.cpp\n"
                         f"  compile = c++ -std=c++20 -O2 -I{ROOT}")
        for suite in self.suites:
            needed = f"{PRESET / path_of(suite)} {FOLDER}/objects/mutant.o {FOLDER}/objects/listener.o " + \
                " ".join(map(str, archives.values()))
            lines.append(f"build {FOLDER / suite}: link | {needed}\n"
                         f"  link = {self.link_of(suite, archives, FOLDER)}")
        write(FOLDER / "build.ninja", "\n".join(lines) + "\n")

    def compile(self):
        """All sources; mistakes that do not compile beside the original are left out."""
        for commands in self.commands.values():
            for file in commands:
                self.remember_left_out(file)
                self.write_source(file)
        self.write_rules()
        targets = [str(archive) for archive in self.archives().values()]
        while True:
            done = subprocess.run([*self.ninja, "-k", "0", *targets], capture_output=True, text=True,
                                  errors="replace")
            if done.returncode == 0:
                return
            before = len(self.left_out)
            for file in self.leave_out(done.stdout):
                self.write_source(file)
            if len(self.left_out) == before:
                raise DoesNotBuild(done.stdout + done.stderr)

    def leave_out(self, said):
        """The files of which the compiler complains."""
        files, names = set(), no_constants(said)
        for path, line in first_errors(said, FOLDER / "source"):
            schema = self.schemata[path]
            constants = [schema.names[name] for name in names if name in schema.names]
            self.left_out |= set().union(*constants) or schema.blamed(line)
            files.add(path)
        return files

    def build(self):
        self.compile()
        ran([*self.ninja, *[str(FOLDER / suite) for suite in self.suites]], FOLDER)

    # --- a mistake by itself

    def alone(self, mutant):
        return Alone(self, mutant)


class Alone:
    """The executables with one mistake that is compiled by itself, while it is entered. Throws DoesNotBuild."""

    def __init__(self, build, mutant):
        self.build, self.file = build, Path(mutant.file)
        self.text = mutant.mutation.applied((ROOT / mutant.file).read_text())

    def __enter__(self):
        self.folder = Path(tempfile.mkdtemp(prefix="mutant-"))
        return self

    def __exit__(self, *_):
        shutil.rmtree(self.folder)

    def archives(self):
        own = self.folder / "own.o"
        source = self.folder / self.file
        write(source, self.text)
        archives = self.build.archives()
        for library, commands in self.build.commands.items():
            if self.file in commands:
                ran(f"{commands[self.file]} {FLAGS} -o {own} -c {source}", PRESET)
                objects = [own if file == self.file else self.build.object_of(file) for file in commands]
                archives[library] = self.folder / f"lib{library}.a"
                ran(["ar", "rcsT", archives[library], *objects], self.folder)
        return archives

    def link(self, suite, archives):
        ran(self.build.link_of(suite, archives, self.folder), PRESET)
        return self.folder / suite


def path_of(suite):
    return f"tests/{suite}" if suite.endswith("_tests") else suite


def write(path, text):
    """Only when it is another one, so that nothing is built anew for it."""
    if path.exists() and path.read_text() == text:
        return
    path.parent.mkdir(parents=True, exist_ok=True)
    path.write_text(text)


def first_errors(said, folder):
    """(source, line) of what the compiler complains of: of each source the first complaint, and those that follow
    from no other."""
    seen = set()
    complaint = rf"^{re.escape(str(folder))}/([^:\n]+):(\d+):\d+:\s+(?:error: (.*)|  required from here)"
    for found in re.finditer(complaint, said, re.M):
        path, line = Path(found[1]), int(found[2])
        if path not in seen or OF_TYPES.search(found[3] or ""):
            yield path, line
        seen.add(path)


def no_constants(said):
    """Names that the compiler misses as constants."""
    return set(re.findall(r"‘[^’]*?(\w+)’ (?:is not usable in a constant expression|was not declared ‘constexpr’)", said))
