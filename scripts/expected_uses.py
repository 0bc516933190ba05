"""Whether a name of a C++ source serves expected values alone: what serves as input too must not
be rewritten, for then the test would ask for something else."""
from cpp_source import function_body, initial, last_name, parameters_before

MOST_STEPS = 6


def only_expected(source, name, member=None, block=None, steps=MOST_STEPS):
    """Whether all uses of a name in a block, or in the whole source, are in expected values, in
    messages, or in the making of what is only expected itself."""
    first, last = (0, len(source.tokens)) if block is None else (block, source.partner[block])
    return steps > 0 and all(
        _allowed(source, place, steps) for place in source.named[name]
        if first <= place < last and _is_use(source, place, member))


def _is_use(source, place, member):
    if source.at(place - 1) in ('.', '->') or initial(source, place):
        return False
    if member is not None:
        return source.at(place + 1) != '.' or source.at(place + 2) == member
    return not (source.at(place + 1) == '(' and function_body(source, place))


def _allowed(source, place, steps):
    if source.at(place - 1) == '<<':
        return True
    inner = place
    for block in source.blocks(place):
        if source.at(block) == '(':
            verdict = _in_call(source, block, inner, steps)
        elif source.at(block) == '{':
            verdict = _in_statement(source, block, inner, steps)
        else:
            verdict = True  # a column of a loop, or what a lambda takes along
        if verdict is not None:
            return verdict
        inner = block
    return _in_statement(source, None, inner, steps) is True


def _in_call(source, bracket, inner, steps):
    """Whether an argument is only expected; None where that depends on what is around the call."""
    called = source.at(bracket - 1)
    parts = source.split(bracket + 1, source.partner[bracket])
    index = next((at for at, part in enumerate(parts) if part[0] <= inner < part[1]), 0)
    if called.startswith(('EXPECT_', 'ASSERT_')):
        return index > 0
    if called == 'find' and source.at(bracket - 2) == '.':
        return True  # what is looked for in a result
    if called in ('SCOPED_TRACE', 'TEST', 'TEST_F', 'TEST_P'):
        return True
    if called == 'for':
        return _looped(source, bracket)
    body = next((body for at in source.named[called]
                 if source.at(at + 1) == '(' and (body := function_body(source, at))), None)
    if body is None:
        return None
    head = parameters_before(source, body)
    names = [last_name(source, part) for part in source.split(head + 1, source.partner[head])]
    if index >= len(names):
        return None
    return only_expected(source, names[index], None, body, steps - 1) or (
        None if _returns(source, body) else False)


def _looped(source, bracket):
    """The rows of a loop: which of their cells are expected is asked of each column."""
    return len(source.split(bracket + 1, source.partner[bracket], ':')) == 2


def _returns(source, body):
    """Whether a function makes its result of what it takes, and compares nothing."""
    inside = [source.at(place) for place in range(body, source.partner[body])]
    return 'return' in inside and not any(
        text.startswith(('EXPECT_', 'ASSERT_')) for text in inside)


def _in_statement(source, block, inner, steps):
    """Whether the statement in a block, or outside of all, makes what is only expected; None where
    the braces are a value's."""
    start = inner
    floor = -1 if block is None else block
    while start - 1 > floor and not (source.at(start - 1) in (';', '}')
                                     and source.parent[start - 1] == block):
        start -= 1
    if source.at(start) == 'return' or source.at(start) == 'case':
        name = _function_around(source, inner)
        return name is not None and only_expected(source, name, None, None, steps - 1)
    for place in range(start, inner):
        if source.parent[place] == block and source.tokens[place].kind == 'name' \
                and (part := initial(source, place)) and part[0] <= inner < part[1]:
            return only_expected(source, source.at(place), None, block, steps - 1)
    if block is not None and source.at(block - 1) not in (')', 'const', 'else', 'do', 'try') \
            and source.tokens[block - 1].text != ';':
        return None
    return False


def _function_around(source, place):
    for block in source.blocks(place):
        if source.at(block) == '{' and (head := parameters_before(source, block)) is not None:
            return source.at(head - 1)
    return None
