"use strict";
// The page of a report. What it shows stands in it: nothing is loaded.

const record = JSON.parse(document.getElementById("record").textContent);
const applications = new Map(
  record.header.applications.map((each) => [each.pid, textOf(each.name)]));
const items = itemsOf(record.entries);

/** A new element with these properties, and with what is in it. */
function element(name, properties = {}, ...inside) {
  const made = Object.assign(document.createElement(name), properties);
  made.append(...inside.filter((each) => each !== null));
  return made;
}

function byId(id) { return document.getElementById(id); }

/** A word as a shell reads it. */
function shellWord(word) {
  return /^[\w./:,+@%=-]+$/.test(word) ? word : `'${word.replaceAll("'", "'\\''")}'`;
}

function textOf(value) { return typeof value === "string" ? value : `<${value.hex}>`; }

function milliseconds(time) { return `${Math.round(time * 1000) / 1000} ms`; }

/** The entries as the page tells of them: a run, a request to a service, or what just happened. */
function itemsOf(entries) {
  const found = [];
  const runs = new Map();
  const current = new Map();
  const begin = (kind, entry, run) => {
    const item = { kind, run, entries: [entry], number: found.length };
    found.push(item);
    return item;
  };
  for (const entry of entries) {
    if (entry.pid === undefined) {
      begin("user", entry, null);
    } else if (entry.kind === "process" && entry.what === "joined") {
      const item = begin("run", entry, { pid: entry.pid, joined: entry, outcome: "" });
      runs.set(entry.pid, item.run);
      current.set(entry.pid, item);
    } else if (entry.kind === "request" || !current.has(entry.pid)) {
      const run = runs.get(entry.pid) ?? { pid: entry.pid, joined: null, outcome: "" };
      current.set(entry.pid, begin(entry.kind === "request" ? "request" : "run", entry, run));
    } else {
      current.get(entry.pid).entries.push(entry);
    }
    if (entry.kind === "process" && entry.what === "ended" && runs.has(entry.pid)) {
      runs.get(entry.pid).outcome = entry.outcome;
    }
  }
  return found.map(complete);
}

/** The item with what is known of it as a whole. */
function complete(item) {
  const replies = item.entries.filter((each) => each.kind === "reply").map((each) => replyOf(each));
  const broken = item.entries.filter((each) => each.kind === "violation");
  const faults = item.entries.filter((each) => each.kind === "fault");
  const lost = item.entries.filter((each) => each.landed === false && each.kind !== "input");
  const refused = replies.some((each) =>
    each.value?.ok === false || each.value?.reply?.ok === false);
  const end = item.entries.find((each) => each.kind === "process" && each.what === "ended");
  const badEnd = end !== undefined && end.outcome !== "status 0";
  return { ...item, replies, broken, faults, lost, refused, end, badEnd,
    failed: refused || badEnd || lost.length > 0 || broken.length > 0,
    first: item.entries[0], last: item.entries.at(-1) };
}

function replyOf(entry) {
  const text = textOf(entry.text);
  try {
    return { text, value: JSON.parse(text) };
  } catch {
    return { text, value: null };
  }
}

/** What an item is called in its heading. */
function headingOf(item) {
  if (item.kind === "user") return item.first.what;
  if (item.kind === "request") return textOf(item.first.text).trim();
  return commandLineOf(item.run);
}

function commandLineOf(run) {
  if (run.joined === null) return `process ${run.pid}`;
  return [...(run.joined.variables ?? []), ...run.joined.arguments].map(shellWord).join(" ");
}

/** What an entry was done to: `Notes, window 7`. */
function targetOf(entry) {
  const name = applications.get(entry.target) ?? String(entry.target);
  return entry.window === undefined ? `${name}:` : `${name}, window ${entry.window}:`;
}

/** What was done, and what came of it, as one line. */
function deedOf(entry) {
  if (entry.kind === "process") {
    return entry.what === "joined" ? "joins" : `ends: ${entry.outcome}`;
  }
  if (entry.kind === "reply") return `replies ${textOf(entry.text)}`;
  if (entry.kind === "request") return `is asked ${textOf(entry.text)}`;
  if (entry.kind === "violation") return `breaks ${entry.what}`;
  if (entry.kind === "fault") return `fault: ${entry.outcome}`;
  const parts = [entry.kind === "event" ? "post" : entry.kind];
  if (entry.target !== undefined) parts.push(targetOf(entry));
  if (entry.what !== undefined) parts.push(entry.what);
  if (entry.point !== undefined) parts.push(entry.point.join(","));
  if (entry.route !== undefined) parts.push(entry.route);
  if (entry.element !== undefined && entry.kind === "write") {
    parts.push(`of ${entry.element.role} "${textOf(entry.element.label)}"`);
  }
  if (entry.text !== undefined && entry.kind !== "event") parts.push(`"${textOf(entry.text)}"`);
  const line = parts.join(" ");
  if (entry.landed === false) return `${line} LOST: ${entry.outcome}`;
  return entry.outcome === undefined ? line : `${line}: ${entry.outcome}`;
}

