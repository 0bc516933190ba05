"""The documents: links lead somewhere, and what they say of runs side by side is so."""
import json
import re
import subprocess
import tempfile
import unittest
from pathlib import Path

from links import broken_links
from mac import DRIVER, ROOT, Mac

DOCUMENTS = [*ROOT.glob("*.md"), *(ROOT / "docs").rglob("*.md"), *(ROOT / "packaging").rglob("*.md"),
             *(ROOT / "worlds").glob("*.md"), *(ROOT / "clients").glob("*/*.md")]
ATTEMPTS_MAX = 50
DESK = """
pasteboard item "public.utf8-plain-text" "the user's"
app Editor pid 40 frontmost
app Notes pid 41
    window 7 "Inbox" at 40,60 size 600x500
        AXTextArea "Body" at 60,100 size 200x100 value "."
        AXButton "Add" at 60,220 size 100x24 press: append "x" to Body
"""


class Links(unittest.TestCase):
    def test_lead_to_files_and_places_that_are_there(self):
        self.assertGreater(len(DOCUMENTS), 25)
        self.assertEqual([], list(broken_links(DOCUMENTS)))

    def test_that_lead_nowhere_are_found(self):
        with tempfile.TemporaryDirectory(prefix="links-") as name:
            page = Path(name) / "page.md"
            page.write_text("# One `word`\n\n## Two, three\n\n## Two, three\n\n<a id=\"four\"></a>\n"
                            "```\n# five\n[x](code.md)\n```\n`[x](span.md)`\n"
                            "[a](#one-word) [b](page.md#two-three-1) [c](#four) [d](https://example.com/#x)\n"
                            "[e](#five) [f](other.md) [g](page.md#two-three-2) ![h](picture.png)\n")
            self.assertEqual([(str(page), link) for link in
                              ("#five", "other.md", "page.md#two-three-2", "picture.png")],
                             list(broken_links([page])))

    def test_are_there_for_every_page(self):
        readme = (ROOT / "README.md").read_text()
        for page in (ROOT / "docs").glob("*.md"):
            with self.subTest(page=page.name):
                self.assertIn(f"docs/{page.name}", readme)

    def test_of_scripts_name_scripts_that_are_there(self):
        for document in DOCUMENTS:
            for name in re.findall(r"\bscripts/[a-z_-]+(?:\.py)?", document.read_text()):
                with self.subTest(document=document.name, script=name):
                    self.assertTrue((ROOT / name).exists())


class SideBySide(unittest.TestCase):
    """What docs/ON_A_MAC.md says of two runs on one application."""

    def after(self, *command_lines, together):
        with Mac(DESK) as mac:
            if together:
                runs = [subprocess.Popen([DRIVER, *words], stdout=subprocess.PIPE,
                                         env=mac.environment) for words in command_lines]
                replies = [json.loads(run.communicate(timeout=60)[0]) for run in runs]
            else:
                replies = [mac.driver(*words).reply for words in command_lines]
            self.assertEqual([True, True], [reply["ok"] for reply in replies])
            trace = [json.loads(line) for line in mac.tell("trace").splitlines()]
            restored = [call["arguments"] for call in trace if call["call"] == "pasteboard.write"]
            body = mac.driver("ax-find-text", "Notes", "a" * 15, "b" * 15, "xx").reply["counts"]
            return body, json.dumps(restored[-1:])

    def may_give(self, wanted, *command_lines):
        """Whether two runs at once come to it: who starts first is the machine's affair."""
        return any(wanted(self.after(*command_lines, together=True)) for _ in range(ATTEMPTS_MAX))

    def test_clicks_may_be_lost_unless_they_follow_each_other(self):
        click = ["bg-click", "Notes", "100", "232"]
        self.assertTrue(self.may_give(lambda found: found[0]["xx"] == 0, click, click))
        self.assertEqual(1, self.after(click, click, together=False)[0]["xx"])

    def test_what_the_user_copied_may_be_lost_unless_pastes_follow_each_other(self):
        pastes = [["bg-paste-files", "Notes", "/a"], ["bg-paste-files", "Notes", "/b"]]
        self.assertTrue(self.may_give(lambda found: "the user's" not in found[1], *pastes))
        self.assertIn("the user's", self.after(*pastes, together=False)[1])


if __name__ == "__main__":
    unittest.main()
