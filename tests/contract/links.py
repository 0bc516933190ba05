"""The links of documents."""
import re


def broken_links(documents):
    """(document, target) for all links to files that are not there."""
    for document in documents:
        # What stands in code is no link.
        text = re.sub(r"`[^`\n]*`", "", document.read_text())
        for target in re.findall(r"\]\(([^)#]+)(?:#[^)]*)?\)", text):
            if "://" not in target and not (document.parent / target).exists():
                yield str(document), target
