"""Small wrong turns in a C++ source: each changes one token, drops a statement or a condition, or swaps two
arguments."""
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
BETWEEN_BLANKS = {"<", "<=", ">", ">=", "+", "-", "*", "/", "|", "&"}

WHOLE = re.compile(r"\d[\d']*[uUlL]*")
CALL_OR_ASSIGNMENT = re.compile(r"\s+(?!(?:return|throw|break|continue|using|delete|case|const|static)\b)"
                                r"[A-Za-z_][\w:.\->\[\]()]*(\(.*\)| [-+|&*]?= .*);")
TWO_NAMES = re.compile(r"(?<=\()([A-Za-z_][\w.]*), ([A-Za-z_][\w.]*)(?=\))")
CONDITION = re.compile(r"\bif \((?!constexpr)(.*)\)(?= |$)")


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
    return {str(value + 1), str(max(value - 1, 0)), "0"} - {str(value)}


def of_tokens(source):
    for token in tokens(source):
        blank = source[token.start - 1:token.start] == " " and source[token.end:token.end + 1] in " \n"
        for other in SWAPPED.get(token.text, ()):
            if blank or token.text not in BETWEEN_BLANKS:
                yield Mutation(token.start, token.end, other, "operator")
        if token.text == "!" and re.match(r"[\w(]", source[token.end:token.end + 1]):
            yield Mutation(token.start, token.end, "", "operator")
        if token.kind == "number":
            for other in other_numbers(token.text):
                yield Mutation(token.start, token.end, other, "constant")


def of_lines(source):
    start = 0
    for line in source.splitlines(keepends=True):
        code = line.rstrip("\n")
        if not code.lstrip().startswith(("//", "#")):
            if CALL_OR_ASSIGNMENT.fullmatch(code) and code.count("(") == code.count(")"):
                indentation = len(code) - len(code.lstrip())
                yield Mutation(start + indentation, start + len(code), ";", "statement")
            for found in CONDITION.finditer(code):
                if found.group(1).count("(") == found.group(1).count(")"):
                    for truth in ("true", "false"):
                        yield Mutation(start + found.start(1), start + found.end(1), truth, "condition")
            for found in TWO_NAMES.finditer(code):
                swapped = f"{found.group(2)}, {found.group(1)}"
                yield Mutation(start + found.start(), start + found.end(), swapped, "arguments")
        start += len(line)


def mutations(source):
    """All of a source's, but for those in what only the compiler reads."""
    for each in (*of_tokens(source), *of_lines(source)):
        line = source[source.rfind("\n", 0, each.start) + 1:].split("\n", 1)[0]
        if "static_assert" not in line and "#include" not in line:
            yield each
