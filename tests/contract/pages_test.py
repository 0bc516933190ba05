"""The manual pages lint, and the completions run in the shells they are for."""
import re
import shutil
import subprocess
import unittest

from mac import ROOT, SIMULATED_MAC

import table

PAGES = sorted((ROOT / "packaging/man").glob("*.[1-9]"))
COMPLETIONS = ROOT / "packaging/completions"

BASH = """
source "$1"
COMP_WORDS=(driver "${@:2}")
COMP_CWORD=$(($# - 1))
_driver
printf '%s\\n' "${COMPREPLY[@]}"
"""

# In an interactive zsh in a terminal of its own: what would be offered is written, not inserted.
ZSH = """
compdef() { :; }
_describe() { local line; for line in "${(@P)2}"; do print -r -- "${line%%:*}"; done; }
_files() { print -r -- FILES; }
compadd() { print -rl -- "$@"; }
source "$1"
words=(driver "${@:2}")
CURRENT=$#words
_driver
"""


def shell(name, *arguments):
    found = shutil.which(name)
    if found is None:
        raise unittest.SkipTest(f"there is no {name} here")
    done = subprocess.run([found, *arguments], capture_output=True, text=True, timeout=60,
                          cwd=ROOT / "demo", check=False)
    if done.returncode != 0 or done.stderr:
        raise AssertionError(f"{name}: status {done.returncode}\n{done.stderr}")
    return done.stdout


class Pages(unittest.TestCase):
    def test_are_there(self):
        self.assertEqual(["driver-service.7", "driver.1", "simulated-mac.1"],
                         [page.name for page in PAGES])

    def test_lint(self):
        for page in PAGES:
            self.assertEqual("", shell("mandoc", "-Tlint", "-Wwarning", str(page)))

    def test_name_every_command_and_failure(self):
        text = shell("mandoc", "-Tutf8", "-O", "width=1000", str(ROOT / "packaging/man/driver.1"))
        text = re.sub(r".\x08", "", text)
        squeezed = re.sub(r"\s+", " ", text)
        for command in table.commands():
            with self.subTest(command=command.name):
                self.assertRegex(text, rf"(?m)^\s+{re.escape(command.usage[7:])}(  |$)")
        for entry in table.errors():
            with self.subTest(message=entry["message"]):
                self.assertIn(re.sub(r"\s+", " ", table.whole_message(entry)), squeezed)

    def test_of_the_companion_name_each_of_its_requests(self):
        done = subprocess.run([SIMULATED_MAC], capture_output=True, text=True, check=False)
        names = re.search(r"usage: simulated-mac ([a-z|-]+) ", done.stdout)[1].split("|")
        page = (ROOT / "packaging/man/simulated-mac.1").read_text()
        named = " ".join(re.findall(r"^\.It (?:Cm|Ic) (.*)$", page, re.M)).replace("\\-", "-").split()
        self.assertGreater(len(names), 15)
        for name in names:
            with self.subTest(request=name):
                self.assertIn(name, named)


