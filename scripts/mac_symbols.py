"""Finds what the product for a Mac uses of macOS: in the executable, in the objects that it is
linked from, in our declarations of the frameworks, and in our sources."""
import os
import re
from dataclasses import dataclass, field
from pathlib import Path

from mac_declarations import read_header, types_in, without_comments
from mach_o import CLASS_PREFIX, imports, libraries, sent_selectors

ADAPTERS = Path('platform/macos')
DECLARATIONS = ADAPTERS / 'declarations'
# Compiler and C++ library make calls to it of what our sources do not name.
SYSTEM = 'libSystem'
# That of Xcode 15.1, which the pages promise. What macOS 14.0 lacks of it stands behind @available.
OLDEST_SDK = '14.2'
FOLDERS = ('base', 'main', 'accessibility', 'input', 'capture', 'guard', 'platform/posix')

# Names that the system knows and no library exports, by how they look in our sources.
# A function that is looked up begins with a capital letter, or is written where it is looked up.
LOOKED_UP = r'"(?!AX)(_*[A-Z]+[a-z]\w*)"|\b(?:find\w*Symbol|sym<\w+>)\([^;]*?"(\w+)"'
NAMES = {
    'file': r'"(/[A-Za-z][^"]*)"',
    'name': r'"(AX[A-Z]\w*|(?:com\.apple|public)\.[^"]+)"',
    'key': r'\bCFSTR\("([^"]+)"\)',
}


@dataclass
class Symbol:
    """One thing of the system: what it is called, what kind it is, where it comes from."""
    name: str
    kind: str  # function, class, member, value, structure, looked up, file, name, key, number
    library: str  # or framework; empty for what is found in our sources
    users: set = field(default_factory=set)
    value: str = ''
    owner: str = ''  # of a member: its class or protocol


def sources_in(root):
    """Our sources of the executable, without their comments, by path."""
    paths = [path for folder in FOLDERS for path in sorted((root / folder).rglob('*'))]
    paths += sorted((root / 'platform').glob('*.h')) + sorted((root / ADAPTERS).glob('*'))
    return {str(path.relative_to(root)): without_comments(path.read_text()) for path in paths
            if path.suffix in ('.h', '.cpp', '.mm') and not path.stem.endswith('_test')}


def objects_in(root, build):
    """What each of our sources was compiled to, by the source's path."""
    objects = {}
    for path in build.rglob('driver.dir/**/*.o'):
        inside = str(path).split('driver.dir/', 1)[1].replace('__/', '../')
        source = os.path.normpath(ADAPTERS / inside.removesuffix('.o'))
        if (root / source).exists():
            objects[source] = path.read_bytes()
    return objects


def library_of(install_name):
    return Path(install_name).name.split('.')[0]


def plain_name(imported):
    return imported.removeprefix(CLASS_PREFIX) if imported.startswith(CLASS_PREFIX) \
        else imported.removeprefix('_')


def imported_symbols(executable, objects, sources):
    loaded = [library_of(name) for name in libraries(executable)]
    users = {}
    for source, data in objects.items():
        for name, _ in imports(data):
            users.setdefault(name, set()).add(source)
    for name, number in sorted(set(imports(executable))):
        kind = 'class' if name.startswith(CLASS_PREFIX) else 'function'
        symbol = Symbol(plain_name(name), kind, loaded[number - 1], users.get(name, set()))
        if symbol.library == SYSTEM:
            symbol.users = {source for source in mentions(symbol.name, sources)
                            if source in symbol.users}
        yield symbol


def with_subtypes(name, types):
    """The names of a class or protocol and of all that inherit from it or adopt it."""
    found = {name}
    while True:
        more = {each.name for each in types if each.parent in found or each.protocols & found}
        if more <= found:
            return found
        found |= more


def seen_by(source, sources):
    """A source with the headers of the adapters that it includes."""
    seen, waiting = set(), [source]
    while waiting:
        path = waiting.pop()
        if path in sources and path not in seen:
            seen.add(path)
            waiting += re.findall(r'#(?:include|import) "(platform/macos/[^"]+)"', sources[path])
    return '\n'.join(sources[path] for path in seen)


