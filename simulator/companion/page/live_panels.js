// Rules, state and tree of a running Mac.
import { byId, element, textOf } from "dom";
import { tell } from "live_mac";
import { outline } from "live_screen";

/** More elements than these nobody looks through. */
const nodesMax = 2000;

/** Broken rules, each with the way to where it was broken. */
export async function showRules(journal) {
  const [{ violations }] = await tell("violations");
  byId("rules").hidden = violations.length > 0;
  const list = byId("broken");
  for (const text of violations.slice(list.children.length)) {
    const item = journal.items.find((each) => each.broken.some(({ what }) => what === text));
    list.append(element("li", {}, item === undefined ? text
      : element("a", { href: `#item-${item.number}`, textContent: text })));
  }
}

function shownValue(value) {
  return typeof value === "string" ? value : JSON.stringify(value, null, 1);
}

/** Rows of names and values. */
function rowsOf(values) {
  return Object.entries(values).map(([name, value]) => element("tr", {},
    element("th", { scope: "row", textContent: name }),
    element("td", { className: "line", textContent: shownValue(value) })));
}

export async function showState() {
  if (!byId("state").open) return;
  const [{ ok, ...state }] = await tell("state");
  byId("state-table").replaceChildren(...rowsOf(state));
}

let shownTree = "";

export async function showTree() {
  const application = byId("tree-application").value;
  if (!byId("tree").open || application === "") {
    if (!byId("tree").open) outline(null);
    return;
  }
  const lines = await tell("tree", application);
  const text = JSON.stringify(lines);
  if (text === shownTree) return;
  shownTree = text;
  const focused = document.activeElement?.dataset?.key;
  const nodes = lines.slice(0, nodesMax).map(nodeOf);
  if (lines.length > nodesMax) {
    nodes.push(element("li", { textContent: `… and ${lines.length - nodesMax} more` }));
  }
  byId("nodes").replaceChildren(...nodes);
  if (focused !== undefined) byId("nodes").querySelector(`[data-key="${focused}"]`)?.focus();
}

function nodeText(line) {
  if (line.kind === "application") return `${textOf(line.name)}, process ${line.pid}`;
  if (line.kind === "window") return `window ${line.window} "${textOf(line.title ?? "")}"`;
  const copies = line.copies === undefined ? "" : ` (${line.copies} of them)`;
  const there = line.there ? "" : ", not there";
  return `${line.role} "${textOf(line.label)}"${copies}${there}`;
}

function depthOf(line) {
  return line.kind === "application" ? 0 : line.kind === "window" ? 1 : line.depth + 2;
}

/** A line of the tree: pointed at, or with the keyboard, it is framed and its attributes shown. */
function nodeOf(line) {
  const button = element("button", { type: "button", textContent: nodeText(line) });
  button.dataset.key = `${line.kind}-${line.element ?? line.pid}`;
  button.style.marginLeft = `${depthOf(line)}em`;
  const point = () => {
    outline(line.frame ?? null);
    byId("node").replaceChildren(element("table", {}, ...rowsOf(line)));
  };
  for (const event of ["pointerenter", "focus", "click"]) button.addEventListener(event, point);
  return element("li", {}, button);
}
