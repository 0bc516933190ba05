"""What is assumed of a Mac: the assumptions of platform/macos/symbols.toml, the probes that ask a
Mac about them, and what Macs have answered."""
import re
import sys
from dataclasses import dataclass, field
from pathlib import Path

try:
    import tomllib
except ImportError:
    sys.exit('this needs Python 3.11 or later, and a Mac brings an older one: see python.org')

SYMBOLS = Path('platform/macos/symbols.toml')
PROBES = Path('tests/mac')
MAC_PAGE = Path('docs/MAC.md')
SIMULATOR_PAGE = Path('docs/SIMULATOR.md')
CONFIRMED, REFUTED, NOT_SHOWN = VERDICTS = ('confirmed', 'refuted', 'not shown')
IDENTIFIER = re.compile(r'[a-z0-9]+(?:-[a-z0-9]+)*')
# How sure of a rule SIMULATOR.md is, and the headings of its tables.
MARKS = ('confirmed', 'reported', 'assumed', 'by design', 'a simplification')
HEADINGS = ('Mark', 'Rule')
# How a row of SIMULATOR.md names the assumption that it rests on, and what Macs have said of it.
NAMED = re.compile(r'\(`([a-z0-9-]+)`(?:: [^()]*)?\)')


@dataclass(frozen=True)
class Probe:
    """A program or script under tests/mac, which asks a Mac about assumptions."""
    name: str
    about: str
    seconds: int  # after which it is ended
    seen: str = ''  # what somebody at the Mac sees of it
    speaks_through_driver: bool = False  # so it runs against a simulated Mac as well
    hosted: str = ''  # why it is not for a person's Mac
    locks: bool = False  # the screen, and nothing comes after it


@dataclass(frozen=True)
class Answer:
    """What one Mac has said of one assumption."""
    verdict: str
    version: str
    hardware: str
    date: str
    evidence: str

    def shown(self):
        return f'{self.verdict} on {self.version}'


@dataclass(frozen=True)
class Assumption:
    id: str
    assumed: str
    probe: str = ''
    person: str = ''  # why no probe can ask
    simulated: tuple = ()  # the sources of the simulated Mac that do as is assumed
    answers: tuple = field(default_factory=tuple)

    def shown_answers(self):
        return '; '.join(answer.shown() for answer in self.answers)


def one_line(text):
    return ' '.join(text.split())


def read_assumptions(data):
    """Those of the table, in its order; `data` is what its file holds."""
    return [Assumption(each.get('id', ''), one_line(each.get('assumed', '')),
                       each.get('probe', ''), one_line(each.get('person', '')),
                       tuple(each.get('simulated', ())),
                       tuple(Answer(**answer) for answer in each.get('answer', ())))
            for each in data.get('assumption', ())]


def load_assumptions(root):
    return read_assumptions(tomllib.loads((root / SYMBOLS).read_text()))


def load_probes(root):
    """The probes by name, in the order in which they run."""
    data = tomllib.loads((root / PROBES / 'probes.toml').read_text())
    return {name: Probe(name, **values) for name, values in data['probe'].items()}


def source_of(root, probe):
    """The file of a probe, None when there is none."""
    found = [root / PROBES / f'{probe}{suffix}' for suffix in ('.cpp', '.mm', '.py')]
    return next((path for path in found if path.exists()), None)


def marked_rules(page):
    """The rules of docs/SIMULATOR.md, each with its mark."""
    for line in page.splitlines():
        cells = line.strip('|').split(' | ')
        if line.startswith('|') and len(cells) == 2:
            yield cells[0].strip(), cells[1].strip()


def rules_by_assumption(page):
    """The rules that name an assumption, by its id."""
    rules = {}
    for rule, mark in marked_rules(page):
        for name in NAMED.findall(mark):
            rules.setdefault(name, []).append(rule)
    return rules


def problems_with_marks(page):
    """What a rule assumes has a name, by which a Mac is asked."""
    for rule, mark in marked_rules(page):
        if rule in (*MARKS, *HEADINGS):
            continue
        if not any(word in mark for word in MARKS):
            yield f'{SIMULATOR_PAGE} does not say how sure this is: {rule}'
        if 'assumed' in mark and not NAMED.search(mark):
            yield f'{SIMULATOR_PAGE} names no assumption for: {rule}'


