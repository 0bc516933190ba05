import { mkdtempSync, rmSync, statSync, writeFileSync } from "node:fs";
import { tmpdir } from "node:os";
import { basename, join } from "node:path";
import { fileURLToPath } from "node:url";
import { isDeepStrictEqual } from "node:util";
import { endChild, startChild } from "./children.js";
import type { Clock } from "./clock.js";
import { DriverError, shellWord, type Reply } from "./errors.js";
import { Mac } from "./mac.js";

export interface SimulatedMacOptions {
  /** The executables; "driver" and "simulated-mac", looked for in the PATH, without them. */
  driver?: string;
  simulatedMac?: string;
  /** Real time; without it no wait takes any. */
  realTime?: boolean;
  /** Where `withSimulatedMac` writes a page of what happened, when the test fails. */
  report?: string;
}

const shownMax = 300;  // characters of a value
const here = new URL(".", import.meta.url).href;

/** An error for people: what it is, and which line of whose code it comes from. */
function failureText(error: unknown): string {
  if (!(error instanceof Error)) return String(error);
  const places = (error.stack ?? "").matchAll(/^\s+at (?:.*[ (])?((?:file:\/\/)?\/[^()]*?):(\d+):\d+\)?$/gm);
  const own = [...places].find(([, file]) => !`file://${file}`.replace("file://file://", "file://").startsWith(here));
  const place = own === undefined ? "" : ` (${basename(own[1]!)}:${own[2]})`;
  const [first, ...rest] = `${error.name}: ${error.message}`.split("\n");
  return [first + place, ...rest].join("\n");
}

/** Where two states differ, each with what was there and what is. */
function differences(before: unknown, after: unknown, name = ""): string[] {
  if (isDeepStrictEqual(before, after)) return [];
  if (!isObject(before) || !isObject(after)) return [`${name} was ${shown(before)} and is ${shown(after)}`];
  const keys = [...new Set([...Object.keys(before), ...Object.keys(after)])].sort();
  return keys.flatMap((key) => differences(before[key], after[key], name === "" ? key : `${name}.${key}`));
}

function isObject(value: unknown): value is Record<string, unknown> {
  return typeof value === "object" && value !== null && !Array.isArray(value);
}

function shown(value: unknown): string {
  const text = value === undefined ? "null" : JSON.stringify(value);
  return text.length > shownMax ? `${text.slice(0, shownMax)}…` : text;
}

function isFile(path: string): boolean {
  try {
    return statSync(path).isFile();
  } catch {
    return false;  // perhaps it cannot be a file's name
  }
}

/** The folder and the name of a world's file, which is made for a text. */
function written(world: string | URL, folder: string): { cwd: string | undefined; name: string } {
  if (world instanceof URL) return { cwd: undefined, name: fileURLToPath(world) };
  if (typeof world !== "string") {
    throw new TypeError(`a world is its text, or the URL of its file, not ${world === null ? "null" : typeof world}`);
  }
  if (isFile(world)) {
    const path = JSON.stringify(world);
    throw new TypeError(`${path} is taken for the text of a world; for the file say pathToFileURL(${path})`);
  }
  writeFileSync(join(folder, "world"), world);
  return { cwd: folder, name: "world" };
}

/** The error in a line of simulated-mac; what is no such line as it is. */
function errorIn(line: string): string {
  try {
    return String((JSON.parse(line) as Reply)["error"]);
  } catch {
    return line.trim();
  }
}

/** Tells whoever runs the test, by the means of Node, of what is hardly meant. */
function warn(text: string): void {
  if (text !== "") process.emitWarning(text, "SimulatedMacWarning");
}

/** The path of the world's file. Throws for one that cannot be read, and warns of what is hardly meant. */
async function checked(program: string, world: string | URL, folder: string): Promise<string> {
  const { cwd, name } = written(world, folder);
  const check = startChild(program, ["check", name], process.env, cwd);
  const over = new Promise<number | null>((resolve) => check.once("close", (status) => resolve(status)));
  // Its last line counts the problems; when there is no world to look at, it is all there is.
  const output = await outputOf(check).catch((error: Error) => {
    throw new DriverError(`no simulated Mac: ${error.message}`);
  });
  const lines = output.trimEnd().split("\n");
  const problems = lines.slice(0, -1).join("\n");
  if ((await over) !== 0) throw new DriverError(`no simulated Mac: ${problems || errorIn(lines.at(-1) ?? "")}`);
  warn(problems);
  return cwd === undefined ? name : join(cwd, name);
}

/** A Mac of a test's own, made from a world. */
export class SimulatedMac {
  readonly #server: ReturnType<typeof startChild>;
  readonly #folder: string;
  readonly #program: string;
  readonly #environment: NodeJS.ProcessEnv;
  #hints = Promise.resolve("");
  #before: Reply | undefined;
  readonly mac: Mac;

