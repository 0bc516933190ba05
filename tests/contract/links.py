"""The links of documents."""
import re
from collections import Counter
from urllib.parse import unquote

LINK = re.compile(r"\]\(([^()\s]+)\)")


def without_code(text):
    """The text of a page without its fenced blocks and code, which have no links and no headings."""
    blocks = re.sub(r"^( *)```.*?^\1```$", "", text, flags=re.M | re.S)
    return re.sub(r"(`+)(?!`).+?(?<!`)\1(?!`)", "", blocks)


def slug(heading):
    """The anchor of a heading, as code hosts make it."""
    return re.sub(r"[^\w\- ]", "", heading.strip().lower()).replace(" ", "-")


def anchors_of(page):
    text = page.read_text(encoding="utf-8")
    blocks = re.sub(r"^( *)```.*?^\1```$", "", text, flags=re.M | re.S)
    slugs = Counter()
    for heading in re.findall(r"^#+ (.*)$", blocks, re.M):
        name = slug(heading)
        yield f"{name}-{slugs[name]}" if slugs[name] else name
        slugs[name] += 1
    yield from re.findall(r'<a id="([^"]+)">', blocks)


def broken_links(documents):
    """(document, target) of all links to files, or to places in them, that are not there."""
    for document in documents:
        for link in LINK.findall(without_code(document.read_text(encoding="utf-8"))):
            if "://" in link or link.startswith("mailto:"):
                continue
            path, _, anchor = link.partition("#")
            target = document.parent / unquote(path) if path else document
            page = target / "README.md" if target.is_dir() else target
            if not target.exists() or (anchor and anchor not in anchors_of(page)):
                yield str(document), link
