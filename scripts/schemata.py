"""A source with many mistakes compiled in beside what they were made of, each chosen at run time by its number
(tests/mutants/mutant.h): where an expression has mistakes, the source chooses between its variants.

The expression around a mistake is found among the tokens, without knowledge of names and types. So a variant may
not compile: what the compiler complains of is left out, and has to be compiled by itself.
"""
import bisect
from dataclasses import dataclass, field

from cpp_literals import tokens

PAIRS = {"(": ")", "[": "]", "{": "}"}
ASSIGNMENTS = {"=", "+=", "-=", "*=", "/=", "|=", "&=", "%="}
# An expression lies between two of these.
SEPARATORS = {",", ";", "?", ":", "return", "case", "throw", "else", "do", "co_return", "co_yield"}
HEADS = {"if", "while", "for", "switch", "constexpr", "catch"}
BEFORE_BODIES = {")", "]", "const", "noexcept", "mutable", "override"}
# Behind a closing brace these go on with the expression that it ends.
CONTINUATIONS = {".", "->", "(", "[", ",", ")", "==", "!=", "<", ">", "<=", ">=", "&&", "||", "+", "-", "*", "/"}


class Tokens:
    """A source's tokens and which brackets belong together."""

    def __init__(self, source):
        self.tokens = tokens(source)
        self.starts = [each.start for each in self.tokens]
        self.partner = {}
        opened = []
        for place, token in enumerate(self.tokens):
            if token.text in PAIRS:
                opened.append(place)
            elif token.text in PAIRS.values() and opened:
                start = opened.pop()
                self.partner[start], self.partner[place] = place, start

    def at(self, offset):
        """The token that begins there, or the next one."""
        return bisect.bisect_left(self.starts, offset)

    def text(self, place):
        return self.tokens[place].text if 0 <= place < len(self.tokens) else ""

    def is_end(self, place, separators):
        """Whether an expression ends before this token, seen from its left."""
        text = self.text(place)
        return text in separators or text in PAIRS.values() or text == ""

    def is_start(self, place, separators):
        """Whether an expression begins after this token, seen from its right."""
        text = self.text(place)
        if text == ")":
            return self.text(self.partner.get(place, 0) - 1) in HEADS
        if text == "}":
            return self.text(place + 1) not in CONTINUATIONS
        return text in separators or text in PAIRS or text == ""

    def expression(self, first, last):
        """(start, end) in characters of the expression around the tokens from first to last."""
        own = {self.text(place) for place in range(first, last + 1)}
        before = SEPARATORS if own & ASSIGNMENTS else SEPARATORS | ASSIGNMENTS
        # What is assigned may be a choice.
        behind = SEPARATORS - {"?", ":"} if own & ASSIGNMENTS else before
        start, end = first, last
        while not self.is_start(start - 1, before):
            start -= 1
            if self.text(start) in PAIRS.values():
                start = self.partner.get(start, start)
        while not self.is_end(end + 1, behind):
            end += 1
            if self.text(end) in PAIRS:
                end = self.partner.get(end, end)
        return self.tokens[start].start, self.tokens[end].end

    def around(self, offset):
        """The tokens before this offset that are not within other brackets, from right to left, outwards."""
        place = self.at(offset) - 1
        while place >= 0:
            if self.text(place) in PAIRS.values() and place in self.partner:
                yield place
                place = self.partner[place]
            else:
                yield place
            place -= 1

    def is_body(self, place):
        """Whether this brace opens the body of a function."""
        return self.text(place - 1) in BEFORE_BODIES

    def is_in_constexpr(self, offset):
        """Whether this is within a function that the compiler may evaluate."""
        for place in self.around(offset):
            head = place - 1
            while self.text(place) == "{" and self.text(head) not in (";", "}", "{", ""):
                if self.text(head) == "constexpr" and self.text(head - 1) != "if":
                    return True
                head -= 1
        return False

    def constant_around(self, offset):
        """The word "constexpr" of the variable in whose initial value this is; None elsewhere."""
        for place in self.around(offset):
            text = self.text(place)
            if text == ";" or text == "}" and self.text(place + 1) not in CONTINUATIONS or \
                    text == "{" and self.is_body(place):
                return None
            if text == "constexpr":
                return place
        return None

    def name_declared(self, place):
        """By a declaration that begins there."""
        while self.text(place + 1) not in ("=", "{", ""):
            place += 1
        return self.text(place)


@dataclass
class Span:
    """What is rewritten as a whole, with its mistakes by number, and the spans within."""
    start: int
    end: int
    kind: str
    mutations: dict = field(default_factory=dict)
    within: list = field(default_factory=list)


