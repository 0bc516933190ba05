"""Every failure text in the sources stands in the catalogue, and the other way round."""
import re
import unittest

from mac import ROOT

import table

FOLDERS = ("main", "input", "capture", "accessibility", "guard")
LITERAL = r'"(?:[^"\\\n]|\\.)*"'
STRINGS = re.compile(rf"{LITERAL}(?:\s*{LITERAL})*")
FAILING_CALL = re.compile(r"\b(?:fail|refusal|lockedRefusal|InputFailure)\(")

# What has a space and is no failure: the cover's texts, the reasons of assertions, a window's title,
# and what stands in place of a path or between titles.
NO_FAILURES = (
    "[extension development host] ", "the menu bar", " | ", " > ",
    "Zentrove Desk", "Oru is ", "Oru ", " is using this Mac", "Press any key", "Press a key",
    " seconds to go back", "Keeping an eye on", "unminimized ", "InputFailure(message: ")


def sources():
    for folder in FOLDERS:
        for path in sorted((ROOT / folder).glob("*")):
            if path.suffix in (".h", ".cpp") and not path.stem.endswith("_test"):
                text = re.sub(r"^\s*#include.*$", "", path.read_text(), flags=re.M)
                yield path.relative_to(ROOT), re.sub(r"(?m)^\s*//.*$|\s//[^\"\n]*$", "", text)


def text_of(match):
    """The text of adjacent literals."""
    parts = re.findall(LITERAL, match)
    return "".join(re.sub(r"\\(.)", r"\1", part[1:-1]) for part in parts)


def argument_at(text, start):
    """The text of a call's arguments, from behind its bracket."""
    depth = 1
    for end in range(start, len(text)):
        depth += {"(": 1, ")": -1}.get(text[end], 0)
        if depth == 0:
            return text[start:end]
    return text[start:]


def constant(name, text):
    found = re.search(rf"\b{name}\s*=\s*({STRINGS.pattern})", text)
    return text_of(found[1]) if found else None


class Messages(unittest.TestCase):
    pieces = [piece for entry in table.errors()
              for piece in re.split(r"\{[^}]*\}", table.whole_message(entry)) if piece]
    grammars = {command.grammar for command in table.commands()}

    def stands(self, literal):
        return any(literal == piece or literal in piece for piece in self.pieces)

    def test_that_a_call_fails_with_alone_are_whole_messages(self):
        whole = {entry["message"] for entry in table.errors()}
        count = 0
        for path, text in sources():
            for call in FAILING_CALL.finditer(text):
                argument = argument_at(text, call.end()).strip()
                if STRINGS.fullmatch(argument):
                    count += 1
                    with self.subTest(source=str(path)):
                        self.assertIn(text_of(argument), whole)
        self.assertGreater(count, 40)

    def test_that_a_call_fails_with_are_in_the_catalogue(self):
        everything = "\n".join(text for _, text in sources())
        everything += (ROOT / "input/focus.h").read_text()
        count = 0
        for path, text in sources():
            for call in FAILING_CALL.finditer(text):
                argument = argument_at(text, call.end())
                literals = [text_of(match[0]) for match in STRINGS.finditer(argument)]
                for name in re.findall(r"\b[a-z][A-Za-z]+\b", re.sub(LITERAL, "", argument)):
                    named = constant(name, everything) or ""
                    literals += [named] if " " in named else []
                for literal in literals:
                    if len(literal) < 3 or literal.startswith(NO_FAILURES):
                        continue
                    count += 1
                    with self.subTest(source=str(path), literal=literal):
                        self.assertTrue(self.stands(literal))
        self.assertGreater(count, 70)

    def test_of_any_kind_in_the_sources_are_in_the_catalogue(self):
        count = 0
        for path, text in sources():
            for match in STRINGS.finditer(text):
                literal = text_of(match[0])
                if " " not in literal.strip() or literal in self.grammars:
                    continue
                if not literal.isascii() or literal.startswith(NO_FAILURES) or "<app>" in literal:
                    continue
                count += 1
                with self.subTest(source=str(path), literal=literal):
                    self.assertTrue(self.stands(literal))
        self.assertGreater(count, 60)

    def test_of_the_catalogue_are_in_the_sources(self):
        everything = "\n".join(text for _, text in sources())
        literals = [text_of(match[0]) for match in STRINGS.finditer(everything)]
        platforms = [*(ROOT / "platform" / "macos").glob("*.h"),
                     *(ROOT / "platform" / "simulated").glob("*.cpp")]
        for path in sorted(platforms):
            literals += [text_of(match[0]) for match in STRINGS.finditer(path.read_text())]
        written = "\n".join(literals)
        for entry in table.errors():
            for piece in re.split(r"\{[^}]*\}|\"", entry["message"]):
                with self.subTest(message=entry["message"], piece=piece):
                    self.assertIn(piece, written)

    def test_are_each_in_the_catalogue_once(self):
        whole = [table.whole_message(entry) for entry in table.errors()]
        self.assertEqual(sorted(set(whole)), sorted(whole))

    def test_have_an_id_for_good(self):
        """An id that was ever given keeps its line in ids.txt; one that is no more is marked there."""
        given = {}
        for line in (table.CONTRACT / "ids.txt").read_text().splitlines():
            name, _, message = line.partition("\t")
            self.assertRegex(name, r"^[a-z0-9]+(-[a-z0-9]+)*$")
            self.assertNotIn(name, given, "an id is given once")
            given[name] = message
        listed = [(entry["id"], table.whole_message(entry)) for entry in table.errors()]
        listed += [(entry["id"], "") for entry in table.without_text()]
        self.assertEqual(len(listed), len({name for name, _ in listed}))
        retired = [(name, "retired") for name, message in given.items() if message == "retired"]
        self.assertEqual(sorted(given.items()), sorted(listed + retired))

    def test_are_known_by_their_patterns(self):
        """Of the patterns that match a message the one with most text of its own is that message's."""
        entries = table.errors()
        for entry in entries:
            message = table.whole_message(entry)
            filled = re.sub(r"\{([^}]*)\}", r"«\1»", message)
            with self.subTest(message=message):
                same = [one for one in entries if set(table.commands_of(one)) & set(table.commands_of(entry))]
                matching = [one for one in same or [entry] if re.fullmatch(one["pattern"], filled)]
                best = max(matching, key=lambda one: len(re.sub(r"\{[^}]*\}", "", table.whole_message(one))))
                self.assertEqual(entry["id"], best["id"])
                found = re.fullmatch(entry["pattern"], filled).groups()
                self.assertEqual([f"«{part}»" for part in entry["parts"]], list(found))

    def test_are_in_the_catalogue_with_cause_and_remedy(self):
        for entry in table.errors():
            with self.subTest(message=entry["message"]):
                keys = {"id", "message", "pattern", "parts", "commands", "status", "cause", "next"}
                self.assertLessEqual(keys, set(entry))
                self.assertIn(entry["status"], (0, 1, "signal"))
                self.assertTrue(entry["cause"].endswith(".") and entry["next"].endswith("."))


if __name__ == "__main__":
    unittest.main()
