"""Makes one SVG that moves of several pictures: what they have in common is drawn once, and what differs is shown for as
long as it is so. Without animation the last picture is seen."""

# How large it is shown where nobody says: a page of a code host has some 840 points, and more to show at once.
SHOWN = 0.85
FONTS = ("text{font-family:-apple-system,'Segoe UI','Noto Sans','DejaVu Sans',sans-serif;font-size:13px;fill:#222}"
         ".code{font-family:ui-monospace,Menlo,Consolas,'DejaVu Sans Mono',monospace;font-size:12px}")
TITLE = "A user reads in front while an agent answers a letter behind"
DESCRIPTION = ("The user searches a page in a browser, which stays in front and keeps the keyboard. Meanwhile an agent "
               "opens a letter in a mail window behind it, types an answer and sends it.")


def spans_of(pictures):
    """(key, first picture, picture after the last, shape), in the order of drawing, of what is drawn alike meanwhile."""
    order = []
    for picture in pictures:
        place = 0
        for key in picture:
            if key in order:
                place = order.index(key) + 1
            else:
                order.insert(place, key)
                place += 1
    spans = []
    for key in order:
        first = 0
        for i in range(1, len(pictures) + 1):
            if i == len(pictures) or pictures[i].get(key) != pictures[first].get(key):
                if pictures[first].get(key) is not None:
                    spans.append((key, first, i, pictures[first][key]))
                first = i
    return spans


def keyframes(name, begin, end, total):
    """The rule by which something is seen between two times of a round, in seconds."""
    frames = [(0, "visible" if begin == 0 else "hidden")]
    if begin > 0:
        frames.append((begin, "visible"))
    if end < total:
        frames.append((end, "hidden"))
    steps = "".join(f"{100 * at / total:.5g}%{{visibility:{how}}}" for at, how in frames)
    return f"@keyframes {name}{{{steps}}}.{name}{{animation:{name} {total:g}s step-end infinite}}"


def animated(pictures, seconds, size):
    """The SVG. Each picture is a dictionary of shapes, back to front, and is seen for its seconds."""
    begins = [round(sum(seconds[:i]), 3) for i in range(len(pictures) + 1)]
    rules, drawn = {}, []
    for _, first, after, shape in spans_of(pictures):
        if (first, after) == (0, len(pictures)):
            drawn.append(shape)
            continue
        name = f"s{first}-{after}"
        rules[name] = keyframes(name, begins[first], begins[after], begins[-1])
        passing = "" if after == len(pictures) else " past"
        drawn.append(f'<g class="{name}{passing}">{shape}</g>')
    style = f"{FONTS}.past{{visibility:hidden}}{''.join(rules.values())}" \
        "@media(prefers-reduced-motion:reduce){g{animation:none!important}}"
    width, height = size
    return "\n".join((
        f'<svg xmlns="http://www.w3.org/2000/svg" width="{width * SHOWN:g}" height="{height * SHOWN:g}" '
        f'viewBox="0 0 {width} {height}" role="img" aria-labelledby="t d">',
        f'<title id="t">{TITLE}</title>', f'<desc id="d">{DESCRIPTION}</desc>', f"<style>{style}</style>",
        *drawn, "</svg>", ""))