  private constructor(server: ReturnType<typeof startChild>, folder: string, program: string,
    /** What SIMULATED_MAC is for processes on this Mac. */
    readonly socket: string, options: SimulatedMacOptions) {
    this.#server = server;
    this.#folder = folder;
    this.#program = program;
    this.#environment = { ...process.env, SIMULATED_MAC: socket };
    this.mac = new Mac({ driver: options.driver, environment: this.#environment,
      ...(options.realTime === true ? {} : { clock: this.#clock() }) });
  }

  /** Starts a Mac from the text of a world, or from the URL of its file. */
  static async start(world: string | URL, options: SimulatedMacOptions = {}): Promise<SimulatedMac> {
    const folder = mkdtempSync(join(tmpdir(), "simulated-mac-"));
    try {
      return await SimulatedMac.#startIn(folder, world, options);
    } catch (error) {
      rmSync(folder, { recursive: true });
      throw error;
    }
  }

  static async #startIn(folder: string, world: string | URL, options: SimulatedMacOptions): Promise<SimulatedMac> {
    const program = options.simulatedMac ?? "simulated-mac";
    const file = await checked(program, world, folder);
    const time = options.realTime === true ? [] : ["--virtual"];
    const record = ["--record", join(folder, "record")];
    const server = startChild(program, ["serve", ...time, ...record, "--until-closed", file], process.env);
    const hints = outputOf(server, server.stderr!);
    const socket = await outputOf(server);
    if (!socket.startsWith("@")) throw new DriverError(`no simulated Mac: ${errorIn(await hints)}`);
    const simulated = new SimulatedMac(server, folder, program, socket.trim(), options);
    simulated.#hints = hints;
    simulated.#before = await simulated.state();
    return simulated;
  }

  /** A path in a folder that goes with the Mac. */
  path(name: string): string { return join(this.#folder, name); }

  /** Tells or asks the Mac: `tell("lock")`, `tell("user", "key", "a")`. Gives the lines of its answer. */
  async tell(...words: string[]): Promise<Reply[]> {
    const child = startChild(this.#program, words, this.#environment);
    const lines = (await outputOf(child)).split("\n").filter((line) => line !== "");
    const replies = lines.map((line) => JSON.parse(line) as Reply);
    if (replies[0]?.ok === false) {
      throw new DriverError(`${["simulated-mac", ...words].map(shellWord).join(" ")}: ${replies[0]["error"]}`);
    }
    return replies;
  }

  /** What is the user's own: front application, keyboard, pointer, clipboard, session. */
  async state(): Promise<Reply> { return (await this.tell("state", "--user"))[0]!; }

  async violations(): Promise<unknown[]> { return (await this.tell("violations"))[0]!["violations"] as unknown[]; }

  /** Fails when a rule of safe input was broken, or the user's state is another than at the start. */
  async check(): Promise<void> {
    const violations = await this.violations();
    if (violations.length > 0) throw new DriverError(`rules of safe input were broken: ${violations.join("; ")}`);
    const changed = differences(this.#before, await this.state());
    if (changed.length === 0) return;
    throw new DriverError(`the user's state is not as before: ${changed.join("; ")}\n` +
      "What to do: if the test or its world changes it, call settle() after that.");
  }

  /** Writes into the journal that the test has failed, and why: a report begins with it. */
  async noteFailure(error: unknown): Promise<void> {
    try {
      await this.tell("failed", failureText(error));
    } catch (trouble) {
      if (!(trouble instanceof DriverError)) throw trouble;  // a Mac that has gone is not what has failed
    }
  }

  /** Writes a page that shows all that has happened so far, for a browser. */
  async report(path: string): Promise<void> {
    const answer = await outputOf(startChild(this.#program, ["report", this.path("record"), "-o", path], process.env));
    if (JSON.parse(answer).ok !== true) throw new DriverError(`no report: ${answer.trim()}`);
  }

  /** Takes the user's present state for the one to be kept: after the user has acted. */
  async settle(): Promise<void> { this.#before = await this.state(); }

  async end(): Promise<void> {
    await endChild(this.#server);
    rmSync(this.#folder, { recursive: true });
    warn((await this.#hints).trim());
  }

  #clock(): Clock {
    const advance = async (milliseconds: number) =>
      Number((await this.tell("advance", `${Math.round(milliseconds * 1000)}us`))[0]!["now"]);
    return { now: () => advance(0), sleep: async (milliseconds) => void (await advance(milliseconds)) };
  }
}

async function outputOf(child: ReturnType<typeof startChild>, stream = child.stdout!): Promise<string> {
  let output = "";
  stream.setEncoding("utf8").on("data", (piece: string) => (output += piece));
  await new Promise<void>((resolve, reject) => {
    stream.once("end", () => resolve());
    child.once("error", (error) => reject(new DriverError(error.message)));
  });
  return output;
}

/** Runs a test on a Mac of its own, and checks afterwards that the user has noticed nothing. */
export async function withSimulatedMac<Result>(world: string | URL, test: (simulated: SimulatedMac) => Promise<Result>,
  options: SimulatedMacOptions = {}): Promise<Result> {
  const simulated = await SimulatedMac.start(world, options);
  try {
    const result = await test(simulated);
    await simulated.check();
    return result;
  } catch (error) {
    await simulated.noteFailure(error);
    if (options.report !== undefined) await simulated.report(options.report);
    throw error;
  } finally {
    await simulated.end();
  }
}
