"""What of an expected value's literals has to change for it to become the actual value.

Values are bytes, whole numbers, truths, lists, and ABSENT; None stands for any other."""
import difflib
import json
import re
from dataclasses import dataclass

from cpp_literals import fits_raw, folded, plain, raw, with_number, with_texts

ABSENT = 'absent'
COLUMNS = 96  # of a line, without what closes a statement


@dataclass(frozen=True)
class Edit:
    """The tokens [first, last) of a source are to be written otherwise."""
    source: object
    first: int
    last: int
    text: str


def value_of(data):
    """A value as the tests have kept it."""
    if isinstance(data, dict):
        return bytes.fromhex(data['text']) if data else ABSENT
    return [value_of(each) for each in data] if isinstance(data, list) else data


def edits(finder, source, part, way, expected, actual):
    """The edits of the leaves of one way; None when they do not make the actual value."""
    if expected is None or actual is None:
        return None
    if isinstance(expected, bytes) and isinstance(actual, bytes):
        return _text_edits(way, expected, actual)
    if isinstance(expected, list) and isinstance(actual, list):
        return _list_edits(finder, way, expected, actual)
    return _scalar_edits(source, part, way, expected, actual)


def consistent(way, expected):
    """Whether a value may have been made of the leaves of this way."""
    if isinstance(expected, bytes):
        return all(_occurrences(leaf, expected) for leaf in way
                   if leaf.kind == 'text' and leaf.value)
    if isinstance(expected, bool):
        return any(leaf.kind == 'truth' and leaf.value == expected for leaf in way)
    if isinstance(expected, int):
        numbers = [leaf.value for leaf in way if leaf.kind == 'number']
        return expected in numbers if len(numbers) == 1 else True
    return True


def written(value):
    """A value as a literal; None when it has none here."""
    if isinstance(value, bytes):
        if b'\0' in value:
            return None
        return raw(value) if b'"' in value and fits_raw(value) else f'"{plain(value)}"'
    if isinstance(value, bool):
        return 'true' if value else 'false'
    if isinstance(value, int):
        return ('-' if value < 0 else '') + with_number('0', abs(value))
    if isinstance(value, list):
        items = [written(each) for each in value]
        return None if None in items else '{' + ', '.join(items) + '}'
    return 'std::nullopt' if value == ABSENT else None


def _encodings(leaf):
    """How a leaf may stand in a text: (its bytes, what brings other bytes back to its value)."""
    if leaf.kind == 'number':
        return [(str(leaf.value).encode(), _number)]
    if leaf.kind == 'truth':
        return [(str(leaf.value).lower().encode(), {b'true': True, b'false': False}.get)]
    found = [(leaf.value, bytes)]
    quoted = _quoted(leaf.value)
    if quoted is not None and quoted != leaf.value:
        found.append((quoted, _unquoted))
    return found


def _number(new):
    return int(new) if re.fullmatch(rb'-?\d+', new) else None


def _quoted(value):
    try:
        return json.dumps(value.decode(), ensure_ascii=False)[1:-1].encode()
    except UnicodeDecodeError:
        return None


def _unquoted(new):
    try:
        return json.loads('"' + new.decode() + '"').encode()
    except ValueError:
        return None


def _occurrences(leaf, text):
    """Where a leaf stands in a text: (start, end, what brings other bytes back)."""
    found = []
    for encoded, back in _encodings(leaf):
        start = text.find(encoded)
        while start >= 0 and encoded:
            found.append((start, start + len(encoded), back))
            start = text.find(encoded, start + 1)
    if leaf.value == b'' and text == b'':
        found.append((0, 0, bytes))
    return found


def _leaf_edit(leaf, value):
    """The edit that gives a leaf another value; None when it cannot be written."""
    texts = [token.text for token in leaf.tokens]
    if leaf.kind == 'text':
        if value is None or (b'\0' in value and not _counted(leaf)):
            return None
        if _counted(leaf):
            text = ' '.join(with_texts(texts, value))
            return Edit(leaf.source, leaf.first, leaf.last + 2, f'{text}, {len(value)}')
        return Edit(leaf.source, leaf.first, leaf.last, _spaced(leaf, _folded(leaf, texts, value)))
    if value is None:
        return None
    if leaf.kind == 'number':
        text = ('-' if value < 0 else '') + with_number(texts[-1], abs(value))
    else:
        text = written(value)
    return Edit(leaf.source, leaf.first, leaf.last, text)


def _folded(leaf, texts, value):
    """The pieces of a literal with another value; those grown beyond a line are parted."""
    news = with_texts(texts, value)
    rooms = [COLUMNS - leaf.source.column(token.start) for token in leaf.tokens]
    return [folded(new, room) if len(new) > len(old) else new
            for old, new, room in zip(texts, news, rooms)]


def _counted(leaf):
    """Whether a literal stands in std::string("...", LENGTH)."""
    source = leaf.source
    around = [source.at(place) for place in (leaf.first - 1, leaf.last, leaf.last + 2)]
    return around == ['(', ',', ')'] and source.at(leaf.last + 1) == str(len(leaf.value)) \
        and source.at(leaf.first - 2) in ('string', 'string_view')


def _spaced(leaf, texts):
    """The pieces of a literal with what stood between them, without those that are empty now."""
    kept, result = [text for text in texts if len(text) > 2 and text != 'R"()"'], ''
    for token, after, text in zip(leaf.tokens, leaf.tokens[1:] + [None], texts):
        if text in kept:
            result += text
            result += leaf.source.text[token.end:after.start] if after else ''
    return result.strip() or '""'


