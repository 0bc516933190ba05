"""What `simulated-mac help` prints of each topic is what the pages and the manual have."""
import re
import subprocess
import unittest

from mac import ROOT, SIMULATED_MAC

import mac_completions
import topics

# The page that has a topic's whole table.
PAGES = {"calls": "docs/SIMULATED_MAC.md", "outcomes": "docs/SIMULATED_MAC.md",
         "happenings": "docs/WORLD_REFERENCE.md", "reactions": "docs/WORLD_REFERENCE.md", "habits": "docs/WORLD_REFERENCE.md",
         "releases": "docs/WORLD_REFERENCE.md"}


def topic_names():
    """The topics, as the program lists them."""
    text = subprocess.run([SIMULATED_MAC, "help"], capture_output=True, text=True, check=True).stdout
    return re.findall(r"^  ([a-z]+): ", text[text.index("\nTopics:\n"):], re.M)


class Help(unittest.TestCase):
    def test_has_a_page_for_every_topic(self):
        self.assertEqual(list(PAGES), topic_names())
        for topic, name in PAGES.items():
            with self.subTest(topic=topic):
                placed = [match["topic"] for match in topics.PLACE.finditer((ROOT / name).read_text())]
                self.assertIn(topic, placed)

    def test_says_what_the_pages_say(self):
        for path in topics.pages():
            with self.subTest(page=path.name):
                self.assertEqual(topics.as_it_should_be(path, SIMULATED_MAC), path.read_text())

    def test_has_the_grammar_of_the_page(self):
        text = subprocess.run([SIMULATED_MAC, "help"], capture_output=True, text=True, check=True).stdout
        page = (ROOT / "docs/SIMULATED_MAC.md").read_text()
        forms = re.findall(r"^simulated-mac ((?:run|serve) \[.*)$", page, re.M)
        self.assertEqual(2, len(forms))
        for form in forms:
            with self.subTest(form=form):
                self.assertIn(f"\n  {form}\n", text)

    def test_is_what_completions_are_made_of(self):
        for name, text in mac_completions.files(SIMULATED_MAC):
            with self.subTest(file=name):
                self.assertEqual(text, (ROOT / name).read_text())

    def test_prints_lines_that_can_be_taken_apart(self):
        for topic in topic_names():
            with self.subTest(topic=topic):
                headings, *rest = topics.rows(SIMULATED_MAC, topic)
                self.assertGreater(len(rest), 5)
                self.assertEqual({len(headings)}, {len(row) for row in rest})
                self.assertEqual(len(rest), len({tuple(row) for row in rest}))


if __name__ == "__main__":
    unittest.main()
