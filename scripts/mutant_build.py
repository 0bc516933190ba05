"""Executables of tests with many mistakes compiled into the sources that they test (schemata.py). What a project's own
build folder has is taken as it is; the rest is below build/mutants, where Ninja builds it."""
import collections
import json
import re
import shlex
import shutil
import subprocess
import tempfile
from pathlib import Path

from schemata import Schema
from scratch_project import FROM_OUTSIDE
from source_files import ROOT
from variants import Commands, DoesNotBuild, ran

# What tests from outside run, and what of their own has the paths of these.
PROGRAMS = ("driver", "simulated-mac")
BESIDE_PROGRAMS = ("simulated-mac-view", "libvirtual_sleep.so")
SUPPORT_FROM_OUTSIDE = "joined_support"

FLAGS = "-w -Wno-narrowing -include tests/mutants/mutant.h"
OWN_SOURCES = ("mutant", "listener")

RULES = """rule compile
  command = cd {folder} && $compile -MD -MF $out.d -o $out -c $in
  depfile = $out.d
  deps = gcc
rule archive
  command = rm -f $out && ar rcsT $out $in
rule link
  command = cd {folder} && $link
"""

# What the compiler says of one expression, whatever it said of others before.
OF_TYPES = re.compile("not convert|invalid initialization|different types|no match for|call to non-|invalid operands|"
                      "cannot bind|discards qualifiers|lvalue required|no viable|incompatible operand|not assignable")

# A source below ROOT, the command that compiles it, without input and output, and what it becomes part of: a target's
# library, or, in an executable, an object.
Unit = collections.namedtuple("Unit", "file command target object")


def flags(unit):
    """Of a unit in another folder than its own."""
    return f"{FLAGS} -iquote {(ROOT / unit.file).parent}"


def units(folder, targets):
    """Those of the targets whose build folder this is."""
    for each in Commands(folder).compilations:
        words = shlex.split(each["command"])
        built, path = words[words.index("-o") + 1], Path(each["file"])
        target = next((target for target in targets if f"/{target}.dir/" in "/" + built), None)
        if target is None or path.name.startswith("cmake_pch"):
            continue
        command = re.sub(" -O[23] ", " -O1 ", each["command"].split(" -o ")[0])
        # The sources of a folder may be one unit.
        included = re.findall(r'^#include "(.*)"$', path.read_text(), re.M) if "Unity" in path.parts else [path]
        for source in included:
            yield Unit(Path(source).relative_to(ROOT), command, target, built)