def span_of(source, of_source, mutation):
    """(start, end, kind)."""
    if mutation.kind == "statement":
        return mutation.start, mutation.end, "statement"
    if mutation.kind == "condition":
        return mutation.start, mutation.end, "condition"
    first, last = of_source.at(mutation.start), of_source.at(mutation.end) - 1
    if mutation.kind == "arguments":
        # With the brackets of the call.
        first, last = first - 1, last + 1
    start, end = of_source.expression(first, last)
    return start, end, "expression"


def spans_of(source, numbered):
    """A tree of spans; mistakes that do not fit into it are left out."""
    of_source = Tokens(source)
    found = {}
    for number, mutation in numbered.items():
        # An argument of a template is a constant.
        if source[mutation.start - 2:mutation.start] == ", " and source[mutation.end] == ">":
            continue
        key = span_of(source, of_source, mutation)
        found.setdefault(key, Span(*key)).mutations[number] = mutation
    order = {"statement": 0, "condition": 1, "expression": 2}
    top = Span(0, len(source), "top")
    opened = [top]
    for span in sorted(found.values(), key=lambda each: (each.start, -each.end, order[each.kind])):
        while opened[-1].end <= span.start:
            opened.pop()
        if span.end > opened[-1].end:
            continue
        opened[-1].within.append(span)
        opened.append(span)
    return top, of_source


def made_variable(source, of_source, numbered):
    """(source, names): with "const" for "constexpr" where mistakes are in an initial value, so that they can
    be chosen at run time; and the mistakes of each name that is a constant no longer. No place moves."""
    names = {}
    for number, mutation in numbered.items():
        place = of_source.constant_around(mutation.start)
        if place is not None:
            start = of_source.starts[place]
            source = source[:start] + "const    " + source[start + len("constexpr"):]
            names.setdefault(of_source.name_declared(place), set()).add(number)
    return source, names


class Schema:
    """The rewritten text, and whose line each line of it is."""

    def __init__(self, source, numbered):
        self.top, self.tokens = spans_of(source, numbered)
        self.source, self.names = made_variable(source, self.tokens, numbered)
        self.pieces, self.line, self.owners = [], 1, {}
        self.compiled_in = set()
        self.write_inside(self.top, ())
        self.text = "".join(self.pieces)

    def write(self, text, owners):
        """Owners: those to blame for the text's lines, the nearest last."""
        self.pieces.append(text)
        for number, part in enumerate(text.split("\n"), self.line):
            if part and len(owners) > len(self.owners.get(number, ())):
                self.owners[number] = owners
        self.line += text.count("\n")

    def write_inside(self, span, owners):
        """The original, with choices where the spans within are."""
        place = span.start
        for each in span.within:
            self.write(self.source[place:each.start], owners)
            self.write_choice(each, owners)
            place = each.end
        self.write(self.source[place:span.end], owners)

    def write_choice(self, span, owners):
        self.compiled_in |= set(span.mutations)
        ours = (*owners, tuple(span.mutations))
        choice = "mutant::isAtRun" if self.tokens.is_in_constexpr(span.start) else "mutant::is"
        getattr(self, "write_" + span.kind)(span, ours, choice)

    def write_statement(self, span, owners, choice):
        for number in span.mutations:
            self.write(f"\n{{if (!{choice}({number})) ", (*owners, (number,)))
        self.write_inside(span, owners)
        self.write("}" * len(span.mutations) + "\n", owners)

    def write_condition(self, span, owners, choice):
        for number, mutation in span.mutations.items():
            text = f"\n({choice}({number}) || " if mutation.text == "true" else f"\n(!{choice}({number}) && "
            self.write(text, (*owners, (number,)))
        self.write("\n(", owners)
        self.write_inside(span, owners)
        self.write("\n)" + ")" * len(span.mutations), owners)

    def write_expression(self, span, owners, choice):
        original = self.source[span.start:span.end]
        self.write("\n(", owners)
        for number, mutation in span.mutations.items():
            before, after = original[:mutation.start - span.start], original[mutation.end - span.start:]
            # Whatever can be negated can be negated twice, and is of the same type then.
            negation = original[mutation.start - span.start:mutation.end - span.start] == "!"
            changed = before + ("!!" if negation else mutation.text) + after
            self.write(f"\n{choice}({number}) ? ({changed}) :", (*owners, (number,)))
        self.write("\n(", owners)
        self.write_inside(span, owners)
        self.write("))\n", owners)

    def blamed(self, line):
        """The mistakes to leave out for what the compiler says of a line."""
        while line > 0:
            if self.owners.get(line):
                return set(self.owners[line][-1])
            line -= 1
        return set(self.compiled_in)