def problems_of(assumption, probes):
    """What is wrong with an assumption in itself."""
    name = assumption.id
    if not IDENTIFIER.fullmatch(name):
        yield f'an assumption has no id: {assumption.assumed}'
    elif bool(assumption.probe) == bool(assumption.person):
        yield f'{name}: either a probe asks, or a reason says why a person is needed'
    elif assumption.probe and assumption.probe not in probes:
        yield f'{name}: there is no probe {assumption.probe}'
    for answer in assumption.answers:
        if answer.verdict not in VERDICTS:
            yield f'{name}: "{answer.verdict}" is no verdict'


def problems_of_questions(root, assumptions):
    """A probe that is asked about several assumptions tells them apart by their ids."""
    asking = [assumption for assumption in assumptions if assumption.id and assumption.probe]
    names = [assumption.probe for assumption in asking]
    for assumption in asking:
        source = source_of(root, assumption.probe)
        if names.count(assumption.probe) > 1 and source and not assumption.person \
                and f'"{assumption.id}"' not in source.read_text():
            yield f'{source.relative_to(root)} does not know {assumption.id}'


def problems_of_probes(root, assumptions, probes):
    asked = {assumption.probe for assumption in assumptions}
    for probe in probes:
        if probe not in asked:
            yield f'no assumption names the probe {probe}'
        if source_of(root, probe) is None:
            yield f'{PROBES} has no source of the probe {probe}'


def problems_with_rules(root, assumptions, rules):
    """What the simulated Mac assumes has the names by which a Mac is asked."""
    known = {assumption.id for assumption in assumptions}
    for name in sorted(set(rules) - known):
        yield f'{SIMULATOR_PAGE} names {name}, which is no assumption'
    for assumption in assumptions:
        if bool(assumption.simulated) != (assumption.id in rules):
            yield (f'{assumption.id}: its rule in {SIMULATOR_PAGE} and its file in the simulated '
                   'Mac belong together')
        for path in assumption.simulated:
            if not (root / path).exists():
                yield f'{assumption.id}: there is no {path}'


def problems_with_assumptions(root):
    assumptions, probes = load_assumptions(root), load_probes(root)
    names = [assumption.id for assumption in assumptions if assumption.id]
    simulator = (root / SIMULATOR_PAGE).read_text()
    return [*(f'two assumptions are called {name}' for name in sorted(set(names))
              if names.count(name) > 1),
            *(problem for each in assumptions for problem in problems_of(each, probes)),
            *problems_of_probes(root, assumptions, probes),
            *problems_of_questions(root, assumptions),
            *problems_with_marks(simulator),
            *problems_with_rules(root, assumptions, rules_by_assumption(simulator))]


def simulator_page(page, assumptions):
    """The page of the simulated Mac with what Macs have said of what its rules rest on."""
    answers = {assumption.id: assumption.shown_answers() for assumption in assumptions}

    def named(match):
        shown = answers.get(match[1], '')
        return f'(`{match[1]}`: {shown})' if shown else f'(`{match[1]}`)'

    return '\n'.join(NAMED.sub(named, line) if line.startswith('|') else line
                     for line in page.split('\n'))


def answer_line(assumption):
    """What MAC.md says below an assumption of which a Mac has spoken."""
    return ''.join(f'  A Mac has answered: {each.verdict} on macOS {each.version} '
                   f'({each.hardware}, {each.date}): {each.evidence}  \n'
                   for each in assumption.answers)


def mac_page(page, assumptions):
    """The page of symbols with the answers of Macs, each below the assumption that it is about."""
    lines = {assumption.id: answer_line(assumption) for assumption in assumptions}
    page = re.sub(r'^  A Mac has answered: .*\n', '', page, flags=re.M)
    return re.sub(r'^- \*\*([a-z0-9-]+)\*\*.*\n(?:  .*\n)*',
                  lambda match: match[0] + lines.get(match[1], ''), page, flags=re.M)
