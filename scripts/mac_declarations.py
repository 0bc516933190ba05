"""Reads our own declarations of the frameworks: what each header declares, by name."""
import re
from dataclasses import dataclass, field


@dataclass
class Type:
    """A class, with its categories, or a protocol."""
    name: str
    framework: str = ''
    parent: str = ''
    protocols: set = field(default_factory=set)
    members: dict = field(default_factory=dict)  # as it is written, to its selectors


@dataclass
class Header:
    types: list
    values: dict      # enumerators and macros, to their values as they are written
    structures: list
    plain: list       # functions, and constants that the framework exports
    versions: list    # of macOS that brought something of it, where that is said


def without_comments(text):
    return re.sub(r'//[^\n]*|/\*.*?\*/', '', text, flags=re.DOTALL)


def without_parentheses(text):
    while '(' in text:
        shorter = re.sub(r'\([^()]*\)', ' ', text)
        if shorter == text:
            raise ValueError(f'unbalanced: {text}')
        text = shorter
    return text


def property_selectors(attributes, name):
    """The getter, and the setter where there is one."""
    getter = re.search(r'getter\s*=\s*(\w+)', attributes)
    selectors = [getter.group(1) if getter else name]
    if 'readonly' not in attributes:
        selectors.append(f'set{name[0].upper()}{name[1:]}:')
    return selectors


def selector_of(declaration):
    """Of a method as it is declared, without the sign in front and what comes after it."""
    words = without_parentheses(declaration.replace('__attribute__', ''))
    return ''.join(re.findall(r'\w+\s*:', words)).replace(' ', '') or words.split()[0]


def members_of(owner, body):
    members = {}
    for attributes, declaration in re.findall(r'@property\s*(\([^)]*\))?([^;]+);', body):
        name = re.findall(r'\w+', without_parentheses(declaration.split('__attribute__')[0]))[-1]
        members[f'{owner}.{name}'] = property_selectors(attributes, name)
    for sign, declaration in re.findall(r'^([-+])\s*(\([^;{]+)[;{]', body, re.MULTILINE):
        selector = selector_of(declaration)
        members[f'{sign}[{owner} {selector}]'] = [selector]
    return members


def types_in(text):
    types = {}
    pattern = r'@(?:interface|protocol|implementation)\s+(\w+)(.*?)@end'
    for name, content in re.findall(pattern, text, re.DOTALL):
        heading = re.split(r'\n[-+@]|\{', content, maxsplit=1)[0]
        found = types.setdefault(name, Type(name))
        parent = re.search(r'(?<!\w):\s*(\w+)', re.sub(r'^\s*<[^>]*>', '', heading))
        found.parent = parent.group(1) if parent else found.parent
        for names in re.findall(r'<([\w\s,]+)>\s*$', heading):
            found.protocols |= set(re.findall(r'\w+', names))
        found.members |= members_of(name, content)
    return list(types.values())


def values_in(text):
    values = {}
    for body in re.findall(r'\benum\b[^{;]*\{([^}]*)\}', text):
        for item in filter(None, map(str.strip, body.split(','))):
            name, _, value = item.partition('=')
            values[name.strip()] = value.strip()
    for name, value in re.findall(r'^#define (\w+)(?:\([^)]*\))?\s+(\S.*)$', text, re.MULTILINE):
        values[name] = value
    return values


def plain_in(text):
    for pattern in (r'@(?:interface|protocol)\s.*?@end', r'^#.*$', r'^@(?:class|protocol)[^;]*;',
                    r'extern "C" \{', r'\{[^{}]*\}', r'\btypedef\b[^;]*;', r'\benum\b[^;]*;',
                    r'__attribute__\s*\(\(.*?\)\)'):
        text = re.sub(pattern, ' ', text, flags=re.DOTALL if '@end' in pattern else re.MULTILINE)
    for statement in text.split(';'):
        function = re.search(r'(\w+)\s*\(', statement)
        constant = re.search(r'\bextern\b.*?(\w+)\s*$', statement, re.DOTALL)
        if function or constant:
            yield (function or constant).group(1)


def read_header(text):
    """What a header of ours declares, in its order."""
    forward = r'@(?:class|protocol)\s[\w\s,]+;'
    text = re.sub(forward, '', without_comments(text).replace('\\\n', ' '))
    structures = re.findall(r'typedef struct[^{;]*\{[^}]*\}\s*(\w+);', text)
    versions = re.findall(r'\bintroduced\s*=\s*([\d.]+)', text)
    return Header(types_in(text), values_in(text), structures, list(plain_in(text)), versions)