function tag(text, kind) {
  return element("span", { className: `tag ${kind}`, textContent: text });
}

function tagsOf(item) {
  const tags = element("span", { className: "tags" });
  if (item.broken.length > 0) tags.append(tag("rule broken", "bad"));
  if (item.refused) tags.append(tag("not ok", "bad"));
  if (item.badEnd) tags.append(tag(item.end.outcome, "bad"));
  if (item.lost.length > 0) tags.append(tag(`${item.lost.length} lost`, "bad"));
  if (item.faults.length > 0) tags.append(tag("fault", "warn"));
  if (item.kind !== "user" && !item.failed) tags.append(tag("ok", "good"));
  return tags;
}

function detailsOf(item) {
  const summary = element("summary", {},
    element("span", { className: "time", textContent: milliseconds(item.first.at) }),
    element("span", { className: "line", textContent: headingOf(item) }), tagsOf(item));
  const kind = item.kind === "request" ? "own" : item.kind;
  const details = element("details", { className: `item ${kind}` }, summary);
  details.dataset.state = item.broken.length > 0 ? "broken" : item.failed ? "failed" : "fine";
  details.id = `item-${item.number}`;
  details.addEventListener("toggle", () => { if (details.open) fill(details, item); });
  return details;
}

/** Shows what is in an item, once it is looked at. */
function fill(details, item) {
  if (details.dataset.filled === "yes") return;
  details.dataset.filled = "yes";
  details.append(element("div", { className: "inside" },
    timesOf(item),
    ...item.broken.map((each) => element("p", { className: "bad", textContent: each.what })),
    ...item.replies.map(shownReply), effectsOf(item), screensOf(item)));
}

