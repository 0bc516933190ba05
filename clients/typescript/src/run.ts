import type { ChildProcess } from "node:child_process";
import { endChild, startChild } from "./children.js";
import { commandRows, type ArgumentRow } from "./contract.js";
import { NoReplyError, TimedOutError, type Reply } from "./errors.js";

/** How one command is run. */
export interface RunOptions {
  /** Ends the run: it gives back what it has borrowed, and the call throws the signal's reason. */
  signal?: AbortSignal | undefined;
  /** How long the run may take, in milliseconds; what docs/WORST_CASE.md allows without it. */
  timeoutMs?: number | undefined;
  /** The window scope: a piece of the titles of the windows that are seen. */
  scope?: string | undefined;
}

const optionNames = new Set(["signal", "timeoutMs", "scope"]);

/** What is given to a command, apart from the options of the run. */
export function argumentsIn(given: Record<string, unknown>): Record<string, unknown> {
  return Object.fromEntries(Object.entries(given).filter(([name]) => !optionNames.has(name)));
}

/** Refuses a value that is none of the words. */
export function checkWord(name: string, words: readonly string[], value: unknown, orNumber = false): void {
  if (words.includes(value as string) || (orNumber && typeof value === "number")) return;
  const listed = [...(orNumber ? ["a number"] : []), ...words].join(", ");
  throw new TypeError(`${name} is one of ${listed}, not ${JSON.stringify(value)}`);
}

function wordsOf(row: ArgumentRow, value: unknown): string[] {
  if (row.words !== undefined) checkWord(row.name, row.words, value, row.number);
  if ((row.json || row.repeats) && typeof value === "string") {
    throw new TypeError(`${row.name} is a list of texts, not one text`);
  }
  if (row.json) return [JSON.stringify(value)];
  if (row.repeats) return (value as unknown[]).map(String);
  return [String(value)];
}

/** The command line: in the order of the contract; what is left out in front of others by its default. */
export function commandLine(command: string, given: Record<string, unknown>): string[] {
  const rows = commandRows[command]?.arguments;
  if (rows === undefined) throw new TypeError(`no command ${command}`);
  const unknown = Object.keys(given).filter((name) => !rows.some((row) => row.name === name));
  if (unknown.length > 0) throw new TypeError(`${command} has no argument ${unknown.join(", ")}`);
  const isGiven = rows.map((row) => row.always || given[row.name] !== undefined);
  const words = rows.slice(0, isGiven.lastIndexOf(true) + 1)
    .flatMap((row) => {
      const value = given[row.name] ?? row.default;
      if (value === undefined) throw new TypeError(`${command} needs ${row.name}`);
      return wordsOf(row, value);
    });
  return [command, ...words];
}

/** What a text takes to be typed, beside what every command is allowed: docs/WORST_CASE.md. */
function typingMilliseconds(text: string): number {
  const lines = text.split("\n");
  const pieces = lines.reduce((sum, line) => sum + Math.ceil(line.length / 20), 0);
  return 24 * pieces + 98 * (lines.length - 1);
}

export function millisecondsMax(command: string, given: Record<string, unknown>): number {
  const seconds = commandRows[command]?.secondsMax ?? 30;
  return seconds * 1000 + (command === "bg-type" ? typingMilliseconds(String(given["text"])) : 0);
}

async function textOf(child: ChildProcess): Promise<{ output: string; errors: string }> {
  let output = "";
  let errors = "";
  child.stdout?.setEncoding("utf8").on("data", (piece: string) => (output += piece));
  child.stderr?.setEncoding("utf8").on("data", (piece: string) => (errors += piece));
  await new Promise<void>((resolve, reject) => {
    child.once("close", () => resolve());
    child.once("error", (error) => reject(new NoReplyError(String(error.message))));
  });
  return { output, errors };
}

/** Runs a command line to its end and gives its reply, whatever that says. */
export async function runOnce(
  file: string, words: string[], environment: NodeJS.ProcessEnv, timeoutMs: number,
  abortSignals: AbortSignal[],
): Promise<Reply> {
  for (const signal of abortSignals) signal.throwIfAborted();
  const child = startChild(file, words, environment);
  child.stdin?.end();
  let isLate = false;
  const end = () => void endChild(child);
  const patience = setTimeout(() => { isLate = true; end(); }, timeoutMs);
  for (const signal of abortSignals) signal.addEventListener("abort", end, { once: true });
  try {
    const { output, errors } = await textOf(child);
    for (const signal of abortSignals) signal.throwIfAborted();
    const reply = replyIn(words[0] ?? "", output, errors);
    if (isLate && reply.ok !== true) throw new TimedOutError(words[0] ?? "", timeoutMs);
    return reply;
  } finally {
    clearTimeout(patience);
    for (const signal of abortSignals) signal.removeEventListener("abort", end);
  }
}

export function replyIn(command: string, line: string, errors: string): Reply {
  try {
    return JSON.parse(line) as Reply;
  } catch {
    throw new NoReplyError(`${command}: no reply${errors === "" ? "" : `: ${errors.trim()}`}`);
  }
}
