"""Completions for bash, zsh and fish, made from the command table.

The first word is a command. An application's name is completed by nothing: asking the Mac for one is
not a shell's business. Words that a grammar offers, as in [left|right], are completed at their place,
and files where paths are wanted.
"""
import arguments
import table

HEADER = "# Made by scripts/generate-contract."


def words_at(grammar):
    """What each argument may be: a list of words, "files" or nothing."""
    places = []
    for piece in arguments.pieces_of(grammar):
        inner = piece.strip("[].").strip("<>")
        is_file = "path" in inner or inner.endswith(".png")
        places.append("files" if is_file else arguments.words_of(piece))
    return places


def offers():
    """(command, number of the argument from 1, its words or "files"), where there are any."""
    for command in table.commands():
        places = words_at(command.grammar)
        for place, words in enumerate(places, 1):
            if words:
                yield command, place, words


def is_last_repeated(command, place):
    return "..." in command.grammar and place == len(words_at(command.grammar))


def places(command, place, first):
    """The pattern of a command and the number of the word, where its first argument is `first` + 1."""
    at = place + first
    if not is_last_repeated(command, place):
        return f"{command.name}:{at}"
    return f"{command.name}:[{at}-9]|{command.name}:[1-9][0-9]*"


def bash():
    names = " ".join(command.name for command in table.commands())
    lines = [HEADER, "_driver() {", "  local word=${COMP_WORDS[COMP_CWORD]}", "  COMPREPLY=()",
             "  if [ \"$COMP_CWORD\" -eq 1 ]; then",
             f"    COMPREPLY=($(compgen -W '{names}' -- \"$word\"))", "    return", "  fi",
             '  case "${COMP_WORDS[1]}:$COMP_CWORD" in']
    for command, place, words in offers():
        action = "-f" if words == "files" else f"-W '{' '.join(words)}'"
        split = "local IFS=$'\\n'; " if words == "files" else ""
        lines.append(f'    {places(command, place, 1)}) {split}'
                     f'COMPREPLY=($(compgen {action} -- "$word")) ;;')
    lines += ["  esac", "}", "complete -o filenames -F _driver driver"]
    return "\n".join(lines) + "\n"


def described(command):
    summary = table.load("commands.json")[command.name]["summary"]
    return summary.replace("'", "’").replace(":", ";")


def zsh():
    lines = ["#compdef driver", HEADER, "_driver() {", "  local -a commands=("]
    lines += [f"    '{command.name}:{described(command)}'" for command in table.commands()]
    lines += ["  )", "  if (( CURRENT == 2 )); then", "    _describe command commands", "    return",
              "  fi", '  case "$words[2]:$CURRENT" in']
    for command, place, words in offers():
        action = "_files" if words == "files" else f"compadd {' '.join(words)}"
        lines.append(f"    {places(command, place, 2)}) {action} ;;")
    lines += ["  esac", "}", 'if [[ "$funcstack[1]" = _driver ]]; then', '  _driver "$@"', "else",
              "  compdef _driver driver", "fi"]
    return "\n".join(lines) + "\n"


def fish():
    lines = [HEADER, "complete -c driver -f"]
    for command in table.commands():
        lines.append("complete -c driver -n 'test (count (commandline -opc)) -eq 1' "
                     f"-a {command.name} -d '{described(command)}'")
    for command, place, words in offers():
        sign = "-ge" if is_last_repeated(command, place) else "-eq"
        what = "-F" if words == "files" else f"-a '{' '.join(words)}'"
        lines.append(f"complete -c driver -n '__fish_seen_subcommand_from {command.name}; "
                     f"and test (count (commandline -opc)) {sign} {place + 1}' {what}")
    return "\n".join(lines) + "\n"


def files():
    yield "packaging/completions/driver.bash", bash()
    yield "packaging/completions/_driver", zsh()
    yield "packaging/completions/driver.fish", fish()
