"""Reads platform/macos/symbols.toml, what we know of the symbols of the system."""
import re
import tomllib
from dataclasses import dataclass, field

from mac_assumptions import problems_with_assumptions, read_assumptions
from mac_symbols import ADAPTERS, Symbol

NAME = re.compile(r'[-+]\[[^]]*\]|"[^"]*"|\S+')


@dataclass
class Entry:
    source: str
    basis: str
    assumptions: list = field(default_factory=list)


class Table:
    """The table of symbols. `problems` has what is wrong with it in itself."""

    def __init__(self, root):
        data = tomllib.loads((root / ADAPTERS / 'symbols.toml').read_text())
        self.bases = data['basis']
        self.libraries = data['library']
        self.assumptions = data.get('assumption', [])
        self.entries, self.problems, self.numbers = {}, [], []
        for group in data['group']:
            self._add_group(group)
        for number in data.get('number', []):
            self._add_number(root, number)
        for assumption in self.assumptions:
            self._add_assumption(assumption)
        self.problems += problems_with_assumptions(root)

    def answers(self):
        """The assumptions with what Macs have said of them."""
        return read_assumptions({'assumption': self.assumptions})

    def describe(self, symbols):
        """Gives an entry to each symbol without one whose library has one for all."""
        for library in self.libraries:
            for symbol in symbols:
                if 'basis' in library and symbol.library == library['name']:
                    self.entries.setdefault(symbol.name, Entry(library['source'], library['basis']))

    def _add_group(self, group):
        for name in NAME.findall(group['names']):
            self._add_entry(name, group)

    def _add_entry(self, name, group):
        if name in self.entries:
            self.problems.append(f'{name} has two entries')
        self.entries[name] = Entry(group['source'], group['basis'])

    def _add_assumption(self, assumption):
        for name in assumption['names']:
            if name in self.entries:
                self.entries[name].assumptions.append(assumption)
            else:
                self.problems.append(f'an assumption is made of {name}, which has no entry')

    def _add_number(self, root, number):
        contents = (root / number['file']).read_text()
        self.problems += [f'{number["file"]} has no "{text}"' for text in number['texts']
                          if text not in contents]
        self._add_entry(number['name'], number)
        self.numbers.append(Symbol(number['name'], 'number', '', {number['file']}))

    def is_confirmed(self, name):
        return self.bases[self.entries[name].basis]['confirmed']

    def problems_with(self, symbols):
        used = {symbol.name for symbol in symbols}
        libraries = {library['name'] for library in self.libraries} | {''}
        return [*self.problems,
                *(f'{name} is used and has no entry' for name in sorted(used - set(self.entries))),
                *(f'{name} has an entry and is not used'
                  for name in sorted(set(self.entries) - used)),
                *(f'{name} is not confirmed, and nothing is said to be assumed'
                  for name in sorted(used & set(self.entries))
                  if not self.is_confirmed(name) and not self.entries[name].assumptions),
                *(f'{library} is used and not described'
                  for library in sorted({symbol.library for symbol in symbols} - libraries))]