def _text_edits(way, expected, actual):
    leaves = [leaf for leaf in way if leaf.kind in ('text', 'number', 'truth')]
    for kinds in (('text',), ('number', 'truth')):
        for leaf in leaves:
            for start, end, back in _occurrences(leaf, expected) if leaf.kind in kinds else []:
                tail = len(expected) - end
                if actual.startswith(expected[:start]) and actual.endswith(expected[end:]) \
                        and len(actual) >= start + tail:
                    edit = _leaf_edit(leaf, back(actual[start:len(actual) - tail]))
                    if edit is not None:
                        return [edit]
    return _many_text_edits(leaves, expected, actual)


def _many_text_edits(leaves, expected, actual):
    """Several leaves change: they stand in the text in their order, what is between them stays."""
    pattern, end, slots = b'', 0, []
    for leaf in leaves:
        after = [each for each in _occurrences(leaf, expected) if each[0] >= end]
        if leaf.value == b'' or not after:
            continue
        start, stop, back = min(after, key=lambda each: each[:2])
        pattern += re.escape(expected[end:start]) + b'(.*?)'
        slots.append((leaf, expected[start:stop], back))
        end = stop
    pattern += re.escape(expected[end:])
    short = re.fullmatch(pattern, actual, re.S)
    if not slots or short is None:
        return None
    news = short.groups()
    if news != re.fullmatch(pattern.replace(b'(.*?)', b'(.*)'), actual, re.S).groups():
        olds = [old for _, old, _ in slots]
        news = _aligned(expected, olds, actual) if expected == b''.join(olds) else None
    found = [_leaf_edit(leaf, back(new)) for (leaf, old, back), new in zip(slots, news or [])
             if new != old]
    return None if None in found or news is None else found


def _aligned(expected, pieces, actual):
    """The pieces of a text in another one; None where what stays does not reach a border."""
    blocks = difflib.SequenceMatcher(None, expected, actual, autojunk=False).get_matching_blocks()
    borders, end = [0], 0
    for piece in pieces[:-1]:
        end += len(piece)
        block = next((each for each in blocks if each.a < end <= each.a + each.size), None)
        if block is None:
            return None
        borders.append(block.b + end - block.a)
    return [actual[start:stop] for start, stop in zip(borders, borders[1:] + [len(actual)])]


def _list_edits(finder, way, expected, actual):
    for leaf in way:
        if leaf.kind != 'list':
            continue
        items = leaf.items
        values = [_literal_value(finder, leaf.source, item) for item in items]
        for start in range(len(expected) - len(items) + 1):
            tail = len(expected) - start - len(items)
            here = expected[start:start + len(items)]
            new = actual[start:len(actual) - tail]
            if actual[:start] == expected[:start] and len(actual) >= start + tail \
                    and actual[len(actual) - tail:] == expected[len(expected) - tail:] \
                    and all(value in (None, old) for value, old in zip(values, here)):
                found = _item_edits(finder, leaf, items, here, new)
                if found is not None:
                    return found
    return None


def _literal_value(finder, source, item):
    """The value of an item that is nothing but a literal; None of another one."""
    ways = finder.ways(source, item, 0)
    if len(ways) == 1 and len(ways[0]) == 1 and ways[0][0].kind != 'list' \
            and (ways[0][0].first, ways[0][0].last) == item:
        return ways[0][0].value
    return None


def _item_edits(finder, leaf, items, old, new):
    """Edits of some items; of the whole list, when there are more or fewer."""
    if len(old) == len(new):
        found = []
        for item, before, after in zip(items, old, new):
            if before != after:
                ways = finder.ways(leaf.source, item)
                more = edits(finder, leaf.source, item, ways[0], before, after) \
                    if len(ways) == 1 else None
                if more is None:
                    break
                found += more
        else:
            return found
    texts = []
    keys = [repr(each) for each in old], [repr(each) for each in new]
    for what, first, last, new_first, new_last in difflib.SequenceMatcher(
            None, *keys, autojunk=False).get_opcodes():
        if what == 'equal':
            texts += [leaf.source.original(item) for item in items[first:last]]
        else:
            texts += [written(each) for each in new[new_first:new_last]]
    return None if None in texts else [
        Edit(leaf.source, leaf.first, leaf.last, '{' + ', '.join(texts) + '}')]


def _scalar_edits(source, part, way, expected, actual):
    alike = [leaf for leaf in way if leaf.kind == 'absent' or leaf.value == expected
             and isinstance(leaf.value, bool) == isinstance(expected, bool)]
    if len(way) == 1 and len(alike) == 1 and (expected == ABSENT) == (alike[0].kind == 'absent'):
        if actual == ABSENT or alike[0].kind == 'absent' or isinstance(actual, (bytes, list)):
            text = written(actual)
            return text and [Edit(alike[0].source, alike[0].first, alike[0].last, text)]
        edit = _leaf_edit(alike[0], actual)
        return edit and [edit]
    if not (type(expected) is int and type(actual) is int):
        return None
    terms = [leaf for leaf in way if leaf.kind == 'number' and leaf.value is not None
             and leaf.source.at(leaf.first - 1) in ('+', ',', '(', '=')
             and leaf.source.at(leaf.last) in ('+', '-', ',', ')', ';')]
    terms = [leaf for leaf in terms
             if leaf.source == source and part[0] <= leaf.first < part[1]] or terms
    if len(terms) == 1:
        edit = _leaf_edit(terms[0], terms[0].value + actual - expected)
        return edit and [edit]
    sum_alone = all(source.tokens[place].kind == 'number' or source.at(place) in '+-*'
                    for place in range(*part))
    return [Edit(source, *part, written(actual))] if sum_alone else None
