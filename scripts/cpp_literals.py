"""Tokens of C++ sources, and the literals among them: what they mean, and how another value is
written in the way of the old one."""
import difflib
import re
from dataclasses import dataclass

TOKEN = re.compile(r'''
    (?P<space>\s+|//[^\n]*|/\*.*?\*/|\#[^\n]*)
  | (?P<text>(?:u8|u|U|L)?(?:R"(?P<mark>[^(\s"]*)\(.*?\)(?P=mark)"|"(?:\\.|[^"\\\n])*"))
  | (?P<character>(?:u8|u|U|L)?'(?:\\.|[^'\\\n])+')
  | (?P<number>\.?\d(?:[\w.]|'[0-9a-fA-F]|(?<=[eE])[-+])*)
  | (?P<name>[A-Za-z_]\w*)
  | (?P<sign>::|->|<<|>>|&&|\|\||\+\+|--|[-+*/%=!<>]=|\.\.\.|.)''', re.S | re.X)

RAW = re.compile(r'R"([^(\s"]*)\((.*)\)\1"', re.S)
ESCAPE = re.compile(r'''\\(?:(?P<octal>[0-7]{1,3})|x(?P<hex>[0-9a-fA-F]+)
    |u(?P<short>[0-9a-fA-F]{4})|U(?P<long>[0-9a-fA-F]{8})|(?P<one>.))''', re.X | re.S)
SIMPLE = {'n': b'\n', 't': b'\t', 'r': b'\r', 'a': b'\a', 'b': b'\b', 'f': b'\f', 'v': b'\v'}
WHOLE_NUMBER = re.compile(r"(0x[0-9a-fA-F']+|0b[01']+|[0-9][0-9']*)([uUlLzZ]*)")


@dataclass
class Token:
    kind: str
    text: str
    start: int
    end: int


def tokens(source):
    """All tokens but white space, comments and lines for the preprocessor."""
    return [Token(found.lastgroup if found.lastgroup != 'mark' else 'text', found.group(),
                  found.start(), found.end())
            for found in TOKEN.finditer(source) if found.group('space') is None]


def is_raw(literal):
    return literal.startswith('R"')


def units(literal):
    """A plain string literal in its characters and escapes: (how it is written, its bytes)."""
    found, place, body = [], 0, literal[1:-1]
    while place < len(body):
        escape = ESCAPE.match(body, place)
        written = escape.group() if escape else body[place]
        found.append((written, _meaning(escape) if escape else written.encode()))
        place += len(written)
    return found


def _meaning(escape):
    if escape['octal']:
        return bytes([int(escape['octal'], 8)])
    if escape['hex']:
        return bytes([int(escape['hex'], 16)])
    if escape['short'] or escape['long']:
        return chr(int(escape['short'] or escape['long'], 16)).encode()
    return SIMPLE.get(escape['one'], escape['one'].encode())


def text_value(literal):
    """The bytes of a string literal; None for one of another type of characters."""
    if is_raw(literal):
        return RAW.fullmatch(literal)[2].encode()
    return b''.join(meaning for _, meaning in units(literal)) if literal[0] == '"' else None


def plain(value):
    """The inside of a plain literal for these bytes."""
    written = ''
    for character in value.decode('utf-8', 'surrogateescape'):
        number = ord(character)
        if 0xdc80 <= number <= 0xdcff:
            written += f'\\{number - 0xdc00:03o}'
        elif character in '"\\':
            written += '\\' + character
        elif character in '\n\t\r':
            written += {'\n': '\\n', '\t': '\\t', '\r': '\\r'}[character]
        elif number < 0x20 or number == 0x7f:
            written += f'\\{number:03o}'
        elif number < 0x7f:
            written += character
        else:
            written += f'\\u{number:04X}' if number < 0x10000 else f'\\U{number:08X}'
    return written


def fits_raw(value):
    """Whether these bytes can stand in a raw literal."""
    try:
        return all(character == '\n' or character.isprintable() for character in value.decode())
    except UnicodeDecodeError:
        return False


def raw(value):
    mark = ''
    while f'){mark}"' in value.decode():
        mark += '~'
    return f'R"{mark}({value.decode()}){mark}"'


def with_text(literal, value):
    """A string literal with another value; what stays of it is written as before."""
    if is_raw(literal) and fits_raw(value):
        return raw(value)
    if is_raw(literal):
        return f'"{plain(value)}"'
    old = units(literal)
    first = 0
    while first < len(old) and value.startswith(_bytes(old[:first + 1])):
        first += 1
    start = len(_bytes(old[:first]))
    last = len(old)
    while last > first and value[start:].endswith(_bytes(old[last - 1:])):
        last -= 1
    middle = value[start:len(value) - len(_bytes(old[last:]))]
    try:
        middle.decode()
    except UnicodeDecodeError:
        return f'"{plain(value)}"'
    # An escape in hexadecimal digits takes those that follow.
    open_ended = first and old[first - 1][0].startswith('\\x')
    separator = '""' if open_ended and re.match(b'[0-9a-fA-F]', middle) else ''
    return '"' + _written(old[:first]) + separator + plain(middle) + _written(old[last:]) + '"'


def _bytes(some_units):
    return b''.join(meaning for _, meaning in some_units)


def _written(some_units):
    return ''.join(written for written, _ in some_units)


def with_texts(literals, value):
    """Adjacent string literals with another value, each piece changed as little as can be."""
    if len(literals) == 1:
        return [with_text(literals[0], value)]
    olds = [text_value(literal) for literal in literals]
    whole = b''.join(olds)
    ends, total = [], 0
    for old in olds:
        total += len(old)
        ends.append(total)
    news = [b''] * len(olds)
    for _, start, end, new_start, new_end in difflib.SequenceMatcher(
            None, whole, value, autojunk=False).get_opcodes():
        equal = whole[start:end] == value[new_start:new_end]
        for piece, last in enumerate(ends):
            if start >= last and piece < len(ends) - 1:
                continue
            if not equal:
                news[piece] += value[new_start:new_end]
                break
            stop = min(end, last)
            news[piece] += whole[start:stop]
            start = stop
            if start >= end:
                break
    return [with_text(literal, new) for literal, new in zip(literals, news)]


def folded(literal, room):
    """A raw literal of one line in pieces of at most so many columns, where it can be parted; the
    formatter parts plain ones."""
    if not literal.startswith('R"(') or '\n' in literal or len(literal) <= room:
        return literal
    inside = literal[3:-2]
    place = max(inside.rfind(mark, 0, room - 5) for mark in ', ') + 1
    if place <= 0 or ')"' in inside:
        return literal
    return f'R"({inside[:place]})" ' + folded(f'R"({inside[place:]})"', room)


def number_value(literal):
    """The value of a whole number; None for another one."""
    found = WHOLE_NUMBER.fullmatch(literal)
    return int(found[1].replace("'", ''), 0 if found[1][1:2] in 'xb' else 10) if found else None


def with_number(literal, value):
    """A whole number's literal with another value, which is not below 0."""
    digits, suffix = WHOLE_NUMBER.fullmatch(literal).groups()
    if digits.startswith('0x'):
        return f'0x{value:X}{suffix}'
    separated = value > 9_999 or "'" in digits
    return (f'{value:,}'.replace(',', "'") if separated else str(value)) + suffix
