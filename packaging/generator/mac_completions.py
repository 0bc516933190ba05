"""Completions of simulated-mac for bash, zsh and fish, made from what `simulated-mac help` prints.

The first word is a command or the beginning of a happening, the second of a happening what goes on with
it; options are offered where a command has them, and files where it wants some.
"""
import re
import subprocess

HEADER = "# Made by scripts/generate-tables."
TOPICS = re.compile(r"^  ([a-z]+): ", re.M)


def forms(executable):
    """(form, summary) of every command and every happening that a Mac can be told."""
    text = subprocess.run([executable, "help"], capture_output=True, text=True, check=True).stdout
    commands, topics = text.split("\nTopics:\n")
    pairs = re.findall(r"^  ([a-z][^\n]*)\n {6}([^\n]*)$", commands.split("\n\n", 3)[-1], re.M)
    return pairs, TOPICS.findall(topics)


class Grammar:
    def __init__(self, executable):
        pairs, topics = forms(executable)
        self.summaries, self.second, self.options, self.files = {}, {}, {}, set()
        for form, summary in pairs:
            first, *rest = form.split()
            self.summaries.setdefault(first, re.sub(r" \(not in worlds: .*\)$", "", summary))
            self.options.setdefault(first, set()).update(re.findall(r"--[a-z-]+\w", form))
            for word in rest[0].strip("[]").split("|") if rest else []:
                if re.fullmatch(r"[a-z][a-z-]*", word):
                    self.second.setdefault(first, []).append(word)
            if re.search(r"WORLD|DIR|\.png|FILE", form):
                self.files.add(first)
        self.second["help"] = topics

    def offers(self):
        """(command, words that may follow it at once, options, whether files may follow)."""
        for name in self.summaries:
            yield (name, list(dict.fromkeys(self.second.get(name, []))), sorted(self.options[name]),
                   name in self.files)


def described(text):
    return text.replace("'", "’").replace(":", ";")


def bash(grammar):
    lines = [HEADER, "_simulated_mac() {", "  local word=${COMP_WORDS[COMP_CWORD]} files=",
             "  local words=", '  if [ "$COMP_CWORD" -eq 1 ]; then',
             f"    words='{' '.join(grammar.summaries)} --help --version'", "  else",
             '    case "${COMP_WORDS[1]}" in']
    for name, second, options, files in grammar.offers():
        acts = []
        if options:
            acts.append(f"words='{' '.join(options)}'")
        if second:
            acts.append(f"if [ \"$COMP_CWORD\" -eq 2 ]; then words+=' {' '.join(second)}'; fi")
        if files:
            acts.append("files=yes")
        if acts:
            lines.append(f"      {name}) {'; '.join(acts)} ;;")
    lines += ["    esac", "  fi", '  COMPREPLY=($(compgen -W "$words" -- "$word"))',
              "  if [ -n \"$files\" ]; then",
              "    local IFS=$'\\n'; COMPREPLY+=($(compgen -f -- \"$word\"))", "  fi", "}",
              "complete -o filenames -F _simulated_mac simulated-mac"]
    return "\n".join(lines) + "\n"


def zsh(grammar):
    lines = ["#compdef simulated-mac", HEADER, "_simulated_mac() {", "  local -a commands=("]
    lines += [f"    '{name}:{described(summary)}'" for name, summary in grammar.summaries.items()]
    lines += ["  )", "  if (( CURRENT == 2 )); then", "    _describe command commands", "    return",
              "  fi", '  case "$words[2]" in']
    for name, second, options, files in grammar.offers():
        acts = []
        if options:
            acts.append(f"compadd -- {' '.join(options)}")
        if second:
            acts.append(f"if (( CURRENT == 3 )); then compadd -- {' '.join(second)}; fi")
        if files:
            acts.append("_files")
        if acts:
            lines.append(f"    {name}) {'; '.join(acts)} ;;")
    lines += ["  esac", "}", 'if [[ "$funcstack[1]" = _simulated_mac ]]; then',
              '  _simulated_mac "$@"', "else", "  compdef _simulated_mac simulated-mac", "fi"]
    return "\n".join(lines) + "\n"


def fish(grammar):
    lines = [HEADER, "complete -c simulated-mac -f"]
    first = "test (count (commandline -opc)) -eq 1"
    for name, summary in grammar.summaries.items():
        lines.append(f"complete -c simulated-mac -n '{first}' -a {name} -d '{described(summary)}'")
    for name, second, options, files in grammar.offers():
        seen = f"__fish_seen_subcommand_from {name}"
        at_second = f"{seen}; and test (count (commandline -opc)) -eq 2"
        lines += [f"complete -c simulated-mac -n '{seen}' -l {option[2:]}" for option in options]
        if second:
            lines.append(f"complete -c simulated-mac -n '{at_second}' -a '{' '.join(second)}'")
        if files:
            lines.append(f"complete -c simulated-mac -n '{seen}' -F")
    return "\n".join(lines) + "\n"


def files(executable):
    """(path, text) of every file of completions."""
    grammar = Grammar(executable)
    yield "packaging/completions/simulated-mac.bash", bash(grammar)
    yield "packaging/completions/_simulated-mac", zsh(grammar)
    yield "packaging/completions/simulated-mac.fish", fish(grammar)
