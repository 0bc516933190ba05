"""A project's executables with another text in one source, made beside the project: that source alone is compiled,
and linked with what the project has built. So there may be several at once, and nothing is built anew after one."""
import json
import re
import shlex
import shutil
import subprocess
import tempfile
from pathlib import Path


class DoesNotBuild(Exception):
    """What the compiler says."""


def ran(command, folder):
    """Throws DoesNotBuild when it fails."""
    done = subprocess.run(command, cwd=folder, shell=isinstance(command, str), capture_output=True, text=True, errors="replace")
    if done.returncode != 0:
        raise DoesNotBuild(done.stdout + done.stderr)


class Commands:
    """How a build folder of Ninja's compiles and links."""

    def __init__(self, folder):
        self.folder = folder
        self.compilations = json.loads((folder / "compile_commands.json").read_text())
        self.links = {}

    def compilation_of(self, source, executable):
        """(command, object): of an executable's own source, or of one in a library. None when no target has it."""
        found = []
        for each in self.compilations:
            if each["file"] == str(source):
                words = shlex.split(each["command"])
                found.append((each["command"], words[words.index("-o") + 1]))
        own = [each for each in found if f"/{executable}.dir/" in "/" + each[1]]
        return (own or found or [None])[0]

    def link_of(self, path):
        """The command that links an executable, by its path in the folder."""
        if path not in self.links:
            listed = subprocess.run(["ninja", "-C", self.folder, "-t", "commands", path], check=True,
                                    capture_output=True, text=True).stdout.splitlines()
            self.links[path] = next(line for line in reversed(listed) if f" -o {path} " in line)
        return self.links[path]


class Variant:
    """The executables with another text in one file; they go when it is left."""

    def __init__(self, commands, source_root, file, text):
        self.commands, self.source, self.file, self.text = commands, source_root / file, file, text

    def __enter__(self):
        self.folder = Path(tempfile.mkdtemp(prefix="variant-"))
        self.changed = self.folder / "source" / self.file
        self.changed.parent.mkdir(parents=True)
        self.changed.write_text(self.text)
        self.objects = {}
        return self

    def __exit__(self, *_):
        shutil.rmtree(self.folder)

    def object_for(self, executable):
        """(what the project has built of the source, what stands in its place). Throws DoesNotBuild."""
        compilation = self.commands.compilation_of(self.source, executable)
        if compilation is None:
            raise DoesNotBuild(f"no target has {self.file}")
        command, built = compilation
        if built not in self.objects:
            own = self.folder / f"{len(self.objects)}.o"
            command = command.replace(f" -o {built} ", f" -o {own} ").replace(f" -c {self.source}", f" -c {self.changed}")
            ran(command, self.commands.folder)
            self.objects[built] = own
        return built, self.objects[built]

    def build(self, path):
        """Builds an executable and gives its path; the argument is the one in the project's build folder.
        Throws DoesNotBuild."""
        built, own = self.object_for(Path(path).name)
        target = self.folder / Path(path).name
        link = self.commands.link_of(path).replace(f" -o {path} ", f" -o {target} ")
        if f" {built} " in link:
            link = link.replace(f" {built} ", f" {own} ")
        else:
            # The first definition counts, so that a library's own is passed over.
            link = re.sub(r"^(: && \S+)", rf"\1 -Wl,-z,muldefs {own}", link)
        if shutil.which("ld.lld"):
            link = link.replace("-fuse-ld=gold", "-fuse-ld=lld")
        ran(link, self.commands.folder)
        return target
