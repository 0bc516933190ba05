"""Finds the literals in C++ sources from which an expected value is made."""
from dataclasses import dataclass

from cpp_literals import number_value, text_value
from cpp_source import (PAIRS, Source, field_of, function_body, initial, last_name,
                        namespace_places, parameters_before, row_type)
from expected_uses import only_expected

MOST_STEPS = 6
MOST_WAYS = 4_000


@dataclass(frozen=True)
class Leaf:
    """A literal, adjacent ones taken together, or a list in braces: the tokens [first, last)."""
    source: Source
    kind: str
    first: int
    last: int

    @property
    def tokens(self):
        return self.source.tokens[self.first:self.last]

    @property
    def value(self):
        texts = [token.text for token in self.tokens]
        if self.kind == 'text':
            return b''.join(text_value(text) for text in texts)
        if self.kind == 'number':
            return number_value(texts[-1]) * (-1 if texts[0] == '-' else 1)
        if self.kind == 'truth':
            return texts[0] == 'true'
        return None  # 'absent', and lists: see items

    @property
    def items(self):
        return self.source.split(self.first + 1, self.last - 1)

    @property
    def place(self):
        return f'{self.source.name}:{self.source.line(self.tokens[0].start)}'


class Finder:
    """Finds leaves. `shared` are sources of helpers that every test may use."""

    def __init__(self, shared=()):
        self.shared = list(shared)

    def ways(self, source, part, steps=MOST_STEPS):
        """The ways in which an expression may be made of leaves: a list of lists of leaves. There
        are several where a row of a table or a caller's argument is meant."""
        found = [[]]
        place = part[0]
        while place < part[1]:
            if source.at(place) in PAIRS and source.tokens[place].kind == 'sign' \
                    and source.at(place) != '{':
                place += 1
                continue
            more, after = self._at(source, place, part[1], steps)
            found = joined(found, more)
            place = after
        return found

    def _at(self, source, place, end, steps):
        token = source.tokens[place]
        if token.kind == 'text':
            last = place
            while last < end and source.tokens[last].kind == 'text':
                last += 1
            usable = all(text_value(each.text) is not None for each in source.tokens[place:last])
            return [[Leaf(source, 'text', place, last)] if usable else []], last
        if token.kind == 'number' and number_value(token.text) is not None:
            minus = source.at(place - 1) == '-' and source.at(place - 2) in ('(', ',', '{', '=', '')
            return [[Leaf(source, 'number', place - minus, place + 1)]], place + 1
        if token.text in ('true', 'false'):
            return [[Leaf(source, 'truth', place, place + 1)]], place + 1
        if token.text == '{' and source.partner.get(place):
            last = source.partner[place] + 1
            inside = self.ways(source, (place + 1, last - 1), steps)
            return [[Leaf(source, 'list', place, last)] + each for each in inside], last
        if token.kind == 'name':
            return self._name(source, place, end, steps)
        return [[]], place + 1

    def _name(self, source, place, end, steps):
        name, after = source.at(place), place + 1
        if source.at(place - 1) in ('::', '.', '->') or source.at(after) == '::':
            if name == 'nullopt':
                return [[Leaf(source, 'absent', place - 2, after)]], after
            return [[]], after
        member = None
        if source.at(after) == '.' and source.at(after + 2) != '(':
            member, after = source.at(after + 1), after + 2
        if not steps:
            return [[]], after
        if source.at(after) == '(':
            return self._returned(source, name, steps - 1), after
        return self.named(source, name, place, member, steps - 1) or [[]], after

    def _returned(self, source, name, steps):
        """What a function of the same source, or a shared one, returns."""
        if not only_expected(source, name):
            return [[]]
        for where in [source, *self.shared]:
            for place in where.named[name]:
                if where.at(place + 1) == '(' and (body := function_body(where, place)):
                    found = [[]]
                    for at in range(body, where.partner[body]):
                        if where.at(at) == 'return' and where.at(at - 1) in ('{', ';', '}', ')'):
                            part = where.split(at + 1, where.partner[body], ';')[0]
                            found = joined(found, [literal_leaves(where, part)])
                    return found
        return [[]]

    def named(self, source, name, use, member, steps):
        """The ways to the leaves of a name that is used there; none where it is not known."""
        for block in [*source.blocks(use), None]:
            for place in reversed(source.named[name]):
                if source.parent[place] == block and (block is None or block < place < use) \
                        and (part := initial(source, place)):
                    if not only_expected(source, name, None, block):
                        return []
                    return self.ways(source, self._field(source, part, member), steps)
            if block is None:
                break
            if source.at(block) == '{':
                rows = self._loop(source, name, block, member, steps)
                if rows is None:
                    rows = self._parameter(source, name, block, member, steps)
                if rows is not None:
                    return rows if only_expected(source, name, member, block) else []
        for block_place in namespace_places(source, name):
            if (part := initial(source, block_place)) and only_expected(source, name):
                return self.ways(source, self._field(source, part, member), steps)
        for where in self.shared:
            for place in namespace_places(where, name):
                if (part := initial(where, place)) and only_expected(source, name):
                    return self.ways(where, self._field(where, part, member), steps)
        return []

    def _field(self, source, part, member):
        if member is None or source.at(part[1] - 1) != '}':
            return part
        start = source.partner[part[1] - 1]
        return field_of(source, (start, part[1]), member, part) or part

    def _loop(self, source, name, block, member, steps):
        """The rows' cells, where the block is the body of a loop over rows that binds the name."""
        head = source.partner.get(block - 1)
        if head is None or source.at(block - 1) != ')' or source.at(head - 1) != 'for':
            return None
        parts = source.split(head + 1, block - 1, ':')
        if len(parts) != 2:
            return None
        bound, rows = parts
        names = [source.at(place) for place in range(*bound)]
        if name not in names:
            return None
        listed = [bound[0] + at for at, text in enumerate(names) if text == '[']
        index = None
        if listed:
            columns = source.split(listed[0] + 1, source.partner[listed[0]])
            index = [source.written(column) for column in columns].index(name)
        elif names[-1] != name:
            return None
        table = self._table(source, rows, block, steps)
        if table is None:
            return []
        where, items, kind = table
        return self._cells(where, items, index, member, kind, steps)

    def _table(self, source, rows, use, steps):
        """The rows of a table: (source, parts, the name of their type)."""
        if source.at(rows[1] - 1) == '}':
            start = source.partner[rows[1] - 1]
            return source, source.split(start + 1, rows[1] - 1), None
        if rows[1] - rows[0] != 1 or not steps:
            return None
        name = source.at(rows[0])
        for place in reversed(source.named[name]):
            part = initial(source, place) if place < use else None
            if part and source.at(part[1] - 1) == '}':
                start = source.partner[part[1] - 1]
                return source, source.split(start + 1, part[1] - 1), row_type(source, place)
        return None

    def _cells(self, source, items, index, member, kind, steps):
        found = []
        for item in items:
            cell = item
            if source.at(item[1] - 1) == '}' and (index is not None or member is not None):
                start = source.partner[item[1] - 1]
                cells = source.split(start + 1, item[1] - 1)
                if index is None:
                    cell = field_of(source, (start, item[1]), member, None, kind)
                else:
                    cell = cells[index] if index < len(cells) else None
            if cell is None:
                found.append([])
                continue
            found += self.ways(source, cell, steps)
        return found if len(found) <= MOST_WAYS else []

    def _parameter(self, source, name, block, member, steps):
        """The arguments of all calls, where the block is a function's that takes the name."""
        head = parameters_before(source, block)
        if head is None:
            return None
        taken = source.split(head + 1, source.partner[head])
        names = [last_name(source, part) for part in taken]
        if name not in names:
            return None
        index = names.index(name)
        called = source.at(head - 1)
        if called == ']':  # a lambda: const auto NAME = [...](...) {
            called = source.at(source.partner[head - 1] - 2)
        found = []
        for place in source.named[called]:
            if source.at(place + 1) == '(' and place + 1 != head:
                if function_body(source, place):
                    continue
                arguments = source.split(place + 2, source.partner[place + 1])
                if index < len(arguments):
                    part = self._field(source, arguments[index], member)
                    found += self.ways(source, part, steps)
        return found if len(found) <= MOST_WAYS else []


def joined(left, right):
    """Each way of one list with the way of the other that belongs to it."""
    if len(left) == len(right):
        return [a + b for a, b in zip(left, right)]
    if len(left) == 1:
        return [left[0] + each for each in right]
    if len(right) == 1:
        return [each + right[0] for each in left]
    return [a + b for a in left for b in right] if len(left) * len(right) < MOST_WAYS else left


def literal_leaves(source, part):
    """All string literals of a part."""
    found, place = [], part[0]
    while place < part[1]:
        last = place
        while last < part[1] and source.tokens[last].kind == 'text':
            last += 1
        if last > place and all(text_value(each.text) is not None
                                for each in source.tokens[place:last]):
            found.append(Leaf(source, 'text', place, last))
        place = max(last, place + 1)
    return found
