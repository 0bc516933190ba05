"""What is drawn of a simulated Mac in the moving picture: the shapes of one look, back to front, by key."""
import json
import textwrap
from html import escape

SCREEN = (960, 470)
PANEL_TOP, PANEL_HEIGHT = 482, 208
WIDTH_POINTS, HEIGHT_POINTS = 960, PANEL_TOP + PANEL_HEIGHT
MENU_BAR_HEIGHT = 26
TITLE_BAR_HEIGHT = 30
CHARACTER_WIDTH = 7.0  # of a text of 13 points, about
LINE_HEIGHT = 19
REPLY_CHARACTERS_MAX = 78
AGENT, USER = "#b58cff", "#6cb6ff"


def box(frame, radius, fill, more=""):
    x, y, width, height = frame
    return f'<rect x="{x:g}" y="{y:g}" width="{width:g}" height="{height:g}" rx="{radius}" fill="{fill}"{more}/>'


def text(x, y, words, more=""):
    return f'<text x="{x:g}" y="{y:g}"{more}>{escape(words, quote=False)}</text>'


def lines(x, y, words, width, more=""):
    """A text of several lines."""
    rows = textwrap.wrap(words, int(width / CHARACTER_WIDTH), drop_whitespace=False) or [""]
    return "".join(text(x, y + i * LINE_HEIGHT, row.rstrip(), more) for i, row in enumerate(rows) if row.strip())


def frame_of(element):
    frame = element["frame"]
    return frame["x"], frame["y"], frame["width"], frame["height"]


def field(element, has_keyboard):
    x, y, width, height = frame_of(element)
    attributes = element["attributes"]
    value, placeholder = attributes.get("AXValue", ""), attributes.get("AXPlaceholderValue", "")
    ring = ' stroke="#0a7aff" stroke-width="2.5"' if has_keyboard else ' stroke="#c4c6ca"'
    shown = text(x + 10, y + 19, placeholder, ' style="fill:#999"') if not value else \
        lines(x + 10, y + 19, value, width - 16)
    return box((x, y, width, height), 6, "#fff", ring) + shown


def row(element):
    x, y, width, height = frame_of(element)
    fill = "#d5dbe6" if element["attributes"].get("AXValue") == 1 else "#f3f4f6"
    return box((x, y, width, height), 6, fill) + text(x + 10, y + 21, element["label"])


def button(element):
    x, y, width, height = frame_of(element)
    return box((x, y, width, height), 7, "#fff", ' stroke="#c4c6ca"') + \
        text(x + width / 2, y + 20, element["label"], ' text-anchor="middle"')


def scroll_bar(element):
    x, y, width, height = frame_of(element)
    down = element["attributes"].get("AXValue", 0) * height * 0.3
    return box((x + 5, y + 4 + down, width - 9, height * 0.7 - 8), 3, "#c4c6ca")


def control(element, look):
    """The shape of an element; none of what only holds others."""
    x, y, width, _ = frame_of(element)
    role, value = element["role"], element["attributes"].get("AXValue", "")
    if role in ("AXTextField", "AXTextArea"):
        keyboard = look["user"]["keyboard"]
        return field(element, (element["window"], element["label"]) == (keyboard["window"], keyboard["element"]))
    if role == "AXHeading":
        return text(x, y + 20, element["label"], ' style="font-size:18px;font-weight:600"')
    if role == "AXStaticText":
        return lines(x, y + 16, value, width)
    if role == "AXScrollBar":
        return scroll_bar(element)
    if role == "AXRow":
        return row(element)
    return button(element) if role == "AXButton" else None


def window(frame, title, in_front):
    x, y, width, height = frame
    bar = "#fff" if in_front else "#eceef1"
    dots = ("#ff5f57", "#febc2e", "#28c840") if in_front else ("#cfd2d6",) * 3
    middle = y + TITLE_BAR_HEIGHT / 2
    return (box((x - 2, y + 4, width + 4, height + 4), 13, "#000", ' opacity="0.22"') +
            box(frame, 11, "#fbfbfc", ' stroke="#0003"') +
            f'<path d="M{x:g} {y + TITLE_BAR_HEIGHT:g}v-{TITLE_BAR_HEIGHT - 11}a11 11 0 0 1 11-11h{width - 22:g}'
            f'a11 11 0 0 1 11 11v{TITLE_BAR_HEIGHT - 11}z" fill="{bar}"/>' +
            f'<path d="M{x:g} {y + TITLE_BAR_HEIGHT:g}h{width:g}" stroke="#0002"/>' +
            "".join(f'<circle cx="{x + 18 + 19 * i:g}" cy="{middle:g}" r="5.5" fill="{dot}"/>'
                    for i, dot in enumerate(dots)) +
            text(x + width / 2, middle + 5, title,
                 f' text-anchor="middle" style="font-weight:600;fill:{"#222" if in_front else "#999"}"'))


