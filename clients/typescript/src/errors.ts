import { failureRows, remedies, type FailureRow } from "./contract.js";

/** A reply, or a line, as driver wrote it. */
export type Reply = Record<string, unknown> & { ok?: boolean };

/** Whatever this client throws of its own. */
export class DriverError extends Error {
  override name = this.constructor.name;
}

/**
 * A failure that driver told: `id`, `parts` and `remedy` are those of its catalogue. Its message is its text,
 * and below that what to do.
 */
export class CommandError extends DriverError {
  /** The command and its failure, without the remedy. */
  readonly text: string;

  constructor(
    readonly command: string,
    readonly reply: Reply,
    /** The failure's stable name; "unknown-failure" for one that this client does not know. */
    readonly id: string,
    /** What the message was filled in with, by name. */
    readonly parts: Record<string, string>,
    /** What to do. */
    readonly remedy: string,
    cause?: string,
  ) {
    const other = id === "not-accepted" ? `axError ${reply["axError"]}` : id;
    const text = `${command}: ${cause ?? reply["error"] ?? other}`;
    super(`${text}\nWhat to do: ${remedy}`);
    this.text = text;
  }
}

/** The application did not answer for twelve seconds: that nothing was found means nothing. */
export class HungError extends CommandError {
  constructor(command: string, reply: Reply) {
    super(command, reply, "application-hung", {}, remedies["application-hung"],
      `the application did not answer for twelve seconds: ${reply["error"] ?? "nothing was found"}`);
  }
}

/** The run took longer than it may, and was told to end: it has given back what it had borrowed. */
export class TimedOutError extends DriverError {
  constructor(readonly command: string, readonly milliseconds: number) {
    super(`${command}: told to end after ${milliseconds} ms; look at the target before doing it again`);
  }
}

/** A run of driver: its words, and what it replied. */
export interface AskedRun { words: string[]; reply: Reply }

const shownMax = 300;  // characters of a reply

/** A text as a shell takes it. */
export function shellWord(word: string): string {
  return /^[\w./:,+@%=-]+$/.test(word) ? word : `'${word.replaceAll("'", "'\\''")}'`;
}

function lastSeen(told: unknown, lastRun: AskedRun | undefined): string {
  if (lastRun === undefined) return `the last answer was ${JSON.stringify(told)}`;
  const shown = JSON.stringify(lastRun.reply);
  const cut = shown.length > shownMax ? `${shown.slice(0, shownMax)}…` : shown;
  return `at last ${["driver", ...lastRun.words].map(shellWord).join(" ")} replied ${cut}`;
}

/** What `until` waited for did not come. Nothing was told to end. */
export class WaitedInVainError extends TimedOutError {
  constructor(what: string | undefined, milliseconds: number, times: number, told: unknown,
    lastRun: AskedRun | undefined) {
    super("until", milliseconds);
    const often = times === 1 ? "once" : `${times} times`;
    const aim = what === undefined ? "" : ` for ${what}`;
    this.message = `waited ${milliseconds} ms in vain${aim}, and asked ${often}; ${lastSeen(told, lastRun)}`;
  }
}

/** The capture service has ended, and with it all that ran beside it. */
export class ServiceEndedError extends DriverError {
  constructor() { super("the capture service has ended"); }
}

/** driver could not be started, or ended without a reply. */
export class NoReplyError extends DriverError {}

function matchOf(row: FailureRow, command: string, text: string): RegExpMatchArray | null {
  if (row.commands !== null && !row.commands.includes(command)) return null;
  return text.match(new RegExp(row.pattern));
}

/** The failure that a reply without `"ok": true` tells. */
export function failureOf(command: string, reply: Reply): CommandError {
  const text = reply["error"];
  if (typeof text !== "string") {
    const id = "axError" in reply ? "not-accepted" : "not-done";
    return new CommandError(command, reply, id, {}, remedies[id]);
  }
  for (const row of failureRows) {
    const found = matchOf(row, command, text);
    if (found === null) continue;
    const parts = Object.fromEntries(row.parts.map((name, place) => [name, found[place + 1] ?? ""]));
    return new CommandError(command, reply, row.id, parts, row.remedy);
  }
  return new CommandError(command, reply, "unknown-failure", {}, remedies["unknown-failure"]);
}