def users_of_member(owner, selectors, types, sources, sent):
    """Where several classes have a member by the same name, a user of it names its class too, or
    else includes its framework."""
    candidates = {source for source, found in sent.items() if found & set(selectors)}
    owners = {each.name for each in types for declared in each.members.values()
              if set(declared) & set(selectors)}
    if len(owners) == 1:
        return candidates
    related = '|'.join(sorted(with_subtypes(owner.name, types)))
    for sign in (rf'\b(?:{related})\b', rf'<{owner.framework}/'):
        users = {source for source in candidates if re.search(sign, seen_by(source, sources))}
        if users:
            return users
    return set()


def members(headers, sources, sent):
    """The methods and properties that we declare. `sent` has what a source sends or implements."""
    types = [each for header in headers.values() for each in header.types]
    for framework, header in headers.items():
        for each in header.types:
            each.framework = framework
            for name, selectors in each.members.items():
                users = users_of_member(each, selectors, types, sources, sent)
                yield Symbol(name, 'member', framework, users, owner=each.name)


def selectors_in(types):
    return {selector for each in types for selectors in each.members.values()
            for selector in selectors}


def undeclared_selectors(headers, own, sent):
    """What is sent without a declaration of ours: methods that the runtime's headers declare."""
    known = selectors_in(each for header in headers.values() for each in header.types)
    known = known.union(*own.values())
    for selector in sorted(set().union(*sent.values()) - known):
        users = {source for source, found in sent.items() if selector in found}
        yield Symbol(f'-[NSObject {selector}]', 'member', 'libobjc', users, owner='NSObject')


def mentions(name, sources):
    pattern = re.compile(rf'\b{re.escape(name)}\b')
    return {source for source, text in sources.items() if pattern.search(text)}


def values_and_structures(headers, sources):
    for framework, header in headers.items():
        for name, value in header.values.items():
            yield Symbol(name, 'value', framework, mentions(name, sources), value)
        for name in header.structures:
            yield Symbol(name, 'structure', framework, mentions(name, sources))


def names_in_sources(sources):
    found = {}
    for source, text in sources.items():
        patterns = dict(NAMES)
        if '"platform/loader.h"' in text and not source.startswith(str(ADAPTERS)):
            patterns = {'looked up': LOOKED_UP} | patterns
        for kind, pattern in patterns.items():
            for match in re.finditer(pattern, text):
                name = match.group(match.lastindex)
                symbol = Symbol(name if kind == 'looked up' else f'"{name}"', kind, '')
                found.setdefault(symbol.name, symbol).users.add(source)
    return list(found.values())


def declared_headers(root):
    return {path.relative_to(root / DECLARATIONS).parts[0].removesuffix('.framework'):
            read_header(path.read_text())
            for path in sorted((root / DECLARATIONS).rglob('*.h'))}


def release(version):
    return tuple(map(int, version.split('.')))


def problems_with(symbols, headers):
    """What is declared and not used, what nobody can be said to use, and what some SDKs lack."""
    imported = {symbol.name for symbol in symbols if symbol.kind == 'function'}
    unused = [name for header in headers.values() for name in header.plain if name not in imported]
    unused += [symbol.name for symbol in symbols
               if symbol.kind in ('member', 'value') and not symbol.users]
    newer = [(framework, version) for framework, header in headers.items()
             for version in header.versions if release(version) > release(OLDEST_SDK)]
    return [*(f'{name} is declared and not used' for name in unused),
            *(f'{framework} declares what came with macOS {version}, and the oldest SDK is that of '
              f'{OLDEST_SDK}' for framework, version in newer)]


def find_symbols(root, build):
    """All symbols, and the problems met."""
    executable = (build / 'driver').read_bytes()
    objects, sources, headers = objects_in(root, build), sources_in(root), declared_headers(root)
    own = {source: selectors_in(types_in(text)) for source, text in sources.items()
           if source.endswith('.mm')}
    sent = {source: selectors | sent_selectors(objects[source]) for source, selectors in own.items()
            if source in objects}
    symbols = [*imported_symbols(executable, objects, sources),
               *members(headers, sources, sent),
               *undeclared_selectors(headers, own, sent), *values_and_structures(headers, sources),
               *names_in_sources(sources)]
    return symbols, problems_with(symbols, headers)