function timesOf(item) {
  const process = item.run === null ? "" : `, process ${item.run.pid}` +
    (item.run.outcome === "" ? "" : `, ${item.run.outcome}`);
  return element("p", { textContent:
    `from ${milliseconds(item.first.at)} to ${milliseconds(item.last.at)}, ` +
    `${milliseconds(item.last.at - item.first.at)} long${process}` });
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

/** Every entry, with the time that passed since the one before. */
function effectsOf(item) {
  const table = element("table", { className: "effects" });
  table.setAttribute("aria-label", "What was done, and what came of it");
  let before = item.first.at;
  for (const entry of item.entries) {
    const wait = entry.at - before;
    before = entry.at;
    const lost = entry.landed === false ? " lost" : "";
    table.append(element("tr", { className: `${entry.kind}${lost}` },
      element("td", { className: "time", textContent: milliseconds(entry.at) }),
      element("td", { className: "wait", textContent: wait > 0 ? `+${milliseconds(wait)}` : "" }),
      element("td", { className: "line", textContent: deedOf(entry) })));
  }
  return table;
}

/** The number of the latest picture of which `holds` is true; -1 when there is none. */
function latestPicture(holds) { return record.pictures.findLastIndex(holds); }

function screensOf(item) {
  const before = latestPicture((each) => each.after < item.first.number);
  const after = latestPicture((each) => each.after <= item.last.number);
  if (after < 0) return null;
  const clicks = clicksOf(item);
  if (before === after || before < 0) {
    return element("div", { className: "screens" },
      screen("the screens, which did not change", after, [], clicks));
  }
  const regions = record.pictures.slice(before + 1, after + 1).flatMap((each) => each.regions);
  return element("div", { className: "screens" },
    screen(clicks.length > 0 ? "before, with where it clicked" : "before", before, [], clicks),
    screen("after, with what has changed", after, regions, []));
}

/** Where a run, or the user, pressed a button. */
function clicksOf(item) {
  const presses = item.entries.filter((each) => each.point !== undefined && each.point[0] >= 0 &&
    /^(left|right)-down$/.test(each.what));
  if (presses.length > 0) return presses.map((each) => ({ x: each.point[0], y: each.point[1] }));
  const click = item.kind === "user" && /^user click (-?[\d.]+),(-?[\d.]+)/.exec(item.first.what);
  return click ? [{ x: Number(click[1]), y: Number(click[2]) }] : [];
}

function screen(caption, number, regions, clicks) {
  const picture = record.pictures[number];
  const canvas = element("canvas", { width: picture.width, height: picture.height });
  canvas.setAttribute("role", "img");
  canvas.setAttribute("aria-label", `The screens at ${milliseconds(picture.at)}, ${caption}`);
  draw(number).then((drawn) => {
    const context = canvas.getContext("2d");
    context.drawImage(drawn, 0, 0);
    outline(context, regions);
    mark(context, picture, clicks);
  }).catch((error) => { canvas.replaceWith(element("p", { textContent: error.message })); });
  const size = element("button", { type: "button", textContent: "larger" });
  const figure = element("figure", {}, canvas,
    element("figcaption", {}, `${caption} (${milliseconds(picture.at)}) `, size));
  size.addEventListener("click", () => {
    size.textContent = figure.classList.toggle("large") ? "smaller" : "larger";
  });
  return figure;
}

function outline(context, regions) {
  context.strokeStyle = "#ff3b30";
  context.lineWidth = 3;
  for (const each of regions) {
    context.strokeRect(each.x - 2.5, each.y - 2.5, each.width + 5, each.height + 5);
  }
}

function mark(context, picture, clicks) {
  for (const each of clicks) {
    context.beginPath();
    context.arc(each.x - picture.x, each.y - picture.y, 14, 0, 2 * Math.PI);
    context.fillStyle = "rgba(255, 59, 48, .3)";
    context.fill();
    context.strokeStyle = "#ff3b30";
    context.lineWidth = 3;
    context.stroke();
  }
}

/** The picture at an address, once it is there. */
function loaded(address) {
  return new Promise((resolve, reject) => {
    const image = new Image();
    image.addEventListener("load", () => resolve(image));
    image.addEventListener("error", () => reject(new Error("This picture cannot be shown.")));
    image.src = address;
  });
}

const drawn = new Map();

/** A picture as a whole: the one before it, with what has changed since. */
function draw(number) {
  if (!drawn.has(number)) drawn.set(number, compose(number));
  return drawn.get(number);
}

async function compose(number) {
  const picture = record.pictures[number];
  if (picture.missing) throw new Error("This picture is missing in the record.");
  const canvas = element("canvas", { width: picture.width, height: picture.height });
  const context = canvas.getContext("2d");
  if (!picture.whole) context.drawImage(await draw(number - 1), 0, 0);
  for (const region of picture.regions) {
    context.drawImage(await loaded(`data:image/png;base64,${region.png}`), region.x, region.y);
  }
  return canvas;
}

/** All that can be searched for in an item. */
const searched = new Map(items.map((item) => [item,
  [headingOf(item), ...item.entries.map(deedOf)].join("\n").toLowerCase()]));

const wanted = {
  all: () => true, failed: (item) => item.failed, broken: (item) => item.broken.length > 0,
  faults: (item) => item.faults.length > 0, user: (item) => item.kind === "user",
};

function filter() {
  const text = byId("text").value.toLowerCase();
  const pid = byId("process").value;
  let shown = 0;
  for (const item of items) {
    const matches = wanted[byId("show").value](item) && searched.get(item).includes(text) &&
      (pid === "" || String(item.run?.pid) === pid);
    byId(`item-${item.number}`).hidden = !matches;
    if (matches) ++shown;
  }
  byId("count").value = `${shown} of ${items.length}`;
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

function listen() {
  for (const id of ["text", "show", "process"]) byId(id).addEventListener("input", filter);
  byId("filter").addEventListener("submit", (event) => event.preventDefault());
  byId("open").addEventListener("click", () => openShown(true));
  byId("close").addEventListener("click", () => openShown(false));
  document.addEventListener("keydown", (event) => {
    const typing = /^(INPUT|SELECT|TEXTAREA)$/.test(event.target.tagName);
    if (typing && event.key === "Escape") event.target.blur();
    if (typing || event.ctrlKey || event.metaKey || event.altKey || !(event.key in keys)) return;
    event.preventDefault();
    keys[event.key]();
  });
  window.addEventListener("beforeprint", () => openShown(true));
}

function summarise() {
  const runs = new Set(items.filter((item) => item.run !== null).map((item) => item.run));
  const failed = items.filter((item) => item.failed).length;
  const end = record.end === null ? "cut off: the Mac did not end by itself"
    : `${milliseconds(record.end.at)} of ${record.header.time} time`;
  byId("summary").textContent =
    `${runs.size} processes, ${failed} steps with failures, ${end}. ${record.header.program}.`;
  for (const run of runs) {
    byId("process").append(element("option", { value: run.pid,
      textContent: `${run.pid} ${commandLineOf(run)}`.slice(0, 60) }));
  }
  listBroken();
}

/** Each broken rule, with the way to where it was broken. */
function listBroken() {
  const told = new Set();
  for (const item of items) {
    for (const each of item.broken) {
      told.add(each.what);
      listWithWay(each.what, item);
    }
  }
  for (const each of record.end?.violations ?? []) {
    if (told.has(each)) continue;
    // What was left behind is told at the end: its process is named.
    const pid = Number(/process (\d+)/.exec(each)?.[1]);
    listWithWay(each, items.findLast((item) => item.run?.pid === pid));
  }
}

/** A broken rule, with the way to the item that it is about, if there is one. */
function listWithWay(text, item) {
  if (item === undefined) {
    byId("broken").append(element("li", { textContent: text }));
    return;
  }
  const link = element("a", { href: `#item-${item.number}`, textContent: text });
  link.addEventListener("click", () => { byId(`item-${item.number}`).open = true; });
  byId("broken").append(element("li", {}, link));
}

byId("items").append(...items.map(detailsOf));
summarise();
listen();
filter();
