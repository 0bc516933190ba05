// The list of items: each a line that opens, with search, filters and keys.
import { byId, element, milliseconds } from "dom";
import { commandLineOf, deedOf, endedBadly, hasFailed, headingOf, isFailure, isInVain, isRefused,
  isSameLook, reasonOf, timesOf } from "journal";

const wanted = {
  all: () => true, failed: hasFailed, broken: (item) => item.broken.length > 0,
  faults: (item) => item.faults.length > 0, user: (item) => item.kind === "user",
};

export class ItemList {
  #items = [];
  #names;
  #screensOf;
  #shown = 0;
  #runs = new Set();
  #heads = new Map();      // of items that are folded: the item that stands for them
  #followers = new Map();  // of such an item: those below it

  /** `names` has the applications' by their pids; `screensOf` makes of an item what it shows of the
   *  screens, or null. */
  constructor(names, screensOf) {
    this.#names = names;
    this.#screensOf = screensOf;
    for (const id of ["text", "show", "process"]) {
      byId(id).addEventListener("input", () => this.filter());
    }
    byId("filter").addEventListener("submit", (event) => event.preventDefault());
    byId("open").addEventListener("click", () => openShown(true));
    byId("close").addEventListener("click", () => openShown(false));
    document.addEventListener("keydown", takeKey);
    window.addEventListener("beforeprint", () => openShown(true));
  }

