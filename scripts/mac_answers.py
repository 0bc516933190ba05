"""What Macs have answered: how it is written down, and how it comes into the project."""
import json
import re
import tomllib

from mac_assumptions import (CONFIRMED, MAC_PAGE, NOT_SHOWN, REFUTED, SIMULATOR_PAGE, SYMBOLS,
                             VERDICTS, load_assumptions, mac_page, read_assumptions,
                             rules_by_assumption, simulator_page)
from mac_probes import SIMULATED

MEMBERS = ('assumption', 'verdict', 'evidence', 'version', 'hardware', 'date')
EVIDENCE_MAX = 300  # characters of it that the pages show


class Unusable(Exception):
    """Why answers cannot be applied."""


def shown_evidence(evidence):
    text = '; '.join(f'{key}: {value if isinstance(value, str) else json.dumps(value)}'
                     for key, value in evidence.items())
    text = ' '.join(text.replace('|', '/').split())
    return text if len(text) <= EVIDENCE_MAX else text[:EVIDENCE_MAX - 1] + '…'


def table(answers):
    """The answers as a page, what is refuted first."""
    places = {verdict: place for place, verdict in enumerate((REFUTED, NOT_SHOWN, CONFIRMED))}
    counts = ', '.join(f'{sum(each["verdict"] == verdict for each in answers)} {verdict}'
                       for verdict in VERDICTS)
    text = f'# What this Mac says of what is assumed\n\n{counts}\n\n'
    text += '| Assumption | Verdict | Evidence | macOS | Hardware |\n|---|---|---|---|---|\n'
    for each in sorted(answers, key=lambda each: places[each['verdict']]):
        text += (f'| `{each["assumption"]}` | {each["verdict"]} | '
                 f'{shown_evidence(each["evidence"])} | {each["version"]} | {each["hardware"]} |\n')
    return text


def read_answers(path):
    """The answers in a file of JSON lines."""
    answers = []
    for number, line in enumerate(path.read_text().splitlines(), 1):
        try:
            answer = json.loads(line)
            wrong = [name for name in MEMBERS if name not in answer] \
                or answer['verdict'] not in VERDICTS
        except (ValueError, TypeError):
            wrong = True
        if wrong:
            raise Unusable(f'{path}:{number}: this is no answer of a Mac')
        if answer['version'] == SIMULATED:
            raise Unusable(f'{path}:{number}: a simulated Mac settles nothing')
        answers.append(answer)
    return answers


def answer_text(answer):
    return ('[[assumption.answer]]\n'
            + ''.join(f'{key} = {json.dumps(answer[key], ensure_ascii=False)}\n'
                      for key in ('verdict', 'version', 'hardware', 'date', 'evidence')))


def merged(old, new):
    """The answers of an assumption, one of each version and hardware, the latest. What a Mac does
    not show says nothing against what it has shown before."""
    by_mac = {(each['version'], each['hardware']): each for each in old}
    for each in sorted(new, key=lambda each: each['date']):
        mac = (each['version'], each['hardware'])
        before = by_mac.get(mac)
        if each['verdict'] == NOT_SHOWN and before and before['verdict'] != NOT_SHOWN:
            continue
        by_mac[mac] = {**each, 'evidence': shown_evidence(each['evidence'])}
    return sorted(by_mac.values(), key=lambda each: (version_key(each['version']),
                                                     each['hardware']))


def version_key(version):
    return [int(part) for part in re.findall(r'\d+', version)]


def with_answers(text, answers):
    """The table of symbols with these answers, by assumption. All else stays as it is written."""
    data = {each['id']: each for each in tomllib.loads(text)['assumption']}
    pieces = re.split(r'(?=^\[\[assumption\]\]\n)', text, flags=re.M)
    for index, piece in enumerate(pieces):
        found = re.match(r'\[\[assumption\]\]\nid = "([^"]+)"', piece)
        if found and found[1] in answers:
            pieces[index] = answered(piece, merged(data[found[1]].get('answer', []),
                                                   answers[found[1]]))
    return ''.join(pieces)


def answered(piece, answers):
    """An assumption as it is written, with these answers in place of its own. Comments and blank
    lines behind it belong to what follows."""
    piece = re.sub(r'^\[\[assumption\.answer\]\]\n(?:\w+ = .*\n)*', '', piece, flags=re.M)
    behind = re.search(r'(?:^\s*\n|^#.*\n|\Z)+\Z', piece, flags=re.M)
    body, rest = piece[:behind.start()], piece[behind.start():]
    return body + ''.join(map(answer_text, answers)) + rest


def contradictions(assumptions, answers, page):
    """Lines that say which rules of the simulated Mac contradict what a Mac has refuted."""
    rules = rules_by_assumption(page)
    for each in assumptions:
        versions = sorted({answer['version'] for answer in answers.get(each.id, ())
                           if answer['verdict'] == REFUTED}, key=version_key)
        if not versions:
            continue
        yield f'{each.id}: refuted on {", ".join(versions)}'
        for rule in rules.get(each.id, ()):
            yield f'  {SIMULATOR_PAGE}: {rule}'
        for path in each.simulated:
            yield f'  {path}'
        if not each.simulated:
            yield '  no rule of the simulated Mac rests on it; the adapters do'


def apply(root, paths):
    """Writes the answers into the table and its pages. The lines on what they contradict."""
    answers = {}
    for path in paths:
        for answer in read_answers(path):
            answers.setdefault(answer['assumption'], []).append(answer)
    unknown = sorted(set(answers) - {each.id for each in load_assumptions(root)})
    if unknown:
        raise Unusable(f'nothing is assumed by the name of {", ".join(unknown)}')
    symbols = with_answers((root / SYMBOLS).read_text(), answers)
    assumptions = read_assumptions(tomllib.loads(symbols))
    (root / SYMBOLS).write_text(symbols)
    for path, written in ((MAC_PAGE, mac_page), (SIMULATOR_PAGE, simulator_page)):
        (root / path).write_text(written((root / path).read_text(), assumptions))
    return list(contradictions(assumptions, answers, (root / SIMULATOR_PAGE).read_text()))
