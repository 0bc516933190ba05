"""Small wrong turns in a C++ source: each changes one token, drops a statement or a condition, or swaps two
arguments."""
import bisect
import re
from dataclasses import dataclass

from cpp_literals import tokens

SWAPPED = {
    "<": ("<=", ">="), "<=": ("<", ">"), ">": (">=", "<="), ">=": (">", "<"),
    "==": ("!=",), "!=": ("==",), "&&": ("||",), "||": ("&&",), "|": ("&",), "&": ("|",),
    "+": ("-",), "-": ("+",), "*": ("/",), "/": ("*",), "+=": ("-=",), "-=": ("+=",),
    "++": ("--",), "--": ("++",), "true": ("false",), "false": ("true",),
}

# Between blanks a sign is one of two operands; elsewhere it belongs to a type or to a template.
BETWEEN_BLANKS = {"&&", "||", "<", "<=", ">", ">=", "+", "-", "*", "/", "|", "&"}

WHOLE = re.compile(r"\d[\d']*[uUlL]*")
CALL_OR_ASSIGNMENT = re.compile(r"\s+(?!(?:return|throw|break|continue|using|delete|case|const|static)\b)"
                                r"[A-Za-z_][\w:.\->\[\]()]*(\(.*\)| [-+|&*]?= .*);")
BEFORE_STATEMENTS = {";", "{", "}", ")", ":", "else"}
TWO_NAMES = re.compile(r"(?<=\()([A-Za-z_][\w.]*), ([A-Za-z_][\w.]*)(?=\))")
DECLARATION = re.compile(r"(?:const )?[\w:<>]+[&*]* \*?\w+ = ")


@dataclass(frozen=True)
class Mutation:
    start: int
    end: int
    text: str
    kind: str

    def applied(self, source):
        return source[:self.start] + self.text + source[self.end:]


def other_numbers(literal):
    if not WHOLE.fullmatch(literal):
        return ()
    value = int(re.sub(r"[^\d]", "", literal))
    return sorted({value + 1, max(value - 1, 0), 0} - {value})


def of_tokens(source):
    found = tokens(source)
    for place, token in enumerate(found):
        # Texts are only added.
        if any(each.kind == "text" for each in (*found[max(place - 1, 0):place], *found[place + 1:place + 2])):
            continue
        blank = source[token.start - 1:token.start] == " " and source[token.end:token.end + 1] in " \n"
        for other in SWAPPED.get(token.text, ()):
            if blank or token.text not in BETWEEN_BLANKS:
                yield Mutation(token.start, token.end, other, "operator")
        if token.text == "!" and re.match(r"[\w(]", source[token.end:token.end + 1]):
            yield Mutation(token.start, token.end, "", "operator")
        if token.kind == "number":
            for other in other_numbers(token.text):
                yield Mutation(token.start, token.end, str(other), "constant")


def of_conditions(source):
    """Of each whole condition, behind what stands before it in the same brackets."""
    found, opened = tokens(source), []
    for place, token in enumerate(found):
        if token.text == "(":
            opened.append((found[place - 1].text, token.end))
        elif token.text == ";" and opened:
            opened[-1] = (opened[-1][0], token.end + 1)
        elif token.text == ")" and opened:
            head, start = opened.pop()
            if head in ("if", "while") and not DECLARATION.match(source, start):
                yield Mutation(start, token.start, "false", "condition")
                if head == "if":
                    yield Mutation(start, token.start, "true", "condition")


def of_lines(source):
    start, ends = 0, [(token.end, token.text) for token in tokens(source)]
    for line in source.splitlines(keepends=True):
        code = line.rstrip("\n")
        if not code.lstrip().startswith(("//", "#")):
            before = ends[bisect.bisect_right(ends, (start, "~")) - 1][1] if start else ""
            is_statement = before in BEFORE_STATEMENTS and code.count("(") == code.count(")")
            if is_statement and CALL_OR_ASSIGNMENT.fullmatch(code):
                indentation = len(code) - len(code.lstrip())
                yield Mutation(start + indentation, start + len(code), ";", "statement")
            for found in TWO_NAMES.finditer(code):
                swapped = f"{found.group(2)}, {found.group(1)}"
                yield Mutation(start + found.start(), start + found.end(), swapped, "arguments")
        start += len(line)


def mutations(source):
    """All of a source's, but for those in what only the compiler reads."""
    for each in (*of_tokens(source), *of_conditions(source), *of_lines(source)):
        line = source[source.rfind("\n", 0, each.start) + 1:].split("\n", 1)[0]
        if "static_assert" not in line and "#include" not in line:
            yield each