  /** Shows an item that is new, or has changed. */
  show(item) {
    let details = byId(`item-${item.number}`);
    if (details === null) {
      details = this.#detailsOf(item);
      byId("items").append(details);
      this.#items.push(item);
      this.#offer(item.run);
    }
    this.#fold(item);
    const isRed = item.broken.length > 0 || isFailure(item);
    details.dataset.state = isRed ? "broken" : hasFailed(item) ? "failed" : "fine";
    details.firstElementChild.replaceChildren(
      element("span", { className: "time", textContent: milliseconds(item.first.at) }),
      titleOf(item), tagsOf(item, this.#followers.get(item)?.length ?? 0));
    details.dataset.filled = "";
    if (details.open) this.#fill(details, item);
    this.#filterOne(item);
  }

  /** Opens an item, and what stands for it. */
  reveal(item) {
    const head = this.#heads.get(item) ?? item;
    byId(`item-${head.number}`).open = true;
    byId(`item-${item.number}`).open = true;
    this.#filterOne(item);
  }

  filter() {
    this.#shown = 0;
    for (const item of this.#items) this.#filterOne(item, true);
    this.#count();
  }

  /** An item that is the same look as the one before it stands below the first of these, which shows
   *  how many there are. */
  #fold(item) {
    const before = this.#items[item.number - 1];
    if (this.#heads.has(item) || this.#followers.has(item) || before === undefined) return;
    if (!isSameLook(item, before)) return;
    const head = this.#heads.get(before) ?? before;
    this.#heads.set(item, head);
    this.#followers.set(head, [...this.#followers.get(head) ?? [], item]);
    this.show(head);
  }

  /** Whether it is out of sight below an item that stands for it. */
  #isFolded(item) {
    const head = this.#heads.get(item);
    if (head === undefined) return false;
    const details = byId(`item-${head.number}`);
    return details.dataset.counted === "yes" && !details.open;
  }

  #count() { byId("count").value = `${this.#shown} of ${this.#items.length}`; }

  #filterOne(item, isFirst = false) {
    const details = byId(`item-${item.number}`);
    const text = byId("text").value.toLowerCase();
    const pid = byId("process").value;
    const matches = wanted[byId("show").value](item) &&
      (text === "" || this.#searched(item).includes(text)) &&
      (pid === "" || String(item.run?.pid) === pid);
    const counted = !isFirst && details.dataset.counted === "yes";
    this.#shown += Number(matches) - Number(counted);
    details.dataset.counted = matches ? "yes" : "no";
    details.hidden = !matches || this.#isFolded(item);
    if (!isFirst) this.#count();
  }

  /** All that can be searched for in an item. */
  #searched(item) {
    return [headingOf(item), ...item.entries.map((each) => deedOf(each, this.#names))]
      .join("\n").toLowerCase();
  }

  #offer(run) {
    if (run === null || this.#runs.has(run.pid)) return;
    this.#runs.add(run.pid);
    byId("process").append(element("option", { value: run.pid,
      textContent: `${run.pid} ${commandLineOf(run)}`.slice(0, 60) }));
  }

  #detailsOf(item) {
    const kind = item.kind === "request" ? "own" : item.kind;
    const details = element("details", { className: `item ${kind}`, id: `item-${item.number}` },
      element("summary"));
    details.addEventListener("toggle", () => {
      if (details.open) this.#fill(details, item);
      for (const each of this.#followers.get(item) ?? []) this.#filterOne(each);
    });
    return details;
  }

  /** Shows what is in an item, once it is looked at. */
  #fill(details, item) {
    if (details.dataset.filled === "yes") return;
    details.dataset.filled = "yes";
    while (details.children.length > 1) details.lastElementChild.remove();
    details.append(element("div", { className: "inside" },
      element("p", { textContent: timesOf(item) }),
      ...item.broken.map((each) => element("p", { className: "bad", textContent: each.what })),
      ...item.replies.map(shownReply), this.#effectsOf(item), this.#screensOf(item)));
  }

  /** Every entry, with the time that passed since the one before. */
  #effectsOf(item) {
    const table = element("table", { className: "effects" });
    table.setAttribute("aria-label", "What was done, and what came of it");
    let before = item.first.at;
    for (const entry of item.entries) {
      const wait = entry.at - before;
      before = entry.at;
      const lost = entry.landed === false ? " lost" : "";
      table.append(element("tr", { className: `${entry.kind}${lost}` },
        element("td", { className: "time", textContent: milliseconds(entry.at) }),
        element("td", { className: "wait",
          textContent: wait > 0 ? `+${milliseconds(wait)}` : "" }),
        element("td", { className: "line", textContent: deedOf(entry, this.#names) })));
    }
    return table;
  }
}

/** What an item is, and below it why it failed or what came of it. */
function titleOf(item) {
  const reason = reasonOf(item);
  return element("span", { className: "title" },
    element("span", { className: "line", textContent: headingOf(item) }),
    reason === "" ? null : element("span", { className: "reason", textContent: reason }));
}

function tag(text, kind) {
  return element("span", { className: `tag ${kind}`, textContent: text });
}

function tagsOf(item, followers) {
  const tags = element("span", { className: "tags" });
  if (followers > 0) tags.append(tag(`${followers + 1} times`, ""));
  if (isFailure(item)) tags.append(tag("failed", "bad"));
  if (isInVain(item)) tags.append(tag("in vain", "bad"));
  if (item.broken.length > 0) tags.append(tag("rule broken", "bad"));
  if (isRefused(item)) tags.append(tag("not ok", "bad"));
  if (endedBadly(item)) tags.append(tag(item.end.outcome, "bad"));
  if (item.lost.length > 0) tags.append(tag(`${item.lost.length} lost`, "bad"));
  if (item.faults.length > 0) tags.append(tag("fault", "warn"));
  if (item.run !== null && !hasFailed(item)) tags.append(tag("ok", "good"));
  return tags;
}

/** A reply, folded where it is long. */
function shownReply(reply) {
  const text = reply.value === null ? reply.text : JSON.stringify(reply.value, null, 2);
  const body = element("pre", { textContent: text });
  if (text.length < 400) return body;
  const beginning = `${reply.text.slice(0, 120)}…`;
  const line = element("summary", { className: "line", textContent: beginning });
  return element("details", {}, line, body);
}

function shownItems() {
  return [...document.querySelectorAll(".item")].filter((each) => !each.hidden);
}

function openShown(open) {
  for (const each of shownItems()) each.open = open;
}

function go(step, qualifies = () => true) {
  const all = shownItems();
  const here = all.indexOf(document.activeElement?.closest(".item"));
  let next = here < 0 && step < 0 ? all.length - 1 : here + step;
  while (all[next] !== undefined && !qualifies(all[next])) next += step;
  all[next]?.querySelector("summary").focus();
}

const keys = {
  "/": () => byId("text").focus(), j: () => go(1), k: () => go(-1),
  n: () => go(1, (each) => each.dataset.state !== "fine"),
};

function takeKey(event) {
  const typing = /^(INPUT|SELECT|TEXTAREA)$/.test(event.target.tagName);
  if (typing && event.key === "Escape") event.target.blur();
  if (typing || event.defaultPrevented || event.ctrlKey || event.metaKey || event.altKey) return;
  if (!(event.key in keys)) return;
  event.preventDefault();
  keys[event.key]();
}
