"""What scripts/check-english finds, and what it lets pass."""
import importlib.machinery
import importlib.util
import unittest

from mac import ROOT

LOADER = importlib.machinery.SourceFileLoader("english_script", str(ROOT / "scripts/check-english"))
ENGLISH = importlib.util.module_from_spec(importlib.util.spec_from_loader("english_script", LOADER))
LOADER.exec_module(ENGLISH)


class Findings(unittest.TestCase):
    def test_are_the_patterns_of_the_guide(self):
        for line, found in (
                ("This is no error.", ['"is no error": is not']),
                ("The page tells more.", ['"tells": says, shows']),
                ("Try again, else stop.", ['"else": otherwise']),
                ("The screen is drawn no more.", ['"no more": no longer']),
                ("It ends. Of what is left nothing is sent.", ['"Of what": the subject first'])):
            with self.subTest(line=line):
                self.assertEqual(found, list(ENGLISH.found_in(line)))

    def test_are_clauses_without_a_head_in_whole_sentences(self):
        for line in ("What is ambiguous is refused.", "It waits. Whoever comes back meets a lock."):
            with self.subTest(line=line):
                self.assertEqual([], list(ENGLISH.found_in(line)))
                self.assertEqual(1, len(list(ENGLISH.found_in(line, ENGLISH.HEADLESS))))

    def test_are_none_where_the_words_mean_something_other(self):
        for line in ("It is no longer in front.", "Somebody else copied a text; nothing else happens.",
                     "There are no more than three.", "There is no file.", "The reply is `is no such file`.",
                     'It says "no more input, else".', "What is a world? A description of a Mac.",
                     "A mark tells apart two windows with one title: it tells apart by number."):
            with self.subTest(line=line):
                self.assertEqual([], list(ENGLISH.found_in(line, ENGLISH.HEADLESS)))

    def test_are_in_comments_and_messages_of_scripts(self):
        for line, texts in (("  # is no file", ["is no file"]), ('echo "is no file" >&2', ["is no file"]),
                            ("name=is no file", []), ("    sys.exit('is no file')", ["is no file"])):
            with self.subTest(line=line):
                self.assertEqual(texts, list(ENGLISH.texts_of_script(line)))

    def test_leave_code_and_published_texts_alone(self):
        page = "# A heading\nA line that\nis two.\n- an entry\n\n```\nis no more\n```\n| a row |\n| another |\n"
        self.assertEqual([(1, "# A heading"), (2, "A line that is two."), (4, "- an entry"),
                          (9, "| a row |"), (10, "| another |")], list(ENGLISH.paragraphs_of_page(page)))
        self.assertEqual(["a cause", "one"], list(ENGLISH.texts_of_catalogue(
            {"inside": {"message": "is no file", "cause": "a cause"}, "id": "is no id", "names": ["one"]})))


if __name__ == "__main__":
    unittest.main()