def desktop(front):
    width, height = SCREEN
    return ('<defs><linearGradient id="w" x2="0" y2="1"><stop stop-color="#4b79b8"/><stop offset="1" '
            'stop-color="#c9b3cf"/></linearGradient></defs>' + box((0, 0, width, height), 12, "url(#w)") +
            f'<path d="M0 {MENU_BAR_HEIGHT}V12A12 12 0 0 1 12 0H{width - 12}A12 12 0 0 1 {width} 12V{MENU_BAR_HEIGHT}z"'
            ' fill="#fffd"/>' + text(20, 18, front, ' style="font-weight:700"') +
            "".join(text(100 + 58 * i, 18, menu) for i, menu in enumerate(("File", "Edit", "View", "Window"))))


def pointer(at):
    """The user's pointer, an arrow with its tip at the point."""
    return (f'<path transform="translate({at["x"]:g} {at["y"]:g})" d="M0 0v17l4.3-3.8 2.8 6.3 2.6-1.2-2.8-6.1h5.6z" '
            'fill="#000" stroke="#fff" stroke-width="1.3"/>')


def mark(deed):
    """Where the agent acted, when it was a place."""
    if deed["words"][0] == "bg-click":
        x, y = map(float, deed["words"][2:])
    elif deed["words"][0] == "ax-press-exact":
        x, y, width, height = frame_of(json.loads(deed["reply"])["element"])
        x, y = x + width / 2, y + height / 2
    else:
        return None
    return f'<circle cx="{x:g}" cy="{y:g}" r="15" fill="{AGENT}4d" stroke="{AGENT}" stroke-width="3"/>'


def users_column(look):
    """What the user has done, and what is the user's."""
    keys = [deed["words"][1] for deed in look["deeds"] if deed["who"] == "user" and deed["words"][0] == "key"]
    typed = "".join(key for key in keys if len(key) == 1)
    done = [("scrolls the page", any(deed["words"][0] == "scroll" for deed in look["deeds"])),
            (f"types “{typed}”", typed != ""), ("presses Return", "return" in keys)]
    user = look["user"]
    own = (("front", user["front"]["name"]), ("keyboard", user["keyboard"]["element"]),
           ("pointer", f'{user["pointer"]["x"]:g}, {user["pointer"]["y"]:g}'),
           ("clipboard", user["clipboard"][0][0]["data"]))
    yield "user-heading", text(24, PANEL_TOP + 28, "In front: the user", f' style="fill:{USER};font-weight:600"') + \
        text(24, PANEL_TOP + 112, "stays the user’s:", ' style="fill:#9aa0a6"')
    for i, (words, shown) in enumerate(done):
        if shown:
            yield f"user-{i}", text(24, PANEL_TOP + 52 + i * LINE_HEIGHT, words, ' style="fill:#fff"')
    for i, (name, value) in enumerate(own):
        y = PANEL_TOP + 133 + i * LINE_HEIGHT
        yield f"own-{name}", text(24, y, name, ' style="fill:#9aa0a6"') + text(104, y, value, ' style="fill:#fff"')


def agents_column(look):
    """What the agent has run, and the replies."""
    left = 270
    yield "agent-heading", text(left, PANEL_TOP + 28, "Behind: the agent", f' style="fill:{AGENT};font-weight:600"')
    for i, deed in enumerate(deed for deed in look["deeds"] if deed["who"] == "agent"):
        y = PANEL_TOP + 52 + i * 31
        words = " ".join(f'"{word}"' if " " in word else word for word in deed["words"])
        reply = deed["reply"]
        if len(reply) > REPLY_CHARACTERS_MAX:
            reply = reply[:REPLY_CHARACTERS_MAX - 1] + "…"
        yield f"agent-{i}", text(left, y, f"$ driver {words}", ' class="code" style="fill:#fff"') + \
            text(left, y + 15, reply, ' class="code" style="fill:#9aa0a6"')


def shapes_of(look):
    """The shapes by key."""
    shapes = {"desktop": desktop(look["user"]["front"]["name"])}
    applications = [line for line in look["tree"] if line["kind"] == "application"]
    for application in sorted(applications, key=lambda each: each["front"]):
        shapes.update(shapes_of_application(application, look))
    shapes["pointer"] = pointer(look["user"]["pointer"])
    if look["deeds"] and look["deeds"][-1]["who"] == "agent":
        shapes["mark"] = mark(look["deeds"][-1])
    shapes["panel"] = box((0, PANEL_TOP, WIDTH_POINTS, PANEL_HEIGHT), 12, "#1e1f24")
    shapes.update(users_column(look))
    shapes.update(agents_column(look))
    return shapes


def shapes_of_application(application, look):
    """Its window, and what is in it; what scrolls is cut at its edges."""
    pid, areas = application["pid"], {}
    for line in look["tree"]:
        if line["pid"] != pid:
            continue
        key = f'{pid}-{line["kind"]}-{line.get("element")}'
        if line["kind"] == "window":
            yield key, window(frame_of(line), line["title"], application["front"])
        elif line["kind"] == "element" and line["role"] == "AXScrollArea":
            areas[line["element"]] = f"c{key}"
            yield key, f'<clipPath id="c{key}">{box(frame_of(line), 0, "#fff")}</clipPath>'
        elif line["kind"] == "element" and (shape := control(line, look)):
            area = areas.get(line["parent"])
            yield key, f'<g clip-path="url(#{area})">{shape}</g>' if area else shape
