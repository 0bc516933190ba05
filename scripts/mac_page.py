"""Writes the page of symbols, docs/MAC.md."""
import re

from mac_assumptions import PROBES, mac_page, one_line
from mac_symbols import ADAPTERS

USERS_MAX = 6
KINDS = (('looked up', 'Functions that are looked up'), ('number', 'Numbers'),
         ('key', 'Keys of dictionaries'), ('file', 'Files and tools'),
         ('name', 'Names in Accessibility, and other identifiers'),
         ('class', 'Classes'), ('function', 'Functions and constants'),
         ('member', 'Methods and properties'), ('structure', 'Structures'), ('value', 'Values'))

INTRODUCTION = '''# What a Mac has to have

This page has everything that `driver` uses of macOS, where it is described, and how sure of it we
are. It is for a reader with a Mac who wants to verify it, or who has seen something go wrong.
Assumptions come first, private functions before all others. The symbols that merely have to be
there follow.

`scripts/generate-mac-symbols` writes this page. It reads the symbols from the executable, from the
objects that it is linked from and from our sources. The rest stands in
`platform/macos/symbols.toml`. `scripts/check-macos` fails when a used symbol has no entry there,
when the symbol of an entry is not used, and when this page is not up to date.

The first thing that a Mac settles is the build. With the SDK's own headers the compiler checks all
declarations and values that the adapters use, and the linker checks every import and its library.
Private functions, names and numbers, and all behaviour, show only when `driver` runs. Begin with
`scripts/doctor`.

Each assumption has a name, and a probe that asks a Mac about it, or a reason why a person is
needed. `scripts/mac-facts` runs the probes. `scripts/mac-facts --apply` writes the answers of Macs
into this page and into [SIMULATOR.md](SIMULATOR.md), where each rule names its assumptions.

Files without a folder are in `platform/macos`. An asterisk marks the symbols of an assumption.

## How sure

| Checked | How | Symbols |
|---|---|---|
'''

WITHOUT = '''## What is not used

`driver` observes no notification, neither of the process nor of the workspace nor a distributed one:
the application object informs its delegate. It names no pasteboard type, since items travel as they
are. It reads no user default, and starts no tool but `dscl`.
'''


def code(name):
    return f'`{name}`'


def shown(symbol, table):
    text = f'{symbol.name} = {symbol.value}' if symbol.value else symbol.name
    mark = '\\*' if table.entries[symbol.name].assumptions else ''
    return code(text.replace('|', '\\|')) + mark


def shown_users(users):
    if len(users) > USERS_MAX:
        return 'many files'
    return ', '.join(code(path.removeprefix(f'{ADAPTERS}/')) for path in sorted(users)) or '—'


def row(cells):
    return f'| {" | ".join(cells)} |\n'


def natural(symbol):
    return re.sub(r'^[-+]\[|"', '', symbol.name).lower()


def table_of(symbols, table):
    """Symbols that are described, checked and used alike share a row."""
    rows = {}
    for symbol in symbols:
        entry = table.entries[symbol.name]
        key = (symbol.owner, entry.source, entry.basis, shown_users(symbol.users))
        rows.setdefault(key, []).append(symbol)
    text = row(('Symbol', 'Described in', 'Checked', 'Used in')) + '|---|---|---|---|\n'
    for (_, source, basis, users), alike in rows.items():
        names = ', '.join(shown(symbol, table) for symbol in alike)
        text += row((names, source, basis, users))
    return text


def sure(table, symbols):
    text = ''
    for basis, description in table.bases.items():
        count = sum(table.entries[symbol.name].basis == basis for symbol in symbols)
        text += row((basis, description['text'], str(count)))
    return text


def settled_by(each):
    """Who settles it: the program that asks a Mac, or a person."""
    if 'probe' in each:
        return f'  Probe: `{PROBES}/{each["probe"]}`  \n'
    return f'  A person is needed: {one_line(each["person"])}  \n'


def assumption(each, found):
    names = ', '.join(map(code, each['names']))
    users = set().union(*(found[name].users for name in each['names']))
    text = f'- **{each["id"]}**'
    text += f': {names} ({shown_users(users)})  \n' if names else '  \n'
    text += f'  Assumed: {one_line(each["assumed"])}  \n'
    for member, title in (('published', 'Published'), ('otherwise', 'Otherwise'),
                          ('shown', 'A Mac shows it')):
        if member in each:
            text += f'  {title}: {one_line(each[member])}  \n'
    return text + settled_by(each)


def assumptions(table, symbols):
    """Private functions, then what else is not confirmed, then how documented ones behave, and
    how applications and the system do."""
    found = {symbol.name: symbol for symbol in symbols}
    parts = {'Private functions': [], 'Other names and numbers without documentation': [],
             'How documented interfaces behave': [], 'How the system and applications behave': []}
    private, other, documented, behaviour = parts.values()
    for each in table.assumptions:
        if not each['names']:
            behaviour.append(each)
        elif any(found[name].kind == 'looked up' for name in each['names']):
            private.append(each)
        elif all(table.is_confirmed(name) for name in each['names']):
            documented.append(each)
        else:
            other.append(each)
    return ''.join(f'## {title}\n\n{"".join(assumption(each, found) for each in part)}\n'
                   for title, part in parts.items() if part)


def by_kind(symbols, table):
    text = ''
    for kind, title in KINDS:
        alike = [symbol for symbol in symbols if symbol.kind == kind]
        alike.sort(key=lambda symbol: natural(symbol) if kind != 'value' else '')
        if alike:
            text += f'{title}:\n\n{table_of(alike, table)}\n'
    return text


def library_section(description, table, symbols):
    own = [symbol for symbol in symbols if symbol.library == description['name']]
    return (f'### {description["name"]}\n\n{one_line(description["about"])}\n\n'
            f'{by_kind(own, table)}')


def page(table, symbols):
    """The page as it is in docs."""
    text = ''.join((INTRODUCTION, sure(table, symbols), '\n', assumptions(table, symbols),
                    '## All symbols\n\n### Names and numbers in our sources\n\n',
                    by_kind([symbol for symbol in symbols if not symbol.library], table),
                    *(library_section(description, table, symbols)
                      for description in table.libraries),
                    WITHOUT))
    return mac_page(text, table.answers())
