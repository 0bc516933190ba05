"""What the tables of the simulated Mac and its rules list has a test, and a rule its row in the page."""
import re
import unittest

from mac import ROOT, SIMULATED_MAC

import topics

# What an element does and what happens is tried in a world, an outcome in a fault.
TOPICS = ("happenings", "reactions", "habits", "outcomes", "releases")

RULES = ROOT / "simulator/rules"


def literals(path):
    """The texts that a source holds, one after the other."""
    text = re.sub(r"//[^\n]*", "", path.read_text())
    raw = re.findall(r'R"(\w*)\((.*?)\)\1"', text, re.S)
    plain = re.findall(r'"((?:\\.|[^"\\\n])*)"', text)
    return " \n ".join([body for _, body in raw] + plain)


def fixed_words(name):
    """The words that a row's name begins with, up to the first that stands for another."""
    words = re.split(r"[ :]", name)
    fixed = []
    for word in words:
        if not re.fullmatch(r"[a-z-]+", word):
            break
        fixed.append(word)
    return " ".join(fixed)


class Tried(unittest.TestCase):
    def test_every_row_is_tried_by_a_test(self):
        tests = [path for folder in ("simulator", "tests") for path in (ROOT / folder).rglob("*_test.cpp")
                 if path.name != "documents_test.cpp"]
        tried = " ".join(literals(path) for path in tests)
        for topic in TOPICS:
            for name, *_ in topics.rows(SIMULATED_MAC, topic)[1:]:
                with self.subTest(topic=topic, name=name):
                    words = fixed_words(name)
                    self.assertNotEqual(words, "")
                    self.assertRegex(tried, r"(?<![\w-])" + re.escape(words) + r"(?![\w-])")


class Rules(unittest.TestCase):
    def sources(self, tests):
        return [path for path in sorted(RULES.glob("*.cpp")) if path.stem.endswith("_test") == tests]

    def named(self, tests):
        """The names of the rules that the sources tell of, "I1" for a text "I1: …"."""
        return {name for path in self.sources(tests)
                for name in re.findall(r'"([IP][0-9]+): ', path.read_text())}

    def test_every_rule_is_broken_in_a_test(self):
        self.assertEqual(self.named(tests=False), self.named(tests=True))

    def test_every_rule_has_its_row(self):
        page = (ROOT / "docs/TESTING.md").read_text()
        rows = re.findall(r"^\| ([IP][0-9]+) \|", page, re.M)
        self.assertEqual(sorted(rows), sorted(self.named(tests=False)))

    def test_every_class_of_rules_judges_the_runs(self):
        classes = {name for path in RULES.glob("*.h")
                   for name in re.findall(r"^class (\w+) : public Rule\b", path.read_text(), re.M)}
        listed = re.search(r"\badd<([\w\s,]+)>\(\)", (RULES / "rules.cpp").read_text())
        self.assertEqual(set(re.findall(r"\w+", listed[1])), classes)


if __name__ == "__main__":
    unittest.main()
