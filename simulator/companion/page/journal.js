// The entries of a journal as a page tells of them: a run, a request to a service, what a test told,
// or what just happened. Each of these is an item, with its entries.
import { milliseconds, shellWord, textOf } from "dom";

/** What a test tells a Mac, by the kinds of its entries. */
const testKinds = ["wait", "failure", "fault"];

export class Journal {
  items = [];
  #runs = new Map();
  #current = new Map();

  /** Adds an entry, and gives the item that it belongs to. */
  add(entry) {
    const item = this.#itemOf(entry);
    if (item.first !== entry) item.entries.push(entry);
    item.last = entry;
    note(item, entry);
    return item;
  }

  #itemOf(entry) {
    if (entry.pid === undefined) {
      return this.#begin(testKinds.includes(entry.kind) ? "test" : "user", entry, null);
    }
    const isJoining = entry.kind === "process" && entry.what === "joined";
    if (!isJoining && entry.kind !== "request" && this.#current.has(entry.pid)) {
      return this.#current.get(entry.pid);
    }
    if (isJoining || !this.#runs.has(entry.pid)) {
      this.#runs.set(entry.pid, { pid: entry.pid, joined: isJoining ? entry : null, outcome: "" });
    }
    const kind = entry.kind === "request" ? "request" : "run";
    const item = this.#begin(kind, entry, this.#runs.get(entry.pid));
    this.#current.set(entry.pid, item);
    return item;
  }

  #begin(kind, entry, run) {
    const item = { kind, run, number: this.items.length, first: entry, last: entry,
      entries: [entry], replies: [], broken: [], faults: [], lost: [], end: null };
    this.items.push(item);
    return item;
  }
}

/** Notes of an item what one of its entries says of it as a whole. */
function note(item, entry) {
  if (entry.kind === "reply") item.replies.push(replyOf(entry));
  if (entry.kind === "violation") item.broken.push(entry);
  if (entry.kind === "fault") item.faults.push(entry);
  if (entry.landed === false && entry.kind !== "input") item.lost.push(entry);
  if (entry.kind === "process" && entry.what === "ended") {
    item.end = entry;
    item.run.outcome = entry.outcome;
  }
}

export function isRefused(item) {
  return item.replies.some((each) => each.value?.ok === false || each.value?.reply?.ok === false);
}

/** A test has failed, or the command that the Mac was started for. */
export function isFailure(item) { return item.kind === "test" && item.first.kind === "failure"; }

/** A test has waited in vain. */
export function isInVain(item) { return item.kind === "test" && item.first.kind === "wait"; }

/** By these a run asks an application to be accessible: nobody sees anything of that. */
const askingAttributes = ["AXManualAccessibility", "AXEnhancedUserInterface"];

/** A run that only looked: nothing came of it in the Mac. */
export function isLook(item) {
  const isOnlyLooking = (entry) => ["process", "reply", "capture"].includes(entry.kind) ||
    (entry.kind === "write" && askingAttributes.includes(entry.what));
  return item.kind === "run" && item.end !== null && !hasFailedOtherwise(item) &&
    item.faults.length === 0 && item.entries.every(isOnlyLooking);
}

/** Whether a look is the same as another: by command line and reply. */
export function isSameLook(item, other) {
  return isLook(item) && isLook(other) && headingOf(item) === headingOf(other) &&
    item.end.outcome === other.end.outcome && repliesOf(item) === repliesOf(other);
}

function repliesOf(item) { return item.replies.map((each) => each.text).join("\n"); }

export function endedBadly(item) { return item.end !== null && item.end.outcome !== "status 0"; }

export function hasFailed(item) {
  return isRefused(item) || endedBadly(item) || hasFailedOtherwise(item);
}

/** Not by its reply or its end. */
function hasFailedOtherwise(item) {
  return item.lost.length > 0 || item.broken.length > 0 || isFailure(item) || isInVain(item);
}

/** Why an item failed, what came of an act of the user, or what a look saw, in short; empty when
 *  there is nothing to say. */
export function reasonOf(item) {
  const errors = item.replies.map(({ value }) => value?.error ?? value?.reply?.error);
  const acts = item.kind === "user" || isInVain(item) ? [item.first.outcome] : [];
  const reasons = [...item.broken.map((each) => each.what), ...errors,
    ...item.lost.map((each) => `LOST: ${each.outcome}`), ...acts];
  return reasons.find((each) => typeof each === "string") ?? (isLook(item) ? seenBy(item) : "");
}

const seenMax = 160;  // characters

/** The beginning of what a look saw. */
function seenBy(item) {
  const value = item.replies.at(-1)?.value ?? null;
  if (value === null || typeof value !== "object") return "";
  const { ok, ...rest } = value;
  const text = Object.entries(rest).map(([key, each]) => `${key}: ${JSON.stringify(each)}`)
    .join(", ");
  return text.length > seenMax ? `${text.slice(0, seenMax)}…` : text;
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
export function headingOf(item) {
  if (item.kind === "test") return deedOf(item.first, new Map()).split("\n")[0];
  if (item.kind === "user") return item.first.what ?? item.first.kind;
  if (item.kind === "request") return textOf(item.first.text).trim();
  return commandLineOf(item.run);
}

export function commandLineOf(run) {
  if (run.joined === null) return `process ${run.pid}`;
  return [...(run.joined.variables ?? []), ...run.joined.arguments].map(shellWord).join(" ");
}

/** What an entry was done to: `Notes, window 7`. */
function targetOf(entry, names) {
  const name = names.get(entry.target) ?? String(entry.target);
  return entry.window === undefined ? `${name}:` : `${name}, window ${entry.window}:`;
}

/** What was done, and what came of it, as one line. `names` has the applications' by their pids. */
export function deedOf(entry, names) {
  if (entry.kind === "process") {
    return entry.what === "joined" ? "joins" : `ends: ${entry.outcome}`;
  }
  if (entry.kind === "reply") return `replies ${textOf(entry.text)}`;
  if (entry.kind === "request") return `is asked ${textOf(entry.text)}`;
  if (entry.kind === "violation") return `breaks ${entry.what}`;
  if (entry.kind === "fault" && entry.what === "armed") return `fault armed: ${entry.outcome}`;
  if (entry.kind === "fault") return `fault: ${entry.outcome}`;
  if (entry.kind === "wait") return `wait ${entry.what}`;
  if (entry.kind === "failure") return `failed: ${textOf(entry.text)}`;
  const parts = [entry.kind === "event" ? "post" : entry.kind];
  if (entry.target !== undefined) parts.push(targetOf(entry, names));
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

/** Where a run, or the user, pressed a button. */
export function clicksOf(item) {
  const presses = item.entries.filter((each) => each.point !== undefined && each.point[0] >= 0 &&
    /^(left|right)-down$/.test(each.what));
  if (presses.length > 0) return presses.map((each) => ({ x: each.point[0], y: each.point[1] }));
  const click = item.kind === "user" && /^user click (-?[\d.]+),(-?[\d.]+)/.exec(item.first.what);
  return click ? [{ x: Number(click[1]), y: Number(click[2]) }] : [];
}

export function timesOf(item) {
  const process = item.run === null ? "" : `, process ${item.run.pid}` +
    (item.run.outcome === "" ? "" : `, ${item.run.outcome}`);
  return `from ${milliseconds(item.first.at)} to ${milliseconds(item.last.at)}, ` +
    `${milliseconds(item.last.at - item.first.at)} long${process}`;
}
