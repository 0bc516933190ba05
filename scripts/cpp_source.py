"""The structure of a C++ source, as far as it takes to find how an expected value is made.

Positions are numbers of tokens; a part is a range of them, (first, last)."""
import bisect
import collections

from cpp_literals import tokens

PAIRS = {'(': ')', '[': ']', '{': '}'}


class Source:
    """A source file."""

    def __init__(self, path, name):
        self.path, self.name = path, name
        self.text = path.read_bytes().decode()
        self.tokens = tokens(self.text)
        self.partner, self.parent = {}, [None] * len(self.tokens)
        self.named = collections.defaultdict(list)  # the places of each name
        opened = []
        for place, token in enumerate(self.tokens):
            if token.kind == 'name':
                self.named[token.text].append(place)
            if token.kind == 'sign' and token.text in PAIRS.values() and opened:
                start = opened.pop()
                self.partner[start], self.partner[place] = place, start
            self.parent[place] = opened[-1] if opened else None
            if token.kind == 'sign' and token.text in PAIRS:
                opened.append(place)
        self.starts = [0] + [place + 1 for place, letter in enumerate(self.text) if letter == '\n']

    def __hash__(self):
        return hash(self.name)

    def __eq__(self, other):
        return self.name == other.name

    def line(self, offset):
        return bisect.bisect_right(self.starts, offset)

    def column(self, offset):
        return offset - self.starts[self.line(offset) - 1]

    def at(self, place):
        return self.tokens[place].text if 0 <= place < len(self.tokens) else ''

    def split(self, first, last, separator=','):
        """The parts of [first, last) between separators, as such ranges, without an empty last."""
        parts, start, place = [], first, first
        while place < last:
            if self.at(place) == separator and self.tokens[place].kind == 'sign':
                parts.append((start, place))
                start = place + 1
            if self.at(place) in PAIRS and self.tokens[place].kind == 'sign':
                place = self.partner[place]
            place += 1
        return parts + [(start, last)] if start < last else parts

    def written(self, part):
        return ''.join(token.text for token in self.tokens[part[0]:part[1]])

    def original(self, part):
        return self.text[self.tokens[part[0]].start:self.tokens[part[1] - 1].end]

    def comparisons(self):
        """Every equality: (first line, last line, expected part)."""
        for place in self.named['EXPECT_EQ'] + self.named['ASSERT_EQ']:
            token = self.tokens[place]
            if self.at(place + 1) == '(':
                parts = self.split(place + 2, self.partner[place + 1])
                if len(parts) == 2:
                    end = self.tokens[self.partner[place + 1]]
                    yield self.line(token.start), self.line(end.start), parts[1]

    def test_around(self, place):
        """The name of the test, as SUITE.NAME, in whose body a place is; None outside of tests."""
        for block in self.blocks(place):
            head = self.partner.get(block - 1)
            if head is not None and self.at(head - 1) in ('TEST', 'TEST_F', 'TEST_P'):
                return self.at(head + 1) + '.' + self.at(head + 3)
        return None

    def blocks(self, place):
        """The brackets around a place, the nearest first."""
        while (place := self.parent[place]) is not None:
            yield place


def initial(source, place):
    """The part with which a name is declared at a place; None where it is not declared."""
    before, after = source.tokens[place - 1] if place else None, source.at(place + 1)
    if before is None or not (before.kind == 'name' or before.text in ('>', '&', '*')) \
            or before.text in ('return', 'case', 'new', 'delete', 'else', 'goto', 'using'):
        return None
    if after == '[' and source.at(source.partner[place + 1] + 1) in ('=', '{'):
        place = source.partner[place + 1]
        after = source.at(place + 1)
    start = place + 1 if after in ('{', '(') else place + 2
    if after not in ('=', '{', '('):
        return None
    if after in '({':
        end = source.partner[place + 1] + 1
        if source.at(end) != ';' and source.at(end) != ',':
            return None
        return (start, end)
    parent = source.parent[place]
    last = source.partner[parent] if parent is not None else len(source.tokens)
    return source.split(start, last, ';')[0]


def row_type(source, place):
    """The name of the type of the rows of a table that is declared at a place."""
    names = []
    while source.at(place - 1) not in (';', '{', '}', ')', ''):
        place -= 1
        names.append(source.at(place))
    return next((name for name in names if f'struct {name}' in source.text), None)


def field_of(source, braces, member, whole, kind=None):
    """The part of a field in a value in braces, by its designator or by its type's order."""
    cells = source.split(braces[0] + 1, braces[1] - 1)
    for cell in cells:
        if source.at(cell[0]) == '.' and source.at(cell[0] + 1) == member:
            return (cell[0] + 3, cell[1])
    kind = kind or source.at(braces[0] - 1)
    for place in source.named['struct']:
        if source.at(place + 2) == '{' and source.at(place + 1) == kind:
            fields = source.split(place + 3, source.partner[place + 2], ';')
            names = [field_name(source, each) for each in fields]
            if member in names and names.index(member) < len(cells):
                return cells[names.index(member)]
    return None


def field_name(source, part):
    first = source.split(*part, '=')[0]
    return last_name(source, first)


def last_name(source, part):
    for place in reversed(range(*part)):
        if source.tokens[place].kind == 'name' and source.parent[place] == source.parent[part[0]]:
            return source.at(place)
    return None


def parameters_before(source, block):
    """The bracket that opens the parameters of the function whose body is this block."""
    place = block - 1
    while source.at(place) in ('const', 'mutable', 'noexcept'):
        place -= 1
    if source.at(place) != ')':
        return None
    head = source.partner[place]
    no_function = ('for', 'if', 'while', 'switch', 'TEST', 'TEST_F', 'TEST_P')
    return head if source.at(head - 1) not in no_function else None


def function_body(source, place):
    """The block of a function whose name stands at a place; None where it is not defined there."""
    close = source.partner.get(place + 1)
    if close is None or not (source.tokens[place - 1].kind == 'name'
                             or source.at(place - 1) in ('>', '&', '*')):
        return None
    while source.at(close + 1) in ('const', 'noexcept', 'override'):
        close += 1
    return close + 1 if source.at(close + 1) == '{' and source.at(place - 1) != 'return' else None


def namespace_places(source, name):
    """Where a name stands outside of functions and types."""
    for place in source.named[name]:
        if all(is_namespace(source, block) for block in source.blocks(place)):
            yield place


def is_namespace(source, block):
    return source.at(block) == '{' and 'namespace' in (source.at(block - 1), source.at(block - 2),
                                                       source.at(block - 3))