class CompletionsOfTheCompanion(unittest.TestCase):
    """Of simulated-mac, whose second word goes on with a happening."""
    cases = [
        (["jour"], ["journal"]),
        (["journal", ""], ["--text"]),
        (["state", ""], ["--user"]),
        (["leave", ""], ["console"]),
        (["user", "cl"], ["click"]),
        (["help", "hab"], ["habits"]),
        (["wait", "un"], ["until"]),
        (["user", "key", ""], []),
        (["lock", ""], [])]

    def test_of_bash(self):
        script = BASH.replace("driver", "simulated-mac").replace("_simulated-mac", "_simulated_mac")
        for words, wanted in [*self.cases, (["run", "des"], ["desk.world"])]:
            lines = shell("bash", "-c", script, "bash", str(COMPLETIONS / "simulated-mac.bash"), *words)
            self.assertEqual(wanted, [line for line in lines.split("\n") if line], words)

    def test_of_zsh(self):
        script = ZSH.replace("(driver", "(simulated-mac").replace("_driver", "_simulated_mac")
        script = script.replace('compadd() { print', 'compadd() { shift; print')
        for words, wanted in [*self.cases, (["report", ""], ["FILES"])]:
            if words[-1] == "":  # zsh itself leaves out what does not begin so
                lines = shell("zsh", "-f", "-c", script, "zsh", str(COMPLETIONS / "_simulated-mac"), *words)
                self.assertEqual(wanted, [line for line in lines.split("\n") if line], words)

    def test_of_fish(self):
        for words, wanted in [*self.cases, (["run", "des"], ["desk.world"])]:
            line = " ".join(["simulated-mac", *words])
            script = f"source {COMPLETIONS / 'simulated-mac.fish'}; complete -C '{line}'"
            found = [each.split("\t")[0] for each in shell("fish", "--no-config", "-c", script).split("\n") if each]
            # An option is offered once it is begun.
            self.assertEqual([word for word in wanted if not word.startswith("--")], found, words)


class Completions(unittest.TestCase):
    names = [command.name for command in table.commands()]

    # The words before and at the cursor, and what is offered there.
    cases = [
        (["lock-g"], ["lock-guard"]),
        (["bg-click", "Notes", "1", "2", ""], ["left", "right"]),
        (["bg-click", "Notes", "1", "2", "r"], ["right"]),
        (["ax-press-exact", "Notes", "Send", ""], ["last", "only"]),
        (["ax-insert", "Notes", "To", "1", "2", ""], ["caret", "end", "message", "new_line", "replace"]),
        (["ax-slider", "Notes", "Size", "in"], ["increment"]),
        (["permissions", ""], [])]
    files = [["capture", "Notes", "des"], ["capture-service", "des"], ["bg-paste-files", "Notes", "des"],
             ["bg-paste-files", "Notes", "a", "b", "c", "d", "e", "f", "g", "h", "des"]]

    def test_of_bash(self):
        def offered(*words):
            lines = shell("bash", "-c", BASH, "bash", str(COMPLETIONS / "driver.bash"), *words)
            return sorted(line for line in lines.split("\n") if line)

        self.assertEqual(sorted(self.names), offered(""))
        for words, wanted in self.cases:
            self.assertEqual(wanted, offered(*words), words)
        for words in self.files:
            self.assertEqual(["desk.world"], offered(*words), words)

    def test_of_zsh(self):
        def offered(*words):
            lines = shell("zsh", "-f", "-c", ZSH, "zsh", str(COMPLETIONS / "_driver"), *words)
            return sorted(line for line in lines.split("\n") if line)

        self.assertEqual(sorted(self.names), offered(""))
        for words, wanted in self.cases:
            if words[-1] == "":  # zsh itself leaves out what does not begin so
                self.assertEqual(wanted, offered(*words), words)
        for words in self.files:
            self.assertEqual(["FILES"], offered(*words), words)

    def test_of_fish(self):
        def offered(*words):
            line = " ".join(["driver", *words])
            script = f"source {COMPLETIONS / 'driver.fish'}; complete -C '{line}'"
            lines = shell("fish", "--no-config", "-c", script)
            return sorted(line.split("\t")[0] for line in lines.split("\n") if line)

        self.assertEqual(sorted(self.names), offered(""))
        for words, wanted in self.cases:
            found = offered(*words)
            if wanted == ["lock-guard"]:
                self.assertIn("lock-guard", found)
            else:
                self.assertEqual(wanted, found, words)
        for words in self.files:
            self.assertEqual(["desk.world"], offered(*words), words)

    def test_offer_every_word_of_a_grammar_that_stands_for_itself(self):
        import completions
        offered = {word for _, _, words in completions.offers() if words != "files" for word in words}
        self.assertEqual({"left", "right", "last", "only", "increment", "decrement", "replace",
                          "message", "end", "new_line", "caret"}, offered)


if __name__ == "__main__":
    unittest.main()