class Build:
    """The executables; mistakes are numbered from 1."""

    def __init__(self, folder, its_units, suites, numbered, jobs):
        """The folder has built the suites, whose paths there are given, and the programs that they run. The units
        are all of the targets that have mistakes."""
        self.preset, self.folder, self.numbered = folder, ROOT / "build/mutants" / folder.name, numbered
        self.suites = {Path(path).name: path for path in suites}
        self.programs = PROGRAMS if FROM_OUTSIDE & set(self.suites) else ()
        if self.programs:
            its_units = [*its_units, *map(self.running_ours, units(folder, [SUPPORT_FROM_OUTSIDE]))]
        # What is built of sources without mistakes is taken as it is.
        changed = {Path(each.file) for each in numbered.values()}
        rebuilt = {unit.object for unit in its_units if unit.file in changed or unit.target == SUPPORT_FROM_OUTSIDE}
        self.units = {unit.file: unit for unit in its_units if unit.object in rebuilt}
        self.kept = sorted({(unit.target, unit.object) for unit in its_units} -
                           {(unit.target, unit.object) for unit in self.units.values()})
        self.commands = Commands(folder)
        self.ninja = ["ninja", "-C", self.folder, "-j", str(jobs), "-k", "0"]
        self.schemata, self.left_out = {}, set()

    def running_ours(self, unit):
        """The unit with our programs' paths in the place of the project's."""
        command = unit.command
        for program in PROGRAMS:
            command = command.replace(f'"{self.preset / program}\\"', f'"{self.folder / program}\\"')
        return unit._replace(command=command)

    # --- the sources

    def mutations_in(self, file):
        return {number: each.mutation for number, each in self.numbered.items() if each.file == str(file)}

    def write_source(self, file):
        mutations, text = self.mutations_in(file), (ROOT / file).read_text()
        schema = Schema(text, {number: each for number, each in mutations.items() if number not in self.left_out})
        self.left_out |= set(mutations) - schema.compiled_in
        self.schemata[file] = schema
        write(self.folder / "source" / file, schema.text)
        left_out = [(each.start, each.end, each.text) for number, each in mutations.items() if number in self.left_out]
        write(self.left_out_file(file), json.dumps({"of": text, "left out": left_out}))

    def may_be_constant(self, number, mutant):
        """Whether the compiler may have evaluated its place, where it was not made."""
        return self.schemata[Path(mutant.file)].tokens.is_in_constexpr(mutant.mutation.start)

    def left_out_file(self, file):
        return self.folder / "source" / (str(file) + ".json")

    def remember_left_out(self, file):
        """What the compiler complained of the last time, unless the source is another one since."""
        path = self.left_out_file(file)
        known = json.loads(path.read_text()) if path.exists() else {"of": None}
        if known["of"] == (ROOT / file).read_text():
            left_out = {tuple(each) for each in known["left out"]}
            self.left_out |= {number for number, each in self.mutations_in(file).items()
                              if (each.start, each.end, each.text) in left_out}

    # --- what Ninja builds

    def object_of(self, file):
        return self.folder / "objects" / file.with_suffix(".o")

    def archive_of(self, target):
        return self.folder / f"lib{target}.a"

    def own_objects(self):
        return [self.folder / "objects" / f"{name}.o" for name in OWN_SOURCES]

    def is_library(self, unit):
        return Path(self.suites.get(unit.target, "")).name != unit.target

    def link_of(self, name, replaced, folder):
        """The project's command for an executable, in another folder, with other archives and objects."""
        path = self.suites.get(name, name)
        own = " ".join(map(str, self.own_objects() if name in self.suites else self.own_objects()[:1]))
        command = self.commands.link_of(path).replace(f" -o {path} ", f" {own} -o {folder / name} ")
        for name, other in replaced.items():
            command = re.sub(rf" (\S*/)?{re.escape(name)}(?= )", f" {other}", command)
        return command.replace("-fuse-ld=gold", "-fuse-ld=lld") if shutil.which("ld.lld") else command

    def replaced(self):
        return {f"lib{unit.target}.a" if self.is_library(unit) else unit.object:
                self.archive_of(unit.target) if self.is_library(unit) else self.object_of(unit.file)
                for unit in self.units.values()}

    def objects_in(self, target):
        """Of a library: ours by their sources, and those of the project's that are kept."""
        ours = {unit.file: self.object_of(unit.file) for unit in self.units.values() if unit.target == target}
        return ours, [self.preset / path for its_target, path in self.kept if its_target == target]

    def executables(self):
        return {**self.suites, **{name: name for name in self.programs}}

    def write_rules(self):
        lines = [RULES.format(folder=self.preset)]
        for unit in self.units.values():
            lines.append(f"build {self.object_of(unit.file)}: compile {self.folder / 'source' / unit.file}\n"
                         f"  compile = {unit.command} {flags(unit)}")
        for target in {unit.target for unit in self.units.values() if self.is_library(unit)}:
            ours, kept = self.objects_in(target)
            objects = " ".join(map(str, [*ours.values(), *kept]))
            lines.append(f"build {self.archive_of(target)}: archive {objects}")
        for name, its_object in zip(OWN_SOURCES, self.own_objects()):
            lines.append(f"build {its_object}: compile {ROOT}/tests/mutants/{name}.cpp\n"
                         f"  compile = c++ -std=c++20 -O2 -I{ROOT}")
        needed = " ".join(map(str, [*self.replaced().values(), *self.own_objects()]))
        for name, path in self.executables().items():
            programs = " ".join(str(self.folder / each) for each in self.programs if name in FROM_OUTSIDE)
            lines.append(f"build {self.folder / name}: link | {self.preset / path} {needed} {programs}\n"
                         f"  link = {self.link_of(name, self.replaced(), self.folder)}")
        write(self.folder / "build.ninja", "\n".join(lines) + "\n")

    def link_beside_programs(self):
        for name in BESIDE_PROGRAMS if self.programs else ():
            (self.folder / name).unlink(missing_ok=True)
            (self.folder / name).symlink_to(self.preset / name)

    def build(self):
        """Mistakes that do not compile beside the original are left out."""
        for file in self.units:
            self.remember_left_out(file)
            self.write_source(file)
        self.write_rules()
        self.link_beside_programs()
        while True:
            done = subprocess.run([*self.ninja, *[str(self.folder / suite) for suite in self.suites]],
                                  capture_output=True, text=True, errors="replace")
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
        for path, line in first_errors(said, self.folder / "source"):
            schema = self.schemata[path]
            constants = [schema.names[name] for name in names if name in schema.names]
            self.left_out |= set().union(*constants) or schema.blamed(line)
            files.add(path)
        return files


class Alone:
    """The executables with one mistake that is compiled by itself, while it is entered. Throws DoesNotBuild."""

    def __init__(self, build, mutant):
        self.build, self.unit = build, build.units[Path(mutant.file)]
        self.text = mutant.mutation.applied((ROOT / mutant.file).read_text())

    def __enter__(self):
        self.folder = Path(tempfile.mkdtemp(prefix="mutant-"))
        try:
            self.replaced = self.compile()
        except DoesNotBuild:
            self.__exit__()
            raise
        return self

    def __exit__(self, *_):
        shutil.rmtree(self.folder)

    def compile(self):
        """What is linked for what the project has built."""
        build, unit, own = self.build, self.unit, self.folder / "own.o"
        source = self.folder / unit.file
        write(source, self.text)
        ran(f"{unit.command} {flags(unit)} -o {own} -c {source}", build.preset)
        if not build.is_library(unit):
            return {**build.replaced(), unit.object: own}
        archive = self.folder / f"lib{unit.target}.a"
        ours, kept = build.objects_in(unit.target)
        ran(["ar", "rcsT", archive, *{**ours, unit.file: own}.values(), *kept], self.folder)
        return {**build.replaced(), f"lib{unit.target}.a": archive}

    def link(self, suite):
        """The executable of a suite."""
        ran(self.build.link_of(suite, self.replaced, self.folder), self.build.preset)
        return self.folder / suite


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
    complaint = rf"^{re.escape(str(folder))}/([^:\n]+):(\d+):\d+:\s+(?:(?:fatal )?error: (.*)|  required from here)"
    for found in re.finditer(complaint, said, re.M):
        path, line = Path(found[1]), int(found[2])
        if path not in seen or OF_TYPES.search(found[3] or ""):
            yield path, line
        seen.add(path)


def no_constants(said):
    """Names that the compiler misses as constants."""
    missed = r"‘[^’]*?(\w+)’ (?:is not usable in a constant expression|was not declared ‘constexpr’)"
    return set(re.findall(missed, said))
